#include "outputfolder.h"

#include <QDir>
#include <QFile>

namespace helpbuild {
namespace {

const QLatin1String kStyles("styles");
const QLatin1String kResources("YxHelpSystem.rcc");

} // namespace

OutputFolder::OutputFolder(const QString& output, const QString& language, const QString& databaseName,
                           Diagnostics& messages)
    : diagnostics(messages)
    , work(QDir(output).absoluteFilePath(language), messages)
    , help(work.Parent() + QLatin1String("/Help"))
    , database(databaseName)
{
}

bool OutputFolder::Open()
{
    if (!work.Open())
        return false;
    return QDir().mkpath(StyleFolder()) ||
           diagnostics.Fail({StyleFolder(), 0}, QStringLiteral("the folder can't be created"));
}

QString OutputFolder::ResourceFile() const
{
    return work.Path(kResources);
}

QString OutputFolder::StyleFolder() const
{
    return work.Path(kStyles);
}

bool OutputFolder::Install(const QSet<QString>& styles)
{
    const QString styleFolder = help + QLatin1Char('/') + kStyles;
    if (!QDir().mkpath(styleFolder))
        return diagnostics.Fail({styleFolder, 0}, QStringLiteral("the folder can't be created"));
    for (const QString& name : styles) {
        if (!work.Move(StyleFolder() + QLatin1Char('/') + name, styleFolder + QLatin1Char('/') + name))
            return false;
    }
    if (!work.Move(ResourceFile(), help + QLatin1Char('/') + kResources) ||
        !work.Move(DatabaseFile(), FinalDatabase()))
        return false;
    RemoveOldStyles(styles);
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
