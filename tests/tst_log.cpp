#include "log.h"

#include <QRegularExpression>
#include <QtTest>

#include <functional>
#include <sstream>

namespace {

using Stream = std::shared_ptr<std::ostream>;

std::string Written(const std::function<void(const Stream&)>& write)
{
    const auto stream = std::make_shared<std::ostringstream>();
    write(stream);
    return stream->str();
}

} // namespace

class TestLog : public QObject
{
    Q_OBJECT

private slots:
    void lineHasTimeTagPlaceAndMessage_data();
    void lineHasTimeTagPlaceAndMessage();
    void pathWithoutSeparatorEndsTheLine();
    void longMessageIsCut();
    void emptyMessageIsReported();
    void emptyHolderIsLeftAlone();
};

void TestLog::lineHasTimeTagPlaceAndMessage_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("place");
    QTest::newRow("slashes") << QByteArray("/a/b/unit.cpp") << QStringLiteral("unit.cpp");
    QTest::newRow("backslashes") << QByteArray("C:\\a\\unit.cpp") << QStringLiteral("unit.cpp");
    QTest::newRow("backslash goes first") << QByteArray("a\\b/unit.cpp") << QStringLiteral("b/unit.cpp");
    QTest::newRow("nothing behind") << QByteArray("a/") << QString();
}

void TestLog::lineHasTimeTagPlaceAndMessage()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, place);
    const auto expect = [&](const char* tag, const std::string& written) {
        const QString text = QString::fromStdString(written);
        const QRegularExpression line(QStringLiteral("^\\[(\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d)\\]%1 "
                                                     "\\[%2:1234567\\] 7 of nine\\n$")
                                          .arg(QRegularExpression::escape(QLatin1String(tag)), place));
        const QRegularExpressionMatch match = line.match(text);
        QVERIFY2(match.hasMatch(), written.c_str());
        const QDateTime time =
            QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        QVERIFY(qAbs(time.secsTo(QDateTime::currentDateTime())) < 60);
    };
    expect("[INFO]", Written([&](const Stream& s) { LogInfo(s, path, 1234567, "%d of %s", 7, "nine"); }));
    expect("[WARNING]",
           Written([&](const Stream& s) { LogWarning(s, path, 1234567, "%d of %s", 7, "nine"); }));
    expect("[ERROR]", Written([&](const Stream& s) { LogError(s, path, 1234567, "%d of %s", 7, "nine"); }));
}

void TestLog::pathWithoutSeparatorEndsTheLine()
{
    const std::string line = Written([](const Stream& s) { LogInfo(s, "unit.cpp", 1, "text"); });
    QCOMPARE(line.size(), std::string("[2024-05-06 07:08:09][INFO] ").size());
    QVERIFY(line.ends_with("[INFO] "));
}

void TestLog::longMessageIsCut()
{
    const std::string text(2000, 'x');
    const std::string line = Written([&](const Stream& s) { LogError(s, "/u", 1, "%s", text.c_str()); });
    QVERIFY(line.ends_with("[u:1] " + std::string(1023, 'x') + "\n"));
}

void TestLog::emptyMessageIsReported()
{
    const std::string line = Written([](const Stream& s) { LogWarning(s, "/u", 1, "%s", ""); });
    QVERIFY(line.ends_with("[u:1] failed to format log message\n"));
}

void TestLog::emptyHolderIsLeftAlone()
{
    QVERIFY(!LogStream());
    LogInfo(LogStream(), "/u", 1, "text");
    LogWarning(LogStream(), "/u", 1, "text");
    LogError(LogStream(), "/u", 1, "text");
}

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
