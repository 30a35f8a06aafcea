#include "product.h"
#include "yxconfig.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QtTest>

namespace {

const char kAddresses[] = "[YxHelp]\nDefaultURL=https://home.example/\nAbroadURL=https://abroad.example/\n"
                          "HelpmanagerUrl=https://m.example/\nHelpmanagerAbroadUrl=https://ma.example/\n";

QString DataHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QString SettingsFile()
{
    return DataHome() + QStringLiteral("/YXSOFT/YXCAD/YXhelp/2024/YxHelpSystem.ini");
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
    if (!YxConfig::Instance()->ReadOpenMode(mode))
        return QStringLiteral("refused");
    const QSize size = YxConfig::Instance()->ReadWindowSize();
    return QStringLiteral("%1 %2 %3 %4x%5")
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
    void missingDescriptionIsEmpty();
    void installedLanguageChoosesTheAddress_data();
    void installedLanguageChoosesTheAddress();
    void firstStartWritesDefaults_data();
    void firstStartWritesDefaults();
    void damagedSettingsReadAsNothing_data();
    void damagedSettingsReadAsNothing();
    void writtenSettingsAreInTheFile();
    void fileDeletedDuringTheRunComesBackWithDefaults();
    void unwritableFolderIsHarmless();
    void variantNamesReplaceTheProductButNotTheFile();

private:
    static void Start(const QByteArray& ini);
};

void TestYxConfig::Start(const QByteArray& ini)
{
    QVERIFY(UseProduct(ini));
    // Forget what the object before left.
    QDir(DataHome() + QStringLiteral("/YXSOFT")).removeRecursively();
}

void TestYxConfig::cleanup()
{
    delete YxConfig::Instance();
    QDir(DataHome() + QStringLiteral("/YXSOFT")).removeRecursively();
    QFile::remove(DataHome() + QStringLiteral("/YXSOFT"));
    QFile::remove(QString::fromLocal8Bit(qgetenv("XDG_CONFIG_DIRS")) +
                  QStringLiteral("/YXSOFT/YxHelpDocument.conf"));
}

void TestYxConfig::productDescriptionIsRead()
{
    Start("[YxHelp]\nProduct=YXCAD\nProductName=\"YX, CAD 帮助\"\nVersionName=机械 2024\nVersionYear=2024\n"
          "CopyrightYear=2025\n[Display]\nGroup=3\nFilter=true\nResizeMemory=1\n");
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    QCOMPARE(info.Product, QStringLiteral("YXCAD"));
    QCOMPARE(info.ProductName, QString::fromUtf8("YX, CAD 帮助"));
    QCOMPARE(info.VersionName, QString::fromUtf8("机械 2024"));
    QCOMPARE(info.VersionYear, 2024);
    QCOMPARE(info.CopyrightYear, 2025);
    QCOMPARE(info.Group, 3);
    QVERIFY(info.Filter);
    QVERIFY(info.ResizeMemory);
}

void TestYxConfig::missingDescriptionIsEmpty()
{
    Start("garbage \xff\xfe [[[ \n=\n");
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    QVERIFY(info.Product.isEmpty() && info.ProductName.isEmpty() && info.DefaultURL.isEmpty());
    QCOMPARE(info.Group, 0);
    QVERIFY(QFile::exists(DataHome() + QStringLiteral("/YXSOFT//YXhelp/0/YxHelpSystem.ini")));
}

void TestYxConfig::installedLanguageChoosesTheAddress_data()
{
    QTest::addColumn<QByteArray>("installed");
    QTest::addColumn<QString>("address");
    QTest::newRow("Chinese") << QByteArray("zh_CN") << QStringLiteral("https://home.example/");
    QTest::newRow("Chinese, Taiwan") << QByteArray("zh_TW") << QStringLiteral("https://abroad.example/");
    QTest::newRow("dash form") << QByteArray("zh-CN") << QStringLiteral("https://abroad.example/");
    QTest::newRow("German") << QByteArray("de_DE") << QStringLiteral("https://abroad.example/");
}

void TestYxConfig::installedLanguageChoosesTheAddress()
{
    QFETCH(QByteArray, installed);
    QFETCH(QString, address);
    WriteAll(QString::fromLocal8Bit(qgetenv("XDG_CONFIG_DIRS")) +
                 QStringLiteral("/YXSOFT/YxHelpDocument.conf"),
             "[General]\nCurrentLang=" + installed + "\n");
    Start(kAddresses);
    const ConfigInfo info = YxConfig::Instance()->GetConfigInfo();
    QCOMPARE(info.DefaultURL, address);
    QCOMPARE(info.AbroadURL, QStringLiteral("https://abroad.example/"));
    QCOMPARE(info.HelpmanagerUrl, QStringLiteral("https://m.example/"));
    QCOMPARE(info.HelpmanagerAbroadUrl, QStringLiteral("https://ma.example/"));
}

void TestYxConfig::firstStartWritesDefaults_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<QString>("stored");
    QTest::newRow("none") << 0 << QStringLiteral("1 0 1 1188x666");
    QTest::newRow("offline only") << 1 << QStringLiteral("0 1 1 1188x666");
    QTest::newRow("online only") << 2 << QStringLiteral("1 0 1 1188x666");
    QTest::newRow("both") << 3 << QStringLiteral("1 0 1 1188x666");
}

void TestYxConfig::firstStartWritesDefaults()
{
    QFETCH(int, family);
    QFETCH(QString, stored);
    Start(ProductIni(family));
    YxConfig::Instance();
    QVERIFY(QFile::exists(SettingsFile()));
    QCOMPARE(Stored(), stored);
}

void TestYxConfig::damagedSettingsReadAsNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("stored");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("0 0 0 0x0");
    QTest::newRow("keys missing") << QByteArray("[OpenModeFlag]\nChangeRemin=true\n[WindowsSize]\nWidth=9\n")
                                  << QStringLiteral("0 0 1 9x0");
    QTest::newRow("words for numbers")
        << QByteArray("[OpenModeFlag]\nRunMode=online\nAutoChange=\n[WindowsSize]\nWidth=x\nHeight=1e3\n")
        << QStringLiteral("0 0 0 0x0");
    QTest::newRow("garbage") << QByteArray("\xff\xfe\0\1[[]]==;;\n\"", 13) << QStringLiteral("0 0 0 0x0");
}

void TestYxConfig::damagedSettingsReadAsNothing()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, stored);
    Start(ProductIni(3));
    WriteAll(SettingsFile(), file);
    QCOMPARE(Stored(), stored);
    // What is there stays: defaults are for a missing file only.
    QCOMPARE(ReadAll(SettingsFile()), file);
}

void TestYxConfig::writtenSettingsAreInTheFile()
{
    Start(ProductIni(3));
    QVERIFY(YxConfig::Instance()->WriteOpenMode({0, true, false}));
    QVERIFY(YxConfig::Instance()->WriteWindowSize({800, 600}));
    delete YxConfig::Instance();
    QCOMPARE(Stored(), QStringLiteral("0 1 0 800x600"));
}

void TestYxConfig::fileDeletedDuringTheRunComesBackWithDefaults()
{
    Start(ProductIni(3));
    YxConfig::Instance()->WriteWindowSize({800, 600});
    QVERIFY(QFile::remove(SettingsFile()));
    YxConfig::Instance()->WriteOpenMode({0, true, false});
    QCOMPARE(Stored(), QStringLiteral("0 1 0 1188x666"));
}

void TestYxConfig::unwritableFolderIsHarmless()
{
    Start(ProductIni(3));
    // A file in the place of the folder stops even a privileged user.
    WriteAll(DataHome() + QStringLiteral("/YXSOFT"), "in the way");
    QVERIFY(YxConfig::Instance()->WriteOpenMode({1, true, true}));
    QVERIFY(YxConfig::Instance()->WriteWindowSize({800, 600}));
    QCOMPARE(Stored(), QStringLiteral("0 0 0 0x0"));
}

void TestYxConfig::variantNamesReplaceTheProductButNotTheFile()
{
    Start(ProductIni(3, {}, "[YXCADM]\nProduct=YXCADM\nProductName=Mechanical\n"));
    YxConfig* config = YxConfig::Instance();
    QVERIFY(config->ReloadProductNames(QStringLiteral("YXCADM")));
    QCOMPARE(config->GetConfigInfo().Product, QStringLiteral("YXCADM"));
    QCOMPARE(config->GetConfigInfo().ProductName, QStringLiteral("Mechanical"));
    config->WriteWindowSize({1, 2});
    QVERIFY(ReadAll(SettingsFile()).contains("Width=1"));

    QVERIFY(config->ReloadProductNames(QStringLiteral("YXCADA")));
    QVERIFY(config->GetConfigInfo().Product.isEmpty());
    QVERIFY(config->GetConfigInfo().ProductName.isEmpty());
}

QTEST_GUILESS_MAIN(TestYxConfig)
#include "tst_yxconfig.moc"
