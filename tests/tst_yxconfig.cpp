#include "product.h"
#include "yxconfig.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QtTest>

namespace {

QString SystemSettings()
{
    return QString::fromLocal8Bit(qgetenv("XDG_CONFIG_DIRS")) + QStringLiteral("/YXSOFT/YxHelpDocument.conf");
}

/// Where the user's settings are, or a part of their folder.
QString UserPath(const char* path = "/YXCAD/YXhelp/2024/YxHelpSystem.ini")
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/YXSOFT") +
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
    return QStringLiteral("%1%2 %3 %4 %5x%6")
        .arg(read ? QString() : QStringLiteral("refused "))
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
    void productDescriptionIsRead();
    void damagedDescriptionIsEmpty();
    void installedLanguageChoosesTheAddress_data();
    void installedLanguageChoosesTheAddress();
    void settingsAtTheStart_data();
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

void TestYxConfig::productDescriptionIsRead()
{
    QVERIFY(UseProduct("[YxHelp]\nProductName=\"YX, CAD 帮助\"\nVersionName=机械 2024\nVersionYear=2024\n"
                       "CopyrightYear=2025\n[Display]\nGroup=3\nFilter=true\nResizeMemory=1\n"));
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    QCOMPARE(info.ProductName, QString::fromUtf8("YX, CAD 帮助"));
    QCOMPARE(info.VersionName, QString::fromUtf8("机械 2024"));
    QVERIFY(info.VersionYear == 2024 && info.CopyrightYear == 2025 && info.Group == 3);
    QVERIFY(info.Filter && info.ResizeMemory);
}

void TestYxConfig::damagedDescriptionIsEmpty()
{
    QVERIFY(UseProduct("garbage \xff\xfe [[[ \n=\n"));
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    QVERIFY(info.Product.isEmpty() && info.ProductName.isEmpty() && info.DefaultURL.isEmpty());
    QCOMPARE(info.Group, 0);
    QVERIFY(QFile::exists(UserPath("//YXhelp/0/YxHelpSystem.ini")));
}

void TestYxConfig::installedLanguageChoosesTheAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("zh_CN") << QStringLiteral("https://home.example/");
    for (const char* abroad : {"zh_TW", "zh-CN", "de_DE"})
        QTest::newRow(abroad) << QStringLiteral("https://abroad.example/");
}

void TestYxConfig::installedLanguageChoosesTheAddress()
{
    WriteAll(SystemSettings(), QByteArray("[General]\nCurrentLang=") + QTest::currentDataTag() + '\n');
    QVERIFY(UseProduct("[YxHelp]\nDefaultURL=https://home.example/\nAbroadURL=https://abroad.example/\n"
                       "HelpmanagerUrl=https://m.example/\nHelpmanagerAbroadUrl=https://ma.example/\n"));
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    QTEST(info.DefaultURL, "address");
    QCOMPARE(info.HelpmanagerUrl, QStringLiteral("https://m.example/"));
    QCOMPARE(info.HelpmanagerAbroadUrl, QStringLiteral("https://ma.example/"));
}

void TestYxConfig::settingsAtTheStart_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<QByteArray>("file"); ///< Null: there is none yet.
    QTest::addColumn<QString>("stored");
    const auto row = [](const char* name, int family, const QByteArray& file, const char* stored) {
        QTest::newRow(name) << family << file << QString::fromLatin1(stored);
    };
    row("first, no help", 0, {}, "1 0 1 1188x666");
    row("first, offline only", 1, {}, "0 1 1 1188x666");
    row("first, both", 3, {}, "1 0 1 1188x666");
    row("empty", 3, "", "0 0 0 0x0");
    row("keys missing", 3, "[OpenModeFlag]\nChangeRemin=true\n[WindowsSize]\nWidth=9\n", "0 0 1 9x0");
    row("words for numbers", 3,
        "[OpenModeFlag]\nRunMode=online\nAutoChange=\n[WindowsSize]\nWidth=x\nHeight=1e3\n", "0 0 0 0x0");
    row("garbage", 3, QByteArray("\xff\xfe\0\1[[]]==;;\n\"", 13), "0 0 0 0x0");
}

void TestYxConfig::settingsAtTheStart()
{
    QFETCH(int, family);
    QFETCH(QByteArray, file);
    QVERIFY(UseProduct(ProductIni(family)));
    if (!file.isNull())
        WriteAll(UserPath(), file);
    QTEST(Stored(), "stored");
    QVERIFY(QFile::exists(UserPath()));
    // What is there stays: defaults are for a missing file only.
    if (!file.isNull())
        QCOMPARE(ReadAll(UserPath()), file);
}

void TestYxConfig::settingsSurviveTheRunButNotTheirFile()
{
    QVERIFY(UseProduct(ProductIni(3)));
    QVERIFY(YxConfig::Instance()->WriteOpenMode({0, true, false}));
    QVERIFY(YxConfig::Instance()->WriteWindowSize({800, 600}));
    delete YxConfig::Instance();
    QCOMPARE(Stored(), QStringLiteral("0 1 0 800x600"));
    // Deleted during the run, it comes back with defaults before anything is written.
    QVERIFY(QFile::remove(UserPath()));
    YxConfig::Instance()->WriteOpenMode({0, true, false});
    QCOMPARE(Stored(), QStringLiteral("0 1 0 1188x666"));
}

void TestYxConfig::unwritableFolderIsHarmless()
{
    QVERIFY(UseProduct(ProductIni(3)));
    // A file in the place of the folder stops even a privileged user.
    QDir(UserPath("")).removeRecursively();
    WriteAll(UserPath(""), "in the way");
    QVERIFY(YxConfig::Instance()->WriteOpenMode({1, true, true}));
    QVERIFY(YxConfig::Instance()->WriteWindowSize({800, 600}));
    QCOMPARE(Stored(), QStringLiteral("0 0 0 0x0"));
}

void TestYxConfig::variantNamesReplaceTheProductButNotTheFile()
{
    QVERIFY(UseProduct(ProductIni(3, {}, "[YXCADM]\nProduct=YXCADM\nProductName=Mechanical\n")));
    YxConfig* config = YxConfig::Instance();
    const auto names = [config]() -> QString {
        return config->GetConfigInfo().Product + QLatin1Char('/') + config->GetConfigInfo().ProductName;
    };
    QVERIFY(config->ReloadProductNames(QStringLiteral("YXCADM")));
    QCOMPARE(names(), QStringLiteral("YXCADM/Mechanical"));
    config->WriteWindowSize({1, 2});
    QVERIFY(ReadAll(UserPath()).contains("Width=1"));
    QVERIFY(config->ReloadProductNames(QStringLiteral("YXCADA")));
    QCOMPARE(names(), QStringLiteral("/"));
}

QTEST_GUILESS_MAIN(TestYxConfig)
#include "tst_yxconfig.moc"
