#include "launchargs.h"
#include "testtable.h"

namespace {

/// The record of a command line as one line, fields in order.
QString Parsed(const char* commandLine)
{
    const QList<QByteArray> words = QByteArray(commandLine).split(';');
    std::vector<const char*> argv;
    for (const QByteArray& word : words)
        argv.push_back(word.constData());
    const HelpLaunchArgs args = ParseLaunchArgs(static_cast<int>(argv.size()), argv.data());
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
};

void TestLaunchArgs::switchesFillTheRecord_data()
{
    const auto row = Columns<QByteArray, QString>("commandLine", "expected");
    row("program alone", "YxHelp", "||||YXCADHelp.db|YXCAD|");
    row("all", "YxHelp;/Product;P;/Version;2024;/Language;de-DE;/Topic;T;/MdbFile;m.db;/helpTitle;H",
        "P|2024|de-DE|T|m.db|H|");
    row("rcc path is a title", "YxHelp;/helpTitle;A;/RccPath;B", "||||YXCADHelp.db|B|");
    row("the title further right wins", "YxHelp;/RccPath;B;/helpTitle;A", "||||YXCADHelp.db|A|");
    row("switch in last place", "YxHelp;/Topic", "||||YXCADHelp.db|YXCAD|");
    row("switch names in other case", "YxHelp;/topic;a;/HelpTitle;b", "||||YXCADHelp.db|YXCAD|");
    row("a switch is no value", "YxHelp;/Language;/Topic;abc", "|||abc|YXCADHelp.db|YXCAD|");
    row("a refused value keeps the earlier one", "YxHelp;/Topic;a;/Topic;/b", "|||a|YXCADHelp.db|YXCAD|");
    row("empty word is a value", "YxHelp;/MdbFile;;/Topic;x", "|||x||YXCAD|");
    row("last value wins", "YxHelp;/Topic;a;/Topic;b", "|||b|YXCADHelp.db|YXCAD|");
    row("the program's word can be a switch", "/Topic;a", "|||a|YXCADHelp.db|YXCAD|");
    row("stray words", "YxHelp;x;/Nothing;y;/Topic=z;w", "||||YXCADHelp.db|YXCAD|");
    row("text outside ASCII", "YxHelp;/helpTitle;帮助 100%;/Topic;ä'\"", "|||ä'\"|YXCADHelp.db|帮助 100%|");
}

void TestLaunchArgs::switchesFillTheRecord()
{
    QFETCH(QByteArray, commandLine);
    QTEST(Parsed(commandLine), "expected");
    QCOMPARE(ParseLaunchArgs(0, nullptr).mdbFile, "YXCADHelp.db"_s);
}

QTEST_GUILESS_MAIN(TestLaunchArgs)
#include "tst_launchargs.moc"
