#include "faultyserver.h"
#include "querylimits.h"
#include "silentresolver.h"
#include "testtable.h"
#include "yxonlinehelpapi.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QTcpServer>

#include <algorithm>
#include <limits>
#include <optional>
#include <thread>
#include <vector>

namespace {

constexpr int kGuard = 64;
constexpr char kGuardByte = '\x5a';
constexpr int kTotalLimit = 800;

/// A call with good arguments, of which a test changes what it is about.
struct Call
{
    explicit Call(const QByteArray& url) : manager(url) {}

    QByteArray manager;
    QByteArray product = "YXCAD";
    QByteArray version = "2026";
    QByteArray language = "zh-CN";
    QByteArray topic = "INTRO";
    std::optional<QByteArray> path;
    int size = 512;

    QByteArray address; ///< What came back.

    int Run()
    {
        QByteArray buffer(size + kGuard, kGuardByte);
        const int code = QueryOnlineHelpAddress(manager.constData(), product.constData(), version.constData(),
                                                language.constData(), topic.constData(),
                                                path ? path->constData() : nullptr, buffer.data(), size);
        if (buffer.right(kGuard) != QByteArray(kGuard, kGuardByte))
            qFatal("written beyond the buffer");
        if (size > 0) {
            if (!buffer.left(size).contains('\0'))
                qFatal("no terminator");
            address = QByteArray(buffer.constData());
        }
        return code;
    }
};

QByteArray Document(const QByteArray& address)
{
    return QByteArray("{\"address\": \"") + address + QByteArray("\"}");
}

QByteArray AddressOfLength(int length)
{
    return QByteArray("https://help.example/").leftJustified(length, 'a');
}

} // namespace

Q_DECLARE_METATYPE(Answer)

class TestOnlineHelpApi : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void answersBecomeAddresses_data();
    void answersBecomeAddresses();
    void faultsBecomeCodes_data();
    void faultsBecomeCodes();
    void silenceEndsAtTheLimit_data();
    void silenceEndsAtTheLimit();
    void nameServerThatIsSilentEndsAtTheLimit();
    void tooLongAnswersEndEarly();
    void parametersArriveAsTheyAre_data();
    void parametersArriveAsTheyAre();
    void managerAddressesKeepTheirQuery_data();
    void managerAddressesKeepTheirQuery();
    void badArgumentsAreRefused();
    void tinyBuffersStayTerminated_data();
    void tinyBuffersStayTerminated();
    void threadsGetTheirOwnAddresses();
    void limitsComeFromTheEnvironment_data();
    void limitsComeFromTheEnvironment();

private:
    FaultyServer server;
};

void TestOnlineHelpApi::initTestCase()
{
    qputenv("no_proxy", "*");
    server.SetAnswer("/good"_s, Answer::Body(Document("https://help.example/good")));
}

void TestOnlineHelpApi::init()
{
    // Long enough for a busy machine; tests of the limits set their own.
    qputenv("YXHELP_ONLINE_CONNECT_MS", "30000");
    qputenv("YXHELP_ONLINE_TOTAL_MS", "30000");
    server.ClearRequests();
}

void TestOnlineHelpApi::answersBecomeAddresses_data()
{
    const auto row = Columns<QByteArray, int, QByteArray>("answer", "code", "address");
    const auto address = [&row](const char* name, const QByteArray& text) {
        row(name, Document(text), 0, text);
    };
    const auto refused = [&row](const char* name, const QByteArray& answer, int code) {
        row(name, answer, code, "");
    };
    address("plain", "https://help.example/a.htm?x=1#part");
    address("http, in capitals", "HTTP://help.example");
    address("blanks", "https://help.example/a page.htm");
    address("Chinese", "https://help.example/帮助/é.htm");
    address("fills the buffer", AddressOfLength(511));
    refused("a byte too long", Document(AddressOfLength(512)), YXONLINEHELP_RESULT_TOO_SMALL);
    refused("much too long", Document(AddressOfLength(5000)), YXONLINEHELP_RESULT_TOO_SMALL);
    row("escapes, other members, order", "\n{\"x\": [1], \"address\": \"http:\\/\\/\\u5e2e/\", \"y\": {}}\n",
        0, "http://帮/");
    row("byte order mark", QByteArray("\xef\xbb\xbf") + Document("http://a/"), 0, "http://a/");

    for (const char* text :
         {"", "<html></html>", "{\"address\": \"http://a/\"", "{\"address\": \"http://\xff/\"}",
          "{\"address\": \"http://a/\"} x", "\"http://a/\"", "[\"address\", \"http://a/\"]", "null", "{}",
          "{\"Address\": \"http://a/\"}", "{\"address\": 5}", "{\"address\": null}",
          "{\"a\": {\"address\": \"http://a/\"}}"})
        refused(text, text, YXONLINEHELP_BAD_ANSWER);
    refused("deep nesting", QByteArray(60000, '['), YXONLINEHELP_BAD_ANSWER);
    for (const char* text : {"", " ", "help.example", "ftp://a/", "file:///etc/passwd", "javascript:alert(1)",
                             "https:", "http://", "https:///path", " http://a/", "http://a\\u0000b",
                             "http://a/\\r\\nX: y", "http://a/\\u007f", "http://a/\\u0085"})
        refused(text, Document(text), YXONLINEHELP_BAD_ADDRESS);
}

void TestOnlineHelpApi::answersBecomeAddresses()
{
    QFETCH(QByteArray, answer);
    QFETCH(int, code);
    QFETCH(QByteArray, address);
    server.SetAnswer("/answer"_s, Answer::Body(answer));
    Call call{server.Url("/answer"_s).toUtf8()};
    QCOMPARE(call.Run(), code);
    QCOMPARE(call.address, address);
}

void TestOnlineHelpApi::faultsBecomeCodes_data()
{
    const auto row = Columns<Answer, int>("answer", "code");
    const QByteArray good = Document("https://help.example/x");
    const auto status = [&](int number) {
        row(QByteArray::number(number), Answer::Body(good, number), YXONLINEHELP_BAD_STATUS);
    };
    for (const int number : {201, 204, 304, 401, 404, 500, 503})
        status(number);
    row("chunked", Answer::Fault(Answer::Way::Chunked, good), 0);
    row("closed at once", Answer::Fault(Answer::Way::Close), 52);
    row("cut off", Answer::Fault(Answer::Way::Truncate, good), 18);
    row("reset", Answer::Fault(Answer::Way::Reset), 56);
    row("redirect", Answer::Redirect("/good"), 0);
    row("redirect in circles", Answer::Redirect("/fault"), 47);
    row("redirect to a file", Answer::Redirect("file:///etc/hostname"), 1);
    row("redirect to ftp", Answer::Redirect("ftp://127.0.0.1:1/"), 1);
}

void TestOnlineHelpApi::faultsBecomeCodes()
{
    QFETCH(Answer, answer);
    QFETCH(int, code);
    server.SetAnswer("/fault"_s, answer);
    Call call{server.Url("/fault"_s).toUtf8()};
    QCOMPARE(call.Run(), code);
    QCOMPARE(call.address.isEmpty(), code != 0);
    QVERIFY2(server.Requests().size() <= 6, "more redirects than allowed");
}

void TestOnlineHelpApi::silenceEndsAtTheLimit_data()
{
    const auto row = Columns<Answer>("answer");
    row("no answer", Answer::Fault(Answer::Way::Hang));
    row("answer in drips", Answer::Fault(Answer::Way::Drip, QByteArray(1000, ' ')));
    row("silence behind a redirect", Answer::Redirect("/hang"));
}

void TestOnlineHelpApi::silenceEndsAtTheLimit()
{
    QFETCH(Answer, answer);
    server.SetAnswer("/silence"_s, answer);
    server.SetAnswer("/hang"_s, Answer::Fault(Answer::Way::Hang));
    qputenv("YXHELP_ONLINE_TOTAL_MS", QByteArray::number(kTotalLimit));
    QElapsedTimer timer;
    timer.start();
    Call call{server.Url("/silence"_s).toUtf8()};
    QCOMPARE(call.Run(), int(YXONLINEHELP_TIMED_OUT));
    QVERIFY(timer.elapsed() >= kTotalLimit - 50 && timer.elapsed() < kTotalLimit + 2000);
    QVERIFY(call.address.isEmpty());
}

void TestOnlineHelpApi::nameServerThatIsSilentEndsAtTheLimit()
{
    qputenv("YXHELP_ONLINE_CONNECT_MS", "500");
    QElapsedTimer timer;
    timer.start();
    Call call{QByteArray("http://") + kSilentHost};
    const int code = call.Run();
    const qint64 elapsed = timer.elapsed();
    ReleaseSilentHost();
    QCOMPARE(code, int(YXONLINEHELP_TIMED_OUT));
    QVERIFY2(elapsed >= 450 && elapsed < 5000, QByteArray::number(elapsed).constData());
}

void TestOnlineHelpApi::tooLongAnswersEndEarly()
{
    const QByteArray good = Document("https://help.example/x");
    const auto answerOf = [&good](int size) { return Answer::Body(good.leftJustified(size, ' ')); };
    server.SetAnswer("/64k"_s, answerOf(64 * 1024));
    server.SetAnswer("/more"_s, answerOf(64 * 1024 + 1));
    server.SetAnswer("/10M"_s, Answer::Fault(Answer::Way::Chunked, QByteArray(10 * 1024 * 1024, ' ')));
    QCOMPARE(Call{server.Url("/64k"_s).toUtf8()}.Run(), 0);
    QCOMPARE(Call{server.Url("/more"_s).toUtf8()}.Run(), int(YXONLINEHELP_ANSWER_TOO_LARGE));
    QCOMPARE(Call{server.Url("/10M"_s).toUtf8()}.Run(), int(YXONLINEHELP_ANSWER_TOO_LARGE));
}

void TestOnlineHelpApi::parametersArriveAsTheyAre_data()
{
    const auto row = Columns<QByteArray>("text");
    for (const char* text :
         {"INTRO", "", " ", "a&b=c", "100%", "%41", "a#b", "a+b c", "\"'<>", "line\r\nline", "帮助",
          "a/b\\c:d;e,f?g", "=", "&&", "\xc4\xe3 no UTF-8 \xff", "~-._!*()$@[]{}|^`", "\x01\x7f"})
        row(text, text);
    row("long", QByteArray("帮 &").repeated(2000));
}

void TestOnlineHelpApi::parametersArriveAsTheyAre()
{
    QFETCH(QByteArray, text);
    Call call{server.Url("/good"_s).toUtf8()};
    QList<QPair<QByteArray, QByteArray>> expected{
        {"product", "YXCAD"}, {"version", "2026"}, {"language", "zh-CN"}, {"topic", text}};
    call.topic = text;
    QCOMPARE(call.Run(), 0);
    QCOMPARE(server.Requests().value(0).method, QByteArray("GET"));
    QCOMPARE(server.Requests().value(0).Parameters(), expected);

    call.product = call.version = call.language = text;
    call.path = text;
    expected = {{"product", text}, {"version", text}, {"language", text}, {"topic", text}, {"path", text}};
    QCOMPARE(call.Run(), 0);
    QCOMPARE(server.Requests().value(1).Parameters(), expected);
}

void TestOnlineHelpApi::managerAddressesKeepTheirQuery_data()
{
    const QByteArray parameters("product=YXCAD&version=2026&language=zh-CN&topic=INTRO");
    const auto row = Columns<QByteArray, QString, QByteArray>("end", "path", "query");
    row("path", "/good", "/good", parameters);
    row("nothing", "", "/", parameters);
    row("query", "/good?site=a%20b&c", "/good", QByteArray("site=a%20b&c&") + parameters);
    row("empty query", "/good?", "/good", parameters);
    row("query that waits", "/good?site=1&", "/good", QByteArray("site=1&") + parameters);
    row("fragment", "/good#part?x=1", "/good", parameters);
    row("query and fragment", "/good?a=1#part", "/good", QByteArray("a=1&") + parameters);
    row("blanks and Chinese", "/a 帮", "/a 帮", parameters);
}

void TestOnlineHelpApi::managerAddressesKeepTheirQuery()
{
    QFETCH(QByteArray, end);
    QFETCH(QString, path);
    QFETCH(QByteArray, query);
    Call call{server.Url({}).toUtf8() + end};
    call.Run();
    QCOMPARE(server.Requests().size(), 1);
    QCOMPARE(server.Requests().constFirst().path, path);
    QCOMPARE(server.Requests().constFirst().rawQuery, query);
}

void TestOnlineHelpApi::badArgumentsAreRefused()
{
    for (const char* manager :
         {"", " ", "help.example/x", "http://", "ftp://a/", "file:///etc/hostname", "http://a b/",
          "http://u v@a/", "http://a\nb/", "javascript:x", "http://a:99999/"})
        QVERIFY2(Call{manager}.Run() == YXONLINEHELP_BAD_MANAGER_ADDRESS, manager);

    const QByteArray url = server.Url("/good"_s).toUtf8();
    for (int hole = 0; hole < 5; ++hole) {
        const char* arguments[] = {url.constData(), "p", "v", "l", "t"};
        arguments[hole] = nullptr;
        char buffer[] = "before";
        QCOMPARE(QueryOnlineHelpAddress(arguments[0], arguments[1], arguments[2], arguments[3], arguments[4],
                                        "", buffer, sizeof buffer),
                 int(YXONLINEHELP_BAD_ARGUMENT));
        QCOMPARE(buffer[0], '\0');
    }
    QCOMPARE(QueryOnlineHelpAddress(url.constData(), "p", "v", "l", "t", "", nullptr, 512),
             int(YXONLINEHELP_BAD_ARGUMENT));
    QCOMPARE(server.Requests().size(), 0);

    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const QByteArray port = QByteArray::number(closed.serverPort());
    closed.close();
    QCOMPARE(Call{QByteArray("http://127.0.0.1:") + port}.Run(), 7);
}

void TestOnlineHelpApi::tinyBuffersStayTerminated_data()
{
    const auto row = Columns<int, int>("size", "code");
    row("negative", -1, YXONLINEHELP_BAD_ARGUMENT);
    row("smallest number", std::numeric_limits<int>::min(), YXONLINEHELP_BAD_ARGUMENT);
    row("nothing", 0, YXONLINEHELP_BAD_ARGUMENT);
    row("terminator only", 1, YXONLINEHELP_RESULT_TOO_SMALL);
    row("without the terminator", 25, YXONLINEHELP_RESULT_TOO_SMALL);
    row("exact", 26, 0);
}

void TestOnlineHelpApi::tinyBuffersStayTerminated()
{
    QFETCH(int, size);
    QFETCH(int, code);
    const QByteArray url = server.Url("/good"_s).toUtf8();
    QByteArray buffer(100, kGuardByte);
    QCOMPARE(QueryOnlineHelpAddress(url.constData(), "p", "v", "l", "t", nullptr, buffer.data(), size), code);
    QCOMPARE(buffer.mid(std::max(size, 0)), QByteArray(100 - std::max(size, 0), kGuardByte));
    if (size > 0)
        QCOMPARE(QByteArray(buffer.constData()),
                 code == 0 ? QByteArray("https://help.example/good") : QByteArray());
}

void TestOnlineHelpApi::threadsGetTheirOwnAddresses()
{
    server.SetHandler("/echo"_s, [](const Request& request) {
        return Answer::Body(Document(QByteArray("https://help.example/") + request.Parameter("topic")));
    });
    std::vector<int> wrong(16, 0); // QCOMPARE is for the test's own thread
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        threads.emplace_back([this, i, &wrong] {
            for (int round = 0; round < 10; ++round) {
                Call call{server.Url("/echo"_s).toUtf8()};
                call.topic = QByteArray::number(int(i) * 100 + round);
                if (call.Run() != 0 || call.address != QByteArray("https://help.example/") + call.topic)
                    ++wrong[i];
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(wrong, std::vector<int>(16, 0));
}

void TestOnlineHelpApi::limitsComeFromTheEnvironment_data()
{
    const auto row = Columns<QByteArray, int>("value", "milliseconds");
    for (const char* value : {"", "9", "0", "-100", "60001", "99999999999999999999", "abc", "100ms", " 100",
                              "0x50", "1e3", "100.5"})
        row(value, value, 4000);
    row("lowest", "10", 10);
    row("highest", "60000", 60000);
}

void TestOnlineHelpApi::limitsComeFromTheEnvironment()
{
    QFETCH(QByteArray, value);
    QFETCH(int, milliseconds);
    qputenv("YXHELP_ONLINE_TOTAL_MS", value);
    qunsetenv("YXHELP_ONLINE_CONNECT_MS");
    const QueryLimits limits = LimitsFromEnvironment();
    QCOMPARE(int(limits.total.count()), milliseconds);
    QCOMPARE(int(limits.connect.count()), 2000);
}

QTEST_GUILESS_MAIN(TestOnlineHelpApi)
#include "tst_onlinehelpapi.moc"
