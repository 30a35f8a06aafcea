#pragma once

#include "framelessdialog.h"

#include <memory>

class YxSettingWid;

namespace Ui {
class YxInfoWid;
}

/// Speaks to the user about the online help: a notice, or the question whether to go offline, which is
/// answered with yes when exec returns 1. The choice not to be asked again counts at once, whatever the
/// answer.
class YxInfoWid : public FramelessDialog
{
    Q_OBJECT

public:
    /// `settingWid` keeps the choice not to be asked again, and outlives this.
    YxInfoWid(YxSettingWid* settingWid, QWidget* parent);
    ~YxInfoWid() override;

    /// A notice has nothing but its text and the close button.
    void SetInfoText(const QString& text, bool noticeOnly);

private slots:
    void SlotReminderChange(int index);

private:
    void ScaleBy(double factor, double total) override;

    std::unique_ptr<Ui::YxInfoWid> ui;
    YxSettingWid* settingWid;
};
