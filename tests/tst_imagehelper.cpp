#include "helpdatabase.h"
#include "imagehelper.h"
#include "log.h"

#include <QImageReader>
#include <QtTest>

#include <cstdlib>
#include <functional>
#include <new>
#include <sstream>

namespace {

/// What the next allocation throws in place of giving memory.
std::function<void()>* nextAllocation = nullptr;

class SilentException : public std::exception
{
public:
    const char* what() const noexcept override { return ""; }
};

} // namespace

void* operator new(std::size_t size)
{
    if (nextAllocation) {
        const std::function<void()>* fail = nextAllocation;
        nextAllocation = nullptr;
        (*fail)();
    }
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

class TestImageHelper : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nameChoosesTheFormat_data();
    void nameChoosesTheFormat();
    void imageIsWrittenOnceADay();
    void longPathLandsBesideTheDirectory();
    void undecodableBytesMakeNoFile();
    void exceptionsAreLoggedAndGiveNoPath();
    void removedTreeIsGone();

private:
    const ImageHelper helper;
    const QString language = QStringLiteral("en-US");
};

void TestImageHelper::init()
{
    QVERIFY(helper.RemoveTempDir(QDir::tempPath() + QStringLiteral("/HelpImageTemp")));
}

void TestImageHelper::nameChoosesTheFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("png") << QStringLiteral("a.png") << QByteArray("png");
    QTest::newRow("ico") << QStringLiteral("a.ico") << QByteArray("ico");
    QTest::newRow("gif becomes png") << QStringLiteral("a.gif") << QByteArray("png");
    QTest::newRow("bmp") << QStringLiteral("a.bmp") << QByteArray("bmp");
    QTest::newRow("jpg") << QStringLiteral("a.jpg") << QByteArray("jpeg");
    QTest::newRow("long jpeg ending") << QStringLiteral("a.jpeg") << QByteArray("png");
    QTest::newRow("capitals") << QStringLiteral("a.JPG") << QByteArray("png");
    QTest::newRow("two marks") << QStringLiteral("a.jpg.png") << QByteArray("png");
    QTest::newRow("mark inside") << QStringLiteral("a.bmp_old.jpg") << QByteArray("bmp");
}

void TestImageHelper::nameChoosesTheFormat()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QString path = helper.SaveImage(NoiseImage(16, 16, "bmp"), name, language);
    QCOMPARE(path, QDir::tempPath() + QStringLiteral("/HelpImageTemp/") +
                       QDate::currentDate().toString(QStringLiteral("yyyyMMdd")) + QStringLiteral("/en-US/") +
                       name);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QImageReader(&file).format(), format);
    QCOMPARE(QDir(helper.DatedDir(language)).entryList(QDir::Files), QStringList{name});
}

void TestImageHelper::imageIsWrittenOnceADay()
{
    const QString path = helper.SaveImage(NoiseImage(16, 16), QStringLiteral("a.png"), language);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("marked");
    file.close();
    QCOMPARE(helper.SaveImage(NoiseImage(16, 16), QStringLiteral("a.png"), language), path);
    QCOMPARE(file.size(), 6);
}

void TestImageHelper::longPathLandsBesideTheDirectory()
{
    const QString dir = helper.DatedDir(language);
    const auto nameOf = [&](int pathLength) {
        return QStringLiteral("ab").leftJustified(pathLength - dir.size() - 1, QLatin1Char('x'));
    };
    const QByteArray data = NoiseImage(8, 8);
    QCOMPARE(helper.SaveImage(data, nameOf(260), language), dir + QLatin1Char('/') + nameOf(260));
    QCOMPARE(helper.SaveImage(data, nameOf(261), language), dir + QStringLiteral("ab"));
    QVERIFY(QFile::exists(dir + QStringLiteral("ab")));
    QCOMPARE(helper.SaveImage(data, nameOf(264), language), dir + QStringLiteral("abxxx"));
}

void TestImageHelper::undecodableBytesMakeNoFile()
{
    const QString path = helper.SaveImage("no image", QStringLiteral("a.png"), language);
    QCOMPARE(path, helper.DatedDir(language) + QStringLiteral("/a.png"));
    QVERIFY(!QFile::exists(path));
}

void TestImageHelper::exceptionsAreLoggedAndGiveNoPath()
{
    const auto logged = [&](std::function<void()> fail) {
        const QByteArray data = NoiseImage(8, 8);
        const QString name = QStringLiteral("a.png");
        const auto stream = std::make_shared<std::ostringstream>();
        LogStream() = stream;
        nextAllocation = &fail;
        const QString path = helper.SaveImage(data, name, language);
        LogStream().reset();
        const std::string line = stream->str();
        return path.isEmpty() && line.find("[WARNING] [imagehelper.cpp:") != std::string::npos
                   ? line.substr(line.rfind("] ") + 2)
                   : std::string();
    };
    QCOMPARE(logged([] { throw std::bad_alloc(); }), std::string("Caught exception::std::bad_alloc\n"));
    QCOMPARE(logged([] { throw SilentException(); }), std::string("Caught exception::Unknown exception\n"));
    QCOMPARE(logged([] { throw 1; }), std::string("Unkown Caught exception\n"));
}

void TestImageHelper::removedTreeIsGone()
{
    const QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("a/b")));
    QVERIFY(helper.RemoveTempDir(dir.filePath(QStringLiteral("a"))));
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("a"))));
    QVERIFY(helper.RemoveTempDir(dir.filePath(QStringLiteral("a"))));
}

QTEST_GUILESS_MAIN(TestImageHelper)
#include "tst_imagehelper.moc"
