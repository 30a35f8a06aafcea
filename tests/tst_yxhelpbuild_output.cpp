#include "testtable.h"
#include "tst_yxhelpbuild_fixture.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QRegExp>

namespace {

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

// Names and contents of all files below a folder.
QMap<QString, QByteArray> Snapshot(const QString& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        files.insert(QDir(folder).relativeFilePath(path), Content(path));
    }
    return files;
}

} // namespace

/// What a build leaves behind, when it succeeds and when it doesn't.
class TestHelpBuildOutput : public QObject
{
    Q_OBJECT

private slots:
    void badInputIsRefused_data();
    void badInputIsRefused();
    void failedBuildLeavesTheOldOutput();
    void newBuildReplacesTheOldOutput();
    void sameInputGivesTheSameBytes();
    void productIsPacked();
};

void TestHelpBuildOutput::badInputIsRefused_data()
{
    const auto row = Columns<QString, QByteArray, QString, QString>("file", "content", "input", "error");
    const char* const image = "doc/page.html:5: the image \"a.png\" can't be read as an image";
    row("no input", "x", "", "nowhere", "nowhere: doesn't exist");
    row("another kind of file", "x.txt", "", "x.txt", "x.txt: is neither a Qt help project nor a folder");
    row("folder without pages", "doc/readme.txt", "", "doc", "doc: the folder holds no HTML page");
    row("missing file in a project", "p.qhp",
        Project("<section title=\"A\" ref=\"page.html\"/>\n", "",
                "<file>page.html</file>\n<file>gone.png</file>"),
        "p.qhp", "p.qhp:12: the file \"gone.png\" doesn't exist");
    row("section without a page", "p.qhp", Project("<section title=\"A\"/>\n", "", "<file>page.html</file>"),
        "p.qhp", "p.qhp:6: the section \"A\" names no page");
    row("no sections", "p.qhp", Project("", "", "<file>page.html</file>"), "p.qhp",
        "p.qhp: the project has no sections");
    row("broken XML", "p.qhp", "<QtHelpProject>\n<toc>\n</QtHelpProject>", "p.qhp", "p.qhp:3: *");
    row("no project", "p.qhp", "<html/>", "p.qhp", "p.qhp:1: this is no Qt help project");
    row("unreadable image", "doc/a.png", "no image", "doc", image);
    row("cut off image", "doc/a.png", BuildFixture::Png(0, 40).left(200), "doc", image);
    row("unquoted comma", "p.ini", "[YxHelp]\nProduct=X\nProductName=A, B\n", "doc",
        "p.ini:3: the value of \"ProductName\" holds a comma*");
    row("unquoted semicolon", "p.ini", "[YxHelp]\nProduct=X\nVersionName=\"A\";B\n", "doc",
        "p.ini:3: the value of \"VersionName\" holds*");
    row("no group", "p.ini", "[YxHelp]\nProduct=X\n", "doc",
        "p.ini: \"Group\" in ?Display? must be 1, 2 or 3");
    row("no product", "p.ini", "[Display]\nGroup=1\n", "doc", "p.ini: \"Product\" in ?YxHelp? is missing");
    row("no pair", "p.ini", "[YxHelp]\nProduct\n", "doc", "p.ini:2: this is no \"key=value\"");
    row("not UTF-8", "p.ini", "[YxHelp]\nProduct=\xf6\n", "doc", "p.ini:2: this is no UTF-8");
    row("no description", "x", "", "doc/p.ini", "*");
}

void TestHelpBuildOutput::badInputIsRefused()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, input);
    QFETCH(QString, error);
    BuildFixture fixture;
    fixture.WritePage("page.html"_s, "Page"_s);
    if (input == "doc"_s && !file.endsWith(".txt"_s))
        fixture.WritePage("doc/page.html"_s, "Page"_s, "\n<p>\n<img src='a.png'>");
    fixture.Write(file, content);
    if (file.endsWith(".ini"_s))
        fixture.options.product = fixture.Input(file);

    QVERIFY(!fixture.Build({input}));
    const QRegExp pattern(error, Qt::CaseSensitive, QRegExp::Wildcard);
    QVERIFY2(pattern.exactMatch(fixture.Error()), qPrintable(fixture.Error()));
    QVERIFY(!fixture.Error().contains(QLatin1Char('\n')));
    QCOMPARE(QDir(fixture.OutputDir()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

void TestHelpBuildOutput::failedBuildLeavesTheOldOutput()
{
    BuildFixture fixture;
    fixture.Write("doc/s.css"_s, "p{}");
    fixture.WritePage("doc/index.html"_s, "A"_s, "<link rel=stylesheet href=s.css>");
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    const auto before = Snapshot(fixture.OutputDir());

    fixture.Write("doc/s.css"_s, "q{}");
    fixture.Write("doc/z.png"_s, "no image");
    fixture.WritePage("doc/z.html"_s, "Z"_s, "<img src=z.png>");
    QVERIFY(!fixture.Build({"doc"_s}));
    QCOMPARE(Snapshot(fixture.OutputDir()), before);

    fixture.options.output = fixture.Input("doc/s.css"_s);
    QVERIFY(!fixture.Build({"doc"_s}));
    QCOMPARE(fixture.Error(), "doc/s.css/en-US: the folder can't be created"_s);
}

void TestHelpBuildOutput::newBuildReplacesTheOldOutput()
{
    BuildFixture fixture;
    const auto buildWith = [&fixture](const QByteArray& css) {
        fixture.Write("doc/s.css"_s, css);
        fixture.WritePage("doc/index.html"_s, QString::fromLatin1(css), "<link rel=stylesheet href=s.css>");
        QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    };
    const auto sheetCount = [&fixture] {
        return QDir(fixture.HelpDir() + "/styles"_s).entryList(QDir::Files).size();
    };
    buildWith("a{}");
    buildWith("b{}");
    QCOMPARE(fixture.Select("SELECT Title FROM HelpFileList"_s), QStringList{"b{}"_s});
    QCOMPARE(sheetCount(), 1);
    // Another database in the folder keeps its style sheets.
    fixture.options.database = "Other.db"_s;
    buildWith("c{}");
    QCOMPARE(sheetCount(), 2);
    fixture.options.database = "YXCADHelp.db"_s;
    QVERIFY(QFile::exists(AttributesIn(fixture.Finished("b{}"_s), "link", "href").constFirst()));
}

void TestHelpBuildOutput::sameInputGivesTheSameBytes()
{
    const auto build = [](BuildFixture& fixture, bool backwards) {
        fixture.Write("doc/i.png"_s, BuildFixture::Png());
        fixture.Write("doc/s.css"_s, "p{background:url(i.png)}");
        for (int i = 0; i < 12; ++i) {
            const int number = backwards ? 11 - i : i;
            fixture.WritePage(
                "doc/s%1/p%2.html"_s.arg(number % 3).arg(number), "T"_s,
                "<script>var a;</script><img src=\"../i.png\"><link rel=stylesheet href=\"../s.css\">");
        }
        QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    };
    BuildFixture one;
    BuildFixture two;
    build(one, false);
    build(two, true);
    const auto files = Snapshot(one.OutputDir());
    QCOMPARE(files.keys().size(), 4);
    QCOMPARE(Snapshot(two.OutputDir()), files);
}

void TestHelpBuildOutput::productIsPacked()
{
    BuildFixture fixture;
    fixture.WritePage("doc/index.html"_s, "A"_s);
    const QByteArray ini = "[YxHelp]\nProduct=X\nProductName=\"A, B\"\n[Display]\nGroup=3\n";
    fixture.Write("product/mine.ini"_s, ini);
    fixture.Write("product/YxPrdIcon.png"_s, BuildFixture::Png(7));
    fixture.options.product = fixture.Input("product/mine.ini"_s);
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));

    const QString file = fixture.HelpDir() + "/YxHelpSystem.rcc"_s;
    QVERIFY(QResource::registerResource(file));
    QCOMPARE(Content(":/Resource/Config/YxHelp.ini"_s), ini);
    QCOMPARE(Content(":/Resource/Resources/YxPrdIcon.png"_s), BuildFixture::Png(7));
    QVERIFY(!QImage(":/Resource/Resources/top_background.png"_s).isNull());
    QVERIFY(QFile::exists(":/Resource/qss/YxHelp.qss"_s));
    QResource::unregisterResource(file);

    fixture.Write("product/top_background.png"_s, "no image");
    QVERIFY(!fixture.Build({"doc"_s}));
    QCOMPARE(fixture.Error(), "product/top_background.png: can't be read as an image"_s);
}

QTEST_GUILESS_MAIN(TestHelpBuildOutput)
#include "tst_yxhelpbuild_output.moc"
