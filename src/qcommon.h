#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>

struct ConfigInfo;
struct HelpLaunchArgs;

/// Language rules, the hand-over record and the text helpers shared by the units of the program.

/// Locale name of the installed language ("zh_CN"); the system's when nothing is installed; empty when the
/// installation names none.
QString ReadCurrentLang();

/// Locale name for the system's language.
QString SystemLocaleName();

/// Tag ("zh-CN") of a locale name ("zh_CN"); "en-US" for an unknown one. Case-sensitive.
QString LocaleNameToTag(const QString& localeName);

/// Locale name of a tag; "zh_CN" for an unknown one. Case-sensitive.
QString TagToLocaleName(const QString& tag);

/// Language tag that the product's help is available in.
QString MechLanguageRule(const QString& product, const QString& language);

/// Address service that the product uses for the language.
QString MechUrlRule(const QString& product, const QString& language, const QString& url,
                    const ConfigInfo& config);

/// Record that carries a request between two viewers of the same build, or inside one.
struct SMData
{
    static constexpr std::size_t kTextSize = 128;
    using Text = std::array<char, kTextSize>; ///< UTF-8, ends at the first zero byte or at its full size.

    std::int32_t pid = 0; ///< Receiver's process id; -1 when the record stays inside the process.
    Text product{};
    Text version{};
    Text language{};
    Text topic{};
};
static_assert(sizeof(SMData) == 516 && alignof(SMData) == 4);

/// Record for the process `pid` with the four texts of `args`. A text is cut to as many UTF-8 bytes as it
/// has characters, 128 at most.
SMData MakeSMData(std::int32_t pid, const HelpLaunchArgs& args);

/// Text of a field. Reads no byte beyond the field.
QString TextOf(const SMData::Text& field);

/// Lets pending events of the program run, but neither user input nor sockets. Never nests.
void PumpEvents();
