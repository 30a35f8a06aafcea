#include "testtable.h"
#include "tst_yxhelpbuild_fixture.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>

namespace {

struct Reply
{
    int status = 0;
    QByteArray type;
    QByteArray length;
    QByteArray body;
};

using Method = QNetworkReply* (QNetworkAccessManager::*)(const QNetworkRequest&);

Reply Get(const QString& address, Method method = &QNetworkAccessManager::get)
{
    QNetworkAccessManager network;
    QNetworkRequest request((QUrl(address)));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setRawHeader("Accept-Encoding", "identity"); // the length is that of the text
    QNetworkReply* reply = (network.*method)(request);
    QSignalSpy finished(reply, &QNetworkReply::finished);
    if (!reply->isFinished() && !finished.wait())
        return {};
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
            reply->rawHeader("Content-Type"), reply->rawHeader("Content-Length"), reply->readAll()};
}

QString AddressIn(const Reply& reply)
{
    return QJsonDocument::fromJson(reply.body).object()["address"_s].toString();
}

/// Sends the path as it is, where a client would clean it up first.
QByteArray RawGet(const QUrl& server, const QByteArray& path)
{
    QTcpSocket socket;
    socket.connectToHost(server.host(), static_cast<quint16>(server.port()));
    socket.write("GET " + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (socket.waitForReadyRead())
        answer += socket.readAll();
    return answer;
}

quint16 FreePort()
{
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : 0;
}

} // namespace

/// The service that answers where topics of a web site are, and nginx in its place.
class TestHelpService : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void topicsAreFound_data();
    void topicsAreFound();
    void nginxFindsTopics_data() { topicsAreFound_data(); }
    void nginxFindsTopics();
    void filesAreServed_data();
    void filesAreServed();
    void nothingElseIsServed_data();
    void nothingElseIsServed();
    void signalEndsIt();
    void cleanupTestCase();

private:
    QString Start(QProcess& process);
    bool StartNginx();
    void CheckTopic(const QString& server);

    BuildFixture site;
    QString base;
    QProcess service;
    QProcess nginx;
    QString nginxBase;
};

void TestHelpService::initTestCase()
{
    site.options.site = site.OutputDir() + QLatin1String("/site");
    site.options.output.clear();
    site.WritePage("m/a/index.html"_s, "Earlier"_s);
    site.WritePage("m/start/index.html"_s, "Home"_s, "<img src='a%20b.png'>");
    site.WritePage("m/deep/Key.page.html"_s, "Key"_s);
    site.WritePage("m/deep/other.html"_s, "Other"_s);
    site.Write("m/start/a b.png"_s, BuildFixture::Png());
    site.Write("m/p.qhp"_s, Project("<section title='H' ref='start/index.html'>"
                                    "<section title='A' ref='a/index.html'/>"
                                    "<section title='K' ref='deep/Key.page.html'/>"
                                    "<section title='O' ref='deep/other.html'/></section>",
                                    "<keyword name='x' id='Class::f(int &amp;)' ref='deep/other.html'/>"
                                    "<keyword name='y' id='home' ref='start/index.html'/>",
                                    "<file>start/index.html</file><file>start/a b.png</file>"
                                    "<file>a/index.html</file><file>deep/Key.page.html</file>"
                                    "<file>deep/other.html</file>"));
    QVERIFY2(site.Build({"m/p.qhp"_s}), qPrintable(site.Error()));
    QFile secret(site.OutputDir() + "/secret.txt"_s);
    QVERIFY(secret.open(QIODevice::WriteOnly) && secret.write("secret"));
    QVERIFY(QFile::link(secret.fileName(), site.options.site + "/en-US/link.txt"_s));
    base = Start(service);
    QVERIFY(!base.isEmpty());
}

// Address of the service; empty when it doesn't start.
QString TestHelpService::Start(QProcess& process)
{
    process.start(QStringLiteral(YXHELP_SERVICE_PROGRAM), {"--site"_s, site.options.site});
    if (!process.waitForReadyRead())
        return {};
    const QString line = QString::fromUtf8(process.readLine());
    return QRegExp("http://127\\.0\\.0\\.1:\\d+/\n"_s).exactMatch(line) ? line.trimmed() : QString();
}

void TestHelpService::topicsAreFound_data()
{
    const auto row = Columns<QString, QString>("query", "title"); // no title: unknown
    row("key", "language=en-US&topic=home", "Home");
    row("key in capitals", "language=en-US&topic=HOME", "Home");
    row("key with signs", "language=en-US&topic=Class%3A%3Af%28int%20%26%29", "Other");
    row("base name of the home page", "language=en-US&topic=INDEX", "Home");
    row("base name", "language=en-US&topic=OTHER", "Other");
    row("base name with a dot", "language=en-US&topic=KEY.PAGE", "Key");
    row("no topic", "language=en-US&topic=", "Home");
    row("path of an unknown key", "language=en-US&topic=none&path=doc/a/index.html", "Earlier");
    row("path before base name", "language=en-US&topic=OTHER&path=doc%2Fa%2Findex.html", "Earlier");
    row("key before path", "language=en-US&topic=home&path=doc/a/index.html", "Home");
    row("unknown topic", "language=en-US&topic=none", "");
    row("part of a key", "language=en-US&topic=hom", "");
    row("unknown language", "language=fr-FR&topic=home", "");
    row("nothing", "", "");
}

void TestHelpService::topicsAreFound()
{
    CheckTopic(base);
}

void TestHelpService::CheckTopic(const QString& server)
{
    QFETCH(QString, query);
    QFETCH(QString, title);
    const Reply reply = Get(server + "address?product=A%20B&version=2024&"_s + query);
    QCOMPARE(reply.status, title.isEmpty() ? 404 : 200);
    QCOMPARE(reply.type, QByteArray("application/json"));
    const QString address = AddressIn(reply);
    QCOMPARE(address.isEmpty(), title.isEmpty());
    if (title.isEmpty()) {
        QVERIFY(QJsonDocument::fromJson(reply.body).object().contains("error"_s));
        return;
    }
    QVERIFY2(address.startsWith(server + "en-US/OriginalData/"_s), qPrintable(address));
    QVERIFY2(address.endsWith("?product=A%20B&version=2024&language=en-US"_s), qPrintable(address));
    const Reply page = Get(address);
    QVERIFY(page.body.contains("<title>"_s.append(title).toUtf8()));
    QCOMPARE(page.type, QByteArray("text/html; charset=utf-8"));
}

bool TestHelpService::StartNginx()
{
    QFile recipe(QStringLiteral(YXHELP_NGINX_CONF));
    const QString port = QString::number(FreePort());
    const QString folder = site.OutputDir();
    if (!recipe.open(QIODevice::ReadOnly))
        return false;
    QString server = QString::fromUtf8(recipe.readAll());
    server.replace("/srv/help"_s, site.options.site).replace("listen 8080"_s, "listen 127.0.0.1:"_s + port);
    QString settings = "daemon off;\nmaster_process off;\npid F/pid;\nerror_log stderr;\nevents {}\nhttp {\n"
                       "access_log off;\ntypes { text/html html; image/png png; }\n"_s;
    for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        settings += QLatin1String(kind) + "_temp_path F/temp;\n"_s;
    site.Write("nginx.conf"_s,
               (settings.replace("F/"_s, folder + QLatin1Char('/')) + server + "}\n"_s).toUtf8());
    nginx.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    nginx.start(QStandardPaths::findExecutable("nginx"_s, {"/usr/sbin"_s}),
                {"-p"_s, folder, "-e"_s, "stderr"_s, "-c"_s, site.Input("nginx.conf"_s)});
    nginxBase = "http://127.0.0.1:"_s + port + QLatin1Char('/');
    return nginx.waitForStarted();
}

void TestHelpService::nginxFindsTopics()
{
    if (QStandardPaths::findExecutable("nginx"_s, {"/usr/sbin"_s}).isEmpty())
        QSKIP("nginx is not installed");
    if (QByteArray(QTest::currentDataTag()).startsWith("path "))
        QSKIP("nginx takes no paths");
    if (nginx.state() == QProcess::NotRunning) {
        QVERIFY(StartNginx());
        QTRY_COMPARE(Get(nginxBase + "en-US/"_s).status, 200);
    }
    CheckTopic(nginxBase);
}

void TestHelpService::filesAreServed_data()
{
    const auto row = Columns<QString, QString>("path", "type");
    row("home page", "en-US/", "text/html; charset=utf-8");
    row("home page by its folder", "en-US", "text/html; charset=utf-8");
    row("page with a query", "en-US/OriginalData/doc/a/index.html?language=en-US",
        "text/html; charset=utf-8");
    row("image", "en-US/OriginalData/doc/start/a%20b.png", "image/png");
    row("table", "en-US/addresses.json", "application/json");
}

void TestHelpService::filesAreServed()
{
    QFETCH(QString, path);
    QFETCH(QString, type);
    const Reply whole = Get(base + path);
    QCOMPARE(whole.status, 200);
    QCOMPARE(whole.type, type.toLatin1());
    QVERIFY(!whole.body.isEmpty());
    const Reply head = Get(base + path, &QNetworkAccessManager::head);
    QCOMPARE(head.status, 200);
    QCOMPARE(head.type, whole.type);
    QCOMPARE(head.length.toInt(), whole.body.size());
    QCOMPARE(head.body, QByteArray());
}

void TestHelpService::nothingElseIsServed_data()
{
    const auto row = Columns<QString>("path");
    row("no file", "/en-US/none.html");
    row("way up", "/../secret.txt");
    row("encoded way up", "/en-US/%2e%2e/%2e%2e/secret.txt");
    row("encoded slashes", "/en-US/..%2f..%2fsecret.txt");
    row("link out of the site", "/en-US/link.txt");
    row("whole path", "//etc/passwd");
    row("cut off name", "/en-US/addresses.json%00.html");
}

void TestHelpService::nothingElseIsServed()
{
    QFETCH(QString, path);
    const QByteArray answer = RawGet(QUrl(base), path.toLatin1());
    QVERIFY2(answer.startsWith("HTTP/1.1 404"), answer.constData());
}

// Also with a connection that stays open.
void TestHelpService::signalEndsIt()
{
    for (const int signal : {SIGTERM, SIGINT}) {
        QProcess process;
        QNetworkAccessManager network;
        const QString address = Start(process);
        QVERIFY(!address.isEmpty());
        const QNetworkReply* reply = network.get(QNetworkRequest(QUrl(address + "en-US/"_s)));
        QTRY_VERIFY(reply->isFinished());
        ::kill(static_cast<pid_t>(process.processId()), signal);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
    }
}

void TestHelpService::cleanupTestCase()
{
    for (QProcess* process : {&service, &nginx}) {
        process->terminate();
        process->waitForFinished();
    }
}

QTEST_GUILESS_MAIN(TestHelpService)
#include "tst_helpservice.moc"
