#pragma once

#include "framelessdialog.h"

#include <memory>

namespace Ui {
class YxSettingWid;
}

/// Settings of the online help. One object lives as long as the main window and keeps the saved answers; the
/// controls may differ from them only while the dialog is open.
class YxSettingWid : public FramelessDialog
{
    Q_OBJECT

public:
    explicit YxSettingWid(QWidget* parent);
    ~YxSettingWid() override;

    bool IsOnlineMode() const { return onlineMode; }
    bool IsOfflineMode() const { return offlineMode; }
    bool IsAutoChange() const { return autoChange; }
    bool IsChangeRemin() const { return changeRemin; }

    /// Stores the reminder answer together with whatever the other controls hold.
    bool SetChangeRemin(bool on);

    /// Puts the controls back to the saved answers, whichever way the dialog is left.
    void reject() override;

private:
    void ReadConfig();
    void Connect();
    void ShowSwitches();
    void Save();
    void Store();
    void ScaleBy(double factor, double total) override;

    std::unique_ptr<Ui::YxSettingWid> ui;
    bool offlineMode = false;
    bool onlineMode = false;
    bool autoChange = false;
    bool changeRemin = false;
};
