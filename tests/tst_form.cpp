#include "ui_yxhelpapp.h"
#include "widgetproperty.h"

#include <QCheckBox>
#include <QDialog>
#include <QImageReader>
#include <QRegularExpression>
#include <QtTest>

namespace {

/// A window as the program has it right after the form was set up.
struct Form
{
    Form() { ui.setupUi(&window); }

    template <typename T>
    QVector<T*> Children(const QString& names) const
    {
        QVector<T*> children;
        for (const QString& name : names.split(QLatin1Char(' ')))
            children.append(window.findChild<T*>(name));
        return children;
    }

    QDialog window;
    Ui::YxHelpApp ui;
};

} // namespace

class TestForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(YxHelp); }
    void pagesComeInOrder();
    void panesShareTheRoom();
    void trees_data();
    void trees();
    void everyButtonSaysWhatItDoes();
    void copyrightHasAPlaceForTheYear();
    void windowKeepsANameOfItsOwn();
    void buttonColors_data();
    void buttonColors();
    void styleSheetReachesItsWidgets_data();
    void styleSheetReachesItsWidgets();
    void picturesOfTheStyleSheetsExist();
    void picturesHavePixelsForHighScales_data();
    void picturesHavePixelsForHighScales();
};

void TestForm::pagesComeInOrder()
{
    const Form form;
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

void TestForm::panesShareTheRoom()
{
    Form form;
    QCOMPARE(form.window.size(), QSize(1188, 666));
    form.window.setAttribute(Qt::WA_DontShowOnScreen);
    form.window.resize(2400, 1200);
    form.window.show();
    // The contents pane, the banner and the footer keep to themselves, the page takes the rest.
    QVERIFY(form.ui.frame_wizard->width() >= 250 && form.ui.frame_wizard->width() <= 700);
    QVERIFY(form.ui.frame_html->width() > 1600);
    QVERIFY(form.ui.frame_topOpt->height() <= 30);
    QVERIFY(form.ui.frame_html->height() > 900);
    for (const QToolButton* button : form.window.findChildren<QToolButton*>())
        QVERIFY2(button->iconSize().width() <= button->maximumWidth(), qPrintable(button->objectName()));
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
    const Form form;
    const auto* tree = form.window.findChild<QTreeWidget*>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(tree);
    QCOMPARE(int(tree->focusPolicy()), focus);
    QCOMPARE(int(tree->contextMenuPolicy()), menu);
    QVERIFY(tree->isHeaderHidden());
    QCOMPARE(tree->columnCount(), 1);
    QCOMPARE(tree->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

void TestForm::everyButtonSaysWhatItDoes()
{
    const Form form;
    for (const QToolButton* button : form.window.findChildren<QToolButton*>()) {
        const bool says = !button->text().isEmpty() || !button->toolTip().isEmpty();
        QVERIFY2(says || button == form.ui.tbn_titleIcon, qPrintable(button->objectName()));
    }
    QCOMPARE(form.ui.tbn_pre->toolTip(), form.ui.tbn_back->toolTip());
    QCOMPARE(form.ui.tbn_next->toolTip(), form.ui.tbn_nextO->toolTip());
}

void TestForm::copyrightHasAPlaceForTheYear()
{
    const Form form;
    QCOMPARE(form.ui.label_copyright->text().count(QStringLiteral("%1")), 1);
    QVERIFY(form.ui.label_copyright->text().startsWith(QString::fromUtf8("Copyright ©")));
    QCOMPARE(form.ui.tbn_flash->shortcut(), QKeySequence(Qt::Key_F5));
    QVERIFY(form.ui.tbn_contextFind->shortcut().isEmpty());
}

void TestForm::windowKeepsANameOfItsOwn()
{
    QCOMPARE(Form().window.objectName(), QStringLiteral("YxHelpApp"));
    QDialog named;
    named.setObjectName(QStringLiteral("mine"));
    Ui::YxHelpApp ui;
    ui.setupUi(&named);
    QCOMPARE(named.objectName(), QStringLiteral("mine"));
}

void TestForm::buttonColors_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<QVector<QColor>>("colors"); ///< At rest, hovered, pressed, selected; fewer if none.
    const auto row = [](const char* names, const QVector<QColor>& colors) {
        QTest::newRow(names) << QString::fromLatin1(names) << colors;
    };
    const QColor bar(247, 247, 247);
    const QColor hover(0xe5, 0xe5, 0xe5);
    const QColor pressed(0xcc, 0xcc, 0xcc);
    row("tbn_nextO tbn_back tbn_flash tbn_min tbn_maxMin", {bar, hover, pressed});
    row("tbn_online tbn_setting", {bar, hover, pressed, QColor(80, 204, 250)});
    row("tbn_close", {bar, QColor(0xff, 0xe8, 0xe8), QColor(0xff, 0x0d, 0x0d)});
    row("tbn_contextFind tbn_Filter", {Qt::white, hover, pressed});
    row("tbn_context tbn_index tbn_favorites tbn_result",
        {QColor(240, 240, 241), QColor(0xee, 0xf5, 0xff), QColor(0xd8, 0xe3, 0xf3), Qt::white});
}

void TestForm::buttonColors()
{
    QFETCH(QString, names);
    QFETCH(QVector<QColor>, colors);
    for (int state = 0; state < colors.size(); ++state) {
        Form form;
        const auto buttons = form.Children<QToolButton>(names);
        for (QToolButton* button : buttons) {
            // The mouse isn't moved: its place on a shared screen is nobody's.
            button->setAttribute(Qt::WA_UnderMouse, state == 1 || state == 2);
            button->setDown(state == 2);
            SetSelected(button, state == 3);
        }
        const QImage window = form.window.grab().toImage();
        for (const QToolButton* button : buttons)
            QCOMPARE(window.pixelColor(button->mapTo(&form.window, QPoint(2, 2))), colors.at(state));
    }
}

void TestForm::styleSheetReachesItsWidgets_data()
{
    QTest::addColumn<QString>("names");
    QTest::newRow("12") << QStringLiteral(
        "label_title lab_favoriteNum lab_resutlNumL tbn_context tbn_result");
    QTest::newRow("14") << QStringLiteral("label_copyright");
    QTest::newRow("24") << QStringLiteral("label_proTtile");
}

void TestForm::styleSheetReachesItsWidgets()
{
    QFETCH(QString, names);
    Form form;
    for (QWidget* widget : form.Children<QWidget>(names)) {
        widget->ensurePolished();
        QCOMPARE(widget->font().pixelSize(), QByteArray(QTest::currentDataTag()).toInt());
        QCOMPARE(widget->font().family(), QStringLiteral("Microsoft YaHei"));
        QCOMPARE(widget->font().bold(), widget == form.ui.label_proTtile);
    }
    QCheckBox box(form.ui.widget_Filter);
    box.ensurePolished();
    QCOMPARE(box.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &box), 17);
    QCOMPARE(box.style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, &box), 17);
}

void TestForm::picturesOfTheStyleSheetsExist()
{
    const Form form;
    const QRegularExpression url(QStringLiteral("url\\(\"?([^)\"]+)\"?\\)"));
    int count = 0;
    QString sheets = form.window.styleSheet();
    for (const QWidget* widget : form.window.findChildren<QWidget*>())
        sheets += widget->styleSheet();
    for (auto match = url.globalMatch(sheets); match.hasNext(); ++count) {
        const QString path = match.next().captured(1);
        QVERIFY2(QImageReader(path).canRead(), qPrintable(path));
    }
    QVERIFY(count > 0);
}

void TestForm::picturesHavePixelsForHighScales_data()
{
    QTest::addColumn<QString>("names");
    QTest::newRow("10") << QStringLiteral("icon_expand icon_fold");
    QTest::newRow("12") << QStringLiteral("icon_search@2x icon_filter_nor icon_filter_press");
    QTest::newRow("15") << QStringLiteral(
        "back next icon_flash_nor icon_online icon_setting_nor icon_min_nor icon_max_nor icon_restore_nor "
        "icon_close_nor@3x");
    QTest::newRow("16") << QStringLiteral("icon_favorite");
    QTest::newRow("17") << QStringLiteral(
        "icon_check_normal icon_check_hover icon_check_clicked icon_radio_normal icon_radio_hover "
        "icon_radio_clicked");
    QTest::newRow("35") << QStringLiteral(
        "icon_home_normal icon_home_hover icon_home_clicked icon_collect_normal icon_collect_hover "
        "icon_collect_clicked_ icon_print_normal icon_print_hover icon_print_clicked icon_back_disable "
        "icon_back_normal icon_back__hover icon_back_clicked icon_progress_disable icon_progres_normal "
        "icon_progres_hover icon_progres_clicked");
    QTest::newRow("64") << QStringLiteral("YxPrdIcon");
}

void TestForm::picturesHavePixelsForHighScales()
{
    QFETCH(QString, names);
    const int grid = QByteArray(QTest::currentDataTag()).toInt();
    for (const QString& name : names.split(QLatin1Char(' '))) {
        const QString path = QStringLiteral(":/Resource/CommonResources/%1.png").arg(name);
        QVERIFY2(QImageReader(path).read().size() == QSize(4 * grid, 4 * grid), qPrintable(path));
        // As buttons show it: sharp or not, but never smaller than asked for.
        QVERIFY2(QIcon(path).pixmap(2 * grid).size() == QSize(2 * grid, 2 * grid), qPrintable(path));
    }
}

QTEST_MAIN(TestForm)
#include "tst_form.moc"
