#include "instances.h"

#include "launchargs.h"
#include "mailbox.h"
#include "platform.h"

#include <QStringList>

#include <algorithm>

InstanceMap RunningInstances;

void ScanHelpProcesses()
{
    for (const std::int32_t pid : platform::OtherViewers())
        RunningInstances[pid] = InstanceInfo();
}

void ReadInstanceCommandLines()
{
    ReadCommandLines(RunningInstances, &platform::CommandLineOf);
}

void ReadCommandLines(InstanceMap& instances, const CommandLineReader& read)
{
    for (auto entry = instances.begin(); entry != instances.end(); ++entry) {
        if (const std::optional<std::string> line = read(entry.key())) {
            entry->commandLine = QString::fromStdString(*line);
            continue;
        }
        entry = instances.erase(entry);
        if (entry == instances.end())
            return;
    }
}

void ReadSwitches(InstanceInfo& instance, const QString& tag)
{
    const QStringList words = instance.commandLine.split(QLatin1Char(' '), Qt::KeepEmptyParts);
    // The first word is the program, the last one has no value behind it.
    for (int i = 1; i + 1 < words.size(); ++i) {
        if (words[i] == QLatin1String("/Language"))
            instance.language = words[i + 1];
        else if (words[i] == QLatin1String("/helpTitle"))
            instance.helpTitle = words[i + 1];
    }
    if (instance.language.isEmpty())
        instance.language = tag;
    if (instance.helpTitle.isEmpty())
        instance.helpTitle = QStringLiteral("YXCAD");
}

bool DiscoverInstances(QString tag)
{
    ScanHelpProcesses();
    ReadInstanceCommandLines();
    for (InstanceInfo& instance : RunningInstances)
        ReadSwitches(instance, tag);
    return !RunningInstances.isEmpty();
}

std::optional<SMData> ChooseHandOver(const InstanceMap& instances, HelpLaunchArgs args, const QString& tag)
{
    if (args.language.isEmpty())
        args.language = tag;
    const auto chosen =
        std::find_if(instances.cbegin(), instances.cend(), [&args](const InstanceInfo& instance) {
            return instance.language == args.language && instance.helpTitle == args.helpTitle;
        });
    if (chosen == instances.cend())
        return std::nullopt;
    // Without a topic the window is only wanted in front: nothing but the receiver travels.
    return MakeSMData(chosen.key(), args.topic.isEmpty() ? HelpLaunchArgs() : args);
}

bool ForwardToRunningInstance(HelpLaunchArgs args, QString tag)
{
    const std::optional<SMData> record = ChooseHandOver(RunningInstances, args, tag);
    if (!record)
        return false;
    WriteSharedMemory(*record);
    return true;
}

bool IsAlreadyRunning()
{
    return platform::ViewerNameIsTaken();
}
