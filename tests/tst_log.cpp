#include "log.h"
#include "testtable.h"

#include <sstream>

class TestLog : public QObject
{
    Q_OBJECT

private slots:
    void lineHasTimeTagPlaceAndMessage();
    void oddMessagesAndPlaces();
};

namespace {

using Log = void (*)(const std::shared_ptr<std::ostream>&, const char*, int, const char*, ...);

template <typename... Arguments>
std::string Written(Log log, const char* path, const char* format, Arguments... arguments)
{
    const auto stream = std::make_shared<std::ostringstream>();
    log(stream, path, 1234567, format, arguments...);
    log(nullptr, path, 1, format, arguments...); // nobody listens
    return stream->str();
}

} // namespace

void TestLog::lineHasTimeTagPlaceAndMessage()
{
    const QDateTime start = QDateTime::currentDateTime().addSecs(-1);
    for (const auto& [log, tag] : std::initializer_list<std::pair<Log, const char*>>{
             {LogInfo, "INFO"}, {LogWarning, "WARNING"}, {LogError, "ERROR"}}) {
        for (const auto& [path, place] :
             std::initializer_list<std::pair<const char*, const char*>>{{"/a/b/unit.cpp", "unit.cpp"},
                                                                        {"C:\\a\\unit.cpp", "unit.cpp"},
                                                                        {"a\\b/unit.cpp", "b/unit.cpp"},
                                                                        {"a/", ""}}) {
            const QString line = QString::fromStdString(Written(log, path, "%d of %s", 7, "nine"));
            QCOMPARE(line.mid(21),
                     "[%1] [%2:1234567] 7 of nine\n"_s.arg(QLatin1String(tag), QLatin1String(place)));
            const auto time = QDateTime::fromString(line.left(21), "[yyyy-MM-dd HH:mm:ss]"_s);
            QVERIFY(time >= start && time <= QDateTime::currentDateTime());
        }
    }
}

void TestLog::oddMessagesAndPlaces()
{
    const std::string text(2000, 'x');
    QVERIFY(Written(LogError, "/u", "%s", text.c_str()).ends_with("67] " + std::string(1023, 'x') + "\n"));
    QVERIFY(Written(LogInfo, "/u", "%s", "").ends_with("67] failed to format log message\n"));
    QVERIFY(Written(LogInfo, "unit.cpp", "text").ends_with("][INFO] "));
    QVERIFY(!LogStream());
}

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
