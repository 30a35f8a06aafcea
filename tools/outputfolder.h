#pragma once

#include "diagnostics.h"

#include <QSet>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace helpbuild {

/// The folder `<output>/<language>/Help`. All is written into a folder beside it first and moved over at the
/// end, so that a build that fails leaves what was there before.
class OutputFolder
{
public:
    OutputFolder(const QString& output, const QString& language, const QString& databaseName,
                 Diagnostics& messages);

    ~OutputFolder();
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

    /// Makes the folder to write into.
    bool Open();

    QString DatabaseFile() const { return InWork(database); }
    QString ResourceFile() const;
    QString StyleFolder() const;
    QString WorkFolder() const { return work->path(); }

    /// Where the database will be.
    QString FinalDatabase() const { return help + QLatin1Char('/') + database; }

    /// Moves everything into its place, the database last. `styles` are the files of the style folder.
    bool Install(const QSet<QString>& styles);

private:
    QString InWork(const QString& name) const { return work->path() + QLatin1Char('/') + name; }
    bool Move(const QString& from, const QString& to);
    void RemoveOldStyles(const QSet<QString>& styles);

    QString parent;
    QString help;
    QString database;
    Diagnostics& diagnostics;
    std::unique_ptr<QTemporaryDir> work;
    bool isNew = false; ///< The language had no folder before.
};

} // namespace helpbuild
