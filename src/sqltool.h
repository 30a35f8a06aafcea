#pragma once

#include "imagehelper.h"
#include "treeviewmodel.h"

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

class SqlStatement;

/// Reads and writes the help database. An object lives for one operation, on one thread: construct, OpenDb,
/// one reader, CloseDb.
///
/// A reader returns false only when the connection isn't open. A statement that fails goes to the log and
/// counts as one without rows; ReadComplete tells the difference. Values are placed in the statements as
/// they stand, so a key with a single quote finds nothing.
class SQLTOOL
{
public:
    /// Name of Qt's default connection, which all statements but those of the index run on.
    static QString DefaultConnection();

    SQLTOOL(const QString& path, const QString& connectionName);
    ~SQLTOOL();
    Q_DISABLE_COPY_MOVE(SQLTOOL)

    /// Never creates a file.
    bool OpenDb();
    /// Closes, and forgets the connection.
    void CloseDb();
    /// True when every statement of the last reader ran to its end.
    bool ReadComplete() const { return readComplete; }

    /// Appends all rows of the topics. Ends the program when a row names a parent that doesn't stand before
    /// it: parents are found by position, and a database that breaks this is broken altogether.
    bool GetHelpFileListFormDB(QList<TreeViewModel>& list);
    /// Fills `node` from the first row whose path is LIKE `filePath`; with empty values when there is none.
    bool GetNodeInfoFromDB(const QString& filePath, TreeViewModel& node);
    /// Path of the first root row. Leaves the connection open.
    bool GetOnlineHomePage(QString& path);

    /// Source and image list of a page. Both stay as they are when no row matches.
    bool ReadHtmlFromDB(const TreeViewModel& node, QString& html, QString& images);
    /// Adds to `cache` what stands for each image in a page: a data address, or the path of a file.
    bool ReadImageFromDB(const QList<QString>& paths, QHash<QString, QString>& cache,
                         const QString& language);
    /// Appends all script rows. `flag` has no effect.
    bool ReadJsFromDB(QList<JsFileContent>& scripts, bool flag);

    /// Appends the rows that are marked.
    bool GetSearchFavoriteFromDB(QList<TreeFavoritesModel>& list);
    /// Leaves exactly the rows of `list` marked.
    bool UpdataFavoriteDB(const QList<TreeFavoritesModel>& list);

    // The two readers below run in jobs of their own, beside the window. They announce rows in tens through
    // YxGlobalSignal, on their own thread, and read `keepRunning` through std::atomic_ref after every row:
    // false ends them with what has been announced, and returns false.

    /// Empties `results` and fills it with the topics that hold `text` as a word; their records keep the
    /// page. SearchResultChange with an end mark comes last, also without a hit, but not after a stop.
    bool SearchTextInAllFiles(QList<TreeViewModel>& results, const QString& text, bool& keepRunning);
    /// Appends the topics of the contents tree by name, without the root; their records keep the page. Each
    /// adds one to `count`.
    bool GetIndexFromDB(QList<TreeViewModel>& list, int& count, bool& keepRunning);

    // Utilities that the viewer itself doesn't call.

    /// Number of tables, -1 when it can't be read.
    int TableCount();
    QStringList ReadColumn(const QString& table, const QString& column);
    bool ExecSql(const QString& statement);
    /// 1 when the statement ran, otherwise 0.
    int updateTable(const QString& table, const QString& column, const QString& value,
                    const QString& whereColumn, const QString& whereValue);
    /// Number of rows.
    int dataSizeoftable(const QString& table);
    /// Writes many rows in one transaction. The first list holds the statement and the number of its values,
    /// the second the values, row after row. A failure leaves the transaction open.
    bool ExecBatch(const QList<QStringList>& batch);

private:
    bool StartReading();
    void Note(const SqlStatement& statement);

    QSqlDatabase database;
    ImageHelper imageHelper;
    bool readComplete = true;
};
