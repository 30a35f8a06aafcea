#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>

#include <memory>

namespace helpbuild {

/// One row of the topics' table.
struct TopicRow
{
    int id = 0;
    int parentId = 0;
    int topParentId = 0;
    QString title;
    QString fileName; ///< Text of the entry.
    QString key;
    QString filePath; ///< With backslashes.
    QStringList images;
    QString body;
    QString html;
};

/// Writes a new help database. The same rows in the same order give the same bytes.
class DatabaseWriter
{
public:
    DatabaseWriter();
    ~DatabaseWriter();
    DatabaseWriter(const DatabaseWriter&) = delete;
    DatabaseWriter& operator=(const DatabaseWriter&) = delete;

    bool Open(const QString& file);
    bool AddTopic(const TopicRow& row);
    bool AddImage(const QString& key, const QByteArray& data);

    /// Makes the indexes and closes the file.
    bool Finish();

    const QString& Error() const { return error; }

private:
    bool Run(const QString& statement);
    bool Run(QSqlQuery& query);
    void Close();

    QString connection;
    QSqlDatabase database;
    std::unique_ptr<QSqlQuery> topicQuery;
    std::unique_ptr<QSqlQuery> imageQuery;
    QString error;
};

} // namespace helpbuild
