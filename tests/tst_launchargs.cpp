#include "launchargs.h"

#include <QtTest>

#include <vector>

namespace {

HelpLaunchArgs Parse(const QStringList& words)
{
    QList<QByteArray> bytes;
    for (const QString& word : words)
        bytes.append(word.toUtf8());
    std::vector<const char*> argv;
    for (const QByteArray& word : bytes)
        argv.push_back(word.constData());
    return ParseLaunchArgs(static_cast<int>(argv.size()), argv.data());
}

/// The record as one line, fields in order.
QString Print(const HelpLaunchArgs& args)
{
    return QStringList{args.product, args.version,   args.language, args.topic,
                       args.mdbFile, args.helpTitle, args.rccPath}
        .join(QLatin1Char('|'));
}

} // namespace

class TestLaunchArgs : public QObject
{
    Q_OBJECT

private slots:
    void switchesFillTheRecord_data();
    void switchesFillTheRecord();
    void noArgumentsGiveTheDefaults();
};

void TestLaunchArgs::switchesFillTheRecord_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* name, const QString& line, const QString& expected) {
        QTest::newRow(name) << line << expected;
    };
    row("program alone", QStringLiteral("YxHelp"), QStringLiteral("||||YXCADHelp.db|YXCAD|"));
    row("all switches",
        QStringLiteral("YxHelp;/Product;P;/Version;2024;/Language;de-DE;/Topic;T;/MdbFile;m.db;/helpTitle;H"),
        QStringLiteral("P|2024|de-DE|T|m.db|H|"));
    row("rcc path is a title", QStringLiteral("YxHelp;/helpTitle;A;/RccPath;B"),
        QStringLiteral("||||YXCADHelp.db|B|"));
    row("the title further right wins", QStringLiteral("YxHelp;/RccPath;B;/helpTitle;A"),
        QStringLiteral("||||YXCADHelp.db|A|"));
    row("switch in last place", QStringLiteral("YxHelp;/Topic"), QStringLiteral("||||YXCADHelp.db|YXCAD|"));
    row("switch names in other case", QStringLiteral("YxHelp;/topic;a;/HelpTitle;b"),
        QStringLiteral("||||YXCADHelp.db|YXCAD|"));
    row("a switch is no value", QStringLiteral("YxHelp;/Language;/Topic;abc"),
        QStringLiteral("|||abc|YXCADHelp.db|YXCAD|"));
    row("a refused value keeps the earlier one", QStringLiteral("YxHelp;/Topic;a;/Topic;/b"),
        QStringLiteral("|||a|YXCADHelp.db|YXCAD|"));
    row("empty word is a value", QStringLiteral("YxHelp;/MdbFile;;/Topic;x"), QStringLiteral("|||x||YXCAD|"));
    row("last value wins", QStringLiteral("YxHelp;/Topic;a;/Topic;b"),
        QStringLiteral("|||b|YXCADHelp.db|YXCAD|"));
    row("the program's word can be a switch", QStringLiteral("/Topic;a"),
        QStringLiteral("|||a|YXCADHelp.db|YXCAD|"));
    row("stray words", QStringLiteral("YxHelp;x;/Nothing;y;/Topic=z;w"),
        QStringLiteral("||||YXCADHelp.db|YXCAD|"));
    row("text outside ASCII", QStringLiteral("YxHelp;/helpTitle;帮助 100%;/Topic;ä'\""),
        QStringLiteral("|||ä'\"|YXCADHelp.db|帮助 100%|"));
}

void TestLaunchArgs::switchesFillTheRecord()
{
    QFETCH(QString, commandLine);
    QFETCH(QString, expected);
    QCOMPARE(Print(Parse(commandLine.split(QLatin1Char(';')))), expected);
}

void TestLaunchArgs::noArgumentsGiveTheDefaults()
{
    QCOMPARE(Print(ParseLaunchArgs(0, nullptr)), QStringLiteral("||||YXCADHelp.db|YXCAD|"));
}

QTEST_GUILESS_MAIN(TestLaunchArgs)
#include "tst_launchargs.moc"
