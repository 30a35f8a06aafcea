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

#include <functional>

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

QString Text(const QSize& size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

QString Limits(const QWidget& widget)
{
    return Text(widget.minimumSize()) + QStringLiteral(" ") + Text(widget.maximumSize());
}

QString Margins(const QLayout& layout)
{
    const QMargins margins = layout.contentsMargins();
    return QStringLiteral("%1 %2 %3 %4")
        .arg(margins.left())
        .arg(margins.top())
        .arg(margins.right())
        .arg(margins.bottom());
}

template <typename Layout>
QString MarginsAndSpacings(const Layout& layout)
{
    return Margins(layout) +
           QStringLiteral(", %1 %2").arg(layout.horizontalSpacing()).arg(layout.verticalSpacing());
}

QString Cells(const QGridLayout& grid)
{
    return QStringLiteral(", %1 %2 %3 %4")
        .arg(grid.rowStretch(0))
        .arg(grid.rowMinimumHeight(0))
        .arg(grid.columnStretch(0))
        .arg(grid.columnMinimumWidth(0));
}

/// What a function does to the sample, and how the result reads.
struct Case
{
    const char* name;
    std::function<void(Sample&)> run;
    std::function<QString(const Sample&)> read;
    const char* before;
    const char* at150; ///< After a scale of 1.5.
};

QString WidgetLimits(const Sample& s)
{
    return Limits(s.widget);
}

QString WidgetSheet(const Sample& s)
{
    return s.widget.styleSheet();
}

QString ButtonSheet(const Sample& s)
{
    return s.button.styleSheet();
}

QString GridText(const Sample& s)
{
    return MarginsAndSpacings(s.grid) + Cells(s.grid);
}

const char kLimits[] = "11x25 101x203";
const char kGrid[] = "1 3 5 7, 9 11, 3 13 5 15";

const std::vector<Case> kGuarded = {
    {"fixed height", [](Sample& s) { ScaleFixedHeight(&s.widget, 25); }, WidgetLimits, kLimits,
     "11x38 101x38"},
    {"fixed width", [](Sample& s) { ScaleFixedWidth(&s.widget, 25); }, WidgetLimits, kLimits, "38x25 38x203"},
    {"fixed size", [](Sample& s) { ScaleFixedSize(&s.widget, 25, 15); }, WidgetLimits, kLimits,
     "23x38 23x38"},
    {"given minimum height", [](Sample& s) { ScaleMinimumHeight(&s.widget, 27); }, WidgetLimits, kLimits,
     "11x41 101x203"},
    {"given minimum width", [](Sample& s) { ScaleMinimumWidth(&s.widget, 27); }, WidgetLimits, kLimits,
     "41x25 101x203"},
    {"given maximum height", [](Sample& s) { ScaleMaximumHeight(&s.widget, 27); }, WidgetLimits, kLimits,
     "11x25 101x41"},
    {"given maximum width", [](Sample& s) { ScaleMaximumWidth(&s.widget, 27); }, WidgetLimits, kLimits,
     "11x25 41x203"},
    {"minimum height", [](Sample& s) { ScaleMinimumHeight(&s.widget); }, WidgetLimits, kLimits,
     "11x38 101x203"},
    {"minimum width", [](Sample& s) { ScaleMinimumWidth(&s.widget); }, WidgetLimits, kLimits,
     "17x25 101x203"},
    {"maximum height", [](Sample& s) { ScaleMaximumHeight(&s.widget); }, WidgetLimits, kLimits,
     "11x25 101x305"},
    {"maximum width", [](Sample& s) { ScaleMaximumWidth(&s.widget); }, WidgetLimits, kLimits,
     "11x25 152x203"},
    {"both minimums", [](Sample& s) { ScaleMinimumSize(&s.widget); }, WidgetLimits, kLimits, "17x38 101x203"},
    {"both maximums", [](Sample& s) { ScaleMaximumSize(&s.widget); }, WidgetLimits, kLimits, "11x25 152x305"},
    {"no maximum stays none", [](Sample& s) { ScaleMaximumSize(&s.parent); },
     [](const Sample& s) -> QString { return Limits(s.parent); }, "0x0 16777215x16777215",
     "0x0 16777215x16777215"},
    {"size", [](Sample& s) { ScaleSize(&s.widget); }, WidgetLimits, kLimits, "47x50 47x50"},
    {"push buttons", [](Sample& s) { ScalePushButtons(&s.parent); },
     [](const Sample& s) -> QString { return Text(s.child.size()) + Text(s.edit.size()); }, "55x2541x23",
     "83x3841x23"},
    {"line edits", [](Sample& s) { ScaleLineEdits(&s.parent); },
     [](const Sample& s) -> QString { return Text(s.child.size()) + Text(s.edit.size()); }, "55x2541x23",
     "55x2562x35"},
    {"geometry", [](Sample& s) { ScaleGeometry(&s.widget); },
     [](const Sample& s) -> QString {
         return QStringLiteral("%1,%2 %3").arg(s.widget.x()).arg(s.widget.y()).arg(Text(s.widget.size()));
     },
     "7,9 31x33", "7,9 47x50"},
    {"combo icon", [](Sample& s) { ScaleIconSize(&s.combo); },
     [](const Sample& s) -> QString { return Text(s.combo.iconSize()); }, "15x21", "22x31"},
    {"button icon", [](Sample& s) { ScaleIconSize(&s.button); },
     [](const Sample& s) -> QString { return Text(s.button.iconSize()); }, "15x21", "22x31"},
    {"style icon, height first", [](Sample& s) { ScaleStyleIconSize(&s.button); }, ButtonSheet, "",
     "qproperty-iconSize:31px 22px;"},
    {"given style icon",
     [](Sample& s) {
         SetStyleIconSize(&s.button, {15, 21});
     },
     ButtonSheet, "", "qproperty-iconSize:21px 15px;"},
    {"spacer keeps its policies", [](Sample& s) { ScaleSpacer(&s.spacer); },
     [](const Sample& s) -> QString {
         return Text(s.spacer.sizeHint()) + QStringLiteral(" %1 %2")
                                                .arg(s.spacer.sizePolicy().horizontalPolicy())
                                                .arg(s.spacer.sizePolicy().verticalPolicy());
     },
     "17x19 7 0", "26x29 7 0"},
    {"layout", [](Sample& s) { ScaleLayout(&s.box); },
     [](const Sample& s) -> QString { return Margins(s.box) + QStringLiteral(", %1").arg(s.box.spacing()); },
     "1 3 5 7, 9", "2 5 8 11, 14"},
    {"grid", [](Sample& s) { ScaleGridLayout(&s.grid); }, GridText, kGrid, "2 5 8 11, 14 17, 3 13 5 15"},
    {"grid without cells", [](Sample& s) { ScaleGridLayout(&s.grid, false); }, GridText, kGrid,
     "2 5 8 11, 14 17, 3 13 5 15"},
    {"grid with cells", [](Sample& s) { ScaleGridLayout(&s.grid, true); }, GridText, kGrid,
     "2 5 8 11, 14 17, 5 20 8 23"},
    {"form", [](Sample& s) { ScaleFormLayout(&s.form); },
     [](const Sample& s) -> QString { return MarginsAndSpacings(s.form); }, "1 3 5 7, 9 11",
     "2 5 8 11, 14 17"},
    {"border radius", [](Sample& s) { ScaleBorderRadius(&s.widget, 5); }, WidgetSheet, "",
     "border-radius:8px;"},
    {"font", [](Sample& s) { ScaleFont(&s.label); },
     [](const Sample& s) -> QString { return s.label.styleSheet(); }, "font-size:13px", "font-size:20px;"},
    {"font in points", [](Sample& s) { ScaleFont(&s.widget); }, WidgetSheet, "", ""},
    {"default font", [](Sample& s) { ScaleDefaultFont(&s.widget, 99); }, WidgetSheet, "", "font-size:18px;"},
};

const std::vector<Case> kByFactor = {
    {"font", [](Sample& s) { ScaleFontBy(&s.label, 1.5); },
     [](const Sample& s) -> QString { return s.label.styleSheet(); }, "", "font-size:20px;"},
    {"size", [](Sample& s) { ScaleSizeBy(&s.widget, 1.5); }, WidgetLimits, "", "47x50 47x50"},
    {"minimum height", [](Sample& s) { ScaleMinimumHeightBy(&s.widget, 1.5); }, WidgetLimits, "",
     "11x38 101x203"},
    {"maximum height", [](Sample& s) { ScaleMaximumHeightBy(&s.widget, 1.5); }, WidgetLimits, "",
     "11x25 101x305"},
    {"minimum width", [](Sample& s) { ScaleMinimumWidthBy(&s.widget, 1.5); }, WidgetLimits, "",
     "17x25 101x203"},
    {"maximum width", [](Sample& s) { ScaleMaximumWidthBy(&s.widget, 1.5); }, WidgetLimits, "",
     "11x25 152x203"},
    {"both minimums", [](Sample& s) { ScaleMinimumSizeBy(&s.widget, 1.5); }, WidgetLimits, "",
     "17x38 101x203"},
    {"both maximums", [](Sample& s) { ScaleMaximumSizeBy(&s.widget, 1.5); }, WidgetLimits, "",
     "11x25 152x305"},
    {"spacer", [](Sample& s) { ScaleSpacerBy(&s.spacer, 1.5); },
     [](const Sample& s) -> QString { return Text(s.spacer.sizeHint()); }, "", "26x29"},
    {"icon", [](Sample& s) { ScaleIconSizeBy(&s.button, 1.5); },
     [](const Sample& s) -> QString { return Text(s.button.iconSize()); }, "", "22x31"},
    {"layout", [](Sample& s) { ScaleLayoutBy(&s.box, 1.5); },
     [](const Sample& s) -> QString { return Margins(s.box) + QStringLiteral(", %1").arg(s.box.spacing()); },
     "", "2 5 8 11, 14"},
    {"grid", [](Sample& s) { ScaleGridLayoutBy(&s.grid, 1.5); }, GridText, "", "2 5 8 11, 14 17, 3 13 5 15"},
    {"border radius", [](Sample& s) { ScaleBorderRadiusBy(&s.widget, 5, 1.5); }, WidgetSheet, "",
     "border-radius:8px;"},
};

QString Run(const Case& entry)
{
    Sample sample;
    entry.run(sample);
    return entry.read(sample);
}

void AddRows(const std::vector<Case>& cases)
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < cases.size(); ++i)
        QTest::newRow(cases[i].name) << static_cast<int>(i);
}

} // namespace

class TestDpiScale : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void initTakesTheScaleOfTheScreen();
    void updateTellsWhetherTheScaleChanged_data();
    void updateTellsWhetherTheScaleChanged();
    void ratioChangesNothing_data();
    void ratioChangesNothing();
    void guardedFunctions_data() { AddRows(kGuarded); }
    void guardedFunctions();
    void guardedFunctionsTakeTheStepWithoutDesign();
    void factorFunctions_data() { AddRows(kByFactor); }
    void factorFunctions();
    void roundingIsHalfAwayFromZero_data();
    void roundingIsHalfAwayFromZero();
    void explicitFontNeedsNoActiveScale();
    void pointSizeIsKept();
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
    InitScale();
    QCOMPARE(ScreenScale(), 1.5); // 144, set before the application was made
    QCOMPARE(currentScale, 1.5);
    QCOMPARE(stepScale, 1.5);
    QVERIFY(scaleActive);
    QCOMPARE(ScaleValue(25), 38);
}

void TestDpiScale::updateTellsWhetherTheScaleChanged_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("dpi");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<double>("step");
    QTest::newRow("same") << 1.5 << 144 << false << 7.0;
    QTest::newRow("up") << 1.0 << 144 << true << 1.5;
    QTest::newRow("down to design") << 1.5 << 96 << true << 2.0 / 3.0;
    QTest::newRow("one step") << 1.5 << 145 << true << 145.0 / 144.0;
}

void TestDpiScale::updateTellsWhetherTheScaleChanged()
{
    QFETCH(double, scale);
    QFETCH(int, dpi);
    QFETCH(bool, changed);
    QFETCH(double, step);
    currentScale = scale;
    stepScale = 7.0;
    QCOMPARE(UpdateScale(dpi), changed);
    QCOMPARE(stepScale, step);
    QCOMPARE(currentScale, dpi / 96.0);
    QCOMPARE(scaleActive, changed);
}

void TestDpiScale::ratioChangesNothing_data()
{
    QTest::addColumn<int>("dpi");
    QTest::addColumn<double>("ratio");
    QTest::newRow("same gives the scale itself") << 144 << 1.5;
    QTest::newRow("up") << 192 << 4.0 / 3.0;
    QTest::newRow("down") << 96 << 2.0 / 3.0;
}

void TestDpiScale::ratioChangesNothing()
{
    QFETCH(int, dpi);
    QFETCH(double, ratio);
    currentScale = 1.5;
    QCOMPARE(ScaleRatio(dpi), ratio);
    QCOMPARE(currentScale, 1.5);
    QCOMPARE(stepScale, 1.0);
    QVERIFY(!scaleActive);
}

void TestDpiScale::guardedFunctions()
{
    QFETCH(int, index);
    const Case& entry = kGuarded[static_cast<size_t>(index)];
    currentScale = 1.5;
    SetFromDesign(true);
    QCOMPARE(Run(entry), QLatin1String(entry.before));
    scaleActive = true;
    stepScale = 7.0;
    QCOMPARE(Run(entry), QLatin1String(entry.at150));
}

void TestDpiScale::guardedFunctionsTakeTheStepWithoutDesign()
{
    QWidget widget;
    QToolButton button;
    widget.setMinimumHeight(38);
    button.setIconSize({22, 22});
    currentScale = 1.5;
    QVERIFY(UpdateScale(96));
    SetFromDesign(false);
    ScaleMinimumHeight(&widget);
    ScaleIconSize(&button);
    QCOMPARE(widget.minimumHeight(), 25);
    QCOMPARE(button.iconSize(), QSize(14, 14));
    QCOMPARE(ScaleValue(10), 10);
}

void TestDpiScale::factorFunctions()
{
    QFETCH(int, index);
    const Case& entry = kByFactor[static_cast<size_t>(index)];
    currentScale = 7.0;
    SetFromDesign(true);
    QCOMPARE(Run(entry), QLatin1String(entry.at150));
}

void TestDpiScale::roundingIsHalfAwayFromZero_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("rounded");
    QTest::newRow("below half") << 37.49 << 37;
    QTest::newRow("half") << 37.5 << 38;
    QTest::newRow("zero") << 0.0 << 0;
    QTest::newRow("negative") << -1.2 << -1;
    QTest::newRow("negative above half") << -1.6 << -2;
    QTest::newRow("negative half") << -1.5 << -1; // towards zero below it
}

void TestDpiScale::roundingIsHalfAwayFromZero()
{
    QFETCH(double, value);
    QTEST(IdentityValue(value), "rounded");
}

void TestDpiScale::explicitFontNeedsNoActiveScale()
{
    QWidget widget;
    currentScale = 1.25;
    SetScaledFont(&widget, 14);
    QCOMPARE(widget.styleSheet(), QStringLiteral("font-size:18px;"));
    QCOMPARE(ScaleValue(14), 14);
}

void TestDpiScale::pointSizeIsKept()
{
    QWidget parent;
    QWidget widget(&parent);
    QFont font = parent.font();
    font.setPointSize(11);
    parent.setFont(font);
    currentScale = 2.0;
    scaleActive = true;
    KeepFontPointSize(&widget);
    font.setPointSize(15);
    parent.setFont(font);
    QCOMPARE(widget.font().pointSize(), 11);
}

void TestDpiScale::iconFileFollowsTheScale_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shown"); ///< File whose picture shows; empty: the button keeps what it has.
    const QString png = QStringLiteral("a.png");
    QTest::newRow("below 1.75") << 1.74 << png << png;
    QTest::newRow("1.75") << 1.75 << png << QStringLiteral("a_96.png");
    QTest::newRow("2.25") << 2.25 << png << QStringLiteral("a_96.png");
    QTest::newRow("above 2.25") << 2.26 << png << QStringLiteral("a_128.png");
    QTest::newRow("below 3") << 2.99 << png << QStringLiteral("a_128.png");
    QTest::newRow("3") << 3.0 << png << QStringLiteral("a_256.png");
    QTest::newRow("ico") << 2.0 << QStringLiteral("a.ico") << QStringLiteral("a_96.ico");
    QTest::newRow("both") << 2.0 << QStringLiteral("a.png.ico") << QStringLiteral("a_96.png.ico");
    QTest::newRow("both, reversed") << 2.0 << QStringLiteral("a.ico.png") << QStringLiteral("a_96.png.ico");
    QTest::newRow("other case") << 2.0 << QStringLiteral("a.PNG") << QString();
    QTest::newRow("neither") << 2.0 << QStringLiteral("a.svg") << QString();
}

void TestDpiScale::iconFileFollowsTheScale()
{
    QFETCH(double, scale);
    QFETCH(QString, path);
    QFETCH(QString, shown);
    // Every file has a colour of its own, by which the button tells what it shows.
    const QTemporaryDir dir;
    const char* const names[] = {"a.png", "a_96.png", "a_128.png", "a_256.png", "a_96.ico", "a_96.png.ico"};
    QHash<QString, QColor> colors;
    for (const char* name : names) {
        const QColor color(10 + 20 * colors.size(), 100, 200);
        QImage image(64, 64, QImage::Format_RGB32);
        image.fill(color);
        QVERIFY(image.save(dir.filePath(QLatin1String(name)), "PNG"));
        colors.insert(QLatin1String(name), color);
    }
    QToolButton button;
    button.setIconSize({10, 10});
    currentScale = scale;
    scaleActive = true;
    SetFromDesign(true);
    ScaleIconFile(&button, dir.filePath(path));
    if (shown.isEmpty()) {
        QVERIFY(button.icon().isNull());
        QCOMPARE(button.iconSize(), QSize(10, 10));
        return;
    }
    QCOMPARE(button.icon().pixmap(8, 8).toImage().pixelColor(4, 4), colors.value(shown));
    QCOMPARE(button.iconSize(), QSize(1, 1) * int(10 * scale));
}

int main(int argc, char** argv)
{
    qputenv("QT_FONT_DPI", "144");
    QApplication app(argc, argv);
    TestDpiScale test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_dpiscale.moc"
