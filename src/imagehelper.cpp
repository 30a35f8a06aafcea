#include "imagehelper.h"

#include "log.h"

#include <QBuffer>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>
#include <QStandardPaths>

#include <array>
#include <exception>

namespace {

constexpr int kLongestPath = 260;

struct ImageFormat
{
    QLatin1String mark;
    const char* format;
};

const std::array<ImageFormat, 5> kFormats{{
    {QLatin1String(".png"), "png"},
    {QLatin1String(".ico"), "ico"},
    {QLatin1String(".gif"), "png"}, // Qt writes no GIF; views go by the bytes, not by the name.
    {QLatin1String(".bmp"), "bmp"},
    {QLatin1String(".jpg"), "jpg"},
}};

const char* FormatFor(const QString& fileName)
{
    for (const ImageFormat& entry : kFormats) {
        if (fileName.contains(entry.mark))
            return entry.format;
    }
    return "png";
}

// Through a temporary name, so that a viewer that is ended meanwhile leaves no half image behind: a file of
// the final name is never written again.
void Write(const QImage& image, const QString& path, const char* format)
{
    if (image.isNull())
        return;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && image.save(&file, format, -1))
        file.commit();
}

const char* TextOf(const std::exception& exception)
{
    const char* text = exception.what();
    return text && *text ? text : "Unknown exception";
}

} // namespace

ImageHelper::ImageHelper()
    : TempRoot(QStandardPaths::writableLocation(QStandardPaths::TempLocation) +
               QLatin1String("/HelpImageTemp"))
{
    // Where users share one temporary directory, the tree belongs to whoever made it first.
    const QFileInfo root(TempRoot);
    if (root.exists() && !root.isWritable())
        TempRoot =
            QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QLatin1String("/HelpImageTemp");
}

QString ImageHelper::DatedDir(const QString& language) const
{
    return TempRoot + QLatin1Char('/') + QDate::currentDate().toString(QStringLiteral("yyyyMMdd")) +
           QLatin1Char('/') + language;
}

QString ImageHelper::SaveImage(QByteArray data, QString fileName, const QString& language) const
{
    try {
        const QString dir = DatedDir(language);
        if (!QDir().exists(dir))
            QDir().mkpath(dir);

        QString full = dir + QLatin1Char('/') + fileName;
        if (full.size() > kLongestPath) {
            // Keeps the first characters and lands beside the directory. Other viewers of the day look for
            // the image under this very name.
            fileName.truncate(full.size() - (kLongestPath - 1));
            full = dir + fileName;
        }
        if (QFile::exists(full))
            return full;

        QBuffer buffer(&data);
        buffer.open(QIODevice::ReadOnly);
        QImage image;
        image.load(&buffer, nullptr);
        Write(image, full, FormatFor(fileName));
        return full;
    } catch (const std::exception& exception) {
        LogWarning(LogStream(), __FILE__, __LINE__, "Caught exception::%s", TextOf(exception));
    } catch (...) {
        LogWarning(LogStream(), __FILE__, __LINE__, "Unkown Caught exception");
    }
    return {};
}

bool ImageHelper::RemoveTempDir(const QString& path) const
{
    QDir dir(path);
    return !dir.exists() || dir.removeRecursively();
}
