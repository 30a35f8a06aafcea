#pragma once

#include "diagnostics.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace helpbuild {

/// A folder in which a build's files are made. It stands beside the place that they are moved to at the end,
/// so that a build that fails leaves what was there before. What is left in it goes with this object.
class WorkFolder
{
public:
    /// `parentFolder` is made when it doesn't exist.
    WorkFolder(const QString& parentFolder, Diagnostics& messages);

    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    bool Open();

    /// Folder that holds this one.
    const QString& Parent() const { return parent; }
    QString Path() const { return folder->path(); }
    QString Path(const QString& name) const { return folder->path() + QLatin1Char('/') + name; }

    /// Moves a file or a folder in one step; a file takes the place of another one.
    bool Move(const QString& from, const QString& to);

private:
    QString parent;
    Diagnostics& diagnostics;
    std::unique_ptr<QTemporaryDir> folder;
    bool isNew = false; ///< The parent was made for this one.
};

} // namespace helpbuild
