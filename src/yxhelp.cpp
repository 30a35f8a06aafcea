#include "yxhelp.h"

#include "dpiscale.h"
#include "platform.h"
#include "redirectonlinewebenginepage.h"
#include "redirectwebenginepage.h"
#include "ui_yxhelpapp.h"
#include "widgetproperty.h"
#include "yxconfig.h"
#include "yxglobalsignal.h"
#include "yxsettingwid.h"
#include "yxviewmodel.h"

#include <QAction>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QWebEngineHistory>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

Q_LOGGING_CATEGORY(lcPage, "yxhelp.page", QtInfoMsg)

namespace {

QIcon CommonIcon(QLatin1String name)
{
    return QIcon(QLatin1String(":/Resource/CommonResources/") % name);
}

} // namespace

YxHelp::YxHelp() : ui(new Ui::YxHelpApp())
{
    ui->setupUi(this);
    InitWidget();
    UpdateDpiStyle(true);
    InitConnect();
}

YxHelp::~YxHelp() = default;

bool YxHelp::Init(const HelpLaunchArgs& args, const QString& languageTag)
{
    if (args.product == QLatin1String("YXCAD") || args.product == QLatin1String("YX3D"))
        productConfig.Product = args.product;
    // The second condition looks at the product word, not at the title: hosts of that line pass both.
    if (!args.helpTitle.isEmpty() &&
        (args.helpTitle == QLatin1String("YXCADM") || args.product == QLatin1String("YXCADA")))
        productConfig.Product = args.helpTitle;

    language = languageTag;
    launchLanguage = args.language;
    viewModel = new YxViewModel(args.language, args.mdbFile, args.rccPath, this);
    if (productConfig.Group != 2 && !viewModel->DatabaseExists()) {
        QMessageBox::warning(nullptr, tr("Error"),
                             QStringLiteral("Database %1 does not exist.").arg(viewModel->DatabasePath()),
                             QMessageBox::Ok);
        return false;
    }
    SetProductTitle(productConfig.Product);
    if (productConfig.Group != 2) {
        if (openMode.RunMode == 0)
            CreateContentsTree();
        AdaptSettingSize();
    }
    return true;
}

void YxHelp::SetProductTitle(const QString& word)
{
    if (word != QLatin1String("YXCADM") && word != QLatin1String("YXCADA"))
        return;
    YxConfig::Instance()->ReloadProductNames(word);
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    productConfig.ProductName = info.ProductName;
    productConfig.Product = info.Product;
    setWindowTitle(productConfig.ProductName);
    ui->label_title->setText(productConfig.ProductName);
}

void YxHelp::AdaptSettingSize()
{
    // Languages with long words need a wider dialog. The factors are percentages, since 1.15 is no exact
    // double.
    static const QHash<QString, int> kPercent{{QStringLiteral("ru-RU"), 130}, {QStringLiteral("it-IT"), 125},
                                              {QStringLiteral("es-ES"), 115}, {QStringLiteral("de-DE"), 110},
                                              {QStringLiteral("cs-CZ"), 110}, {QStringLiteral("pl-PL"), 110},
                                              {QStringLiteral("hu-HU"), 110}};
    settingWid->setMinimumSize(settingWid->width() * kPercent.value(language, 100) / 100,
                               settingWid->height());
}

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
    ui->treeWidget_result->setFocusPolicy(Qt::NoFocus);
    ui->treeWidget_index->setFocusPolicy(Qt::NoFocus);
}

void YxHelp::InitWebViews()
{
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

void YxHelp::InitConnect()
{
    const YxGlobalSignal* hub = YxGlobalSignal::Instance();
    connect(ui->tbn_close, &QToolButton::clicked, this, &YxHelp::SlotClose);
    connect(ui->tbn_min, &QToolButton::clicked, this, &YxHelp::showMinimized);
    connect(ui->tbn_maxMin, &QToolButton::clicked, this, &YxHelp::SlotMaxRestore);
    connect(hub, &YxGlobalSignal::DragWidgetBMaximized, this, &YxHelp::SlotMaxRestore);
    for (QToolButton* tab : {ui->tbn_context, ui->tbn_index, ui->tbn_favorites, ui->tbn_result})
        connect(tab, &QToolButton::clicked, this, &YxHelp::SlotTabClicked);
    connect(ui->tbn_setting, &QToolButton::clicked, this, &YxHelp::SlotSetting);
    connect(ui->tbn_pre, &QToolButton::clicked, this, &YxHelp::SlotHistoryBack);
    connect(ui->tbn_next, &QToolButton::clicked, this, &YxHelp::SlotHistoryForward);
    connect(ui->tbn_print, &QToolButton::clicked, this, &YxHelp::SlotPrint);
    connect(ui->tbn_favoritesQuick, &QToolButton::clicked, this, &YxHelp::SlotFavoritesQuick);
    connect(ui->tbn_home, &QToolButton::clicked, this, &YxHelp::SlotHome);
    connect(hub, &YxGlobalSignal::dpiChange, this, [this] { UpdateDpiStyle(false); });
    connect(ui->treeWidget, &QTreeWidget::itemClicked, this, &YxHelp::SlotShowHtmContent);
    connect(ui->treeWidget_favorites, &QTreeWidget::itemClicked, this, &YxHelp::SlotShowFavoriteContent);
    connect(offlinePage, &RedirectWebEnginePage::linkClicked, this, &YxHelp::SlotLinkClicked);
    for (QTreeWidget* tree : {ui->treeWidget, ui->treeWidget_favorites})
        connect(tree, &QTreeWidget::customContextMenuRequested, this, &YxHelp::SlotTreeMenu);

    const auto online = [this] { return ui->stackedWidget->currentWidget() == ui->page_online; };
    connect(
        ui->tbn_flash, &QToolButton::clicked, this,
        [this, online] {
            if (online())
                ui->webView_online->reload();
        },
        Qt::DirectConnection);
    connect(
        ui->tbn_back, &QToolButton::clicked, this,
        [this, online] {
            if (online() && onlinePage->history()->canGoBack())
                ui->webView_online->back();
        },
        Qt::DirectConnection);
    connect(
        ui->tbn_nextO, &QToolButton::clicked, this,
        [this, online] {
            if (online() && onlinePage->history()->canGoForward())
                ui->webView_online->forward();
        },
        Qt::DirectConnection);
    connect(ui->stackedWidget_wizard, &QStackedWidget::currentChanged, this, &YxHelp::SlotPageChanged,
            Qt::DirectConnection);
    connect(offlinePage, &QWebEnginePage::loadFinished, this, &YxHelp::SlotOfflineLoadFinished);
    if (!platform::kDpiArrivesAsMessage)
        InitScreenConnect();
}

void YxHelp::SlotOfflineLoadFinished(bool ok)
{
    qCDebug(lcPage) << (ok ? "page loaded" : "page failed");
    if (!ok || profileCleared)
        return;
    // At every start, but not before the first page is there: a load during the clearing of the cache never
    // ends in one of a hundred starts, and the view stays white.
    profileCleared = true;
    onlinePage->profile()->clearHttpCache();
    onlinePage->profile()->clearAllVisitedLinks();
}

void YxHelp::InitScreenConnect()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    connect(screen, &QScreen::logicalDotsPerInchChanged, this,
            [this, screen] { ChangeDpi(qRound(screen->logicalDotsPerInchX())); });
}

bool YxHelp::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->frame_topOpt && event->type() == QEvent::MouseButtonDblClick) {
        SlotMaxRestore();
        return true;
    }
    // A dialog would vanish on Escape, without its orderly end.
    if (watched == this && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        return true;
    return QDialog::eventFilter(watched, event);
}

bool YxHelp::nativeEvent(const QByteArray& eventType, void* message, long* result)
{
    if (const auto dpi =
            platform::DpiOfNativeMessage({eventType.constData(), size_t(eventType.size())}, message))
        ChangeDpi(*dpi);
    return QDialog::nativeEvent(eventType, message, result);
}

void YxHelp::SlotMaxRestore()
{
    if (isMaximized()) {
        showNormal();
        ui->tbn_maxMin->setIcon(CommonIcon(QLatin1String("icon_max_nor.png")));
        return;
    }
    showMaximized();
    ui->tbn_maxMin->setIcon(CommonIcon(QLatin1String("icon_restore_nor.png")));
    normalSize = size();
}

void YxHelp::ShowCentered()
{
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->geometry();
        const QSize fitted = size().boundedTo(area.size());
        setGeometry(area.left() + (area.width() - fitted.width()) / 2,
                    area.top() + (area.height() - fitted.height()) / 2, fitted.width(), fitted.height());
    }
    show();
    // It has its layout before its first use then.
    settingWid->show();
    settingWid->hide();
    SetWindowOnTop();
}

void YxHelp::SetWindowOnTop()
{
    if (platform::kMinimizeBeforeRaise && !isMinimized())
        showMinimized();
    showNormal();
    platform::LiftToTop(winId());
    raise();
    activateWindow();
}

void YxHelp::SlotClose()
{
    if (productConfig.Group != 2)
        viewModel->SaveFavorites();
    if (productConfig.ResizeMemory) {
        if (!isMaximized())
            normalSize = size();
        YxConfig::Instance()->WriteWindowSize(normalSize);
    }
    close();
}
