#include "yxfiltersettingwid.h"

#include "dpiscale.h"
#include "ui_yxfiltersettingwid.h"
#include "yxglobalsignal.h"

#include <QCheckBox>
#include <QFontMetrics>

#include <utility>

namespace {

constexpr int kBoxHeight = 20;
constexpr int kBoxPointSize = 13;
constexpr int kColumns = 2;

} // namespace

YxFilterSettingWid::YxFilterSettingWid() : ui(new Ui::YxFilterSettingWid())
{
    ui->setupUi(this);
    Scale(true);
    connect(YxGlobalSignal::Instance(), &YxGlobalSignal::dpiChange, this, [this] { Scale(false); });
}

YxFilterSettingWid::~YxFilterSettingWid() = default;

void YxFilterSettingWid::SetCategories(QVector<HelpCategory> list)
{
    categories = std::move(list);
    for (int i = 0; i < categories.size(); ++i) {
        auto* box = new QCheckBox();
        box->setObjectName(categories.at(i).name);
        box->setText(categories.at(i).name);
        box->setMinimumSize(0, kBoxHeight);
        connect(box, &QCheckBox::stateChanged, this, [this] {
            CollectExcluded();
            emit FileterChangeSig(excluded);
        });
        ui->formLayout->setWidget(i / kColumns,
                                  i % kColumns == 0 ? QFormLayout::LabelRole : QFormLayout::FieldRole, box);
        box->setChecked(true);
        checkBoxes.append(box);
        ScaleFont(box);
    }
}

QVector<int> YxFilterSettingWid::GetExcludedCategories()
{
    CollectExcluded();
    return excluded;
}

void YxFilterSettingWid::CollectExcluded()
{
    excluded.clear();
    for (int i = 0; i < checkBoxes.size(); ++i) {
        if (!checkBoxes.at(i)->isChecked())
            excluded.append(categories.at(i).id);
    }
}

void YxFilterSettingWid::Scale(bool first)
{
    if (!scaleActive)
        return;
    SetFromDesign(first);
    ScaleMinimumHeight(ui->label);
    ScaleFont(ui->label);
    ScaleFormLayout(ui->formLayout);
    const QFontMetrics metrics(QFont(QStringLiteral("Microsoft YaHei"), ScaleValue(kBoxPointSize)));
    for (QCheckBox* box : std::as_const(checkBoxes)) {
        ScaleFont(box);
        box->setMinimumWidth(metrics.horizontalAdvance(box->text()));
    }
}
