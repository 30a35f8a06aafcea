#include "configinfo.h"
#include "launchargs.h"
#include "platform.h"
#include "qcommon.h"
#include "testtable.h"

class TestQCommon : public QObject
{
    Q_OBJECT

private slots:
    void installedLanguageDecidesTheTag();
    void unknownSpellingsFallBackDifferently();
    void mechRules();
    void recordCarriesTextsCutByCharacters();
    void fullFieldIsReadToItsEndOnly();
    void pumpRunsPendingEventsAndNeverNests();
};

void TestQCommon::installedLanguageDecidesTheTag()
{
    QCOMPARE(ReadCurrentLang(), SystemLocaleName());
    const QString path = QFile::decodeName(qgetenv("XDG_CONFIG_DIRS")) + "/YXSOFT/YxHelpDocument.conf"_s;
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    for (const auto& [store, name, tag] : std::initializer_list<std::tuple<QByteArray, QString, QString>>{
             {"[General]\nOther=1\n", QString(), "en-US"_s},
             {"[General]\nCurrentLang=zh_CN\n", "zh_CN"_s, "zh-CN"_s},
             {"[General]\nCurrentLang=zh-CN\n", "zh-CN"_s, "en-US"_s},
             {"[General]\nCurrentLang=ZH_CN\n", "ZH_CN"_s, "en-US"_s},
             {QByteArray("\xff\xfe\0[[[=\n", 8), QString(), "en-US"_s}}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(store) == store.size());
        // The settings class keeps a file that has the size and time of one that it knows.
        static int run = 0;
        file.write("; " + QByteArray(++run, '.') + '\n');
        file.close();
        QCOMPARE(ReadCurrentLang(), name);
        QCOMPARE(LocaleNameToTag(name), tag);
    }
    QFile::remove(path);
}

void TestQCommon::unknownSpellingsFallBackDifferently()
{
    QCOMPARE(LocaleNameToTag("en_GB"_s), "en-US"_s);
    QCOMPARE(TagToLocaleName("en-GB"_s), "zh_CN"_s);
    QCOMPARE(TagToLocaleName(LocaleNameToTag("pt_PT"_s)), "pt_PT"_s);
}

void TestQCommon::mechRules()
{
    ConfigInfo config;
    config.HelpmanagerUrl = "m"_s;
    for (const char* line : {"YxMech zh-TW zh-CN m", "YxMech ja-JP ja-JP", "YxMech de-DE en-US",
                             "YxMech zh-CN zh-CN u", "YXCAD de-DE de-DE", "YXCAD zh-TW zh-TW u"}) {
        const QStringList words = QString::fromLatin1(line).split(QLatin1Char(' '));
        QCOMPARE(MechLanguageRule(words[0], words[1]), words[2]);
        if (words.size() > 3)
            QCOMPARE(MechUrlRule(words[0], words[1], "u"_s, config), words[3]);
    }
}

void TestQCommon::recordCarriesTextsCutByCharacters()
{
    for (const auto& [text, bytes] : std::initializer_list<std::pair<QString, QByteArray>>{
             {QString(), ""},
             {QString(127, QLatin1Char('a')), QByteArray(127, 'a')},
             {QString(1000, QLatin1Char('a')), QByteArray(128, 'a')},
             {QString(10, QChar(0x5e2e)), "\xe5\xb8\xae\xe5\xb8\xae\xe5\xb8\xae\xe5"}}) {
        HelpLaunchArgs args;
        args.product = "P"_s;
        args.topic = text;
        const SMData data = MakeSMData(-1, args);
        QCOMPARE(data.pid, -1);
        QCOMPARE(TextOf(data.product) + TextOf(data.version), "P"_s);
        QCOMPARE(QByteArray(data.topic.data(), 128), bytes + QByteArray(128 - bytes.size(), '\0'));
    }
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
    QPointer<QObject> doomed(new QObject);
    doomed->deleteLater();
    QTimer::singleShot(0, this, [&] {
        ++runs;
        QTimer::singleShot(0, this, [&] { ++nested; });
        PumpEvents();
        QCOMPARE(nested, 0);
    });
    QTRY_VERIFY_WITH_TIMEOUT((PumpEvents(), runs == 1), 5000);
    QTRY_VERIFY_WITH_TIMEOUT((PumpEvents(), nested == 1), 5000);
    QVERIFY(doomed.isNull());
}

QTEST_GUILESS_MAIN(TestQCommon)
#include "tst_qcommon.moc"
