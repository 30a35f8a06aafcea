#include "yxinfowid.h"

#include "dpiscale.h"
#include "ui_yxinfowid.h"
#include "yxsettingwid.h"

YxInfoWid::YxInfoWid(YxSettingWid* settings, QWidget* parent)
    : FramelessDialog(parent), ui(new Ui::YxInfoWid()), settingWid(settings)
{
    ui->setupUi(this);
    InitFrame(ui->frame_top);
    ui->checkBox->setChecked(false);
    InitScale();
    connect(ui->tbn_close, &QToolButton::clicked, this, &YxInfoWid::close);
    connect(ui->tbn_no, &QPushButton::clicked, this, &YxInfoWid::close);
    connect(ui->tbn_yes, &QPushButton::clicked, this, &YxInfoWid::accept);
    connect(ui->checkBox, &QCheckBox::stateChanged, this, &YxInfoWid::SlotReminderChange);
}

YxInfoWid::~YxInfoWid() = default;

void YxInfoWid::SetInfoText(const QString& text, bool noticeOnly)
{
    ui->lab_info->setText(text);
    if (!noticeOnly)
        return;
    for (QWidget* widget : std::initializer_list<QWidget*>{ui->checkBox, ui->tbn_no, ui->tbn_yes})
        widget->hide();
}

void YxInfoWid::SlotReminderChange(int index)
{
    settingWid->SetChangeRemin(index != Qt::Checked);
}

void YxInfoWid::ScaleBy(double factor, double total)
{
    ScaleMinimumSizeBy(this, factor);
    resize(minimumSize());
    ScaleMinimumHeightBy(ui->frame_top, factor);
    ScaleSizeBy(ui->tbn_close, factor);
    ScaleIconSizeBy(ui->tbn_close, factor);
    for (QLabel* label : {ui->lab_title, ui->lab_info})
        ScaleFontBy(label, factor);
    for (QPushButton* button : {ui->tbn_no, ui->tbn_yes}) {
        ScaleMinimumSizeBy(button, factor);
        ScaleFontBy(button, factor);
    }
    for (QLayout* layout : std::initializer_list<QLayout*>{ui->verticalLayout, ui->horizontalLayout,
                                                           ui->horizontalLayout_2, ui->horizontalLayout_3})
        ScaleLayoutBy(layout, factor);
    for (QSpacerItem* spacer : {ui->horizontalSpacer, ui->horizontalSpacer_2, ui->verticalSpacer})
        ScaleSpacerBy(spacer, factor);
    ui->checkBox->setStyleSheet(IndicatorStyle(QLatin1String("QCheckBox"), total));
}
