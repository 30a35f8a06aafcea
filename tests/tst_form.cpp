#include "ui_yxhelpapp.h"
#include "widgetproperty.h"

#include <QCheckBox>
#include <QDialog>
#include <QImageReader>
#include <QtTest>

Q_DECLARE_METATYPE(QMargins)

namespace {

/// A window as the program has it right after the form was set up.
struct Form
{
    Form() { ui.setupUi(&window); }

    QDialog window;
    Ui::YxHelpApp ui;
};

} // namespace

class TestForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void namedWidgetsHaveTheirClasses_data();
    void namedWidgetsHaveTheirClasses();
    void pagesComeInOrder();
    void fixedSizes_data();
    void fixedSizes();
    void paneLimits();
    void layouts_data();
    void layouts();
    void trees_data();
    void trees();
    void cursorsTellTheButtonsApart();
    void textsAndToolTips_data();
    void textsAndToolTips();
    void copyrightHasAPlaceForTheYear();
    void windowKeepsANameOfItsOwn();
    void buttonColors_data();
    void buttonColors();
    void fontsComeFromTheStyleSheet_data();
    void fontsComeFromTheStyleSheet();
    void checkBoxPicturesAreDrawnSmall();
    void picturesHavePixelsForHighScales_data();
    void picturesHavePixelsForHighScales();
};

void TestForm::initTestCase()
{
    Q_INIT_RESOURCE(YxHelp);
}

void TestForm::namedWidgetsHaveTheirClasses_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("names");
    QTest::newRow("frames") << QByteArray("QFrame")
                            << QStringLiteral(
                                   "frame_topOpt line fram_topTitle frame_wizard frame_contextFind "
                                   "frame_index frame_tbn line_2 line_3 line_4 frame_html "
                                   "frame_bottom");
    QTest::newRow("tool buttons") << QByteArray("QToolButton")
                                  << QStringLiteral("tbn_titleIcon tbn_back tbn_nextO tbn_flash tbn_online "
                                                    "tbn_setting tbn_min tbn_maxMin tbn_close tbn_context "
                                                    "tbn_index tbn_favorites tbn_result");
    QTest::newRow("buttons with states")
        << QByteArray("YxToolButton")
        << QStringLiteral(
               "tbn_home tbn_pre tbn_next tbn_favoritesQuick tbn_print tbn_contextFind tbn_Filter");
    QTest::newRow("labels") << QByteArray("QLabel")
                            << QStringLiteral("label_title label_proTtile lab_favoriteNumL lab_favoriteNum "
                                              "lab_resutlNumL lab_resutlNum label_copyright");
    QTest::newRow("trees") << QByteArray("QTreeWidget")
                           << QStringLiteral("treeWidget treeWidget_index treeWidget_favorites "
                                             "treeWidget_result");
    QTest::newRow("web views") << QByteArray("QWebEngineView")
                               << QStringLiteral("webEngineView webView_online");
    QTest::newRow("line edits") << QByteArray("QLineEdit")
                                << QStringLiteral("lineEdit_context lineEdit_index");
    QTest::newRow("others") << QByteArray("QWidget") << QStringLiteral("widget_Filter");
}

void TestForm::namedWidgetsHaveTheirClasses()
{
    QFETCH(QByteArray, type);
    QFETCH(QString, names);
    Form form;
    for (const QString& name : names.split(QLatin1Char(' '))) {
        const auto* widget = form.window.findChild<QWidget*>(name);
        QVERIFY2(widget, qPrintable(name));
        QCOMPARE(QByteArray(widget->metaObject()->className()), type);
    }
}

void TestForm::pagesComeInOrder()
{
    Form form;
    const auto pages = [](const QStackedWidget* stack) {
        QStringList names;
        for (int i = 0; i < stack->count(); ++i)
            names.append(stack->widget(i)->objectName());
        return names.join(QLatin1Char(' '));
    };
    QCOMPARE(pages(form.ui.stackedWidget), QStringLiteral("page_offline page_online"));
    QCOMPARE(pages(form.ui.stackedWidget_wizard),
             QStringLiteral("page_context page_index page_favorites page_result"));
    QCOMPARE(form.ui.stackedWidget->currentIndex(), 0);
    QCOMPARE(form.ui.stackedWidget_wizard->currentIndex(), 3);
    QCOMPARE(form.ui.splitter->widget(0), form.ui.frame_wizard);
    QCOMPARE(form.ui.splitter->widget(1), form.ui.frame_html);
}

void TestForm::fixedSizes_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("iconSize");
    QTest::newRow("title icon") << QStringLiteral("tbn_titleIcon") << QSize(20, 20) << 0;
    QTest::newRow("title bar")
        << QStringLiteral("tbn_back tbn_nextO tbn_flash tbn_online tbn_setting tbn_min tbn_maxMin tbn_close")
        << QSize(25, 25) << 15;
    QTest::newRow("tool row") << QStringLiteral("tbn_home tbn_pre tbn_next tbn_favoritesQuick tbn_print")
                              << QSize(35, 35) << 35;
    QTest::newRow("search line") << QStringLiteral("tbn_contextFind tbn_Filter") << QSize(22, 22) << 12;
}

void TestForm::fixedSizes()
{
    QFETCH(QString, names);
    QFETCH(QSize, size);
    QFETCH(int, iconSize);
    Form form;
    for (const QString& name : names.split(QLatin1Char(' '))) {
        const auto* button = form.window.findChild<QToolButton*>(name);
        QVERIFY2(button, qPrintable(name));
        QCOMPARE(button->minimumSize(), size);
        QCOMPARE(button->maximumSize(), size);
        QVERIFY(iconSize == 0 || button->iconSize() == QSize(iconSize, iconSize));
    }
}

void TestForm::paneLimits()
{
    Form form;
    QCOMPARE(form.window.size(), QSize(1188, 666));
    QCOMPARE(form.ui.frame_wizard->minimumWidth(), 250);
    QCOMPARE(form.ui.frame_wizard->maximumWidth(), 700);
    QCOMPARE(form.ui.frame_wizard->sizePolicy().horizontalStretch(), 0);
    QCOMPARE(form.ui.frame_html->sizePolicy().horizontalStretch(), 1);
    QCOMPARE(form.ui.frame_topOpt->maximumHeight(), 30);
    QCOMPARE(form.ui.fram_topTitle->minimumHeight(), 75);
    QCOMPARE(form.ui.frame_bottom->minimumHeight(), 27);
    QCOMPARE(form.ui.frame_bottom->property("Skin").toString(), QStringLiteral("frame_bottom"));
    // The banner and the footer keep their heights, the panes take the rest.
    QCOMPARE(form.ui.verticalLayout_2->stretch(0), 75);
    QCOMPARE(form.ui.verticalLayout_2->stretch(1), 532);
    QCOMPARE(form.ui.verticalLayout_2->stretch(2), 28);
}

void TestForm::layouts_data()
{
    QTest::addColumn<int>("spacing");
    QTest::addColumn<QMargins>("margins");
    const auto row = [](const char* name, int spacing, const QMargins& margins) {
        QTest::newRow(name) << spacing << margins;
    };
    row("verticalLayout", 1, {1, 1, 1, 1});
    row("horizontalLayout_7", 10, {0, 0, 10, 0});
    row("horizontalLayout_20", 6, {11, 11, 11, 11});
    row("horizontalLayout_21", 10, {0, 0, 0, 0});
    row("horizontalLayout_5", 0, {40, 0, 0, 0});
    row("verticalLayout_12", 0, {5, 10, 5, 0});
    row("horizontalLayout", 2, {4, 2, 4, 2});
    row("verticalLayout_8", 6, {0, 10, 0, 0});
    row("verticalLayout_11", 0, {0, 10, 0, 0});
    row("verticalLayout_15", 5, {0, 10, 0, 5});
    row("verticalLayout_Filter", 0, {10, 0, 10, 0});
    row("verticalLayout_5", 0, {0, 0, 2, 0});
    row("verticalLayout_7", 0, {1, 0, 1, 1});
    row("verticalLayout_6", 0, {1, 0, 1, 1});
}

void TestForm::layouts()
{
    QFETCH(int, spacing);
    QFETCH(QMargins, margins);
    Form form;
    const auto* layout = form.window.findChild<QLayout*>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(layout);
    QCOMPARE(layout->spacing(), spacing);
    QCOMPARE(layout->contentsMargins(), margins);
}

void TestForm::trees_data()
{
    QTest::addColumn<int>("focus");
    QTest::addColumn<int>("menu");
    const int usualFocus = QTreeWidget().focusPolicy();
    QTest::newRow("treeWidget") << int(Qt::NoFocus) << int(Qt::CustomContextMenu);
    QTest::newRow("treeWidget_index") << usualFocus << int(Qt::DefaultContextMenu);
    QTest::newRow("treeWidget_favorites") << usualFocus << int(Qt::CustomContextMenu);
    QTest::newRow("treeWidget_result") << usualFocus << int(Qt::NoContextMenu);
}

void TestForm::trees()
{
    QFETCH(int, focus);
    QFETCH(int, menu);
    Form form;
    const auto* tree = form.window.findChild<QTreeWidget*>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(tree);
    QCOMPARE(int(tree->focusPolicy()), focus);
    QCOMPARE(int(tree->contextMenuPolicy()), menu);
    QVERIFY(tree->isHeaderHidden());
    QCOMPARE(tree->columnCount(), 1);
    QCOMPARE(tree->headerItem()->text(0), QStringLiteral("1"));
    QCOMPARE(tree->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

void TestForm::cursorsTellTheButtonsApart()
{
    Form form;
    for (const QToolButton* button :
         {form.ui.tbn_back, form.ui.tbn_nextO, form.ui.tbn_flash, form.ui.tbn_online, form.ui.tbn_setting})
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    for (const QToolButton* button : {form.ui.tbn_min, form.ui.tbn_maxMin, form.ui.tbn_close})
        QCOMPARE(button->cursor().shape(), Qt::ArrowCursor);
}

void TestForm::textsAndToolTips_data()
{
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, const char* toolTip, const char* text) {
        QTest::newRow(name) << QString::fromLatin1(toolTip) << QString::fromLatin1(text);
    };
    row("tbn_back", "Back", "");
    row("tbn_pre", "Back", "");
    row("tbn_nextO", "Forward", "");
    row("tbn_next", "Forward", "");
    row("tbn_flash", "Reload", "");
    row("tbn_online", "Online", "");
    row("tbn_setting", "Setting", "");
    row("tbn_min", "Minimize", "");
    row("tbn_maxMin", "Maximize", "");
    row("tbn_close", "Close", "");
    row("tbn_home", "Home", "");
    row("tbn_favoritesQuick", "Favorites", "");
    row("tbn_print", "Print", "");
    row("tbn_contextFind", "Search", "");
    row("tbn_Filter", "Filter", "");
    row("tbn_titleIcon", "", "");
    row("tbn_context", "", "Contents");
    row("tbn_index", "", "Index");
    row("tbn_favorites", "", "Favorites");
    row("tbn_result", "", "Result");
    row("label_title", "", "YXCAD Help");
    row("lab_favoriteNumL", "", "Total Favorites:");
    row("lab_favoriteNum", "", "0");
    row("lab_resutlNumL", "", "Total Find:");
    row("lab_resutlNum", "", "0");
}

void TestForm::textsAndToolTips()
{
    QFETCH(QString, toolTip);
    QFETCH(QString, text);
    Form form;
    const auto* widget = form.window.findChild<QWidget*>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(widget);
    QCOMPARE(widget->property("text").toString(), text);
    QCOMPARE(widget->toolTip(), toolTip);
}

void TestForm::copyrightHasAPlaceForTheYear()
{
    Form form;
    QCOMPARE(form.ui.label_copyright->text().count(QStringLiteral("%1")), 1);
    QVERIFY(form.ui.label_copyright->text().startsWith(QString::fromUtf8("Copyright ©")));
    QCOMPARE(form.ui.tbn_flash->shortcut(), QKeySequence(Qt::Key_F5));
    QVERIFY(form.ui.tbn_contextFind->shortcut().isEmpty());
}

void TestForm::windowKeepsANameOfItsOwn()
{
    Form form;
    QCOMPARE(form.window.objectName(), QStringLiteral("YxHelpApp"));
    QDialog named;
    named.setObjectName(QStringLiteral("mine"));
    Ui::YxHelpApp ui;
    ui.setupUi(&named);
    QCOMPARE(named.objectName(), QStringLiteral("mine"));
}

void TestForm::buttonColors_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<QString>("state");
    QTest::addColumn<QColor>("color");
    const auto row = [](const char* names, const char* state, const QColor& color) {
        QTest::addRow("%s %s", names, state)
            << QString::fromLatin1(names) << QString::fromLatin1(state) << color;
    };
    const char titleBar[] = "tbn_nextO tbn_back tbn_flash tbn_online tbn_setting tbn_min tbn_maxMin";
    row(titleBar, "rest", QColor(247, 247, 247));
    row(titleBar, "hover", QColor(0xe5, 0xe5, 0xe5));
    row(titleBar, "pressed", QColor(0xcc, 0xcc, 0xcc));
    row("tbn_online tbn_setting", "selected", QColor(80, 204, 250));
    row("tbn_close", "rest", QColor(247, 247, 247));
    row("tbn_close", "hover", QColor(0xff, 0xe8, 0xe8));
    row("tbn_close", "pressed", QColor(0xff, 0x0d, 0x0d));
    row("tbn_contextFind tbn_Filter", "rest", Qt::white);
    row("tbn_contextFind tbn_Filter", "hover", QColor(0xe5, 0xe5, 0xe5));
    row("tbn_contextFind tbn_Filter", "pressed", QColor(0xcc, 0xcc, 0xcc));
    const char tabs[] = "tbn_context tbn_index tbn_favorites tbn_result";
    row(tabs, "rest", QColor(240, 240, 241));
    row(tabs, "hover", QColor(0xee, 0xf5, 0xff));
    row(tabs, "pressed", QColor(0xd8, 0xe3, 0xf3));
    row(tabs, "selected", Qt::white);
}

void TestForm::buttonColors()
{
    QFETCH(QString, names);
    QFETCH(QString, state);
    QFETCH(QColor, color);
    Form form;
    for (const QString& name : names.split(QLatin1Char(' '))) {
        auto* button = form.window.findChild<QToolButton*>(name);
        QVERIFY(button);
        // The mouse isn't moved: its place on a shared screen is nobody's.
        button->setAttribute(Qt::WA_UnderMouse,
                             state == QLatin1String("hover") || state == QLatin1String("pressed"));
        button->setDown(state == QLatin1String("pressed"));
        SetSelected(button, state == QLatin1String("selected"));
    }
    const QImage window = form.window.grab().toImage();
    for (const QString& name : names.split(QLatin1Char(' '))) {
        const auto* button = form.window.findChild<QToolButton*>(name);
        const QPoint corner = button->mapTo(&form.window, QPoint(2, 2));
        QVERIFY2(window.pixelColor(corner) == color,
                 qPrintable(name + QLatin1Char(' ') + window.pixelColor(corner).name()));
    }
}

void TestForm::fontsComeFromTheStyleSheet_data()
{
    QTest::addColumn<int>("pixels");
    QTest::newRow("label_title") << 12;
    QTest::newRow("label_proTtile") << 24;
    QTest::newRow("label_copyright") << 14;
    QTest::newRow("lab_favoriteNum") << 12;
    QTest::newRow("lab_resutlNumL") << 12;
    QTest::newRow("tbn_context") << 12;
    QTest::newRow("tbn_result") << 12;
}

void TestForm::fontsComeFromTheStyleSheet()
{
    QFETCH(int, pixels);
    Form form;
    auto* widget = form.window.findChild<QWidget*>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(widget);
    widget->ensurePolished();
    QCOMPARE(widget->font().pixelSize(), pixels);
    QCOMPARE(widget->font().family(), QStringLiteral("Microsoft YaHei"));
    QCOMPARE(widget->font().bold(), widget == form.ui.label_proTtile);
}

void TestForm::checkBoxPicturesAreDrawnSmall()
{
    Form form;
    QCheckBox box(form.ui.widget_Filter);
    box.ensurePolished();
    QCOMPARE(box.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &box), 17);
    QCOMPARE(box.style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, &box), 17);
}

void TestForm::picturesHavePixelsForHighScales_data()
{
    QTest::addColumn<int>("grid");
    const auto rows = [](int grid, const char* names) {
        for (const QByteArray& name : QByteArray(names).split(' '))
            QTest::newRow(name.constData()) << grid;
    };
    rows(15,
         "back next icon_flash_nor icon_online icon_setting_nor icon_min_nor icon_max_nor icon_restore_nor "
         "icon_close_nor@3x");
    rows(12, "icon_search@2x icon_filter_nor icon_filter_press");
    rows(35, "icon_home_normal icon_home_hover icon_home_clicked icon_collect_normal icon_collect_hover "
             "icon_collect_clicked_ icon_print_normal icon_print_hover icon_print_clicked icon_back_disable "
             "icon_back_normal icon_back__hover icon_back_clicked icon_progress_disable icon_progres_normal "
             "icon_progres_hover icon_progres_clicked");
    rows(10, "icon_expand icon_fold");
    rows(16, "icon_favorite");
    rows(17, "icon_check_normal icon_check_hover icon_check_clicked icon_radio_normal icon_radio_hover "
             "icon_radio_clicked");
    rows(64, "YxPrdIcon");
}

void TestForm::picturesHavePixelsForHighScales()
{
    QFETCH(int, grid);
    const QString path =
        QStringLiteral(":/Resource/CommonResources/%1.png").arg(QString::fromLatin1(QTest::currentDataTag()));
    const QImage image = QImageReader(path).read();
    QVERIFY2(!image.isNull(), qPrintable(path));
    QCOMPARE(image.size(), QSize(4 * grid, 4 * grid));
    // As buttons show it, at the scales 1 and 2: sharp or not, but never smaller than asked for.
    for (int scale : {1, 2})
        QCOMPARE(QIcon(path).pixmap(scale * grid).size(), QSize(scale * grid, scale * grid));
}

QTEST_MAIN(TestForm)
#include "tst_form.moc"
