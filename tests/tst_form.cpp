#include "testtable.h"
#include "ui_yxhelpapp.h"
#include "widgetproperty.h"

#include <QDialog>
#include <QImageReader>

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
    void initTestCase() { Q_INIT_RESOURCE(YxHelp); }
    void panesShareTheRoom();
    void everyButtonSaysWhatItDoes();
    void buttonsShowTheirState();
    void picturesOfTheStyleSheetsExist();
    void picturesHavePixelsForHighScales();
};

void TestForm::panesShareTheRoom()
{
    Form form;
    form.window.setAttribute(Qt::WA_DontShowOnScreen);
    form.window.resize(2400, 1200);
    form.window.show();
    // The contents pane, the banner and the footer keep to themselves, the page takes the rest.
    QVERIFY(form.ui.frame_wizard->width() >= 250 && form.ui.frame_wizard->width() <= 700);
    QVERIFY(form.ui.frame_html->width() > 1600 && form.ui.frame_html->height() > 900);
    QVERIFY(form.ui.frame_topOpt->height() <= 30);
}

void TestForm::everyButtonSaysWhatItDoes()
{
    const Form form;
    for (const QToolButton* button : form.window.findChildren<QToolButton*>()) {
        const bool says = !button->text().isEmpty() || !button->toolTip().isEmpty();
        QVERIFY2(says || button == form.ui.tbn_titleIcon, qPrintable(button->objectName()));
        QVERIFY2(button->iconSize().width() <= button->maximumWidth(), qPrintable(button->objectName()));
    }
    QCOMPARE(form.ui.label_copyright->text().count("%1"_s), 1);
}

void TestForm::buttonsShowTheirState()
{
    for (const char* name : {"tbn_setting", "tbn_context"}) {
        QSet<QString> colors;
        for (const QString& state : {"rest"_s, "hovered"_s, "pressed"_s, "selected"_s}) {
            Form form;
            auto* button = form.window.findChild<QToolButton*>(QLatin1String(name));
            // The mouse isn't moved: its place on a shared screen is nobody's.
            button->setAttribute(Qt::WA_UnderMouse, state == "hovered"_s || state == "pressed"_s);
            button->setDown(state == "pressed"_s);
            SetSelected(button, state == "selected"_s);
            const QImage window = form.window.grab().toImage();
            colors.insert(window.pixelColor(button->mapTo(&form.window, QPoint(2, 2))).name());
        }
        QVERIFY2(colors.size() == 4, name);
    }
}

void TestForm::picturesOfTheStyleSheetsExist()
{
    const Form form;
    const QRegularExpression url("url\\(\"?([^)\"]+)\"?\\)"_s);
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

void TestForm::picturesHavePixelsForHighScales()
{
    for (const auto& [grid, names] : std::initializer_list<std::pair<int, const char*>>{
             {10, "icon_expand icon_fold"},
             {12, "icon_search@2x icon_filter_nor icon_filter_press"},
             {15, "back next icon_flash_nor icon_online icon_setting_nor icon_min_nor icon_max_nor "
                  "icon_restore_nor icon_close_nor@3x"},
             {16, "icon_favorite"},
             {17, "icon_check_normal icon_check_clicked icon_radio_normal icon_radio_clicked"},
             {35, "icon_home_normal icon_collect_normal icon_collect_clicked_ icon_print_normal "
                  "icon_back_disable icon_back_normal icon_progress_disable icon_progres_normal"},
             {64, "YxPrdIcon"}}) {
        for (const QString& name : QString::fromLatin1(names).split(QLatin1Char(' '))) {
            const QString path = ":/Resource/CommonResources/%1.png"_s.arg(name);
            QVERIFY2(QImageReader(path).read().size() == QSize(4 * grid, 4 * grid), qPrintable(path));
        }
    }
}

QTEST_MAIN(TestForm)
#include "tst_form.moc"
