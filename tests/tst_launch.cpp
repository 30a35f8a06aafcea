#include "helpdatabase.h"
#include "product.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

#include <memory>

namespace {

constexpr int kPatience = 20000;

QString ColourPage(const QString& title, const QString& colour)
{
    return QStringLiteral(
               "html=<html><head><title>%1</title></head><body style=\"background:%2\"></body></html>")
        .arg(title, colour);
}

const QString kTopics = QStringLiteral("Home | ") +
                        ColourPage(QStringLiteral("Home"), QStringLiteral("#104080")) +
                        QStringLiteral("\n  Part | key=PART | ") +
                        ColourPage(QStringLiteral("Part"), QStringLiteral("#80c010")) + QLatin1Char('\n');

/// The real program in a deployment of its own.
class Viewer
{
public:
    explicit Viewer(const HelpDatabase& database) : program(database.RccPath() + QStringLiteral("/YxHelp"))
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
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, switches);
    }
    bool Ended(int patience = 500)
    {
        return process.state() == QProcess::NotRunning || process.waitForFinished(patience);
    }
    int ExitCode() const { return process.exitCode(); }
    QProcess::ExitStatus ExitStatus() const { return process.exitStatus(); }
    QString Output() { return QString::fromUtf8(process.readAll()); }

private:
    QString program;
    QProcess process;
};

bool XDo(const QStringList& arguments)
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), arguments);
    return xdotool.waitForFinished() && xdotool.exitCode() == 0;
}

bool WindowShows(const QString& title)
{
    return XDo({QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                QLatin1Char('^') + title + QLatin1Char('$')});
}

// A window that comes or goes while xdotool looks makes it fail, so what it once saw isn't asked again.
bool ViewerShows()
{
    return XDo({QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--class"),
                QStringLiteral("^YxHelp$")});
}

/// Asks the window manager to close the active window, and tells whether the viewer has ended.
bool Close(Viewer& viewer)
{
    XDo({QStringLiteral("key"), QStringLiteral("alt+F4")});
    return viewer.Ended();
}

/// Colour of the screen where the topic is.
QString TopicColour()
{
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    return screen.pixelColor(screen.width() * 5 / 8, screen.height() / 2).name();
}

QStringList InEnglish(const QStringList& more = {})
{
    return QStringList{QStringLiteral("/Language"), QStringLiteral("en-US")} + more;
}

bool Lay(const HelpDatabase& database)
{
    return WriteResourceFile(database.HelpDir() + QStringLiteral("/YxHelpSystem.rcc"), ProductIni(1));
}

} // namespace

class TestLaunch : public QObject
{
    Q_OBJECT

private slots:
    void topicOfTheLaunchIsPainted_data();
    void topicOfTheLaunchIsPainted();
    void missingFilesAreTold_data();
    void missingFilesAreTold();
    void badInputOpensAWindowAllTheSame_data();
    void badInputOpensAWindowAllTheSame();
    void brokenTreesStopWithAMessageThatNamesTheRow_data();
    void brokenTreesStopWithAMessageThatNamesTheRow();
};

void TestLaunch::topicOfTheLaunchIsPainted_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<QString>("colour");
    QTest::newRow("no topic") << InEnglish() << QStringLiteral("#104080");
    QTest::newRow("topic") << InEnglish({QStringLiteral("/Topic"), QStringLiteral("part")})
                           << QStringLiteral("#80c010");
    QTest::newRow("topic that is a switch")
        << InEnglish({QStringLiteral("/Topic"), QStringLiteral("/Part")}) << QStringLiteral("#104080");
    QTest::newRow("database by another name")
        << InEnglish({QStringLiteral("/MdbFile"), QStringLiteral("YXCADHelp.mdb")})
        << QStringLiteral("#104080");
}

void TestLaunch::topicOfTheLaunchIsPainted()
{
    QFETCH(QStringList, switches);
    QFETCH(QString, colour);
    HelpDatabase database(kTopics);
    QVERIFY(Lay(database));
    Viewer viewer(database);
    viewer.Start(switches);
    QTRY_COMPARE_WITH_TIMEOUT(TopicColour(), colour, kPatience);
    QVERIFY(WindowShows(QStringLiteral("Test Help")));
    QTRY_VERIFY_WITH_TIMEOUT(Close(viewer), kPatience);
    QCOMPARE(viewer.ExitStatus(), QProcess::NormalExit);
    QCOMPARE(viewer.ExitCode(), 0);
}

void TestLaunch::missingFilesAreTold_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("no resource file for the language")
        << QStringList{QStringLiteral("/Language"), QStringLiteral("de-DE")} << 0;
    QTest::newRow("language with slashes and dots")
        << QStringList{QStringLiteral("/Language"), QStringLiteral("../x/./en-US")} << 0;
    QTest::newRow("no database") << InEnglish({QStringLiteral("/MdbFile"), QStringLiteral("帮 #%1'.db")})
                                 << 255;
    QTest::newRow("database without a name")
        << InEnglish({QStringLiteral("/MdbFile"), QStringLiteral("")}) << 0;
}

void TestLaunch::missingFilesAreTold()
{
    QFETCH(QStringList, switches);
    QFETCH(int, exitCode);
    HelpDatabase database(kTopics);
    QVERIFY(Lay(database));
    Viewer viewer(database);
    viewer.Start(switches);
    const bool names = !switches.contains(QString());
    QVERIFY(QTest::qWaitFor(
        [&] { return WindowShows(names ? QStringLiteral("Error") : QStringLiteral("Test Help")); },
        kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(Close(viewer), kPatience);
    QCOMPARE(viewer.ExitStatus(), QProcess::NormalExit);
    QCOMPARE(viewer.ExitCode(), exitCode);
}

using Damage = std::function<void(HelpDatabase&)>;
Q_DECLARE_METATYPE(Damage)

void TestLaunch::badInputOpensAWindowAllTheSame_data()
{
    QTest::addColumn<Damage>("damage");
    const auto row = [](const char* name, const Damage& damage) { QTest::newRow(name) << damage; };
    row("empty file", [](HelpDatabase& db) { db.Overwrite({}); });
    row("no database", [](HelpDatabase& db) { db.Overwrite(QByteArray(5000, 'x')); });
    row("truncated", [](HelpDatabase& db) { db.Truncate(1500); });
    row("a folder in its place", [](HelpDatabase& db) {
        QFile::remove(db.Path());
        QDir().mkpath(db.Path());
    });
    row("no table", [](HelpDatabase& db) { db.Execute(QStringLiteral("DROP TABLE HelpFileList")); });
    row("no rows", [](HelpDatabase& db) { db.Execute(QStringLiteral("DELETE FROM HelpFileList")); });
    row("no page column", [](HelpDatabase& db) {
        db.Execute(QStringLiteral("ALTER TABLE HelpFileList RENAME COLUMN Html TO Page"));
    });
    row("no images", [](HelpDatabase& db) { db.Execute(QStringLiteral("DROP TABLE ImageList")); });
    row("read only", [](HelpDatabase& db) {
        QFile::setPermissions(db.Path(), QFile::ReadOwner);
        QFile::setPermissions(db.HelpDir(), QFile::ReadOwner | QFile::ExeOwner);
    });
    row("locked", [](HelpDatabase& db) {
        auto lock = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("lock"));
        lock.setDatabaseName(db.Path());
        if (!lock.open() || lock.exec(QStringLiteral("BEGIN EXCLUSIVE")).lastError().isValid())
            qFatal("the database can't be locked");
    });
    row("unbalanced tags", [](HelpDatabase& db) {
        db.Execute(
            QStringLiteral("UPDATE HelpFileList SET Html='<div><table><script><title><body <<p' WHERE ID=1"));
    });
    row("zero and invalid text", [](HelpDatabase& db) {
        db.Execute(QStringLiteral(
            "UPDATE HelpFileList SET Html=CAST(x'3c703eff00fec3283c2f703e' AS TEXT) WHERE ID=1"));
    });
    row("image that does not decode", [](HelpDatabase& db) {
        db.AddImage(QStringLiteral("i/x.png"), QByteArray(30000, 'x'));
        db.Execute(
            QStringLiteral("UPDATE HelpFileList SET ImagePath='i/x.png,,i/y.png',Html='<img src=i/x.png>'"));
    });
    row("garbage resource file", [](HelpDatabase& db) {
        QFile file(db.HelpDir() + QStringLiteral("/YxHelpSystem.rcc"));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(3000, 'q'));
    });
}

void TestLaunch::badInputOpensAWindowAllTheSame()
{
    QFETCH(Damage, damage);
    HelpDatabase database(kTopics);
    QVERIFY(Lay(database));
    Viewer viewer(database);
    damage(database);
    viewer.Start(InEnglish({QStringLiteral("/Topic"), QStringLiteral("PART")}));
    QVERIFY(QTest::qWaitFor(&ViewerShows, kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(Close(viewer), kPatience);
    QCOMPARE(viewer.ExitStatus(), QProcess::NormalExit);
    QCOMPARE(viewer.ExitCode(), 0);
    QSqlDatabase::removeDatabase(QStringLiteral("lock"));
    QFile::setPermissions(database.HelpDir(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestLaunch::brokenTreesStopWithAMessageThatNamesTheRow_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("row");
    QTest::newRow("parent after its child")
        << QStringLiteral("UPDATE HelpFileList SET ParentID=2 WHERE ID=2") << QStringLiteral("2");
    QTest::newRow("gap in the ids") << QStringLiteral("UPDATE HelpFileList SET ID=9, ParentID=8 WHERE ID=2")
                                    << QStringLiteral("9");
    QTest::newRow("negative parent") << QStringLiteral("UPDATE HelpFileList SET ParentID=-4 WHERE ID=2")
                                     << QStringLiteral("2");
    QTest::newRow("no root") << QStringLiteral("UPDATE HelpFileList SET ParentID=65535 WHERE ID=1")
                             << QStringLiteral("1");
}

void TestLaunch::brokenTreesStopWithAMessageThatNamesTheRow()
{
    QFETCH(QString, statement);
    QFETCH(QString, row);
    HelpDatabase database(kTopics);
    QVERIFY(Lay(database));
    database.Execute(statement);
    Viewer viewer(database);
    viewer.Start(InEnglish());
    QVERIFY(viewer.Ended(kPatience));
    QVERIFY(viewer.ExitStatus() == QProcess::CrashExit || viewer.ExitCode() != 0);
    const QString output = viewer.Output();
    QVERIFY2(output.contains(QRegularExpression(QStringLiteral("row with ID %1\\b").arg(row))),
             qPrintable(output));
}

QTEST_MAIN(TestLaunch)
#include "tst_launch.moc"
