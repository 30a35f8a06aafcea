#include "platform.h"

#include <QFileInfo>
#include <QSettings>

namespace platform {

const bool kBypassWindowManager = false;
const bool kMinimizeBeforeRaise = false;
const bool kDpiArrivesAsMessage = false;

InstalledLanguage ReadInstalledLanguage()
{
    QSettings store(QSettings::NativeFormat, QSettings::SystemScope, QStringLiteral("YXSOFT"),
                    QStringLiteral("YxHelpDocument"));
    // The organisation's file would answer for every application of the maker.
    store.setFallbacksEnabled(false);
    if (!QFileInfo::exists(store.fileName()))
        return {};
    const QVariant value = store.value(QStringLiteral("CurrentLang"));
    if (!value.isValid())
        return {LanguageStore::ValueMissing, {}};
    return {LanguageStore::ValueRead, value.toString().toStdString()};
}

void LiftToTop(std::uintptr_t)
{
    // The window manager does it on the toolkit's own request to raise and activate.
}

std::optional<int> DpiOfNativeMessage(std::string_view, const void*)
{
    return std::nullopt;
}

} // namespace platform
