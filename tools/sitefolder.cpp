#include "sitefolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace helpbuild {
namespace {

const QLatin1String kPages("OriginalData");
const QLatin1String kHome("index.html");
const QLatin1String kTable("addresses.json");
const QLatin1String kMap("addresses.conf");
const QLatin1String kOldPages("old");

} // namespace

const QString& SiteGenerator()
{
    static const QString name = QStringLiteral("yxhelp-build");
    return name;
}

SiteFolder::SiteFolder(const QString& site, const QString& language, Diagnostics& messages)
    : diagnostics(messages), work(QDir(site).absoluteFilePath(language), messages)
{
}

bool SiteFolder::Open()
{
    if (!IsFromBuild()) {
        for (const QLatin1String name : {kPages, kHome, kTable, kMap}) {
            if (QFileInfo::exists(InPlace(name)))
                return diagnostics.Fail({InPlace(name), 0},
                                        QStringLiteral("is not from an earlier build, and stays"));
        }
    }
    return work.Open();
}

bool SiteFolder::IsFromBuild() const
{
    QFile table(InPlace(kTable));
    return table.open(QIODevice::ReadOnly) &&
           QJsonDocument::fromJson(table.readAll()).object().value(QLatin1String("generator")) ==
               SiteGenerator();
}

QString SiteFolder::PageFolder() const
{
    return work.Path(kPages);
}

QString SiteFolder::HomeFile() const
{
    return work.Path(kHome);
}

QString SiteFolder::TableFile() const
{
    return work.Path(kTable);
}

QString SiteFolder::MapFile() const
{
    return work.Path(kMap);
}

bool SiteFolder::Install()
{
    return InstallPages() && work.Move(HomeFile(), InPlace(kHome)) && work.Move(MapFile(), InPlace(kMap)) &&
           work.Move(TableFile(), InPlace(kTable));
}

// A folder takes no other one's place, so the old one steps aside and comes back if need be.
bool SiteFolder::InstallPages()
{
    const bool replaces = QFileInfo::exists(InPlace(kPages));
    if (replaces && !work.Move(InPlace(kPages), work.Path(kOldPages)))
        return false;
    if (work.Move(PageFolder(), InPlace(kPages)))
        return true;
    if (replaces)
        work.Move(work.Path(kOldPages), InPlace(kPages));
    return false;
}

} // namespace helpbuild
