#include "workfolder.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>

namespace helpbuild {
namespace {

std::filesystem::path NativePath(const QString& path)
{
    return std::filesystem::path(path.toStdU16String());
}

} // namespace

WorkFolder::WorkFolder(const QString& parentFolder, Diagnostics& messages)
    : parent(parentFolder), diagnostics(messages)
{
}

WorkFolder::~WorkFolder()
{
    folder.reset();
    // Only an empty one goes.
    if (isNew)
        QDir().rmdir(parent);
}

bool WorkFolder::Open()
{
    isNew = !QFileInfo::exists(parent);
    if (!QDir().mkpath(parent))
        return diagnostics.Fail({parent, 0}, QStringLiteral("the folder can't be created"));
    // Beside the target, since only within one file system a file is moved in one step.
    folder = std::make_unique<QTemporaryDir>(parent + QLatin1String("/.yxhelp-build-XXXXXX"));
    return folder->isValid() ||
           diagnostics.Fail({parent, 0}, QStringLiteral("the folder can't be written to"));
}

bool WorkFolder::Move(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(NativePath(from), NativePath(to), error);
    if (error)
        return diagnostics.Fail({to, 0}, QLatin1String("can't be replaced: ") +
                                             QString::fromStdString(error.message()));
    return true;
}

} // namespace helpbuild
