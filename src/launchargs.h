#pragma once

#include <QString>

/// What the host application asked for on the command line. A value type: every receiver owns its copy.
struct HelpLaunchArgs
{
    QString product;
    QString version;
    QString language;  ///< Language tag such as "zh-CN"; settled by start-up when empty.
    QString topic;     ///< Key of the topic to show.
    QString mdbFile;   ///< File name of the help database.
    QString helpTitle; ///< Product title; with the language it identifies a running viewer.
    QString rccPath;   ///< Directory of the deployment. No switch fills it; start-up does.
};

/// Reads the switches from the argument vector as the process entry received it (UTF-8). Never fails:
/// unknown words and malformed pairs leave the defaults.
HelpLaunchArgs ParseLaunchArgs(int argc, const char* const* argv);

/// True when a word may be the value of a switch, which is when it does not begin with "/".
bool IsSwitchValue(const QString& word);
