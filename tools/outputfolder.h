#pragma once

#include "diagnostics.h"
#include "workfolder.h"

#include <QSet>
#include <QString>

namespace helpbuild {

/// The folder `<output>/<language>/Help`.
class OutputFolder
{
public:
    OutputFolder(const QString& output, const QString& language, const QString& databaseName,
                 Diagnostics& messages);

    /// Makes the folder to write into.
    bool Open();

    QString DatabaseFile() const { return work.Path(database); }
    QString ResourceFile() const;
    QString StyleFolder() const;
    QString Folder() const { return work.Path(); }

    /// Where the database will be.
    QString FinalDatabase() const { return help + QLatin1Char('/') + database; }

    /// Moves everything into its place, the database last. `styles` are the files of the style folder.
    bool Install(const QSet<QString>& styles);

private:
    void RemoveOldStyles(const QSet<QString>& styles);

    Diagnostics& diagnostics;
    WorkFolder work;
    QString help;
    QString database;
};

} // namespace helpbuild
