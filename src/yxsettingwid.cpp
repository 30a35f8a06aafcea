#include "yxsettingwid.h"

#include "dpiscale.h"
#include "ui_yxsettingwid.h"
#include "yxconfig.h"

#include <QTimer>

namespace {

/// A switch that has no size yet follows 10 ms after it was set.
constexpr int kSwitchSettledMs = 20;

} // namespace

YxSettingWid::YxSettingWid(QWidget* parent) : FramelessDialog(parent), ui(new Ui::YxSettingWid())
{
    ui->setupUi(this);
    InitFrame(ui->frame_top);
    ReadConfig();
    InitScale();
    Connect();
}

YxSettingWid::~YxSettingWid() = default;

void YxSettingWid::ReadConfig()
{
    OpenModeInfo mode;
    YxConfig::Instance()->ReadOpenMode(mode);
    onlineMode = mode.RunMode != 0;
    offlineMode = !onlineMode;
    autoChange = mode.AutoChange;
    changeRemin = mode.ChangeRemin;

    ui->radioButton_online->setChecked(onlineMode);
    ui->radioButton_offline->setChecked(offlineMode);
    ui->switch_auto->setChecked(autoChange);
    ui->switch_remain->setChecked(changeRemin);
    // The switch itself may not have turned yet, so the answer decides here.
    ui->switch_auto->setVisible(onlineMode);
    ui->lab_auto->setVisible(onlineMode);
    ui->switch_remain->setVisible(onlineMode && !autoChange);
    ui->lab_remain->setVisible(onlineMode && !autoChange);
    ui->switch_auto->setAnimation(true);
    ui->switch_remain->setAnimation(true);
}

void YxSettingWid::Connect()
{
    connect(ui->tbn_close, &QToolButton::clicked, this, &YxSettingWid::reject);
    connect(ui->btn_cancel, &QPushButton::clicked, this, &YxSettingWid::reject);
    connect(ui->btn_ok, &QPushButton::clicked, this, &YxSettingWid::Save);
    connect(ui->radioButton_online, &QRadioButton::toggled, this, &YxSettingWid::ShowSwitches);
    connect(ui->switch_auto, &YxSwitchButton::checkedChanged, this, &YxSettingWid::ShowSwitches);
}

/// A reminder has nothing to do when the help goes offline by itself, and offline there is nothing to switch.
void YxSettingWid::ShowSwitches()
{
    const bool online = ui->radioButton_online->isChecked();
    const bool reminder = online && !ui->switch_auto->checked();
    ui->switch_auto->setVisible(online);
    ui->lab_auto->setVisible(online);
    ui->switch_remain->setVisible(reminder);
    ui->lab_remain->setVisible(reminder);
}

void YxSettingWid::reject()
{
    ui->radioButton_offline->setChecked(offlineMode);
    ui->radioButton_online->setChecked(onlineMode);
    ui->switch_auto->setChecked(autoChange);
    ui->switch_remain->setChecked(changeRemin);
    QDialog::reject();
}

void YxSettingWid::Save()
{
    changeRemin = ui->switch_remain->checked();
    Store();
}

void YxSettingWid::Store()
{
    offlineMode = ui->radioButton_offline->isChecked();
    onlineMode = ui->radioButton_online->isChecked();
    autoChange = ui->switch_auto->checked();
    YxConfig::Instance()->WriteOpenMode({onlineMode ? 1 : 0, autoChange, changeRemin});
    accept();
}

bool YxSettingWid::SetChangeRemin(bool on)
{
    changeRemin = on;
    ui->switch_remain->setChecked(on);
    // Set twice before it follows, a switch ends on the wrong side.
    QTimer::singleShot(kSwitchSettledMs, this, [this] { ui->switch_remain->setChecked(changeRemin); });
    Store();
    return true;
}

void YxSettingWid::ScaleBy(double factor, double total)
{
    ScaleMinimumSizeBy(this, factor);
    resize(minimumSize());
    ScaleMinimumHeightBy(ui->frame_top, factor);
    ScaleSizeBy(ui->tbn_close, factor);
    ScaleIconSizeBy(ui->tbn_close, factor);

    const QString radioStyle = IndicatorStyle(QLatin1String("QRadioButton"), total);
    for (QRadioButton* radio : {ui->radioButton_online, ui->radioButton_offline}) {
        ScaleMinimumSizeBy(radio, factor);
        radio->setStyleSheet(radioStyle);
    }
    for (YxSwitchButton* button : {ui->switch_auto, ui->switch_remain}) {
        ScaleMinimumSizeBy(button, factor);
        ScaleMaximumHeightBy(button, factor);
    }
    for (QLabel* label : {ui->lab_title, ui->lab_auto, ui->lab_remain})
        ScaleFontBy(label, factor);
    for (QPushButton* button : {ui->btn_cancel, ui->btn_ok}) {
        ScaleMinimumSizeBy(button, factor);
        ScaleFontBy(button, factor);
    }
    for (QLayout* layout : std::initializer_list<QLayout*>{ui->verticalLayout, ui->horizontalLayout,
                                                           ui->horizontalLayout_2, ui->horizontalLayout_3})
        ScaleLayoutBy(layout, factor);
    ScaleGridLayoutBy(ui->gridLayout, factor);
    for (QSpacerItem* spacer :
         {ui->horizontalSpacer, ui->horizontalSpacer_2, ui->horizontalSpacer_3, ui->verticalSpacer})
        ScaleSpacerBy(spacer, factor);
}
