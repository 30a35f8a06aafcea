#include "helpdatabase.h"
#include "imagehelper.h"
#include "log.h"
#include "testtable.h"

#include <QImageReader>

#include <cstdlib>
#include <new>
#include <sstream>

namespace {

bool memoryIsOut = false; ///< The next allocation fails.

} // namespace

void* operator new(std::size_t size)
{
    void* memory = std::exchange(memoryIsOut, false) ? nullptr : std::malloc(size ? size : 1);
    return memory ? memory : throw std::bad_alloc();
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
    void nameChoosesTheFormat();
    void imageIsWrittenOnceADay();
    void longPathLandsBesideTheDirectory();
    void undecodableBytesMakeNoFile();
    void exhaustedMemoryIsLoggedAndGivesNoPath();

private:
    const ImageHelper helper;
    const QString dir = helper.DatedDir("en-US"_s);
};

void TestImageHelper::nameChoosesTheFormat()
{
    QCOMPARE(dir, QDir::tempPath() + "/HelpImageTemp/"_s + QDate::currentDate().toString("yyyyMMdd/"_s) +
                      "en-US"_s);
    for (const auto& [name, format] :
         std::initializer_list<std::pair<QString, QByteArray>>{{"a.png"_s, "png"},
                                                               {"a.ico"_s, "ico"},
                                                               {"a.gif"_s, "png"},
                                                               {"a.bmp"_s, "bmp"},
                                                               {"a.jpg"_s, "jpeg"},
                                                               {"a.jpeg"_s, "png"},
                                                               {"a.JPG"_s, "png"},
                                                               {"a.jpg.png"_s, "png"},
                                                               {"a.bmp_old.jpg"_s, "bmp"}}) {
        const QString path = helper.SaveImage(NoiseImage(16, 16, "bmp"), name, "en-US"_s);
        QCOMPARE(path, dir + QLatin1Char('/') + name);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QImageReader(&file).format(), format);
        QCOMPARE(QDir(dir).entryList(QDir::Files), QStringList{name});
        QVERIFY(helper.RemoveTempDir(QDir::tempPath() + "/HelpImageTemp"_s) && !QFile::exists(dir));
    }
    QVERIFY(helper.RemoveTempDir(QDir::tempPath() + "/HelpImageTemp"_s));
}

void TestImageHelper::imageIsWrittenOnceADay()
{
    const QString path = helper.SaveImage(NoiseImage(16, 16), "a.png"_s, "en-US"_s);
    QVERIFY(QFile::resize(path, 6));
    QCOMPARE(helper.SaveImage(NoiseImage(16, 16), "a.png"_s, "en-US"_s), path);
    QCOMPARE(QFileInfo(path).size(), 6);
}

void TestImageHelper::longPathLandsBesideTheDirectory()
{
    const auto nameOf = [&](int pathLength) {
        return "ab"_s.leftJustified(pathLength - dir.size() - 1, QLatin1Char('x'));
    };
    const QByteArray data = NoiseImage(8, 8);
    QCOMPARE(helper.SaveImage(data, nameOf(260), "en-US"_s), dir + QLatin1Char('/') + nameOf(260));
    QCOMPARE(helper.SaveImage(data, nameOf(261), "en-US"_s), dir + "ab"_s);
    QVERIFY(QFile::exists(dir + "ab"_s));
    QCOMPARE(helper.SaveImage(data, nameOf(264), "en-US"_s), dir + "abxxx"_s);
}

void TestImageHelper::undecodableBytesMakeNoFile()
{
    QCOMPARE(helper.SaveImage("no image", "none.png"_s, "en-US"_s), dir + "/none.png"_s);
    QVERIFY(!QFile::exists(dir + "/none.png"_s));
}

void TestImageHelper::exhaustedMemoryIsLoggedAndGivesNoPath()
{
    const QByteArray data = NoiseImage(8, 8);
    const auto stream = std::make_shared<std::ostringstream>();
    LogStream() = stream;
    memoryIsOut = true;
    const QString path = helper.SaveImage(data, "b.png"_s, "en-US"_s);
    LogStream().reset();
    QCOMPARE(path, QString());
    QVERIFY(stream->str().ends_with("] Caught exception::std::bad_alloc\n"));
}

QTEST_GUILESS_MAIN(TestImageHelper)
#include "tst_imagehelper.moc"
