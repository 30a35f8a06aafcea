#include "sqltool.h"

#include "sqlstatement.h"

#include <QFileInfo>
#include <QSqlError>

#include <array>

namespace {

const QLatin1String kImages("ImageList");

/// The largest image that travels inside a page.
constexpr int kLargestInline = 20480;

bool IsFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

QSqlDatabase Connection(const QString& name)
{
    if (!QSqlDatabase::contains(name)) {
        QSqlDatabase added = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        // Qt's default of five seconds would freeze the window when another process holds the database.
        added.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000"));
        return added;
    }
    // A registered connection is opened again by asking for it, but SQLite would make a missing file.
    QSqlDatabase known = QSqlDatabase::database(name, false);
    if (known.isValid() && !known.isOpen() && IsFile(known.databaseName()))
        known.open();
    return known;
}

void ReadNode(SqlStatement& row, TreeViewModel& node)
{
    node.Title = row.Text(QLatin1String("Title"));
    if (node.Title.isEmpty())
        node.Title = row.Text(QLatin1String("FileName"));
    node.KeyName = row.Text(QLatin1String("KeyName"));
    node.FileName = row.Text(QLatin1String("FileName"));
    node.FilePath = row.Text(QLatin1String("FilePath"));
    node.ParentId = row.Number(QLatin1String("ParentID"));
    // One character in place of the page: the list of all topics must not hold all pages.
    node.Html = QString(QLatin1Char(static_cast<char>(row.Number(QLatin1String("Html")))));
    node.Id = row.Number(QLatin1String("id"));
    node.Category = row.Number(QLatin1String("Category"));
    node.SubTitle = row.Text(QLatin1String("SubTitle"));
}

TreeViewModel& ParentOf(const TreeViewModel& node, QList<TreeViewModel>& list)
{
    if (node.ParentId < 1 || node.ParentId > list.size()) {
        qFatal("help database: row with ID %d (\"%s\") names parent %d, but %d rows stand before it; "
               "parents must stand before their children, and ids must count up from 1 without gaps",
               node.Id, qUtf8Printable(node.Title), node.ParentId, list.size());
    }
    return list[node.ParentId - 1];
}

QString InlineImage(const QString& key, const QByteArray& data)
{
    // The position of the dot counts from the right here. It need not give the extension: a web view goes by
    // the image's bytes.
    const QString type = key.right(key.lastIndexOf(QLatin1Char('.')) + 1);
    return QLatin1String("data:image/") + type + QLatin1String(";base64,") + QLatin1String(data.toBase64());
}

} // namespace

QString SQLTOOL::DefaultConnection()
{
    return QLatin1String(QSqlDatabase::defaultConnection);
}

SQLTOOL::SQLTOOL(const QString& path, const QString& connectionName) : database(Connection(connectionName))
{
    database.setDatabaseName(path);
}

SQLTOOL::~SQLTOOL()
{
    if (database.isOpen())
        database.close();
}

bool SQLTOOL::OpenDb()
{
    if (!database.isOpen()) {
        if (!IsFile(database.databaseName())) {
            qCDebug(lcStore) << "fail to connect" << database.databaseName() << "is no file";
            return false;
        }
        if (!database.open()) {
            qCDebug(lcStore) << "fail to connect" << database.lastError();
            return false;
        }
    }
    qCDebug(lcStore) << "successful!";
    return true;
}

void SQLTOOL::CloseDb()
{
    if (database.isOpen())
        database.close();
    const QString name = database.connectionName();
    // Qt warns about a connection that is still held while it is removed.
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

bool SQLTOOL::StartReading()
{
    readComplete = database.isOpen();
    if (!readComplete)
        qCDebug(lcStore) << "database not open";
    return readComplete;
}

void SQLTOOL::Note(const SqlStatement& statement)
{
    readComplete = readComplete && !statement.Failed();
}

bool SQLTOOL::GetHelpFileListFormDB(QList<TreeViewModel>& list)
{
    if (!StartReading())
        return false;
    SqlStatement row(QStringLiteral("SELECT * FROM %1").arg(kTopics));
    while (row.Next()) {
        TreeViewModel node;
        ReadNode(row, node);
        if (node.ParentId != 0 && node.ParentId < kOutsideTree)
            ParentOf(node, list).Children.append(node);
        list.append(node);
    }
    Note(row);
    database.close();
    return true;
}

bool SQLTOOL::GetNodeInfoFromDB(const QString& filePath, TreeViewModel& node)
{
    if (!StartReading())
        return false;
    SqlStatement row(QStringLiteral("SELECT * FROM %1 where FilePath LIKE '%2'").arg(kTopics).arg(filePath));
    row.Next();
    ReadNode(row, node);
    Note(row);
    database.close();
    return true;
}

bool SQLTOOL::GetOnlineHomePage(QString& path)
{
    if (!StartReading())
        return false;
    SqlStatement row(QStringLiteral("SELECT * FROM %1 WHERE ParentID = 0").arg(kTopics));
    row.Next();
    path = row.Text(QLatin1String("FilePath"));
    Note(row);
    return true;
}

bool SQLTOOL::ReadHtmlFromDB(const TreeViewModel& node, QString& html, QString& images)
{
    if (!StartReading())
        return false;
    const std::array<QString, 3> lookups{
        QStringLiteral("SELECT * FROM %1 where [FilePath]= '%2' AND [KeyName]='%3'")
            .arg(kTopics)
            .arg(node.FilePath)
            .arg(node.KeyName),
        QStringLiteral("SELECT * FROM %1 where [FilePath]= '%2'").arg(kTopics).arg(node.FilePath),
        QStringLiteral("SELECT * FROM %1 where [KeyName]= '%2'").arg(kTopics).arg(node.KeyName),
    };
    for (const QString& lookup : lookups) {
        SqlStatement row(lookup);
        while (row.Next()) {
            html = row.Text(QLatin1String("Html"));
            images = row.Text(QLatin1String("ImagePath"));
        }
        Note(row);
        if (!html.isEmpty())
            break;
    }
    database.close();
    return true;
}

bool SQLTOOL::ReadImageFromDB(const QList<QString>& paths, QHash<QString, QString>& cache,
                              const QString& language)
{
    if (!StartReading())
        return false;
    for (const QString& key : paths) {
        SqlStatement row(QStringLiteral("SELECT * FROM %1 where ImagePath = '%2'").arg(kImages).arg(key));
        while (row.Next()) {
            const QByteArray data = row.Value(QLatin1String("ImageData")).toByteArray();
            if (data.size() <= kLargestInline) {
                if (!cache.contains(key))
                    cache.insert(key, InlineImage(key, data));
                continue;
            }
            QString flatName = row.Text(QLatin1String("ImagePath"));
            flatName.replace(QLatin1Char('/'), QLatin1Char('_'));
            const QString file = imageHelper.SaveImage(data, flatName, language);
            if (!file.isEmpty())
                cache.insert(key, file);
        }
        Note(row);
    }
    database.close();
    return true;
}

bool SQLTOOL::ReadJsFromDB(QList<JsFileContent>& scripts, bool flag)
{
    Q_UNUSED(flag)
    if (!StartReading())
        return false;
    SqlStatement row(QStringLiteral("SELECT * FROM %1 Where [Body]='js'").arg(kTopics));
    while (row.Next())
        scripts.append({row.Text(QLatin1String("Html")), row.Text(QLatin1String("FileName"))});
    Note(row);
    database.close();
    return true;
}

bool SQLTOOL::GetSearchFavoriteFromDB(QList<TreeFavoritesModel>& list)
{
    if (!StartReading())
        return false;
    SqlStatement row(QStringLiteral("SELECT * FROM %1 where IsFavorite = true").arg(kTopics));
    while (row.Next()) {
        TreeFavoritesModel favorite;
        favorite.Id = row.Number(QLatin1String("id"));
        favorite.FilePath = row.Text(QLatin1String("FilePath"));
        favorite.FileName = row.Text(QLatin1String("FileName"));
        favorite.Title = row.Text(QLatin1String("Title"));
        favorite.KeyName = row.Text(QLatin1String("KeyName"));
        favorite.ParentId = row.Number(QLatin1String("ParentId"));
        list.append(favorite);
    }
    Note(row);
    database.close();
    return true;
}

bool SQLTOOL::UpdataFavoriteDB(const QList<TreeFavoritesModel>& list)
{
    if (!StartReading())
        return false;
    Note(SqlStatement(
        QStringLiteral("UPDATE %1 Set IsFavorite = false Where IsFavorite = true").arg(kTopics)));
    for (const TreeFavoritesModel& favorite : list) {
        Note(SqlStatement(
            QStringLiteral("UPDATE %1 Set IsFavorite = true Where ID = %2").arg(kTopics).arg(favorite.Id)));
    }
    database.close();
    return true;
}
