#include "testtable.h"
#include "tst_yxhelpbuild_fixture.h"

#include <QDir>
#include <QProcess>

#include <csignal>

/// The program as it is called from a build script.
class TestHelpBuildProgram : public QObject
{
    Q_OBJECT

private slots:
    void callsEndAsTold_data();
    void callsEndAsTold();
    void warningsAreCounted();
    void interruptionLeavesNothing();
};

void TestHelpBuildProgram::callsEndAsTold_data()
{
    // IN and OUT stand for the folders.
    const auto row = Columns<QString, int, QString>("arguments", "code", "message");
    row("good", "--input IN/doc --output OUT --language en-US", 0,
        "*OUT/en-US/Help/YXCADHelp.db: 1 topics, 0 images*");
    row("all options", "-i IN/doc -o OUT/x/y -l zh-CN --database My.db --title T", 0,
        "*OUT/x/y/zh-CN/Help/My.db: *");
    row("help", "--help", 0, "*exit code 1*--input*--output*--site*--language*--database*--title*--product*");
    row("no input", "--output OUT --language en-US", 1, "yxhelp-build: --input is missing*");
    row("no output", "--input IN/doc --language en-US", 1, "yxhelp-build: --output or --site is missing*");
    row("site alone", "--input IN/doc --site OUT/web --language en-US", 0,
        "OUT/web/en-US: 1 pages, 0 files\n");
    row("site beside the database", "--input IN/doc --output OUT --site OUT --language en-US", 0,
        "OUT/en-US/Help/YXCADHelp.db: *\nOUT/en-US: 1 pages*");
    row("no language", "--input IN/doc --output OUT", 1, "yxhelp-build: --language must be a tag*");
    row("language that leads out", "--input IN/doc --output OUT --language ../x", 1,
        "yxhelp-build: --language must*");
    row("database that leads out", "--input IN/doc --output OUT --language en --database ../x.db", 1,
        "yxhelp-build: --database*");
    row("unknown option", "--inputs IN/doc", 1, "yxhelp-build: Unknown option*");
    row("stray word", "IN/doc --output OUT --language en", 1, "yxhelp-build: what is*");
    row("bad input", "--input IN/none --output OUT --language en", 1, "IN/none: doesn't exist*");
}

void TestHelpBuildProgram::callsEndAsTold()
{
    QFETCH(QString, arguments);
    QFETCH(int, code);
    QFETCH(QString, message);
    BuildFixture fixture;
    fixture.WritePage("doc/index.html"_s, "A"_s);
    for (QString* text : {&arguments, &message})
        text->replace("IN"_s, fixture.Input()).replace("OUT"_s, fixture.OutputDir());
    QProcess program;
    program.start(QStringLiteral(YXHELP_BUILD_PROGRAM), arguments.split(QLatin1Char(' ')));
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), code);
    const QString errors = QString::fromUtf8(program.readAllStandardError());
    const QString shown = code == 0 ? QString::fromUtf8(program.readAllStandardOutput()) : errors;
    QVERIFY2(QRegExp(message, Qt::CaseSensitive, QRegExp::Wildcard).exactMatch(shown), qPrintable(shown));
    QCOMPARE(errors.count(QLatin1Char('\n')), code == 0 ? 0 : 1);
}

void TestHelpBuildProgram::warningsAreCounted()
{
    BuildFixture fixture;
    fixture.WritePage("doc/index.html"_s, "A"_s,
                      QByteArray("\n<a href=none.html>x</a>").repeated(7) + "<img src=none.png></p>");
    QProcess program;
    program.start(QStringLiteral(YXHELP_BUILD_PROGRAM), {"--input"_s, fixture.Input("doc"_s), "--output"_s,
                                                         fixture.OutputDir(), "--language"_s, "en-US"_s});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 0);
    const QString errors = QString::fromUtf8(program.readAllStandardError());
    // Of each kind the first few with their places, and the count.
    QCOMPARE(errors.count("the link to \"none.html\" leads nowhere"_s), 5);
    QVERIFY(errors.contains(fixture.Input("doc/index.html:4: warning: the link to"_s)));
    QVERIFY(errors.contains("\n7 links to pages"_s));
    QVERIFY(errors.contains("\n1 references to images"_s));
    QVERIFY(errors.contains("\n1 pages with broken markup"_s));
}

void TestHelpBuildProgram::interruptionLeavesNothing()
{
    BuildFixture fixture;
    const QByteArray text = QByteArray("<p>some text</p>").repeated(2000);
    for (int i = 0; i < 400; ++i)
        fixture.WritePage("doc/%1.html"_s.arg(i), "Page"_s, text);
    QProcess program;
    program.start(QStringLiteral(YXHELP_BUILD_PROGRAM),
                  {"-i"_s, fixture.Input("doc"_s), "-o"_s, fixture.OutputDir(), "-l"_s, "en-US"_s});
    // The folder in the works shows that the build is under way.
    QTRY_VERIFY(!QDir(fixture.OutputDir() + "/en-US"_s)
                     .entryList({".yxhelp-build-*"_s}, QDir::Dirs | QDir::Hidden)
                     .isEmpty());
    program.terminate();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 1);
    QCOMPARE(program.readAllStandardError(), QByteArray("interrupted\n"));
    QCOMPARE(QDir(fixture.OutputDir()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

QTEST_GUILESS_MAIN(TestHelpBuildProgram)
#include "tst_yxhelpbuild_program.moc"
