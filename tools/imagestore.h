#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <functional>
#include <optional>

namespace helpbuild {

/// Brings the images of pages into a form that the viewer can show, each once.
class ImageStore
{
public:
    /// Takes over an image that pages refer to by `key`; false when that fails.
    using Writer = std::function<bool(const QString& key, const QByteArray& data)>;

    explicit ImageStore(Writer imageWriter);

    struct Image
    {
        QString key;     ///< Stands in the page for the image. Empty for a drawing.
        QString address; ///< Of a drawing: the whole of it as a "data:" address.
    };

    /// The image in the file; nothing when it can't be read as an image.
    std::optional<Image> Add(const QString& realPath);

    /// False when an image could not be taken over.
    bool IsSound() const { return sound; }

    int Count() const { return keys.size(); }

private:
    std::optional<Image> Load(const QString& realPath);
    QString Store(const QString& realPath, const QByteArray& data, const QByteArray& extension);

    Writer writer;
    QHash<QString, std::optional<Image>> byFile;
    QHash<QByteArray, QString> keys; ///< By a hash of the data: the same image under two names is one.
    bool sound = true;
};

/// Name that tells its content: no two files of different content share it, in no two databases. At most
/// one dot stands in it, before the extension.
QString ContentName(const QString& fileName, const QByteArray& data, const QString& extension);

} // namespace helpbuild
