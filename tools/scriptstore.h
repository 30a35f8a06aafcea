#pragma once

#include "diagnostics.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <vector>

namespace helpbuild {

class DocSite;
class ImageStore;
class SheetStore;

/// Collects the scripts of pages in the form in which the viewer writes them into a page, each once.
class ScriptStore
{
public:
    ScriptStore(const DocSite& docSite, SheetStore& sheetStore, ImageStore& imageStore);

    struct Script
    {
        QString fileName; ///< Empty when the script can't be read.
        QStringList imageKeys;
        bool namesSheets = false;
        bool writesInPlace = false; ///< It adds to the page where it stands.
    };

    /// The script file at `path` in the documentation. Files that it names are relative to `base`, the
    /// address of the page.
    Script AddFile(const QString& path, const QUrl& base);

    /// A script that stands in a page.
    Script AddText(const QString& text, const QUrl& base);

    struct Stored
    {
        QString fileName;
        QString text;
    };

    const std::vector<Stored>& Scripts() const { return stored; }

private:
    Script Add(const QString& fileName, const QString& text, const QUrl& base);

    const DocSite& site;
    SheetStore& sheets;
    ImageStore& images;
    QHash<QString, Script> byFile;
    QSet<QString> names;
    std::vector<Stored> stored;
};

} // namespace helpbuild
