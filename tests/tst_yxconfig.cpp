#include "product.h"
#include "testtable.h"
#include "yxconfig.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

QString SystemSettings()
{
    return QString::fromLocal8Bit(qgetenv("XDG_CONFIG_DIRS")) + "/YXSOFT/YxHelpDocument.conf"_s;
}

/// Where the user's settings are, or a part of their folder.
QString UserPath(const char* path = "/YXCAD/YXhelp/2024/YxHelpSystem.ini")
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/YXSOFT"_s +
           QLatin1String(path);
}

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteAll(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

/// The user's settings as one line, as the program reads them.
QString Stored()
{
    OpenModeInfo mode{-1, false, false};
    const bool read = YxConfig::Instance()->ReadOpenMode(mode);
    const QSize size = YxConfig::Instance()->ReadWindowSize();
    return "%1%2 %3 %4 %5x%6"_s.arg(read ? QString() : "refused "_s)
        .arg(mode.RunMode)
        .arg(mode.AutoChange)
        .arg(mode.ChangeRemin)
        .arg(size.width())
        .arg(size.height());
}

} // namespace

class TestYxConfig : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void descriptionIsReadOrEmpty();
    void installedLanguageChoosesTheAddress();
    void settingsAtTheStart();
    void settingsSurviveTheRunButNotTheirFile();
    void unwritableFolderIsHarmless();
    void variantNamesReplaceTheProductButNotTheFile();
};

void TestYxConfig::cleanup()
{
    delete YxConfig::Instance();
    QDir(UserPath("")).removeRecursively();
    QFile::remove(UserPath(""));
    QFile::remove(SystemSettings());
}

void TestYxConfig::descriptionIsReadOrEmpty()
{
    QVERIFY(
        UseProduct("[YxHelp]\nProductName=\"YX, CAD 帮助\"\nVersionName=机械 2024\n[Display]\nGroup=3\n"));
    QCOMPARE(YxConfig::Instance()->GetConfigInfo().ProductName, "YX, CAD 帮助"_s);
    QCOMPARE(YxConfig::Instance()->GetConfigInfo().VersionName, "机械 2024"_s);
    QVERIFY(UseProduct("garbage \xff\xfe [[[ \n=\n"));
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    QVERIFY(info.Product.isEmpty() && info.ProductName.isEmpty() && info.DefaultURL.isEmpty() &&
            info.Group == 0);
    QVERIFY(QFile::exists(UserPath("//YXhelp/0/YxHelpSystem.ini")));
}

void TestYxConfig::installedLanguageChoosesTheAddress()
{
    for (const QByteArray language : {"zh_CN", "zh_TW", "zh-CN", "de_DE"}) {
        WriteAll(SystemSettings(), "[General]\nCurrentLang=" + language + '\n');
        QVERIFY(UseProduct("[YxHelp]\nDefaultURL=home\nAbroadURL=abroad\nHelpmanagerUrl=m\n"));
        const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
        QCOMPARE(info.DefaultURL + info.HelpmanagerUrl, language == "zh_CN" ? "homem"_s : "abroadm"_s);
        cleanup();
    }
}

void TestYxConfig::settingsAtTheStart()
{
    // Defaults are for a missing file only; the stored mode comes from the display family then.
    for (const auto& [family, file, stored] : std::initializer_list<std::tuple<int, QByteArray, QString>>{
             {0, {}, "1 0 1 1188x666"_s},
             {1, {}, "0 1 1 1188x666"_s},
             {3, {}, "1 0 1 1188x666"_s},
             {3, "", "0 0 0 0x0"_s},
             {3, "[OpenModeFlag]\nChangeRemin=true\n[WindowsSize]\nWidth=9\n", "0 0 1 9x0"_s},
             {3, "[OpenModeFlag]\nRunMode=online\nAutoChange=\n[WindowsSize]\nWidth=x\nHeight=1e3\n",
              "0 0 0 0x0"_s},
             {3, QByteArray("\xff\xfe\0\1[[]]==;;\n\"", 13), "0 0 0 0x0"_s}}) {
        QVERIFY(UseProduct(ProductIni(family)));
        if (!file.isNull())
            WriteAll(UserPath(), file);
        QCOMPARE(Stored(), stored);
        QVERIFY(file.isNull() ? QFile::exists(UserPath()) : ReadAll(UserPath()) == file);
        cleanup();
    }
}

void TestYxConfig::settingsSurviveTheRunButNotTheirFile()
{
    QVERIFY(UseProduct(ProductIni(3)));
    QVERIFY(YxConfig::Instance()->WriteOpenMode({0, true, false}));
    QVERIFY(YxConfig::Instance()->WriteWindowSize({800, 600}));
    delete YxConfig::Instance();
    QCOMPARE(Stored(), "0 1 0 800x600"_s);
    // Deleted during the run, it comes back with defaults before anything is written.
    QVERIFY(QFile::remove(UserPath()));
    YxConfig::Instance()->WriteOpenMode({0, true, false});
    QCOMPARE(Stored(), "0 1 0 1188x666"_s);
}

void TestYxConfig::unwritableFolderIsHarmless()
{
    QVERIFY(UseProduct(ProductIni(3)));
    // A file in the place of the folder stops even a privileged user.
    QDir(UserPath("")).removeRecursively();
    WriteAll(UserPath(""), "in the way");
    QVERIFY(YxConfig::Instance()->WriteOpenMode({1, true, true}));
    QVERIFY(YxConfig::Instance()->WriteWindowSize({800, 600}));
    QCOMPARE(Stored(), "0 0 0 0x0"_s);
}

void TestYxConfig::variantNamesReplaceTheProductButNotTheFile()
{
    QVERIFY(UseProduct(ProductIni(3, {}, "[YXCADM]\nProduct=YXCADM\nProductName=Mechanical\n")));
    YxConfig* config = YxConfig::Instance();
    const auto names = [config]() -> QString {
        return config->GetConfigInfo().Product + QLatin1Char('/') + config->GetConfigInfo().ProductName;
    };
    QVERIFY(config->ReloadProductNames("YXCADM"_s));
    QCOMPARE(names(), "YXCADM/Mechanical"_s);
    config->WriteWindowSize({1, 2});
    QVERIFY(ReadAll(UserPath()).contains("Width=1"));
    QVERIFY(config->ReloadProductNames("YXCADA"_s));
    QCOMPARE(names(), "/"_s);
}

QTEST_GUILESS_MAIN(TestYxConfig)
#include "tst_yxconfig.moc"
