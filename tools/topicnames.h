#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

namespace helpbuild {

/// The text in ASCII: accents are dropped, other letters are written by their code.
QString AsciiText(const QString& text);

/// A file name of letters, digits, ".", "_" and "-" alone.
QString SafeFileName(const QString& name);

/// The path with a number behind the name of its file.
QString Numbered(const QString& path, int number);

/// Hands out the paths of topics. The viewer finds a link's topic by comparing parts of paths, and a topic
/// of the web site with "_" as a wildcard, and takes the first row that fits: each path handed out here is
/// found by itself, provided that the rows stand in the order of the calls.
class TopicPaths
{
public:
    /// Path with forward slashes for the topic that stands at `wanted` in the documentation.
    QString Take(const QString& wanted);

private:
    bool IsFree(const QString& path) const;
    void Keep(const QString& path);

    QHash<QString, QStringList> byName; ///< Lower-case paths by their last part.
    QHash<int, QStringList> byLength;   ///< Lower-case paths by their length.
};

/// Hands out topic keys: ASCII, 127 bytes at most, without characters that the viewer's statements trip
/// over, unique ignoring case.
class TopicKeys
{
public:
    /// Key made of `wanted`; when that is taken, of `qualified`; when that is taken too, with a number.
    QString Take(const QString& wanted, const QString& qualified);

    /// `text` as far as it can be a key; not yet unique.
    static QString Clean(const QString& text);

private:
    bool Keep(const QString& key);

    QSet<QString> taken;
};

} // namespace helpbuild
