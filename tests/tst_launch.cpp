#include "helpdatabase.h"
#include "product.h"
#include "testtable.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

namespace {

constexpr int kPatience = 20000;

QString ColourPage(const QString& title, const QString& colour)
{
    return "html=<html><head><title>%1</title></head><body style=\"background:%2\"></body></html>"_s.arg(
        title, colour);
}

const QString kTopics = "Home | "_s + ColourPage("Home"_s, "#104080"_s) + "\n  Part | key=PART | "_s +
                        ColourPage("Part"_s, "#80c010"_s) + QLatin1Char('\n');

/// The real program in a deployment of its own.
class Viewer
{
public:
    explicit Viewer(const HelpDatabase& database) : program(database.RccPath() + "/YxHelp"_s)
    {
        if (!QFile::exists(program) && !QFile::copy(QStringLiteral(YXHELP_PROGRAM), program))
            qFatal("no program to run");
    }
    ~Viewer()
    {
        process.kill();
        process.waitForFinished();
    }

    void Start(const QStringList& switches)
    {
        // The drivers that the real program unloads would count as its leaks; tests of the window look for
        // those.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ASAN_OPTIONS"_s, "detect_leaks=0"_s);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, switches);
    }
    bool Ended(int patience = 500)
    {
        return process.state() == QProcess::NotRunning || process.waitForFinished(patience);
    }
    QString Outcome() const
    {
        return process.exitStatus() == QProcess::NormalExit ? "ended %1"_s.arg(process.exitCode())
                                                            : "crashed"_s;
    }
    QString Output() { return QString::fromUtf8(process.readAll()); }

private:
    QString program;
    QProcess process;
};

bool XDo(const QString& words)
{
    QProcess xdotool;
    xdotool.start("xdotool"_s, words.split(QLatin1Char('|')));
    return xdotool.waitForFinished() && xdotool.exitCode() == 0;
}

bool WindowShows(const QString& title)
{
    return XDo("search|--onlyvisible|--name|^%1$"_s.arg(title));
}

// A window that comes or goes while xdotool looks makes it fail, so what it once saw isn't asked again.
bool ViewerShows()
{
    return XDo("search|--onlyvisible|--class|^YxHelp$"_s);
}

/// Asks the window manager to close the active window, and tells whether the viewer has ended.
bool Close(Viewer& viewer)
{
    XDo("key|alt+F4"_s);
    return viewer.Ended();
}

/// Colour of the screen where the topic is.
QString TopicColour()
{
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    return screen.pixelColor(screen.width() * 5 / 8, screen.height() / 2).name();
}

/// Switches that name the language, and more of them, separated by semicolons.
QStringList InEnglish(const QString& more = {})
{
    // A title that no viewer of this machine has, which a launch would hand itself over to.
    const QString title = "Launch%1"_s.arg(QCoreApplication::applicationPid());
    return QString("/Language;en-US;/helpTitle;"_s + title + more).split(QLatin1Char(';'));
}

/// A deployment with the topics, and the program that starts in it.
struct Deployment
{
    Deployment()
    {
        if (!WriteResourceFile(database.HelpDir() + "/YxHelpSystem.rcc"_s, ProductIni(1)))
            qFatal("no resource file");
    }

    HelpDatabase database{kTopics};
    Viewer viewer{database};
};

} // namespace

class TestLaunch : public QObject
{
    Q_OBJECT

private slots:
    void topicOfTheLaunchIsPainted();
    void missingFilesAreTold();
    void badInputOpensAWindowAllTheSame_data();
    void badInputOpensAWindowAllTheSame();
    void brokenTreesStopWithAMessageThatNamesTheRow();
};

void TestLaunch::topicOfTheLaunchIsPainted()
{
    for (const char* line :
         {"|#104080", ";/Topic;part|#80c010", ";/Topic;/Part|#104080", ";/MdbFile;YXCADHelp.mdb|#104080"}) {
        Deployment d;
        d.viewer.Start(InEnglish(Cells(line)[0]));
        QTRY_COMPARE_WITH_TIMEOUT(TopicColour(), Cells(line)[1], kPatience);
        QVERIFY(WindowShows("Test Help"_s));
        QTRY_VERIFY_WITH_TIMEOUT(Close(d.viewer), kPatience);
        QCOMPARE(d.viewer.Outcome(), "ended 0"_s);
    }
}

void TestLaunch::missingFilesAreTold()
{
    for (const auto& [switches, window, outcome] :
         std::initializer_list<std::tuple<QStringList, QString, QString>>{
             {{"/Language"_s, "de-DE"_s}, "Error"_s, "ended 0"_s},
             {{"/Language"_s, "../x/./en-US"_s}, "Error"_s, "ended 0"_s},
             {InEnglish(";/MdbFile;帮 #%1'.db"_s), "Error"_s, "ended 255"_s},
             {InEnglish(";/MdbFile;"_s), "Test Help"_s, "ended 0"_s}}) {
        Deployment d;
        d.viewer.Start(switches);
        const QString& title = window;
        QVERIFY(QTest::qWaitFor([&] { return WindowShows(title); }, kPatience));
        QTRY_VERIFY_WITH_TIMEOUT(Close(d.viewer), kPatience);
        QCOMPARE(d.viewer.Outcome(), outcome);
    }
}

using Damage = std::function<void(HelpDatabase&)>;
Q_DECLARE_METATYPE(Damage)

void TestLaunch::badInputOpensAWindowAllTheSame_data()
{
    const auto row = Columns<Damage>("damage");
    row("empty file", [](HelpDatabase& db) { db.Overwrite({}); });
    row("no database", [](HelpDatabase& db) { db.Overwrite(QByteArray(5000, 'x')); });
    row("truncated", [](HelpDatabase& db) { db.Truncate(1500); });
    row("a folder in its place", [](HelpDatabase& db) {
        QFile::remove(db.Path());
        QDir().mkpath(db.Path());
    });
    row("no table", [](HelpDatabase& db) { db.Execute("DROP TABLE HelpFileList"_s); });
    row("no rows", [](HelpDatabase& db) { db.Execute("DELETE FROM HelpFileList"_s); });
    row("no page column",
        [](HelpDatabase& db) { db.Execute("ALTER TABLE HelpFileList RENAME COLUMN Html TO Page"_s); });
    row("no images", [](HelpDatabase& db) { db.Execute("DROP TABLE ImageList"_s); });
    row("read only", [](HelpDatabase& db) {
        QFile::setPermissions(db.Path(), QFile::ReadOwner);
        QFile::setPermissions(db.HelpDir(), QFile::ReadOwner | QFile::ExeOwner);
    });
    row("locked", [](HelpDatabase& db) {
        auto lock = QSqlDatabase::addDatabase("QSQLITE"_s, "lock"_s);
        lock.setDatabaseName(db.Path());
        if (!lock.open() || lock.exec("BEGIN EXCLUSIVE"_s).lastError().isValid())
            qFatal("the database can't be locked");
    });
    row("unbalanced tags", [](HelpDatabase& db) {
        db.Execute("UPDATE HelpFileList SET Html='<div><table><script><title><body <<p' WHERE ID=1"_s);
    });
    row("zero and invalid text", [](HelpDatabase& db) {
        db.Execute("UPDATE HelpFileList SET Html=CAST(x'3c703eff00fec3283c2f703e' AS TEXT) WHERE ID=1"_s);
    });
    row("image that does not decode", [](HelpDatabase& db) {
        db.AddImage("i/x.png"_s, QByteArray(30000, 'x'));
        db.Execute("UPDATE HelpFileList SET ImagePath='i/x.png,,i/y.png',Html='<img src=i/x.png>'"_s);
    });
    row("garbage resource file", [](HelpDatabase& db) {
        QFile file(db.HelpDir() + "/YxHelpSystem.rcc"_s);
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(3000, 'q'));
    });
}

void TestLaunch::badInputOpensAWindowAllTheSame()
{
    QFETCH(Damage, damage);
    Deployment d;
    damage(d.database);
    d.viewer.Start(InEnglish(";/Topic;PART"_s));
    QVERIFY(QTest::qWaitFor(&ViewerShows, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(Close(d.viewer), kPatience);
    QCOMPARE(d.viewer.Outcome(), "ended 0"_s);
    QSqlDatabase::removeDatabase("lock"_s);
    QFile::setPermissions(d.database.HelpDir(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestLaunch::brokenTreesStopWithAMessageThatNamesTheRow()
{
    for (const char* change : {"ParentID=2 WHERE ID=2", "ID=9, ParentID=8 WHERE ID=2",
                               "ParentID=-4 WHERE ID=2", "ParentID=65535 WHERE ID=1"}) {
        Deployment d;
        d.database.Execute("UPDATE HelpFileList SET "_s + QLatin1String(change));
        d.viewer.Start(InEnglish());
        QVERIFY(d.viewer.Ended(kPatience) && d.viewer.Outcome() != "ended 0"_s);
        const QString row =
            QLatin1String(change).startsWith("ID=9"_s) ? "9"_s : QString(QLatin1String(change).right(1));
        const QString output = d.viewer.Output();
        QVERIFY2(output.contains(QRegularExpression("row with ID %1\\b"_s.arg(row))), qPrintable(output));
    }
}

QTEST_MAIN(TestLaunch)
#include "tst_launch.moc"
