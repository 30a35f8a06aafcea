#pragma once

#include "diagnostics.h"
#include "workfolder.h"

#include <QString>

namespace helpbuild {

/// Word in the table of addresses that tells who wrote it.
const QString& SiteGenerator();

/// The folder `<site>/<language>` with the pages in "OriginalData", the home page "index.html" and the tables
/// of addresses "addresses.json" and "addresses.conf". Nothing else in it is touched.
class SiteFolder
{
public:
    SiteFolder(const QString& site, const QString& language, Diagnostics& messages);

    /// Makes the folder to write into. Fails when files that no build wrote stand in the way.
    bool Open();

    QString PageFolder() const;
    QString HomeFile() const;
    QString TableFile() const;
    QString MapFile() const;

    QString Folder() const { return work.Path(); }
    const QString& FinalFolder() const { return work.Parent(); }

    /// Moves everything into its place; the pages of the build before go.
    bool Install();

private:
    QString InPlace(const QString& name) const { return work.Parent() + QLatin1Char('/') + name; }
    bool IsFromBuild() const;
    bool InstallPages();

    Diagnostics& diagnostics;
    WorkFolder work;
};

} // namespace helpbuild
