#pragma once

#include "configinfo.h"

#include <QObject>
#include <QSize>
#include <QString>

/// The product description, read once from the external resource file, and the user's settings, a file per
/// product and version year. The settings are read and written afresh each time; no call reports a failure.
/// Interface thread only.
class YxConfig : public QObject
{
    Q_OBJECT

public:
    /// The one object, made at the first call: after the external resource file has been registered.
    static YxConfig* Instance();
    ~YxConfig() override;

    ConfigInfo GetConfigInfo() const;

    bool ReadOpenMode(OpenModeInfo& mode);
    bool WriteOpenMode(OpenModeInfo mode);
    QSize ReadWindowSize();
    bool WriteWindowSize(QSize size);

    /// Takes product word and name from the group of a product variant. An absent group empties both. The
    /// settings file stays the one of the product itself.
    bool ReloadProductNames(const QString& groupName);

private:
    YxConfig();

    void ReadProduct();
    void BuildSettingsPath();
    void EnsureSettingsFile();
    void WriteDefaultSettings();

    ConfigInfo info;
    QString settingsPath;
};
