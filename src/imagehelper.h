#pragma once

#include <QByteArray>
#include <QString>

/// Writes images that are too big to travel inside a page to a temporary tree: one directory for each day,
/// below it one for each language. Nothing in the program cleans the tree.
class ImageHelper
{
public:
    ImageHelper();

    /// Path of the image's file, written unless it is there. `fileName` is the image's key with "/" turned
    /// into "_". Also returns the path when the bytes are no image, and an empty text after an exception.
    QString SaveImage(QByteArray data, QString fileName, const QString& language) const;

    /// Today's directory for `language`; it need not exist.
    QString DatedDir(const QString& language) const;

    /// True when the directory is gone afterwards.
    bool RemoveTempDir(const QString& path) const;

private:
    QString TempRoot;
};
