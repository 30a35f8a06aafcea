#include "dpiscale.h"
#include "testtable.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpacerItem>
#include <QToolButton>

namespace {

/// One of everything that can be scaled, with sizes that show which way they are rounded.
struct Sample
{
    Sample()
    {
        widget.setMinimumSize(11, 25);
        widget.setMaximumSize(101, 203);
        widget.setGeometry(7, 9, 31, 33);
        button.setIconSize({15, 21});
        label.setStyleSheet("font-size:13px"_s);
        child.setFixedSize(55, 25);
        edit.setFixedSize(41, 23);
        for (QLayout* layout : std::initializer_list<QLayout*>{&box, &grid, &form})
            layout->setContentsMargins(1, 3, 5, 7);
        box.setSpacing(9);
        grid.setHorizontalSpacing(9);
        grid.setVerticalSpacing(11);
        grid.addItem(new QSpacerItem(0, 0), 0, 0);
        grid.setRowStretch(0, 3);
        grid.setColumnMinimumWidth(0, 15);
        form.setHorizontalSpacing(9);
        form.setVerticalSpacing(11);
    }

    /// Everything a scaling function may change, one entry each.
    QStringList Shown() const
    {
        const auto text = [](QString name, std::initializer_list<int> values) {
            for (int value : values)
                name += QLatin1Char(' ') + QString::number(value);
            return name;
        };
        const auto size = [&](const QString& name, QSize s) { return text(name, {s.width(), s.height()}); };
        const auto layout = [&](const QString& name, const QLayout& l, int horizontal, int vertical) {
            const QMargins m = l.contentsMargins();
            return text(name, {m.left(), m.top(), m.right(), m.bottom(), horizontal, vertical});
        };
        return {text("at"_s, {widget.x(), widget.y()}),
                size("size"_s, widget.size()),
                size("min"_s, widget.minimumSize()),
                size("max"_s, widget.maximumSize()),
                size("still none"_s, parent.maximumSize()),
                size("icon"_s, button.iconSize()),
                size("child"_s, child.size()),
                size("edit"_s, edit.size()),
                layout("box"_s, box, box.spacing(), box.spacing()),
                layout("grid"_s, grid, grid.horizontalSpacing(), grid.verticalSpacing()),
                text("cells"_s, {grid.rowStretch(0), grid.columnMinimumWidth(0)}),
                layout("form"_s, form, form.horizontalSpacing(), form.verticalSpacing()),
                size("spacer"_s, spacer.sizeHint()),
                text("policies"_s, {spacer.sizePolicy().horizontalPolicy()}),
                widget.styleSheet(),
                button.styleSheet(),
                label.styleSheet()};
    }

    QWidget widget;
    QToolButton button;
    QLabel label;
    QWidget parent;
    QWidget between{&parent};
    QPushButton child{&between};
    QLineEdit edit{&between};
    QHBoxLayout box;
    QGridLayout grid;
    QFormLayout form;
    QSpacerItem spacer{17, 19, QSizePolicy::Expanding, QSizePolicy::Fixed};
};

using Step = void (*)(Sample&);

/// The entries that `step` changes in a fresh sample.
QString Changed(Step step)
{
    Sample sample;
    const QStringList before = sample.Shown();
    step(sample);
    QStringList changed = sample.Shown();
    for (int i = before.size() - 1; i >= 0; --i) {
        if (changed.at(i) == before.at(i))
            changed.removeAt(i);
    }
    return changed.join(", "_s);
}

} // namespace

class TestDpiScale : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void changeOfDpi();
    void functionsScaleTheirTargetOnly();
    void factorOfTheCallerNeedsNoActiveScale();
    void stepIsTakenWithoutDesign();
    void negativeHalfIsRoundedUp();
    void fontsInPointsAreLeftAlone();
    void iconFileFollowsTheScale();
};

void TestDpiScale::init()
{
    currentScale = stepScale = 1.0;
    scaleActive = fromDesign = false;
}

void TestDpiScale::changeOfDpi()
{
    QCOMPARE(ScaleValue(25), 25);
    InitScale();
    QVERIFY(currentScale == 1.5 && stepScale == 1.5); // 144, set before the application was made
    QCOMPARE(ScaleValue(25), 38);
    // At the present scale the ratio is the scale itself.
    for (const auto& [dpi, ratio] :
         QMap<int, double>{{144, 1.5}, {192, 4.0 / 3.0}, {96, 2.0 / 3.0}}.toStdMap()) {
        currentScale = 1.5;
        stepScale = 7.0;
        scaleActive = false;
        QCOMPARE(ScaleRatio(dpi), ratio);
        QVERIFY(currentScale == 1.5 && stepScale == 7.0 && !scaleActive);
        QCOMPARE(UpdateScale(dpi), dpi != 144);
        QCOMPARE(stepScale, dpi == 144 ? 7.0 : ratio);
        QCOMPARE(currentScale, dpi / 96.0);
        QCOMPARE(scaleActive, dpi != 144);
    }
}

void TestDpiScale::functionsScaleTheirTargetOnly()
{
    using S = Sample&;
    currentScale = 1.5;
    SetFromDesign(true);
    for (const auto& [expected, step] : std::initializer_list<std::pair<const char*, Step>>{
             {"size 31 38, min 11 38, max 101 38", [](S s) { ScaleFixedHeight(&s.widget, 25); }},
             {"size 23 38, min 23 38, max 23 38", [](S s) { ScaleFixedSize(&s.widget, 25, 15); }},
             {"size 31 41, min 11 41", [](S s) { ScaleMinimumHeight(&s.widget, 27); }},
             {"max 53 203", [](S s) { ScaleMaximumWidth(&s.widget, 35); }},
             {"size 31 38, min 17 38", [](S s) { ScaleMinimumSize(&s.widget); }},
             {"max 152 305", [](S s) { ScaleMaximumSize(&s.widget), ScaleMaximumSize(&s.parent); }},
             {"size 47 50, min 47 50, max 47 50", [](S s) { ScaleSize(&s.widget); }},
             {"size 47 50", [](S s) { ScaleGeometry(&s.widget); }},
             {"child 83 38", [](S s) { ScalePushButtons(&s.parent); }},
             {"edit 62 35", [](S s) { ScaleLineEdits(&s.parent); }},
             {"icon 22 31", [](S s) { ScaleIconSize(&s.button); }},
             {"qproperty-iconSize:31px 22px;", [](S s) { ScaleStyleIconSize(&s.button); }},
             {"spacer 26 29", [](S s) { ScaleSpacer(&s.spacer); }},
             {"box 2 5 8 11 14 14", [](S s) { ScaleLayout(&s.box); }},
             {"grid 2 5 8 11 14 17, cells 5 23", [](S s) { ScaleGridLayout(&s.grid, true); }},
             {"form 2 5 8 11 14 17", [](S s) { ScaleFormLayout(&s.form); }},
             {"border-radius:8px;", [](S s) { ScaleBorderRadius(&s.widget, 5); }},
             {"font-size:20px;", [](S s) { ScaleFont(&s.label); }},
             {"font-size:18px;", [](S s) { ScaleDefaultFont(&s.widget, 99); }}}) {
        scaleActive = false;
        QCOMPARE(Changed(step), QString());
        scaleActive = true;
        stepScale = 7.0;
        QCOMPARE(Changed(step), QString::fromLatin1(expected));
    }
}

void TestDpiScale::factorOfTheCallerNeedsNoActiveScale()
{
    currentScale = 7.0;
    const QString limits = Changed([](Sample& s) {
        ScaleMinimumHeightBy(&s.widget, 1.5);
        ScaleMaximumHeightBy(&s.widget, 3.0);
        ScaleMinimumWidthBy(&s.widget, 2.0);
        ScaleMaximumWidthBy(&s.widget, 2.5);
        ScaleIconSizeBy(&s.button, 1.5);
        ScaleSizeBy(&s.child, 1.5);
        ScaleGridLayoutBy(&s.grid, 1.5);
        ScaleFontBy(&s.label, 1.5);
    });
    QCOMPARE(limits, "size 31 38, min 22 38, max 253 609, icon 22 31, child 83 38, grid 2 5 8 11 14 17, "
                     "font-size:20px;"_s);
}

void TestDpiScale::stepIsTakenWithoutDesign()
{
    currentScale = 1.5;
    QVERIFY(UpdateScale(96));
    QCOMPARE(Changed([](Sample& s) { ScaleMaximumHeight(&s.widget), ScaleIconSize(&s.button); }),
             "max 101 135, icon 10 14"_s);
    QCOMPARE(ScaleValue(10), 10);
}

void TestDpiScale::negativeHalfIsRoundedUp()
{
    QCOMPARE(IdentityValue(37.5), 38);
    QCOMPARE(IdentityValue(-1.5), -1);
}

void TestDpiScale::fontsInPointsAreLeftAlone()
{
    currentScale = 1.25;
    scaleActive = true;
    QCOMPARE(Changed([](Sample& s) { ScaleFont(&s.widget); }), QString());
    scaleActive = false;
    QCOMPARE(Changed([](Sample& s) { SetScaledFont(&s.widget, 14); }), "font-size:18px;"_s);
}

void TestDpiScale::iconFileFollowsTheScale()
{
    // Where no picture is found, the button keeps what it has.
    for (const char* line : {"1.74|a.png|a.png", "1.75|a.png|a_96.png", "2.25|a.png|a_96.png",
                             "2.26|a.png|a_128.png", "2.99|a.png|a_128.png", "3.0|a.png|a_256.png",
                             "2.0|a.ico|a_96.ico", "2.0|a.png.ico|a_96.png.ico", "2.0|a.PNG|"}) {
        const QStringList cells = Cells(line);
        const bool found = !cells[2].isEmpty();
        const QTemporaryDir dir;
        QImage image(64, 64, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(!found || image.save(dir.filePath(cells[2]), "PNG"));
        Sample sample;
        currentScale = cells[0].toDouble();
        scaleActive = true;
        SetFromDesign(true);
        ScaleIconFile(&sample.button, dir.filePath(cells[1]));
        QVERIFY2(sample.button.icon().pixmap(8, 8).isNull() != found, line);
        QCOMPARE(sample.button.iconSize().width(), found ? int(15 * currentScale) : 15);
    }
}

int main(int argc, char** argv)
{
    qputenv("QT_FONT_DPI", "144");
    QApplication app(argc, argv);
    TestDpiScale test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_dpiscale.moc"
