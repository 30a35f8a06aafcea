#include "builtinresources.h"
#include "product.h"
#include "redirectwebenginepage.h"
#include "windowdriver.h"
#include "yxconfig.h"
#include "yxviewmodel.h"

#include <QDesktopServices>
#include <QDirIterator>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QTreeWidget>
#include <QWebEngineView>
#include <QtTest>

#include <memory>

namespace {

/// Title of the page when it is there as a whole.
const QString kLoaded =
    QStringLiteral("document.readyState == 'complete' && !window.old ? document.title : ''");
const QString kHash = QStringLiteral("decodeURIComponent(location.hash)");
const auto kDotIsAll =
    QRegularExpression::DotMatchesEverythingOption | QRegularExpression::CaseInsensitiveOption;

QString TitleOf(const QString& html)
{
    static const QRegularExpression title(QStringLiteral("<title>(.*?)</title>"), kDotIsAll);
    QTextDocument text;
    text.setHtml(title.match(html).captured(1));
    return text.toPlainText();
}

/// Addresses of all anchors of a page as its author wrote them; null for one that is no link.
QStringList LinksOf(QString html)
{
    static const QRegularExpression noText(QStringLiteral("<!--.*?-->|<script.*?</script>"), kDotIsAll);
    static const QRegularExpression anchor(QStringLiteral("<a(?:\\s[^>]*)?>"), kDotIsAll);
    static const QRegularExpression address(QStringLiteral("\\shref\\s*=\\s*[\"']([^\"']*)[\"']"), kDotIsAll);
    html.remove(noText);
    QStringList links;
    for (auto tags = anchor.globalMatch(html); tags.hasNext();)
        links += address.match(tags.next().captured())
                     .captured(1)
                     .replace(QLatin1String("&amp;"), QLatin1String("&"));
    return links;
}

/// Builds the help projects below `root`, or the folder itself when there is no pattern for projects.
/// `output` gets the database, and a web site too with `site`.
bool BuildManual(const QString& root, const QString& projects, const QString& output, bool site = false)
{
    QStringList arguments{QStringLiteral("-o"), output, QStringLiteral("-l"), QStringLiteral("en-US")};
    if (site)
        arguments << QStringLiteral("--site") << output;
    if (projects.isEmpty())
        arguments << QStringLiteral("-i") << root;
    else
        for (QDirIterator found(root, {projects}, QDir::Files, QDirIterator::Subdirectories);
             found.hasNext();)
            arguments << QStringLiteral("-i") << found.next();
    QProcess builder;
    builder.start(QStringLiteral(YXHELP_BUILD_PROGRAM), arguments);
    return builder.waitForFinished(120000) && builder.exitCode() == 0;
}

/// Folder of Qt's help projects; empty when they aren't installed.
QString QtManual()
{
    const QString folder = QLibraryInfo::location(QLibraryInfo::DocumentationPath);
    return QFile::exists(folder + QLatin1String("/qtcore/qtcore.qhp")) ? folder : QString();
}

} // namespace

/// Manuals as they are installed, built and read: their links lead where their authors meant them to.
class TestRealManual : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void linksLeadToTheirPages_data();
    void linksLeadToTheirPages();
    void topicsGoOnlineAndBack();

public slots:
    void Browse(const QUrl& url) { browsed = url.toString(); }

private:
    QString Source(int topic) const;
    bool Open(int topic);
    QString ClickSomeLink(const QStringList& links);
    QString CheckArrival(int from, const QString& link);

    QString root;
    QStringList paths; ///< Of the topics, relative to the root.
    std::unique_ptr<WindowDriver> driver;
    QRandomGenerator random;
    QString browsed;
    int clicks = 0; ///< That the viewer has heard of.
};

void TestRealManual::initTestCase()
{
    InitBuiltInResources();
    QVERIFY(UseProduct(ProductIni(1)));
    for (const char* scheme : {"http", "https", "mailto"})
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "Browse");
}

void TestRealManual::linksLeadToTheirPages_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("projects");
    QTest::addColumn<int>("count");
    const auto manual = [](const char* language) {
        return QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                      QLatin1String("doc/kicad/help/") + QLatin1String(language),
                                      QStandardPaths::LocateDirectory);
    };
    QTest::newRow("Qt") << QtManual() << QStringLiteral("*.qhp") << 50;
    QTest::newRow("KiCad") << manual("en") << QString() << 20;
    QTest::newRow("KiCad in Chinese") << manual("zh") << QString() << 20;
}

void TestRealManual::linksLeadToTheirPages()
{
    QFETCH(QString, folder);
    QFETCH(QString, projects);
    QFETCH(int, count);
    if (folder.isEmpty())
        QSKIP("this manual isn't installed");
    root = folder;
    const QTemporaryDir dir;
    QVERIFY(BuildManual(root, projects, dir.path()));
    HelpLaunchArgs args;
    args.language = QStringLiteral("en-US");
    args.mdbFile = QStringLiteral("YXCADHelp.db");
    args.rccPath = dir.path();
    driver = std::make_unique<WindowDriver>(args);
    driver->Show();
    const auto* page = qobject_cast<RedirectWebEnginePage*>(driver->OfflinePage());
    connect(page, &RedirectWebEnginePage::linkClicked, this, [this] { ++clicks; });
    paths.clear();
    for (const TreeViewModel& topic : driver->Find<YxViewModel>("")->HelpFileList())
        paths += QString(topic.FilePath).replace(QLatin1Char('\\'), QLatin1Char('/'));

    random.seed(1 + quint32(qEnvironmentVariableIntValue("YXHELP_SEED")));
    QMap<QString, int> kinds;
    for (int clicked = 0; clicked < count;) {
        const int from = random.bounded(paths.size());
        if (TitleOf(Source(from)).isEmpty())
            continue;
        QVERIFY2(Open(from), qPrintable(paths.at(from)));
        const QString link = ClickSomeLink(LinksOf(Source(from)));
        if (link.isEmpty())
            continue;
        const QString kind = CheckArrival(from, link);
        QVERIFY2(!kind.isEmpty(), qPrintable(paths.at(from) + QLatin1String(" -> ") + link));
        ++kinds[kind];
        ++clicked;
    }
    qInfo() << kinds;
    driver.reset();
}

QString TestRealManual::Source(int topic) const
{
    QFile file(root + QLatin1Char('/') + paths.at(topic));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool TestRealManual::Open(int topic)
{
    driver->RunScript(QStringLiteral("window.old = true"));
    HelpLaunchArgs args;
    args.topic = driver->Find<YxViewModel>("")->HelpFileList().at(topic).KeyName;
    driver->Window().ShowRedirectedTopic(MakeSMData(-1, args));
    browsed.clear();
    clicks = 0;
    const QString title = TitleOf(Source(topic));
    return QTest::qWaitFor([&] { return driver->RunScript(kLoaded) == title; }, 20000);
}

/// Clicks a random link of the page that a reader could click. Returns its address in `links`, the author's;
/// nothing when none was found.
QString TestRealManual::ClickSomeLink(const QStringList& links)
{
    const QString anchors = QStringLiteral("document.getElementsByTagName('a')");
    if (driver->RunScript(anchors + QLatin1String(".length")).toInt() != links.size()) {
        qWarning("page and source differ in the number of anchors");
        return {};
    }
    const QString mark = QStringLiteral(
        "(e => { e.id = 'go'; e.scrollIntoView(); const r = e.getClientRects()[0]; return !!r &&"
        "e.contains(document.elementFromPoint(r.left + 2, r.top + r.height / 2)); })(%1[%2])");
    for (int tries = 0; tries < 10 && !links.isEmpty(); ++tries) {
        const int index = random.bounded(links.size());
        if (links.at(index).isEmpty())
            continue;
        if (driver->RunScript(mark.arg(anchors).arg(index)).toBool()) {
            driver->ClickInPage(QStringLiteral("#go"));
            return links.at(index);
        }
        driver->RunScript(QStringLiteral("document.getElementById('go').id = ''"));
    }
    return {};
}

/// Waits for what the author's link names, and tells its kind; empty when something else has come.
QString TestRealManual::CheckArrival(int from, const QString& link)
{
    QUrl url = QUrl(paths.at(from)).resolved(QUrl(link));
    if (!url.host().isEmpty() && url.path().isEmpty())
        url.setPath(QStringLiteral("/"));
    const bool outside = !url.scheme().isEmpty();
    const int to = outside ? -1 : paths.indexOf(url.path());
    const QString address = outside ? url.toString() : QString();
    const QString hash = to == from && url.hasFragment() ? QLatin1Char('#') + url.fragment() : QString();
    const int shown = to < 0 ? from : to;
    const QString title = TitleOf(Source(shown));
    // Also a click on a link to the topic itself is heard, and not to be left for later.
    const int heard = to >= 0 && hash.isEmpty() ? 1 : 0;
    const bool right = QTest::qWaitFor(
        [&] {
            return clicks == heard && driver->RunScript(kLoaded) == title &&
                   driver->RunScript(kHash) == hash && browsed == address;
        },
        20000);
    if (!right || driver->Find<YxViewModel>("")->History()->last().row != shown)
        return {};
    return outside      ? QStringLiteral("outside")
           : to < 0     ? QStringLiteral("nowhere")
           : to == from ? QStringLiteral("same topic")
                        : QStringLiteral("another topic");
}

void TestRealManual::topicsGoOnlineAndBack()
{
    root = QtManual();
    if (root.isEmpty())
        QSKIP("this manual isn't installed");
    const QTemporaryDir dir;
    QVERIFY(BuildManual(root, QStringLiteral("*.qhp"), dir.path(), true));
    QProcess service;
    service.start(QStringLiteral(YXHELP_SERVICE_PROGRAM), {QStringLiteral("--site"), dir.path()});
    QVERIFY(service.waitForReadyRead());
    const QByteArray url = service.readLine().trimmed();
    QVERIFY(
        UseProduct(ProductIni(3).replace("[Display]", "HelpmanagerAbroadUrl=" + url + "address\n[Display]")));
    HelpLaunchArgs args;
    args.language = QStringLiteral("en-US");
    args.mdbFile = QStringLiteral("YXCADHelp.db");
    args.rccPath = dir.path();
    YxConfig::Instance()->WriteOpenMode({0, false, false});
    driver = std::make_unique<WindowDriver>(args);
    driver->Show();
    const QList<TreeViewModel>& rows = driver->Find<YxViewModel>("")->HelpFileList();
    auto* online = driver->Find<QWebEngineView>("webView_online");
    random.seed(1 + quint32(qEnvironmentVariableIntValue("YXHELP_SEED")));
    for (int round = 0; round < 50; ++round) {
        const int from = random.bounded(rows.size());
        const int to = random.bounded(rows.size());
        HelpLaunchArgs topic;
        topic.topic = rows.at(from).KeyName;
        driver->Window().ShowRedirectedTopic(MakeSMData(-1, topic));
        // Online the reader goes on to another topic in half of the rounds.
        const int last = round % 2 == 0 ? from : to;
        driver->Click("tbn_online");
        const auto shows = [&](int row) {
            return online->url().path().endsWith(
                QLatin1Char('/') +
                QString(rows.at(row).FilePath).replace(QLatin1Char('\\'), QLatin1Char('/')));
        };
        QTRY_VERIFY(shows(from));
        topic.topic = rows.at(last).KeyName;
        if (last != from)
            driver->Window().ShowRedirectedTopic(MakeSMData(-1, topic));
        QTRY_VERIFY(shows(last));
        driver->Click("tbn_online");
        QCOMPARE(driver->Find<YxViewModel>("")->History()->last().row, last);
        if (rows.at(last).Item)
            QCOMPARE(driver->Find<QTreeWidget>("treeWidget")->currentItem(), rows.at(last).Item);
    }
    driver.reset();
    service.terminate();
    QVERIFY(service.waitForFinished());
}

QTEST_MAIN(TestRealManual)
#include "tst_realmanual.moc"
