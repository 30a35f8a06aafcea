#include "databasewriter.h"

#include <QSqlError>
#include <QUuid>
#include <QVariant>

namespace helpbuild {
namespace {

// `Body` comes before `Html`: a search reads it in most rows and the page in few, and SQLite reads a row from
// its beginning. The flag that the favourites are found by stands before both for the same reason. Long rows
// lie in chains of pages, and the viewer reads all of them when it starts: with large pages and the sources
// as bytes, which needs no conversion on the way, that takes a third of the time.
const QStringList& Layout()
{
    static const QStringList statements{
        QStringLiteral("PRAGMA page_size = 32768"),
        QStringLiteral("PRAGMA encoding = 'UTF-8'"),
        QStringLiteral("PRAGMA journal_mode = OFF"),
        QStringLiteral("PRAGMA synchronous = OFF"),
        QStringLiteral("BEGIN"),
        QStringLiteral("CREATE TABLE HelpFileList (ID INTEGER PRIMARY KEY, ParentID INTEGER NOT NULL,"
                       " TopParentId INTEGER NOT NULL, Category INTEGER NOT NULL DEFAULT 0,"
                       " IsFavorite BOOLEAN NOT NULL DEFAULT false, Title TEXT, FileName TEXT, KeyName TEXT,"
                       " FilePath TEXT, SubTitle TEXT, ImagePath TEXT, Body TEXT, Html TEXT)"),
        QStringLiteral("CREATE TABLE ImageList (ImagePath TEXT NOT NULL, ImageData BLOB)"),
    };
    return statements;
}

const QStringList& Indexes()
{
    static const QStringList statements{
        QStringLiteral("CREATE INDEX HelpFileTitle ON HelpFileList (Title)"),
        QStringLiteral("CREATE INDEX HelpFileName ON HelpFileList (FileName)"),
        QStringLiteral("CREATE INDEX HelpFilePath ON HelpFileList (FilePath, KeyName)"),
        QStringLiteral("CREATE INDEX HelpFileKey ON HelpFileList (KeyName)"),
        // The few rows that are looked for without a key.
        QStringLiteral("CREATE INDEX HelpFileScript ON HelpFileList (Body) WHERE Body = 'js'"),
        QStringLiteral("CREATE INDEX HelpFileFavorite ON HelpFileList (IsFavorite) WHERE IsFavorite = true"),
        QStringLiteral("CREATE INDEX HelpFileRoot ON HelpFileList (ParentID) WHERE ParentID = 0"),
        QStringLiteral("CREATE INDEX ImagePath ON ImageList (ImagePath)"),
    };
    return statements;
}

} // namespace

DatabaseWriter::DatabaseWriter() : connection(QUuid::createUuid().toString()) {}

DatabaseWriter::~DatabaseWriter()
{
    Close();
}

bool DatabaseWriter::Open(const QString& file)
{
    database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    database.setDatabaseName(file);
    if (!database.open()) {
        error = database.lastError().text();
        return false;
    }
    for (const QString& statement : Layout()) {
        if (!Run(statement))
            return false;
    }
    topicQuery = std::make_unique<QSqlQuery>(database);
    imageQuery = std::make_unique<QSqlQuery>(database);
    topicQuery->prepare(QStringLiteral("INSERT INTO HelpFileList (ID, ParentID, TopParentId, Title, FileName,"
                                       " KeyName, FilePath, SubTitle, ImagePath, Body, Html)"
                                       " VALUES (?, ?, ?, ?, ?, ?, ?, '', ?, ?, ?)"));
    imageQuery->prepare(QStringLiteral("INSERT INTO ImageList (ImagePath, ImageData) VALUES (?, ?)"));
    return true;
}

bool DatabaseWriter::AddTopic(const TopicRow& row)
{
    const QVariant values[] = {
        row.id,       row.parentId,     row.topParentId, row.title,
        row.fileName, row.key,          row.filePath,    row.images.join(QLatin1Char(',')),
        row.body,     row.html.toUtf8()};
    int place = 0;
    for (const QVariant& value : values) {
        // A null text would become NULL, which compares with nothing.
        topicQuery->bindValue(place++, value.isNull() ? QVariant(QStringLiteral("")) : value);
    }
    return Run(*topicQuery);
}

bool DatabaseWriter::AddImage(const QString& key, const QByteArray& data)
{
    imageQuery->bindValue(0, key);
    imageQuery->bindValue(1, data);
    return Run(*imageQuery);
}

bool DatabaseWriter::Finish()
{
    for (const QString& statement : Indexes()) {
        if (!Run(statement))
            return false;
    }
    topicQuery.reset();
    imageQuery.reset();
    // Rows don't always come in the order of their numbers; afterwards they lie in it.
    const bool done = Run(QStringLiteral("COMMIT")) && Run(QStringLiteral("VACUUM"));
    Close();
    return done;
}

bool DatabaseWriter::Run(const QString& statement)
{
    QSqlQuery query(database);
    if (query.exec(statement))
        return true;
    error = query.lastError().text();
    return false;
}

bool DatabaseWriter::Run(QSqlQuery& query)
{
    if (query.exec())
        return true;
    error = query.lastError().text();
    return false;
}

void DatabaseWriter::Close()
{
    topicQuery.reset();
    imageQuery.reset();
    if (!database.isValid())
        return;
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

} // namespace helpbuild
