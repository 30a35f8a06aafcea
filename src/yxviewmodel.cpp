#include "yxviewmodel.h"

#include "pagebuilder.h"
#include "sqltool.h"
#include "yxglobalsignal.h"

#include <QFile>
#include <QLoggingCategory>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(lcViewModel, "yxhelp.viewmodel")

QString DatabaseFile(QString mdbFile)
{
    const QString oldEnding = QStringLiteral(".mdb");
    // A name in capitals passes the test and keeps its ending: deployments have such files.
    if (mdbFile.endsWith(oldEnding, Qt::CaseInsensitive))
        mdbFile.replace(oldEnding, QLatin1String(".db"));
    return mdbFile;
}

} // namespace

YxViewModel::YxViewModel(const QString& language, QString mdbFile, const QString& rccPath, QObject* parent)
    : QObject(parent)
    , Language(language)
    , HelpDir(rccPath + QLatin1Char('/') + language + QLatin1String("/Help"))
    , StyleRoot(HelpDir)
{
    databasePath = HelpDir + QLatin1Char('/') + DatabaseFile(std::move(mdbFile));
    StyleRoot.replace(QLatin1Char('#'), QLatin1String("%23"));

    // Direct: the jobs must see the stop whatever the window's thread is waiting for.
    connect(
        YxGlobalSignal::Instance(), &YxGlobalSignal::TerminateResultSearch, this,
        [this] {
            std::atomic_ref(SearchRunning).store(false);
            std::atomic_ref(IndexRunning).store(false);
        },
        Qt::DirectConnection);
}

YxViewModel::~YxViewModel() = default;

void YxViewModel::AssertThread() const
{
    Q_ASSERT(QThread::currentThread() == thread());
}

bool YxViewModel::DatabaseExists() const
{
    return QFile::exists(databasePath);
}

QList<TreeViewModel>& YxViewModel::HelpFileList()
{
    AssertThread();
    if (treeList.isEmpty()) {
        SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
        tool.OpenDb();
        tool.GetHelpFileListFormDB(treeList);
        tool.CloseDb();
    }
    return treeList;
}

QList<TreeViewModel>* YxViewModel::TreeList()
{
    AssertThread();
    return &treeList;
}

QList<TreeViewModel>* YxViewModel::IndexList()
{
    AssertThread();
    return &indexList;
}

QList<TreeViewModel>* YxViewModel::SearchList()
{
    AssertThread();
    return &searchList;
}

QList<TreeFavoritesModel>* YxViewModel::FavoriteList()
{
    AssertThread();
    return &favoriteList;
}

bool YxViewModel::GetHomePage(QString& path)
{
    AssertThread();
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    if (!tool.GetOnlineHomePage(path))
        return false;
    tool.CloseDb();
    return true;
}

bool YxViewModel::GetNodeInfo(const QString& filePath, TreeViewModel& node)
{
    AssertThread();
    if (filePath.isEmpty())
        return false;
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    if (!tool.GetNodeInfoFromDB(filePath, node))
        return false;
    tool.CloseDb();
    return true;
}

QString YxViewModel::BuildPageHtml(const TreeViewModel& node)
{
    AssertThread();
    QString html;
    QString images;
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    const bool read = tool.ReadHtmlFromDB(node, html, images);
    tool.CloseDb();
    if (!read) {
        if (node.Html.isEmpty() && node.ImagePath.isEmpty())
            return {};
        html = node.Html;
        images = node.ImagePath;
    }
    LoadScripts();

    html = InlineScripts(std::move(html), ScriptCache, node.FilePath);
    if (html.isEmpty())
        return html;
    if (!images.isEmpty()) {
        const QStringList keys = images.split(QLatin1Char(','));
        LoadImages(keys);
        html = ReplaceImages(std::move(html), keys, ImageCache);
    }
    html = RedirectStyleSheets(std::move(html), StyleRoot);
    return FoldLinks(std::move(html));
}

void YxViewModel::LoadImages(const QStringList& keys)
{
    QList<QString> missing;
    for (const QString& key : keys) {
        if (!key.isEmpty() && !ImageCache.contains(key))
            missing.append(key);
    }
    if (missing.isEmpty())
        return;
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    tool.ReadImageFromDB(missing, ImageCache, Language);
    tool.CloseDb();
}

void YxViewModel::LoadScripts()
{
    AssertThread();
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    // A database without scripts would otherwise be searched through again for each page.
    if (ScriptCache.isEmpty() && !scriptsRead)
        scriptsRead = tool.ReadJsFromDB(ScriptCache, false) && tool.ReadComplete();
    tool.CloseDb();
}

void YxViewModel::PushHistory(const HistoryEntry& entry)
{
    AssertThread();
    while (history.size() - 1 > historyPos)
        history.removeLast();
    history.append(entry);
    historyPos = history.size() - 1;
}

const QList<HistoryEntry>* YxViewModel::History() const
{
    AssertThread();
    return &history;
}

int YxViewModel::HistoryPos() const
{
    AssertThread();
    return historyPos;
}

void YxViewModel::SetHistoryPos(int pos)
{
    AssertThread();
    historyPos = pos;
}

int YxViewModel::TreeRow() const
{
    AssertThread();
    return treeRow;
}

void YxViewModel::SetTreeRow(const int& row)
{
    AssertThread();
    treeRow = row;
}

int YxViewModel::FavoriteRow() const
{
    AssertThread();
    return favoriteRow;
}

void YxViewModel::SetFavoriteRow(const int& row)
{
    AssertThread();
    favoriteRow = row;
}

int YxViewModel::SearchRow() const
{
    AssertThread();
    return searchRow;
}

void YxViewModel::SetSearchRow(const int& row)
{
    AssertThread();
    searchRow = row;
}

int YxViewModel::IndexRow() const
{
    AssertThread();
    return indexRow;
}

void YxViewModel::SetIndexRow(const int& row)
{
    AssertThread();
    indexRow = row;
}

void YxViewModel::LoadIndex()
{
    if (IndexCount == treeList.size())
        return;
    QList<TreeViewModel> rows;
    SQLTOOL tool(databasePath, QStringLiteral("ThreadSql"));
    tool.OpenDb();
    std::atomic_ref(IndexRunning).store(true);
    tool.GetIndexFromDB(rows, IndexCount, IndexRunning);
    tool.CloseDb();
}

void YxViewModel::SearchAllFiles(QString text)
{
    QList<TreeViewModel> hits;
    SQLTOOL tool(databasePath, QStringLiteral("SearchSql"));
    tool.OpenDb();
    std::atomic_ref(SearchRunning).store(true);
    tool.SearchTextInAllFiles(hits, text, SearchRunning);
    tool.CloseDb();
}

bool YxViewModel::IsTopNode(const TreeViewModel& node) const
{
    return node.ParentId == 0;
}

QList<TreeFavoritesModel>& YxViewModel::LoadFavorites()
{
    AssertThread();
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    favoritesRead = tool.GetSearchFavoriteFromDB(favoriteList) && tool.ReadComplete();
    tool.CloseDb();
    return favoriteList;
}

void YxViewModel::AddFavorite(const TreeFavoritesModel& record)
{
    AssertThread();
    favoriteList.append(record);
}

void YxViewModel::RemoveFavorite(const TreeFavoritesModel& record)
{
    AssertThread();
    PendingRemovals.append(record);
}

int YxViewModel::FavoriteCount() const
{
    AssertThread();
    return favoriteList.size() - PendingRemovals.size();
}

void YxViewModel::SaveFavorites()
{
    AssertThread();
    if (!favoritesRead) {
        const bool changed = !favoriteList.isEmpty() || !PendingRemovals.isEmpty();
        if (!changed || !MergeMarks())
            return;
    }
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    ApplyRemovals();
    tool.UpdataFavoriteDB(favoriteList);
    tool.CloseDb();
}

// Writing replaces all marks, so those that the list doesn't know are taken in first.
bool YxViewModel::MergeMarks()
{
    QList<TreeFavoritesModel> marked;
    SQLTOOL tool(databasePath, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    favoritesRead = tool.GetSearchFavoriteFromDB(marked) && tool.ReadComplete();
    tool.CloseDb();
    if (!favoritesRead) {
        qCWarning(lcViewModel) << "favourites not saved: those in the database could not be read";
        return false;
    }
    for (const TreeFavoritesModel& mark : std::as_const(marked)) {
        const auto sameId = [&](const TreeFavoritesModel& known) { return known.Id == mark.Id; };
        if (std::none_of(favoriteList.cbegin(), favoriteList.cend(), sameId))
            favoriteList.append(mark);
    }
    return true;
}

void YxViewModel::ApplyRemovals()
{
    for (const TreeViewModel& removed : std::as_const(PendingRemovals)) {
        const auto entry =
            std::find_if(favoriteList.begin(), favoriteList.end(), [&](const TreeFavoritesModel& favorite) {
                return favorite.Id == removed.Id && SameNode(favorite, removed);
            });
        if (entry != favoriteList.end())
            favoriteList.erase(entry);
    }
}
