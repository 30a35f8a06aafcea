#include "configinfo.h"
#include "launchargs.h"
#include "platform.h"
#include "qcommon.h"

#include <QDir>
#include <QFile>
#include <QTimer>
#include <QtTest>

class TestQCommon : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void installedLanguageDecidesTheTag_data();
    void installedLanguageDecidesTheTag();
    void unknownSpellingsFallBackDifferently();
    void mechRules();
    void recordCarriesTextsCutByCharacters_data();
    void recordCarriesTextsCutByCharacters();
    void fullFieldIsReadToItsEndOnly();
    void pumpRunsPendingEventsAndNeverNests();

private:
    static QString StoreFile();
};

QString TestQCommon::StoreFile()
{
    return QString::fromLocal8Bit(qgetenv("XDG_CONFIG_DIRS")) + QStringLiteral("/YXSOFT/YxHelpDocument.conf");
}

void TestQCommon::cleanup()
{
    QFile::remove(StoreFile());
}

void TestQCommon::installedLanguageDecidesTheTag_data()
{
    QTest::addColumn<QByteArray>("store");
    QTest::addColumn<QString>("localeName");
    QTest::addColumn<QString>("tag");
    // The tests run in the C locale, which is English to Qt.
    QTest::newRow("store missing") << QByteArray() << SystemLocaleName()
                                   << LocaleNameToTag(SystemLocaleName());
    QTest::newRow("value missing") << QByteArray("[General]\nOther=1\n") << QString()
                                   << QStringLiteral("en-US");
    QTest::newRow("value") << QByteArray("[General]\nCurrentLang=zh_CN\n") << QStringLiteral("zh_CN")
                           << QStringLiteral("zh-CN");
    QTest::newRow("dash form") << QByteArray("[General]\nCurrentLang=zh-CN\n") << QStringLiteral("zh-CN")
                               << QStringLiteral("en-US");
    QTest::newRow("other case") << QByteArray("[General]\nCurrentLang=ZH_CN\n") << QStringLiteral("ZH_CN")
                                << QStringLiteral("en-US");
    QTest::newRow("garbage file") << QByteArray("\xff\xfe\0[[[=\n", 8) << QString()
                                  << QStringLiteral("en-US");
}

void TestQCommon::installedLanguageDecidesTheTag()
{
    QFETCH(QByteArray, store);
    QFETCH(QString, localeName);
    QFETCH(QString, tag);
    if (!store.isEmpty()) {
        QVERIFY(QDir().mkpath(QFileInfo(StoreFile()).path()));
        QFile file(StoreFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(store);
        // The settings class keeps a file that has the size and time of one that it knows.
        static int run = 0;
        file.write(QByteArray("; ") + QByteArray(++run, '.') + '\n');
    }
    QCOMPARE(ReadCurrentLang(), localeName);
    QCOMPARE(LocaleNameToTag(ReadCurrentLang()), tag);
}

void TestQCommon::unknownSpellingsFallBackDifferently()
{
    QCOMPARE(LocaleNameToTag(QStringLiteral("en_GB")), QStringLiteral("en-US"));
    QCOMPARE(TagToLocaleName(QStringLiteral("en-GB")), QStringLiteral("zh_CN"));
    QCOMPARE(TagToLocaleName(LocaleNameToTag(QStringLiteral("pt_PT"))), QStringLiteral("pt_PT"));
}

void TestQCommon::mechRules()
{
    const QString mech = QStringLiteral("YxMech");
    const QString cad = QStringLiteral("YXCAD");
    QCOMPARE(MechLanguageRule(mech, QStringLiteral("zh-TW")), QStringLiteral("zh-CN"));
    QCOMPARE(MechLanguageRule(mech, QStringLiteral("ja-JP")), QStringLiteral("ja-JP"));
    QCOMPARE(MechLanguageRule(mech, QStringLiteral("de-DE")), QStringLiteral("en-US"));
    QCOMPARE(MechLanguageRule(cad, QStringLiteral("de-DE")), QStringLiteral("de-DE"));

    ConfigInfo config;
    config.HelpmanagerUrl = QStringLiteral("m");
    QCOMPARE(MechUrlRule(mech, QStringLiteral("zh-TW"), QStringLiteral("u"), config), QStringLiteral("m"));
    QCOMPARE(MechUrlRule(mech, QStringLiteral("zh-CN"), QStringLiteral("u"), config), QStringLiteral("u"));
    QCOMPARE(MechUrlRule(cad, QStringLiteral("zh-TW"), QStringLiteral("u"), config), QStringLiteral("u"));
}

void TestQCommon::recordCarriesTextsCutByCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QString() << QByteArray();
    QTest::newRow("ascii") << QStringLiteral("TOPIC_1") << QByteArray("TOPIC_1");
    QTest::newRow("127") << QString(127, QLatin1Char('a')) << QByteArray(127, 'a');
    QTest::newRow("128") << QString(128, QLatin1Char('a')) << QByteArray(128, 'a');
    QTest::newRow("too long") << QString(1000, QLatin1Char('a')) << QByteArray(128, 'a');
    QTest::newRow("ten bytes of ten characters")
        << QString(10, QChar(0x5e2e)) << QByteArray("\xe5\xb8\xae\xe5\xb8\xae\xe5\xb8\xae\xe5");
}

void TestQCommon::recordCarriesTextsCutByCharacters()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    HelpLaunchArgs args;
    args.product = QStringLiteral("P");
    args.topic = text;
    const SMData data = MakeSMData(-1, args);
    QCOMPARE(data.pid, -1);
    QCOMPARE(TextOf(data.product), QStringLiteral("P"));
    QCOMPARE(TextOf(data.version), QString());
    QByteArray expected = bytes;
    expected.append(QByteArray(128 - bytes.size(), '\0'));
    QCOMPARE(QByteArray(data.topic.data(), 128), expected);
}

void TestQCommon::fullFieldIsReadToItsEndOnly()
{
    SMData data;
    data.product.fill('p');
    data.version.fill('v');
    QCOMPARE(TextOf(data.product), QString(128, QLatin1Char('p')));
}

void TestQCommon::pumpRunsPendingEventsAndNeverNests()
{
    int runs = 0;
    int nested = 0;
    auto* doomed = new QObject;
    QPointer<QObject> alive(doomed);
    doomed->deleteLater();
    QTimer::singleShot(0, this, [&] {
        ++runs;
        QTimer::singleShot(0, this, [&] { ++nested; });
        PumpEvents();
        QCOMPARE(nested, 0);
    });
    QTRY_VERIFY_WITH_TIMEOUT((PumpEvents(), runs == 1), 5000);
    QTRY_VERIFY_WITH_TIMEOUT((PumpEvents(), nested == 1), 5000);
    QVERIFY(alive.isNull());
}

QTEST_GUILESS_MAIN(TestQCommon)
#include "tst_qcommon.moc"
