#include "addressbook.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QLatin1String kTable("addresses.json");

void AddFirst(QHash<QString, QString>& paths, const QString& name, const QString& path)
{
    const QString folded = name.toLower();
    if (!paths.contains(folded))
        paths.insert(folded, path);
}

} // namespace

bool AddressBook::Load(const QString& siteFolder)
{
    const QDir site(siteFolder);
    const QStringList folders = site.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& folder : folders) {
        const QString file = site.filePath(folder + QLatin1Char('/') + kTable);
        if (QFileInfo::exists(file) && !LoadTable(file, folder))
            return false;
    }
    return !tables.isEmpty() || Fail(siteFolder, "holds no web site of yxhelp-build");
}

bool AddressBook::LoadTable(const QString& file, const QString& folder)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return Fail(file, "can't be read");
    const QJsonObject content = QJsonDocument::fromJson(source.readAll()).object();
    const QJsonArray topics = content.value(QLatin1String("topics")).toArray();
    const QString language = content.value(QLatin1String("language")).toString();
    if (topics.isEmpty() || language.isEmpty())
        return Fail(file, "is no table of addresses");

    Table table;
    table.folder = folder + QLatin1String("/OriginalData/");
    table.home = topics.first().toObject().value(QLatin1String("path")).toString();
    for (const QJsonValue& value : topics) {
        const QJsonObject topic = value.toObject();
        const QString path = topic.value(QLatin1String("path")).toString();
        AddFirst(table.byKey, topic.value(QLatin1String("key")).toString(), path);
        AddFirst(table.byPath, path, path);
        AddFirst(table.byBaseName, QFileInfo(path).completeBaseName(), path);
    }
    tables.insert(language.toLower(), table);
    languages << folder;
    return true;
}

QString AddressBook::Find(const QString& language, const QString& topic, const QString& path) const
{
    const auto table = tables.constFind(language.toLower());
    if (table == tables.constEnd())
        return {};
    const QString name = topic.toLower();
    QString found = name.isEmpty() ? QString() : table->byKey.value(name);
    if (found.isEmpty())
        found = table->byPath.value(path.toLower());
    if (found.isEmpty())
        found = name.isEmpty() ? table->home : table->byBaseName.value(name);
    return found.isEmpty() ? QString() : QString(table->folder + found);
}

bool AddressBook::Fail(const QString& file, const char* text)
{
    error = file + QLatin1String(": ") + QLatin1String(text);
    return false;
}
