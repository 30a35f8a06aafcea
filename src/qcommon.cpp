#include "qcommon.h"

#include "configinfo.h"
#include "launchargs.h"
#include "platform.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QLocale>

#include <algorithm>
#include <atomic>

namespace {

struct LanguageRow
{
    QLatin1String code3;
    QLatin1String tag;
    QLatin1String localeName;
    QLatin1String shortCode;
};

LanguageRow Row(const char* code3, const char* tag, const char* localeName, const char* shortCode)
{
    return {QLatin1String(code3), QLatin1String(tag), QLatin1String(localeName), QLatin1String(shortCode)};
}

const std::array<LanguageRow, 15> LanguageTable{
    Row("Eng", "en-US", "en_US", "en"), Row("Chs", "zh-CN", "zh_CN", "zh"),
    Row("Cht", "zh-TW", "zh_TW", "zh"), Row("Csy", "cs-CZ", "cs_CZ", "cs"),
    Row("Deu", "de-DE", "de_DE", "de"), Row("Esn", "es-ES", "es_ES", "es"),
    Row("Fra", "fr-FR", "fr_FR", "fr"), Row("Hun", "hu-HU", "hu_HU", "hu"),
    Row("Ita", "it-IT", "it_IT", "it"), Row("Jpn", "ja-JP", "ja_JP", "ja"),
    Row("Kor", "ko-KR", "ko_KR", "ko"), Row("Plk", "pl-PL", "pl_PL", "pl"),
    Row("Ptb", "pt-PT", "pt_PT", "pt"), Row("Rus", "ru-RU", "ru_RU", "ru"),
    Row("Trk", "tr-TR", "tr_TR", "tr"),
};

QString LookUp(QLatin1String LanguageRow::*from, const QString& key, QLatin1String LanguageRow::*to,
               QLatin1String fallback)
{
    const auto row = std::find_if(LanguageTable.begin(), LanguageTable.end(),
                                  [&](const LanguageRow& candidate) { return candidate.*from == key; });
    return row == LanguageTable.end() ? fallback : (*row).*to;
}

// The count is taken in characters and the text in bytes, so text outside ASCII arrives cut short: both
// sides of a hand-over reckon with that.
void FillText(SMData::Text& field, const QString& text)
{
    const std::string bytes = text.toStdString();
    const std::size_t count = std::min({static_cast<std::size_t>(text.size()), field.size(), bytes.size()});
    std::copy_n(bytes.begin(), count, field.begin());
}

const QLatin1String kMech("YxMech");

} // namespace

QString ReadCurrentLang()
{
    const platform::InstalledLanguage installed = platform::ReadInstalledLanguage();
    if (installed.state == platform::LanguageStore::StoreMissing)
        return SystemLocaleName();
    return QString::fromStdString(installed.localeName);
}

QString SystemLocaleName()
{
    switch (QLocale::system().language()) {
    case QLocale::Albanian:
        return QStringLiteral("zh_TW");
    case QLocale::English:
        return QStringLiteral("en_US");
    default:
        return QStringLiteral("zh_CN");
    }
}

QString LocaleNameToTag(const QString& localeName)
{
    return LookUp(&LanguageRow::localeName, localeName, &LanguageRow::tag, QLatin1String("en-US"));
}

QString TagToLocaleName(const QString& tag)
{
    return LookUp(&LanguageRow::tag, tag, &LanguageRow::localeName, QLatin1String("zh_CN"));
}

QString MechLanguageRule(const QString& product, const QString& language)
{
    if (product != kMech)
        return language;
    if (language == QLatin1String("zh-TW") || language == QLatin1String("zh-CN"))
        return QStringLiteral("zh-CN");
    if (language == QLatin1String("ja-JP"))
        return language;
    return QStringLiteral("en-US");
}

QString MechUrlRule(const QString& product, const QString& language, const QString& url,
                    const ConfigInfo& config)
{
    return product == kMech && language == QLatin1String("zh-TW") ? config.HelpmanagerUrl : url;
}

SMData MakeSMData(std::int32_t pid, const HelpLaunchArgs& args)
{
    SMData data;
    data.pid = pid;
    FillText(data.product, args.product);
    FillText(data.version, args.version);
    FillText(data.language, args.language);
    FillText(data.topic, args.topic);
    return data;
}

QString TextOf(const SMData::Text& field)
{
    const auto end = std::find(field.begin(), field.end(), '\0');
    return QString::fromUtf8(field.data(), static_cast<int>(end - field.begin()));
}

void PumpEvents()
{
    static std::atomic_flag pumping = ATOMIC_FLAG_INIT;
    if (pumping.test_and_set())
        return;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    pumping.clear();
}
