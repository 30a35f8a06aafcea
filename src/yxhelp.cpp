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
    ipcThread.start(QThread::InheritPriority);
}

YxHelp::~YxHelp()
{
    ipcThread.Stop(this);
    EndJobs();
}

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
    LoadOnlineHome();
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

void YxHelp::InitConnect()
{
    InitJobs();
    const YxGlobalSignal* hub = YxGlobalSignal::Instance();
    connect(ui->tbn_close, &QToolButton::clicked, this, &YxHelp::SlotClose);
    connect(ui->tbn_min, &QToolButton::clicked, this, &YxHelp::showMinimized);
    connect(ui->tbn_maxMin, &QToolButton::clicked, this, &YxHelp::SlotMaxRestore);
    connect(hub, &YxGlobalSignal::DragWidgetBMaximized, this, &YxHelp::SlotMaxRestore);
    for (QToolButton* tab : {ui->tbn_context, ui->tbn_index, ui->tbn_favorites, ui->tbn_result})
        connect(tab, &QToolButton::clicked, this, &YxHelp::SlotTabClicked);
    connect(ui->tbn_contextFind, &QToolButton::clicked, this, &YxHelp::SlotSearch);
    connect(ui->tbn_Filter, &QToolButton::clicked, this, &YxHelp::SlotFilterToggle);
    connect(ui->tbn_online, &QToolButton::clicked, this, &YxHelp::SlotOnline);
    connect(ui->tbn_setting, &QToolButton::clicked, this, &YxHelp::SlotSetting);
    connect(ui->tbn_pre, &QToolButton::clicked, this, &YxHelp::SlotHistoryBack);
    connect(ui->tbn_next, &QToolButton::clicked, this, &YxHelp::SlotHistoryForward);
    connect(ui->tbn_print, &QToolButton::clicked, this, &YxHelp::SlotPrint);
    connect(ui->tbn_favoritesQuick, &QToolButton::clicked, this, &YxHelp::SlotFavoritesQuick);
    connect(ui->tbn_home, &QToolButton::clicked, this, &YxHelp::SlotHome);
    connect(this, &YxHelp::CreateSearchResultFinish, this, &YxHelp::SlotFilterApply, Qt::QueuedConnection);
    connect(hub, &YxGlobalSignal::dpiChange, this, [this] { UpdateDpiStyle(false); });
    connect(hub, &YxGlobalSignal::SearchResultChange, this, &YxHelp::SlotSearchResult, Qt::DirectConnection);
    connect(hub, &YxGlobalSignal::UpdataIndexPage, this, &YxHelp::SlotIndexPage, Qt::DirectConnection);
    connect(hub, &YxGlobalSignal::RedirectTopicSig, this, &YxHelp::SlotRedirectTopic,
            Qt::BlockingQueuedConnection);
    connect(hub, &YxGlobalSignal::SetExeOnTheTop, this, &YxHelp::SetWindowOnTop,
            Qt::BlockingQueuedConnection);
    connect(ui->treeWidget, &QTreeWidget::itemClicked, this, &YxHelp::SlotShowHtmContent);
    connect(ui->treeWidget_index, &QTreeWidget::itemClicked, this, &YxHelp::SlotShowIndexContent);
    connect(ui->treeWidget_favorites, &QTreeWidget::itemClicked, this, &YxHelp::SlotShowFavoriteContent);
    connect(ui->treeWidget_result, &QTreeWidget::itemClicked, this, &YxHelp::SlotShowResultContent);
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
    connect(ui->lineEdit_index, &QLineEdit::textChanged, this, &YxHelp::SlotIndexTextChanged);
    connect(onlinePage, &QWebEnginePage::loadFinished, this, &YxHelp::SlotOnlineLoadFinished);
    connect(onlinePage, &QWebEnginePage::urlChanged, this, &YxHelp::SlotOnlineUrlChanged);
    connect(offlinePage, &QWebEnginePage::loadFinished, this, &YxHelp::SlotOfflineLoadFinished);
    if (!platform::kDpiArrivesAsMessage)
        InitScreenConnect();
}

void YxHelp::SlotOfflineLoadFinished(bool ok)
{
    qCDebug(lcPage) << (ok ? "page loaded" : "page failed");
    if (ok)
        MarkSearchWord();
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
    if (watched == ui->lineEdit_context && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            SlotSearch();
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
    // A hand-over would open the window again, with its favourites put away.
    ipcThread.Stop(this);
    if (productConfig.Group != 2) {
        EndJobs();
        viewModel->SaveFavorites();
    }
    if (productConfig.ResizeMemory) {
        if (!isMaximized())
            normalSize = size();
        YxConfig::Instance()->WriteWindowSize(normalSize);
    }
    close();
}
