#include "yxconfig.h"

#include "qcommon.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QSettings>
#include <QStandardPaths>

namespace {

Q_LOGGING_CATEGORY(lcConfig, "yxhelp.config")

YxConfig* instance = nullptr;

const QSize kDefaultWindowSize(1188, 666);

/// The product description with one of its groups open.
class ProductGroup
{
public:
    explicit ProductGroup(const QString& name)
        : settings(QStringLiteral(":/Resource/Config/YxHelp.ini"), QSettings::IniFormat)
    {
        settings.setIniCodec("UTF-8");
        settings.beginGroup(name);
    }
    QVariant Value(const char* key) const { return settings.value(QLatin1String(key)); }
    QString Text(const char* key) const { return Value(key).toString(); }

private:
    QSettings settings;
};

/// The user's settings with one of their groups open. What was written is in the file when it goes.
class UserGroup
{
public:
    UserGroup(const QString& path, const QString& name) : settings(path, QSettings::IniFormat)
    {
        settings.beginGroup(name);
    }
    ~UserGroup()
    {
        settings.endGroup();
        settings.sync();
        if (settings.status() != QSettings::NoError)
            qCWarning(lcConfig) << "user settings:" << settings.status() << settings.fileName();
    }
    Q_DISABLE_COPY_MOVE(UserGroup)

    QVariant Value(const char* key) const { return settings.value(QLatin1String(key)); }
    void Set(const char* key, const QVariant& value) { settings.setValue(QLatin1String(key), value); }

private:
    QSettings settings;
};

UserGroup OpenModeGroup(const QString& path)
{
    return {path, QStringLiteral("OpenModeFlag")};
}

UserGroup WindowSizeGroup(const QString& path)
{
    return {path, QStringLiteral("WindowsSize")};
}

void Store(UserGroup& group, const OpenModeInfo& mode)
{
    group.Set("RunMode", mode.RunMode);
    group.Set("AutoChange", mode.AutoChange);
    group.Set("ChangeRemin", mode.ChangeRemin);
}

void Store(UserGroup& group, const QSize& size)
{
    group.Set("Height", size.height());
    group.Set("Width", size.width());
}

} // namespace

YxConfig* YxConfig::Instance()
{
    if (!instance)
        instance = new YxConfig;
    return instance;
}

YxConfig::YxConfig()
{
    ReadProduct();
    // The installed language decides here, not the one that a launch asks for.
    if (ReadCurrentLang() != QLatin1String("zh_CN"))
        info.DefaultURL = info.AbroadURL;
    BuildSettingsPath();
    EnsureSettingsFile();
}

YxConfig::~YxConfig()
{
    instance = nullptr;
}

void YxConfig::ReadProduct()
{
    const ProductGroup product(QStringLiteral("YxHelp"));
    info.Product = product.Text("Product");
    info.ProductName = product.Text("ProductName");
    info.VersionName = QString::fromUtf8(product.Value("VersionName").toByteArray());
    info.VersionYear = product.Value("VersionYear").toInt();
    info.CopyrightYear = product.Value("CopyrightYear").toInt();
    info.DefaultURL = product.Text("DefaultURL");
    info.AbroadURL = product.Text("AbroadURL");
    info.HelpmanagerUrl = product.Text("HelpmanagerUrl");
    info.HelpmanagerAbroadUrl = product.Text("HelpmanagerAbroadUrl");

    const ProductGroup display(QStringLiteral("Display"));
    info.Group = display.Value("Group").toInt();
    info.Filter = display.Value("Filter").toBool();
    info.ResizeMemory = display.Value("ResizeMemory").toBool();
}

void YxConfig::BuildSettingsPath()
{
    // The location ends in a folder of the program's own, since the program has no organisation name; the
    // settings lie beside that folder.
    const QString own = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    settingsPath = own.left(own.lastIndexOf(QLatin1Char('/'))) + QStringLiteral("/YXSOFT/") + info.Product +
                   QStringLiteral("/YXhelp/") + QString::number(info.VersionYear) +
                   QStringLiteral("/YxHelpSystem.ini");
}

void YxConfig::EnsureSettingsFile()
{
    if (!QFileInfo::exists(settingsPath))
        WriteDefaultSettings();
}

void YxConfig::WriteDefaultSettings()
{
    const bool offlineOnly = info.Group == 1;
    {
        UserGroup group = OpenModeGroup(settingsPath);
        Store(group, OpenModeInfo{offlineOnly ? 0 : 1, offlineOnly, true});
    }
    UserGroup group = WindowSizeGroup(settingsPath);
    Store(group, kDefaultWindowSize);
}

ConfigInfo YxConfig::GetConfigInfo() const
{
    return info;
}

bool YxConfig::ReadOpenMode(OpenModeInfo& mode)
{
    EnsureSettingsFile();
    const UserGroup group = OpenModeGroup(settingsPath);
    mode.RunMode = group.Value("RunMode").toInt();
    mode.AutoChange = group.Value("AutoChange").toBool();
    mode.ChangeRemin = group.Value("ChangeRemin").toBool();
    return true;
}

bool YxConfig::WriteOpenMode(OpenModeInfo mode)
{
    EnsureSettingsFile();
    UserGroup group = OpenModeGroup(settingsPath);
    Store(group, mode);
    return true;
}

QSize YxConfig::ReadWindowSize()
{
    EnsureSettingsFile();
    const UserGroup group = WindowSizeGroup(settingsPath);
    return {group.Value("Width").toInt(), group.Value("Height").toInt()};
}

bool YxConfig::WriteWindowSize(QSize size)
{
    EnsureSettingsFile();
    UserGroup group = WindowSizeGroup(settingsPath);
    Store(group, size);
    return true;
}

bool YxConfig::ReloadProductNames(const QString& groupName)
{
    const ProductGroup group(groupName);
    info.ProductName = group.Text("ProductName");
    info.Product = group.Text("Product");
    return true;
}
