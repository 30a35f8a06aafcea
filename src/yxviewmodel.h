#pragma once

#include "treeviewmodel.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

/// A visited page. Copies, since the lists that pages are opened from come and go.
struct HistoryEntry
{
    TreeViewModel record;
    int row = -1;        ///< Place of the record in the list that it was opened from.
    bool inTree = false; ///< That list was the contents list.
};

/// Stands between the help database and the window: owns the lists that the panes show, the history, the
/// selected rows and the caches. All of it belongs to the window's thread.
class YxViewModel : public QObject
{
    Q_OBJECT

public:
    /// `rccPath` is the directory of the deployment. Doesn't touch the database.
    YxViewModel(const QString& language, QString mdbFile, const QString& rccPath, QObject* parent);
    ~YxViewModel() override;
    Q_DISABLE_COPY_MOVE(YxViewModel)

    bool DatabaseExists() const;
    QString DatabasePath() const { return databasePath; }

    /// The contents list, loaded on first use.
    QList<TreeViewModel>& HelpFileList();
    QList<TreeViewModel>* TreeList();
    QList<TreeViewModel>* IndexList();
    QList<TreeViewModel>* SearchList();
    QList<TreeFavoritesModel>* FavoriteList();

    /// Path of the online home page.
    bool GetHomePage(QString& path);
    /// Fills `node` with the topic at `filePath`; `Id` is 0 afterwards when there is none.
    bool GetNodeInfo(const QString& filePath, TreeViewModel& node);

    /// The finished page of a record of any list; empty when there is nothing to show.
    QString BuildPageHtml(const TreeViewModel& node);
    void LoadScripts();

    /// Records a visit; the pages behind the cursor are forgotten.
    void PushHistory(const HistoryEntry& entry);
    const QList<HistoryEntry>* History() const;
    int HistoryPos() const;
    void SetHistoryPos(int pos);

    int TreeRow() const;
    void SetTreeRow(const int& row);
    int FavoriteRow() const;
    void SetFavoriteRow(const int& row);
    int SearchRow() const;
    void SetSearchRow(const int& row);
    int IndexRow() const;
    void SetIndexRow(const int& row);

    // The two jobs. They run on threads of the pool, each with a connection and a list of its own, and reach
    // the lists of the window by YxGlobalSignal alone. TerminateResultSearch stops both; a stop that comes
    // before a job has opened the database is lost.
    void LoadIndex();
    void SearchAllFiles(QString text);

    bool IsTopNode(const TreeViewModel& node) const;

    /// Reads the marks and appends to the favourites; to be called once.
    QList<TreeFavoritesModel>& LoadFavorites();
    void AddFavorite(const TreeFavoritesModel& record);
    /// Notes the removal. The record stays in the list until the save.
    void RemoveFavorite(const TreeFavoritesModel& record);
    int FavoriteCount() const;
    /// Writes the favourites back; to be called once, at the end of the run. Never unmarks a row that this
    /// run failed to read.
    void SaveFavorites();

private:
    void AssertThread() const;
    void LoadImages(const QStringList& keys);
    bool MergeMarks();
    void ApplyRemovals();

    int historyPos = -1;
    QList<HistoryEntry> history;
    QList<TreeViewModel> treeList;
    QList<TreeViewModel> indexList;
    QList<TreeViewModel> searchList;
    QList<TreeFavoritesModel> favoriteList;
    QList<TreeViewModel> PendingRemovals;
    int treeRow = -1;
    int favoriteRow = -1;
    int searchRow = -1;
    int indexRow = -1;
    int IndexCount = 0;
    QList<JsFileContent> ScriptCache;
    QHash<QString, QString> ImageCache;
    QString databasePath;
    QString Language;
    QString HelpDir;
    QString StyleRoot; ///< HelpDir as it is written into a page.
    // Another thread polls these; every access goes through std::atomic_ref.
    bool SearchRunning = false;
    bool IndexRunning = false;

    bool scriptsRead = false;   ///< The database was asked, even when it holds no script.
    bool favoritesRead = false; ///< The list holds all marks of the database.
};
