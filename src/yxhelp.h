#pragma once

#include "configinfo.h"
#include "drawwidgettool.h"
#include "ipcthread.h"
#include "launchargs.h"
#include "movewidgettool.h"
#include "qcommon.h"
#include "treeviewmodel.h"

#include <QDialog>
#include <QFuture>
#include <QList>
#include <QSize>
#include <QString>
#include <QVector>

#include <memory>

class QTreeWidget;
class QTreeWidgetItem;
class RedirectOnlineWebEnginePage;
class RedirectWebEnginePage;
class RowDelivery;
class YxFilterSettingWid;
class YxSettingWid;
class YxViewModel;

namespace Ui {
class YxHelpApp;
}

/// The main window: contents, index, favourites and results on the left, the topic on the right, or the help
/// web site in their place. It reaches the help database through its view model only.
class YxHelp : public QDialog
{
    Q_OBJECT

public:
    YxHelp();
    ~YxHelp() override;

    /// Opens the help that `args` name in the language `languageTag`. False when there is no help database;
    /// the user has been told then.
    bool Init(const HelpLaunchArgs& args, const QString& languageTag);

    /// First show, in the middle of the primary screen.
    void ShowCentered();

    /// Brings the window to the front: active, in normal state, not kept on top.
    void SetWindowOnTop();

    /// Shows the topic whose key the record names, or asks the web site for it while that is shown.
    void ShowRedirectedTopic(const SMData& request);

    /// The screen has `dpi` dots per inch now: every window rescales when that is another scale.
    void ChangeDpi(int dpi);

signals:
    /// A search has come to its end; carries the categories to leave out.
    void CreateSearchResultFinish(QVector<int> filterVec);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool nativeEvent(const QByteArray& eventType, void* message, long* result) override;

private slots:
    void SlotShowHtmContent(QTreeWidgetItem* item, int column);

private:
    // yxhelp_setup.cpp
    void InitWidget();
    void InitFrame();
    void InitWindowTools();
    void InitProduct();
    void InitVisibility();
    void InitToolButtons();
    void InitTrees();
    void InitWebViews();
    void InitOpenMode();

    // yxhelp.cpp: construction, connections, closing
    void InitConnect();
    void InitScreenConnect();
    void SlotOfflineLoadFinished(bool ok);
    void SetProductTitle(const QString& word);
    void AdaptSettingSize();
    void SlotMaxRestore();
    void SlotClose();

    // yxhelp_scale.cpp
    void UpdateDpiStyle(bool first);
    void ApplyRowStyle();

    // yxhelp_contents.cpp
    void CreateContentsTree();
    void SyncTreeToCurrentTopic();
    void SlotTabClicked();
    void SlotPageChanged(int index);
    void MarkSearchWord();

    // yxhelp_index.cpp
    void InitJobs();
    void EndJobs();
    static void EndJob(QFuture<void>& job);
    void StartIndex();
    void SlotIndexPage(QList<TreeViewModel>& list, int index);
    void ShowIndexRows(const QList<TreeViewModel>& rows);
    void AppendRows(QTreeWidget* tree, QList<TreeViewModel>& list, const QList<TreeViewModel>& rows);
    void SlotIndexTextChanged(const QString& text);

    // yxhelp_search.cpp
    void SlotSearch();
    void ClearResultList();
    void SlotSearchResult(QList<TreeViewModel>& list, int index, bool isEnd);
    void ShowSearchRows(const QList<TreeViewModel>& rows, bool isEnd);
    void UpdateResultCount();
    void InitFilterPanel();
    void SlotFilterToggle();
    void SlotFilterChanged(const QVector<int>& excluded);
    void SlotFilterApply(const QVector<int>& excluded);

    // yxhelp_navigation.cpp
    struct TopicLoader;
    static const TopicLoader kContentsLoader;
    static const TopicLoader kRedirectLoader;
    static const TopicLoader kIndexLoader;
    static const TopicLoader kFavoriteLoader;
    static const TopicLoader kResultLoader;
    void LoadTopic(const TopicLoader& loader, int row, int column);
    void ShowContentsRow(const TopicLoader& loader, int row);
    void ShowPage(const QString& html);
    void SlotShowIndexContent(QTreeWidgetItem* item, int column);
    void SlotShowResultContent(QTreeWidgetItem* item, int column);
    void SlotShowFavoriteContent(QTreeWidgetItem* item, int column);
    void ActivateHistoryButtons();
    void SlotHistoryBack();
    void SlotHistoryForward();
    void ShowHistoryEntry(int pos);
    void SlotHome();
    void SlotLinkClicked(const QString& link);

    // yxhelp_favorites.cpp
    void CreateFavoritesList();
    QTreeWidgetItem* NewFavoriteEntry(const TreeViewModel& record, int row);
    void ShowFavoriteCount();
    void SlotTreeMenu(const QPoint& pos);
    void SlotAddFavorite(QTreeWidgetItem* entry);
    void AddToFavoritesList(const TreeViewModel& record);
    void SlotDeleteFavorite(QTreeWidgetItem* entry);
    void RemoveFromFavoritesList(const TreeFavoritesModel& record);
    void SlotFavoritesQuick();

    // yxhelp_print.cpp
    void SlotPrint();

    // yxhelp_online.cpp
    static QString OnlineToolTip();
    static QString OfflineToolTip();
    void SwitchToOnlinePage();
    void SwitchToOfflinePage();
    void SlotSetting();
    void LoadOnlineHome();
    void LoadOnlinePage(const QString& address);
    void ShowNoNetwork();
    void SlotOnline();
    void SyncTreeToOnlinePage();
    void SlotOnlineLoadFinished(bool ok);
    void SlotOnlineUrlChanged();

    // yxhelp_redirect.cpp
    void SlotRedirectTopic(SMData request);
    void ShowRedirectedOffline(const QString& topic);
    void ShowRedirectedOnline(const SMData& request);

    std::unique_ptr<Ui::YxHelpApp> ui;
    MoveWidgetTool moveTool;
    DrawWidgetTool drawTool;
    QSize normalSize{-1, -1};     ///< Size to remember across runs.
    bool filterAvailable = false; ///< The filter panel has categories.
    bool treePending = true;      ///< The contents tree is still to be built.
    YxViewModel* viewModel = nullptr;
    YxFilterSettingWid* filterPanel = nullptr;
    YxSettingWid* settingWid = nullptr;
    QString language;       ///< Language tag in force.
    QString launchLanguage; ///< Language as launched.
    QString currentTopicKey;
    QString syncedTopicKey; ///< Topic of the online page when the offline one was last brought in step.
    QString currentTopicPath;
    QString lastSearch; ///< Word of the last search in this run.
    ConfigInfo productConfig;
    OpenModeInfo openMode;
    RedirectWebEnginePage* offlinePage = nullptr;
    RedirectOnlineWebEnginePage* onlinePage = nullptr;
    QFuture<void> searchFuture;
    QFuture<void> indexFuture;
    RowDelivery* searchDelivery = nullptr;
    RowDelivery* indexDelivery = nullptr;
    IPCThread ipcThread;
    QVector<QString> indexNames; ///< Of the index's rows, side by side: a key walks through all of them.
};
