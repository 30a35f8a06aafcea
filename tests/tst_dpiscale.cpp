#include "dpiscale.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpacerItem>
#include <QToolButton>
#include <QtTest>

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
        combo.setIconSize({15, 21});
        label.setStyleSheet(QStringLiteral("font-size:13px"));
        child.setFixedSize(55, 25);
        edit.setFixedSize(41, 23);
        for (QLayout* layout : std::initializer_list<QLayout*>{&box, &grid, &form})
            layout->setContentsMargins(1, 3, 5, 7);
        box.setSpacing(9);
        grid.setHorizontalSpacing(9);
        grid.setVerticalSpacing(11);
        grid.addItem(new QSpacerItem(0, 0), 0, 0);
        grid.setRowStretch(0, 3);
        grid.setRowMinimumHeight(0, 13);
        grid.setColumnStretch(0, 5);
        grid.setColumnMinimumWidth(0, 15);
        form.setHorizontalSpacing(9);
        form.setVerticalSpacing(11);
    }

    /// Everything a scaling function may change, one entry each.
    QStringList Shown() const
    {
        QStringList shown{widget.styleSheet(), button.styleSheet(), label.styleSheet()};
        const auto add = [&shown](const char* name, const QVector<int>& values) {
            QString text = QString::fromLatin1(name);
            for (int value : values)
                text += QStringLiteral(" %1").arg(value);
            shown.insert(shown.size() - 3, text);
        };
        const auto addSize = [&](const char* name, QSize size) { add(name, {size.width(), size.height()}); };
        const auto addLayout = [&](const char* name, const QMargins& m, int horizontal, int vertical) {
            add(name, {m.left(), m.top(), m.right(), m.bottom(), horizontal, vertical});
        };
        add("at", {widget.x(), widget.y()});
        addSize("size", widget.size());
        addSize("min", widget.minimumSize());
        addSize("max", widget.maximumSize());
        addSize("still none", parent.maximumSize());
        addSize("icon", button.iconSize());
        addSize("combo", combo.iconSize());
        addSize("child", child.size());
        addSize("edit", edit.size());
        addLayout("box", box.contentsMargins(), box.spacing(), box.spacing());
        addLayout("grid", grid.contentsMargins(), grid.horizontalSpacing(), grid.verticalSpacing());
        add("cells", {grid.rowStretch(0), grid.rowMinimumHeight(0), grid.columnStretch(0),
                      grid.columnMinimumWidth(0)});
        addLayout("form", form.contentsMargins(), form.horizontalSpacing(), form.verticalSpacing());
        addSize("spacer", spacer.sizeHint());
        add("policies", {spacer.sizePolicy().horizontalPolicy(), spacer.sizePolicy().verticalPolicy()});
        return shown;
    }

    QWidget widget;
    QToolButton button;
    QComboBox combo;
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
    const QStringList after = sample.Shown();
    QStringList changed;
    for (int i = 0; i < after.size(); ++i) {
        if (after.at(i) != before.at(i))
            changed.append(after.at(i));
    }
    return changed.join(QStringLiteral(", "));
}

} // namespace

Q_DECLARE_METATYPE(Step)

class TestDpiScale : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void initTakesTheScaleOfTheScreen();
    void changeOfDpi_data();
    void changeOfDpi();
    void functionsScaleTheirTargetOnly_data();
    void functionsScaleTheirTargetOnly();
    void factorOfTheCallerNeedsNoActiveScale();
    void stepIsTakenWithoutDesign();
    void roundingIsHalfAwayFromZero();
    void fontsOutsideTheRule();
    void iconFileFollowsTheScale_data();
    void iconFileFollowsTheScale();
};

void TestDpiScale::init()
{
    currentScale = 1.0;
    stepScale = 1.0;
    scaleActive = false;
    fromDesign = false;
}

void TestDpiScale::initTakesTheScaleOfTheScreen()
{
    QCOMPARE(ScaleValue(25), 25);
    InitScale();
    QCOMPARE(currentScale, 1.5); // 144, set before the application was made
    QCOMPARE(stepScale, 1.5);
    QVERIFY(scaleActive);
    QCOMPARE(ScaleValue(25), 38);
}

void TestDpiScale::changeOfDpi_data()
{
    QTest::addColumn<int>("dpi");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<double>("step");
    QTest::newRow("same: the ratio is the scale itself") << 144 << 1.5 << 7.0;
    QTest::newRow("up") << 192 << 4.0 / 3.0 << 4.0 / 3.0;
    QTest::newRow("down to design") << 96 << 2.0 / 3.0 << 2.0 / 3.0;
    QTest::newRow("one step") << 145 << 145.0 / 144.0 << 145.0 / 144.0;
}

void TestDpiScale::changeOfDpi()
{
    QFETCH(int, dpi);
    QFETCH(double, step);
    const bool changes = dpi != 144;
    currentScale = 1.5;
    stepScale = 7.0;
    QTEST(ScaleRatio(dpi), "ratio");
    QVERIFY(currentScale == 1.5 && stepScale == 7.0 && !scaleActive);
    QCOMPARE(UpdateScale(dpi), changes);
    QCOMPARE(stepScale, step);
    QCOMPARE(currentScale, dpi / 96.0);
    QCOMPARE(scaleActive, changes);
}

void TestDpiScale::functionsScaleTheirTargetOnly_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<QString>("changed");
    const auto row = [](const char* changed, Step step) {
        QTest::newRow(changed) << step << QString::fromLatin1(changed);
    };
    using S = Sample&;
    row("size 31 38, min 11 38, max 101 38", [](S s) { ScaleFixedHeight(&s.widget, 25); });
    row("size 38 33, min 38 25, max 38 203", [](S s) { ScaleFixedWidth(&s.widget, 25); });
    row("size 23 38, min 23 38, max 23 38", [](S s) { ScaleFixedSize(&s.widget, 25, 15); });
    row("size 31 41, min 11 41", [](S s) { ScaleMinimumHeight(&s.widget, 27); });
    row("size 41 33, min 41 25", [](S s) { ScaleMinimumWidth(&s.widget, 27); });
    row("max 101 53", [](S s) { ScaleMaximumHeight(&s.widget, 35); });
    row("max 53 203", [](S s) { ScaleMaximumWidth(&s.widget, 35); });
    row("size 31 38, min 11 38", [](S s) { ScaleMinimumHeight(&s.widget); });
    row("min 17 25", [](S s) { ScaleMinimumWidth(&s.widget); });
    row("max 101 305", [](S s) { ScaleMaximumHeight(&s.widget); });
    row("max 152 203", [](S s) { ScaleMaximumWidth(&s.widget); });
    row("size 31 38, min 17 38", [](S s) { ScaleMinimumSize(&s.widget); });
    row("max 152 305", [](S s) { ScaleMaximumSize(&s.widget), ScaleMaximumSize(&s.parent); });
    row("size 47 50, min 47 50, max 47 50", [](S s) { ScaleSize(&s.widget); });
    row("size 47 50", [](S s) { ScaleGeometry(&s.widget); });
    row("child 83 38", [](S s) { ScalePushButtons(&s.parent); });
    row("edit 62 35", [](S s) { ScaleLineEdits(&s.parent); });
    row("combo 22 31", [](S s) { ScaleIconSize(&s.combo); });
    row("icon 22 31", [](S s) { ScaleIconSize(&s.button); });
    row("qproperty-iconSize:31px 22px;", [](S s) { ScaleStyleIconSize(&s.button); });
    row("qproperty-iconSize:21px 15px;", [](S s) { SetStyleIconSize(&s.button, QSize(15, 21)); });
    row("spacer 26 29", [](S s) { ScaleSpacer(&s.spacer); });
    row("box 2 5 8 11 14 14", [](S s) { ScaleLayout(&s.box); });
    row("grid 2 5 8 11 14 17", [](S s) { ScaleGridLayout(&s.grid); });
    row("grid 2 5 8 11 14 17, cells 5 20 8 23", [](S s) { ScaleGridLayout(&s.grid, true); });
    row("form 2 5 8 11 14 17", [](S s) { ScaleFormLayout(&s.form); });
    row("border-radius:8px;", [](S s) { ScaleBorderRadius(&s.widget, 5); });
    row("font-size:20px;", [](S s) { ScaleFont(&s.label); });
    row("font-size:18px;", [](S s) { ScaleDefaultFont(&s.widget, 99); });
}

void TestDpiScale::functionsScaleTheirTargetOnly()
{
    QFETCH(Step, step);
    currentScale = 1.5;
    SetFromDesign(true);
    QCOMPARE(Changed(step), QString());
    scaleActive = true;
    stepScale = 7.0;
    QTEST(Changed(step), "changed");
}

void TestDpiScale::factorOfTheCallerNeedsNoActiveScale()
{
    using S = Sample&;
    currentScale = 7.0;
    const QString limits = Changed([](S s) {
        ScaleMinimumHeightBy(&s.widget, 1.5);
        ScaleMaximumHeightBy(&s.widget, 3.0);
        ScaleMinimumWidthBy(&s.widget, 2.0);
        ScaleMaximumWidthBy(&s.widget, 2.5);
    });
    QCOMPARE(limits, QStringLiteral("size 31 38, min 22 38, max 253 609"));
    const QString others = Changed([](S s) {
        ScaleMinimumSizeBy(&s.widget, 1.5);
        ScaleMaximumSizeBy(&s.widget, 2.0);
        ScaleIconSizeBy(&s.button, 1.5);
        ScaleSizeBy(&s.child, 1.5);
        ScaleLayoutBy(&s.box, 1.5);
        ScaleGridLayoutBy(&s.grid, 1.5);
        ScaleSpacerBy(&s.spacer, 1.5);
        ScaleBorderRadiusBy(&s.widget, 5, 1.5);
        ScaleFontBy(&s.label, 1.5);
    });
    QCOMPARE(others, QStringLiteral("size 31 38, min 17 38, max 202 406, icon 22 31, child 83 38, "
                                    "box 2 5 8 11 14 14, grid 2 5 8 11 14 17, spacer 26 29, "
                                    "border-radius:8px;, font-size:20px;"));
}

void TestDpiScale::stepIsTakenWithoutDesign()
{
    Sample sample;
    currentScale = 1.5;
    QVERIFY(UpdateScale(96));
    ScaleMaximumHeight(&sample.widget);
    ScaleIconSize(&sample.button);
    QCOMPARE(sample.widget.maximumHeight(), 135);
    QCOMPARE(sample.button.iconSize(), QSize(10, 14));
    QCOMPARE(ScaleValue(10), 10);
}

void TestDpiScale::roundingIsHalfAwayFromZero()
{
    const QVector<double> values{37.49, 37.5, 0.0, -1.2, -1.6, -1.5};
    QVector<int> rounded;
    for (double value : values)
        rounded.append(IdentityValue(value));
    QCOMPARE(rounded, QVector<int>({37, 38, 0, -1, -2, -1})); // a negative half goes up
}

void TestDpiScale::fontsOutsideTheRule()
{
    QWidget parent;
    QWidget widget(&parent);
    QFont font = parent.font();
    font.setPointSize(11);
    parent.setFont(font);
    currentScale = 1.25;
    scaleActive = true;
    ScaleFont(&widget); // in points: nothing to scale
    QCOMPARE(widget.styleSheet(), QString());
    KeepFontPointSize(&widget);
    font.setPointSize(15);
    parent.setFont(font);
    QCOMPARE(widget.font().pointSize(), 11);

    scaleActive = false;
    SetScaledFont(&widget, 14);
    QCOMPARE(widget.styleSheet(), QStringLiteral("font-size:18px;"));
}

void TestDpiScale::iconFileFollowsTheScale_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shown"); ///< File whose picture shows; empty: the button keeps what it has.
    const auto row = [](double scale, const char* path, const char* shown) {
        QTest::addRow("%s at %g", path, scale)
            << scale << QString::fromLatin1(path) << QString::fromLatin1(shown);
    };
    row(1.74, "a.png", "a.png");
    row(1.75, "a.png", "a_96.png");
    row(2.25, "a.png", "a_96.png");
    row(2.26, "a.png", "a_128.png");
    row(2.99, "a.png", "a_128.png");
    row(3.0, "a.png", "a_256.png");
    row(2.0, "a.ico", "a_96.ico");
    row(2.0, "a.png.ico", "a_96.png.ico");
    row(2.0, "a.ico.png", "a_96.png.ico");
    row(2.0, "a.PNG", "");
}

void TestDpiScale::iconFileFollowsTheScale()
{
    QFETCH(double, scale);
    QFETCH(QString, path);
    QFETCH(QString, shown);
    // The one file that is to be found; the button tells by its picture whether it was.
    const QTemporaryDir dir;
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(shown.isEmpty() || image.save(dir.filePath(shown), "PNG"));
    Sample sample;
    currentScale = scale;
    scaleActive = true;
    SetFromDesign(true);
    ScaleIconFile(&sample.button, dir.filePath(path));
    QCOMPARE(sample.button.icon().pixmap(8, 8).isNull(), shown.isEmpty());
    QCOMPARE(sample.button.iconSize().width(), shown.isEmpty() ? 15 : int(15 * scale));
}

int main(int argc, char** argv)
{
    qputenv("QT_FONT_DPI", "144");
    QApplication app(argc, argv);
    TestDpiScale test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_dpiscale.moc"
