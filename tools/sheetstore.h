#pragma once

#include "diagnostics.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace helpbuild {

class DocSite;
struct CssReference;

/// Writes the style sheets of pages, and the files that these refer to, into one flat folder.
class SheetStore
{
public:
    SheetStore(const DocSite& docSite, const QString& targetFolder, Diagnostics& messages);

    /// Name in the folder of the sheet that stands at `path` in the documentation; empty when it can't be
    /// read.
    QString Add(const QString& path);

    /// The same for a sheet that stands in a page. `base` is what its references are relative to.
    QString AddText(const QString& text, const QUrl& base, const SourcePlace& place);

    /// False when a file could not be written.
    bool IsSound() const { return sound; }

    /// Files written.
    const QSet<QString>& Names() const { return written; }

private:
    QString Rewrite(const QString& sheet, const QUrl& base, const SourcePlace& place);

    // What stands for the reference in the written sheet; nothing when it stays as it is.
    std::optional<QString> Replacement(const CssReference& reference, const QUrl& base,
                                       const SourcePlace& place);
    std::optional<QString> ImportRule(const CssReference& reference, const QUrl& base,
                                      const SourcePlace& place);
    QString AddFile(const QString& path);
    QString Write(const QString& fileName, const QByteArray& data, const QString& extension);

    const DocSite& site;
    QString folder;
    Diagnostics& diagnostics;
    QHash<QString, QString> byPath;
    QStringList open; ///< Sheets being read, to stop at one that imports itself.
    QSet<QString> written;
    bool sound = true;
};

} // namespace helpbuild
