#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

struct ConfigInfo;

/// What the help manager is asked for.
struct OnlineQuestion
{
    QString product;
    int version = 0;
    QString language;
    QByteArray topic;            ///< Key, in the local 8-bit encoding.
    std::optional<QString> path; ///< Path of the topic with forward slashes; left out where it isn't known.
};

/// What it says.
struct OnlineAnswer
{
    /// The network did not answer.
    static constexpr int kNoNetwork = 28;

    int code = 0;    ///< 0 when the page is known.
    QString address; ///< Empty on failure.
};

/// Asks the manager that `config` names for the language, and waits for the answer.
OnlineAnswer AskOnlineAddress(const ConfigInfo& config, const OnlineQuestion& question);

/// Text between the last backslash and the last dot.
QString FileBaseName(const QString& path);

/// Key of a topic that has none: the base name of its path in capitals, in the local 8-bit encoding.
QByteArray KeyFromPath(const QString& path);
