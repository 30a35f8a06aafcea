#include "deployment.h"

#include "benchkit.h"
#include "yxviewmodel.h"

#include <QColor>
#include <QDirIterator>
#include <QFile>

#include <algorithm>

namespace {

const QString kDatabase = QStringLiteral("YXCADHelp.db");

void Copy(const QString& from, const QString& to)
{
    if (!QDir().mkpath(QFileInfo(to).path()) || !QFile::copy(from, to))
        qFatal("%s can't be copied", qUtf8Printable(from));
}

void CopyFolder(const QString& from, const QString& to)
{
    for (QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QString file = files.next();
        Copy(file, to + file.mid(from.size()));
    }
}

} // namespace

MarkedDeployment::MarkedDeployment(const QString& program, const QString& source, const QString& tag,
                                   const QString& topic)
    : language(tag)
{
    Copy(program, Program());
    CopyFolder(source + QLatin1Char('/') + language, dir.filePath(language));
    database = dir.filePath(language + QLatin1String("/Help/") + kDatabase);
    topics = bench::RunSql(database, {QStringLiteral("SELECT count(*) FROM HelpFileList WHERE Body <> 'js'")})
                 .first()
                 .toInt();
    Mark(topic.isEmpty() ? QStringLiteral("ID = 1") : QStringLiteral("KeyName = '%1'").arg(topic));
    WritePage(topic);
}

void MarkedDeployment::Mark(const QString& condition)
{
    const QString colour = QColor(kColour).name();
    const QString changed =
        bench::RunSql(
            database,
            {QStringLiteral(
                 "UPDATE HelpFileList SET Html = replace(Html, '</head>', '<style>html, body, body * "
                 "{ background: %1 !important }</style></head>') WHERE %2")
                 .arg(colour, condition),
             QStringLiteral("SELECT count(*) FROM HelpFileList WHERE Html LIKE '%: %1 !%'").arg(colour)})
            .value(0);
    if (changed != QLatin1String("1"))
        qFatal("%s pages were marked", qUtf8Printable(changed));
}

void MarkedDeployment::WritePage(const QString& topic)
{
    YxViewModel model(language, kDatabase, dir.path(), nullptr);
    const QList<TreeViewModel>& rows = model.HelpFileList();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const TreeViewModel& record) {
        return topic.isEmpty() || record.KeyName == topic;
    });
    if (row == rows.end())
        qFatal("no topic %s", qUtf8Printable(topic));
    const QByteArray page = model.BuildPageHtml(*row).toUtf8();
    pageSize = page.size();
    QFile file(PageFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size())
        qFatal("the page can't be written");
}
