#include "imagestore.h"

#include "topicnames.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QXmlStreamReader>

#include <utility>

namespace helpbuild {
namespace {

// The viewer writes a larger image to a file, encoding it anew by the extension of its key.
constexpr int kInlineLimit = 20480;
constexpr int kMaxBaseLength = 40;
constexpr int kHashLength = 16;

bool IsDrawing(const QByteArray& data)
{
    QXmlStreamReader xml(data);
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("svg"))
        return false;
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

// Extension of the key, when the bytes can stay as they are.
QByteArray KeptExtension(const QByteArray& format, int size)
{
    if (format == "png" || format == "gif" || format == "bmp")
        return format;
    if (format == "jpeg" || format == "jpg")
        return "jpg";
    if (format == "ico" && size <= kInlineLimit)
        return format;
    return {};
}

QByteArray AsPng(const QImage& image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return data;
}

} // namespace

QString ContentName(const QString& fileName, const QByteArray& data, const QString& extension)
{
    QString base = SafeFileName(QFileInfo(fileName).completeBaseName()).left(kMaxBaseLength);
    base.replace(QLatin1Char('.'), QLatin1Char('-'));
    const QByteArray hash =
        QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex().left(kHashLength);
    const QString name = base + QLatin1Char('-') + QString::fromLatin1(hash);
    return extension.isEmpty() ? name : QString(name + QLatin1Char('.') + extension);
}

ImageStore::ImageStore(Writer imageWriter) : writer(std::move(imageWriter)) {}

std::optional<ImageStore::Image> ImageStore::Add(const QString& realPath)
{
    const auto known = byFile.constFind(realPath);
    if (known != byFile.constEnd())
        return known.value();
    const std::optional<Image> image = Load(realPath);
    byFile.insert(realPath, image);
    return image;
}

std::optional<ImageStore::Image> ImageStore::Load(const QString& realPath)
{
    QFile file(realPath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray data = file.readAll();
    if (realPath.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive) || data.trimmed().startsWith('<')) {
        if (!IsDrawing(data))
            return {};
        return Image{{}, QLatin1String("data:image/svg+xml;base64,") + QString::fromLatin1(data.toBase64())};
    }

    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format().toLower();
    const QImage image = reader.read();
    if (image.isNull())
        return {};
    const QByteArray extension = KeptExtension(format, data.size());
    if (extension.isEmpty())
        return Image{Store(realPath, AsPng(image), "png"), {}};
    return Image{Store(realPath, data, extension), {}};
}

QString ImageStore::Store(const QString& realPath, const QByteArray& data, const QByteArray& extension)
{
    const QByteArray hash = extension + QCryptographicHash::hash(data, QCryptographicHash::Sha1);
    const auto known = keys.constFind(hash);
    if (known != keys.constEnd())
        return known.value();
    const QString key =
        QLatin1String("images/") + ContentName(realPath, data, QString::fromLatin1(extension));
    keys.insert(hash, key);
    sound = writer(key, data) && sound;
    return key;
}

} // namespace helpbuild
