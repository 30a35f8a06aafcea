#pragma once

#include "qcommon.h"

#include <QMap>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

struct HelpLaunchArgs;

/// What is known of another running viewer.
struct InstanceInfo
{
    QString language;
    QString helpTitle;
    QString commandLine;
};

/// By process id: among several that match, the lowest one is chosen.
using InstanceMap = QMap<int, InstanceInfo>;

/// The other viewers, as found by DiscoverInstances.
extern InstanceMap RunningInstances;

/// Fills RunningInstances with the process ids of the other viewers.
void ScanHelpProcesses();

/// Fills in their command lines and drops those that can't be read.
void ReadInstanceCommandLines();

/// Finds the other viewers with their language and title; true when there is one. `tag` is the language of
/// those that name none.
bool DiscoverInstances(QString tag);

/// Hands the launch over to the first viewer of the same language and title: its topic when it has one,
/// otherwise the wish to see the window. True when there was such a viewer, whatever became of the hand-over.
bool ForwardToRunningInstance(HelpLaunchArgs args, QString tag);

/// True when another viewer runs that has called this function too.
bool IsAlreadyRunning();

/// The steps of the above that need no processes.

using CommandLineReader = std::function<std::optional<std::string>(std::int32_t pid)>;

/// As ReadInstanceCommandLines, on `instances`. The entry behind a dropped one is stepped over and keeps an
/// empty command line.
void ReadCommandLines(InstanceMap& instances, const CommandLineReader& read);

/// Sets language and title from the command line. It is cut at blanks, whatever the quotes; an empty value
/// counts as none.
void ReadSwitches(InstanceInfo& instance, const QString& tag);

/// Record to send, addressed to the chosen viewer; nothing when none matches.
std::optional<SMData> ChooseHandOver(const InstanceMap& instances, HelpLaunchArgs args, const QString& tag);
