#include "launchargs.h"

#include <array>

namespace {

struct LaunchSwitch
{
    QLatin1String name;
    QString HelpLaunchArgs::*field;
};

// "/RccPath" is a second spelling of "/helpTitle": hosts in the field rely on it.
const std::array<LaunchSwitch, 7> kSwitches{{
    {QLatin1String("/Product"), &HelpLaunchArgs::product},
    {QLatin1String("/Version"), &HelpLaunchArgs::version},
    {QLatin1String("/Language"), &HelpLaunchArgs::language},
    {QLatin1String("/Topic"), &HelpLaunchArgs::topic},
    {QLatin1String("/MdbFile"), &HelpLaunchArgs::mdbFile},
    {QLatin1String("/helpTitle"), &HelpLaunchArgs::helpTitle},
    {QLatin1String("/RccPath"), &HelpLaunchArgs::helpTitle},
}};

} // namespace

bool IsSwitchValue(const QString& word)
{
    return !word.startsWith(QLatin1Char('/'));
}

HelpLaunchArgs ParseLaunchArgs(int argc, const char* const* argv)
{
    HelpLaunchArgs args;
    args.mdbFile = QStringLiteral("YXCADHelp.db");
    args.helpTitle = QStringLiteral("YXCAD");

    // The pairs overlap: a word that served as a value is still looked at as a switch for the next one.
    for (int i = 1; i < argc; ++i) {
        const QString name = QString::fromUtf8(argv[i - 1]);
        const QString value = QString::fromUtf8(argv[i]);
        for (const LaunchSwitch& entry : kSwitches) {
            if (name == entry.name && IsSwitchValue(value))
                args.*entry.field = value;
        }
    }
    return args;
}
