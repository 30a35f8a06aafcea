#include "yxhelp.h"

#include "dpiscale.h"
#include "platform.h"
#include "redirectonlinewebenginepage.h"
#include "redirectwebenginepage.h"
#include "ui_yxhelpapp.h"
#include "widgetproperty.h"
#include "yxconfig.h"
#include "yxsettingwid.h"

#include <QAction>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

namespace {

QIcon CommonIcon(QLatin1String name)
{
    return QIcon(QLatin1String(":/Resource/CommonResources/") % name);
}

} // namespace

void YxHelp::InitWidget()
{
    InitFrame();
    InitProduct();
    InitVisibility();
    // The page rules aren't connected yet, so the start state of the left pane is set by hand.
    ui->frame_index->hide();
    InitWindowTools();
    ui->stackedWidget_wizard->setCurrentIndex(0);
    SetSelected(ui->tbn_context, true);
    InitToolButtons();
    InitTrees();
    InitWebViews();
    settingWid = new YxSettingWid(this);
    InitOpenMode();
    if (productConfig.ResizeMemory) {
        normalSize = YxConfig::Instance()->ReadWindowSize();
        resize(normalSize);
    }
    ApplyRowStyle();
}

void YxHelp::InitFrame()
{
    setWindowIcon(CommonIcon(QLatin1String("YxPrdIcon.png")));
    ui->fram_topTitle->setStyleSheet(
        QStringLiteral("QFrame#fram_topTitle{\t\tborder:none;\t\tborder-bottom:%1px solid grey;\t\t"
                       "border-image:url(:/Resource/Resources/top_background.png);\t}")
            .arg(ScaleValue(1)));
    ui->tbn_titleIcon->setIcon(QIcon(QStringLiteral(":/Resource/Resources/YxPrdIcon.png")));
    Qt::WindowFlags flags = windowFlags() | Qt::FramelessWindowHint | Qt::WindowMinMaxButtonsHint;
    flags.setFlag(Qt::BypassWindowManagerHint, platform::kBypassWindowManager);
    setWindowFlags(flags);
    installEventFilter(this);
    ui->frame_topOpt->installEventFilter(this);
    ui->lineEdit_context->installEventFilter(this);
    for (int i = 0; i < ui->splitter->count(); ++i)
        ui->splitter->setCollapsible(i, false);
    ui->tbn_back->setEnabled(false);
    ui->tbn_nextO->setEnabled(false);
}

void YxHelp::InitWindowTools()
{
    moveTool.SetLeftButtonOnly();
    moveTool.SetWidgets(ui->frame_topOpt, this);
    moveTool.SetDrawTool(&drawTool);
    drawTool.SetLeftButtonOnly();
    drawTool.SetWidget(this);
    drawTool.SetEdgeWidth(ScaleValue(5));
    drawTool.SetTopLimit(ui->frame_topOpt->height());
}

void YxHelp::InitProduct()
{
    productConfig = YxConfig::Instance()->GetConfigInfo();
    setWindowTitle(productConfig.ProductName);
    ui->label_title->setText(productConfig.ProductName);
    ui->label_proTtile->setText(QString::fromUtf8(productConfig.VersionName.toUtf8()));
    ui->label_copyright->setText(ui->label_copyright->text().arg(productConfig.CopyrightYear));
}

void YxHelp::InitVisibility()
{
    if (productConfig.Group == 1) {
        for (QWidget* button : {ui->tbn_setting, ui->tbn_online, ui->tbn_flash, ui->tbn_back, ui->tbn_nextO})
            button->hide();
    } else if (productConfig.Group == 2) {
        ui->tbn_setting->hide();
        ui->tbn_online->hide();
        ui->stackedWidget->setCurrentWidget(ui->page_online);
    }
}

void YxHelp::InitToolButtons()
{
    struct StateIcons
    {
        YxToolButton* button;
        QLatin1String disabled;
        QLatin1String normal;
        QLatin1String hover;
        QLatin1String pressed;
        bool active;
    };
    const QLatin1String search("icon_search@2x.png");
    const QLatin1String filter("icon_filter_nor.png");
    const QLatin1String home("icon_home_normal.png");
    const QLatin1String collect("icon_collect_normal.png");
    const QLatin1String print("icon_print_normal.png");
    const StateIcons table[] = {
        {ui->tbn_home, home, home, QLatin1String("icon_home_hover.png"),
         QLatin1String("icon_home_clicked.png"), true},
        {ui->tbn_contextFind, search, search, search, search, true},
        {ui->tbn_Filter, filter, filter, filter, QLatin1String("icon_filter_press.png"), true},
        {ui->tbn_favoritesQuick, collect, collect, QLatin1String("icon_collect_hover.png"),
         QLatin1String("icon_collect_clicked_.png"), true},
        {ui->tbn_print, print, print, QLatin1String("icon_print_hover.png"),
         QLatin1String("icon_print_clicked.png"), true},
        {ui->tbn_pre, QLatin1String("icon_back_disable.png"), QLatin1String("icon_back_normal.png"),
         QLatin1String("icon_back__hover.png"), QLatin1String("icon_back_clicked.png"), false},
        {ui->tbn_next, QLatin1String("icon_progress_disable.png"), QLatin1String("icon_progres_normal.png"),
         QLatin1String("icon_progres_hover.png"), QLatin1String("icon_progres_clicked.png"), false},
    };
    for (const StateIcons& row : table) {
        row.button->SetIcons(CommonIcon(row.disabled), CommonIcon(row.normal), CommonIcon(row.hover),
                             CommonIcon(row.pressed));
        row.button->SetActive(row.active);
    }
    ui->tbn_titleIcon->setAttribute(Qt::WA_TransparentForMouseEvents);
    ui->tbn_Filter->hide();
}

void YxHelp::InitTrees()
{
    for (QTreeWidget* tree : {ui->treeWidget, ui->treeWidget_favorites}) {
        tree->setHeaderHidden(true);
        tree->setFocusPolicy(Qt::NoFocus);
        tree->setUniformRowHeights(true);
    }
    for (QTreeWidget* tree : {ui->treeWidget_result, ui->treeWidget_index}) {
        tree->setFocusPolicy(Qt::NoFocus);
        // Otherwise a selection far down measures all rows above it.
        tree->setUniformRowHeights(true);
    }
}

void YxHelp::InitWebViews()
{
    // Every start begins with nothing cached and no link visited. The cache is kept in memory for that:
    // clearing the one on disk takes a moment, and a page that loads meanwhile may never come to its end.
    QWebEngineProfile* profile = QWebEngineProfile::defaultProfile();
    profile->setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    profile->clearAllVisitedLinks();

    offlinePage = new RedirectWebEnginePage(ui->webEngineView);
    ui->webEngineView->setPage(offlinePage);
    // The views get their first address here and not in the form: there it would go to pages that are thrown
    // away with this, and each costs a process of the engine. It also starts the engine's process for the
    // topic, which then comes up while the contents are read.
    offlinePage->setUrl(QUrl(QStringLiteral("about:blank")));
    onlinePage = new RedirectOnlineWebEnginePage(ui->webView_online);
    ui->webView_online->setPage(onlinePage);
    ui->webEngineView->setFocusPolicy(Qt::ClickFocus);

    const std::pair<QWebEnginePage::WebAction, QString> texts[] = {
        {QWebEnginePage::Copy, tr("Copy")},
        {QWebEnginePage::Back, tr("Back")},
        {QWebEnginePage::Forward, tr("Forward")},
        {QWebEnginePage::Reload, tr("Reload")},
        {QWebEnginePage::ViewSource, tr("View Source")},
        {QWebEnginePage::SavePage, tr("Save Page")},
        {QWebEnginePage::Cut, tr("Cut")},
        {QWebEnginePage::Paste, tr("Paste")},
        {QWebEnginePage::SelectAll, tr("Select All")},
    };
    for (const auto& [action, text] : texts) {
        onlinePage->action(action)->setText(text);
        // A topic can be copied from; cutting, pasting and selecting keep the engine's own words there.
        if (action != QWebEnginePage::Cut && action != QWebEnginePage::Paste &&
            action != QWebEnginePage::SelectAll)
            offlinePage->action(action)->setText(text);
    }
    // What is left is copying. The engine's own ways to open a link would take a topic for a file.
    for (auto action :
         {QWebEnginePage::Back, QWebEnginePage::Forward, QWebEnginePage::Reload, QWebEnginePage::ViewSource,
          QWebEnginePage::SavePage, QWebEnginePage::OpenLinkInThisWindow, QWebEnginePage::OpenLinkInNewWindow,
          QWebEnginePage::OpenLinkInNewTab, QWebEnginePage::DownloadLinkToDisk,
          QWebEnginePage::CopyLinkToClipboard})
        offlinePage->action(action)->setVisible(false);
    for (auto action : {QWebEnginePage::Undo, QWebEnginePage::Redo, QWebEnginePage::PasteAndMatchStyle})
        onlinePage->action(action)->setVisible(false);

    for (QWebEngineSettings* settings : {offlinePage->settings(), ui->webEngineView->settings()})
        settings->setAttribute(QWebEngineSettings::JavascriptEnabled, true);
    QWebEngineSettings* online = ui->webView_online->settings();
    online->setAttribute(QWebEngineSettings::JavascriptEnabled, true);
    online->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    online->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    for (QWebEngineView* view : {ui->webEngineView, ui->webView_online})
        view->settings()->setFontFamily(QWebEngineSettings::StandardFont, QStringLiteral("Microsoft YaHei"));
}

void YxHelp::InitOpenMode()
{
    YxConfig::Instance()->ReadOpenMode(openMode);
    if (productConfig.Group != 3)
        return;
    if (openMode.RunMode == 1) {
        ui->tbn_online->setToolTip(OnlineToolTip());
        SwitchToOnlinePage();
        return;
    }
    ui->tbn_online->setToolTip(OfflineToolTip());
    for (QWidget* button : {ui->tbn_flash, ui->tbn_back, ui->tbn_nextO})
        button->hide();
    ui->stackedWidget->setCurrentWidget(ui->page_offline);
    SetSelected(ui->tbn_online, false);
}
