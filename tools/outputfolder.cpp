#include "outputfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace helpbuild {
namespace {

const QLatin1String kStyles("styles");
const QLatin1String kResources("YxHelpSystem.rcc");

std::filesystem::path NativePath(const QString& path)
{
    return std::filesystem::path(path.toStdU16String());
}

} // namespace

OutputFolder::OutputFolder(const QString& output, const QString& language, const QString& databaseName,
                           Diagnostics& messages)
    : parent(QDir(output).absoluteFilePath(language))
    , help(parent + QLatin1String("/Help"))
    , database(databaseName)
    , diagnostics(messages)
{
}

OutputFolder::~OutputFolder()
{
    work.reset();
    // Only an empty one goes.
    if (isNew)
        QDir().rmdir(parent);
}

bool OutputFolder::Open()
{
    isNew = !QFileInfo::exists(parent);
    if (!QDir().mkpath(parent))
        return diagnostics.Fail({parent, 0}, QStringLiteral("the folder can't be created"));
    // Beside the target, since only within one file system a file is moved in one step.
    work = std::make_unique<QTemporaryDir>(parent + QLatin1String("/.yxhelp-build-XXXXXX"));
    if (!work->isValid() || !QDir().mkpath(StyleFolder()))
        return diagnostics.Fail({parent, 0}, QStringLiteral("the folder can't be written to"));
    return true;
}

QString OutputFolder::ResourceFile() const
{
    return InWork(kResources);
}

QString OutputFolder::StyleFolder() const
{
    return InWork(kStyles);
}

bool OutputFolder::Install(const QSet<QString>& styles)
{
    const QString styleFolder = help + QLatin1Char('/') + kStyles;
    if (!QDir().mkpath(styleFolder))
        return diagnostics.Fail({styleFolder, 0}, QStringLiteral("the folder can't be created"));
    for (const QString& name : styles) {
        if (!Move(InWork(kStyles + QLatin1Char('/') + name), styleFolder + QLatin1Char('/') + name))
            return false;
    }
    if (!Move(ResourceFile(), help + QLatin1Char('/') + kResources) || !Move(DatabaseFile(), FinalDatabase()))
        return false;
    RemoveOldStyles(styles);
    return true;
}

bool OutputFolder::Move(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(NativePath(from), NativePath(to), error);
    if (error)
        return diagnostics.Fail({to, 0}, QLatin1String("can't be replaced: ") +
                                             QString::fromStdString(error.message()));
    return true;
}

// Another database in the folder may need them still.
void OutputFolder::RemoveOldStyles(const QSet<QString>& styles)
{
    if (QDir(help).entryList({QStringLiteral("*.db")}, QDir::Files).size() > 1)
        return;
    const QDir folder(help + QLatin1Char('/') + kStyles);
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (!styles.contains(name))
            QFile::remove(folder.filePath(name));
    }
}

} // namespace helpbuild
