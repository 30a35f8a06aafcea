#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <vector>

namespace helpbuild {

/// What a reference in a page leads to.
struct Target
{
    enum Kind {
        SamePage, ///< The page itself, at `fragment` when there is one.
        Topic,    ///< Another page among the topics.
        File,     ///< A file of the documentation that is no topic.
        Missing,  ///< Nothing that the documentation has.
        External, ///< An address outside.
        Special,  ///< "javascript:", "data:" and the like, which stay as they are.
    };

    Kind kind = Missing;
    QString path;     ///< Path in the documentation, also the one that was looked for in vain.
    QString fragment; ///< As it was written, without "#".
    QString address;  ///< Complete address, for External.
};

/// The documentation as one tree of files, in which references are resolved. A file goes by its path there,
/// with forward slashes: for a help project below its virtual folder, for a folder of pages relative to it.
class DocSite
{
public:
    /// The first file with a path keeps it; false when the path is taken by another file.
    bool AddFile(const QString& path, const QString& realPath);

    /// Files below `realFolder` that nobody listed are found on disk.
    void AddFolder(const QString& path, const QString& realFolder);

    /// Makes the file a topic; links to it are written as `link`.
    void AddTopic(const QString& path, const QString& link) { topicLinks.insert(path, link); }

    /// What links to the topic look like; empty for a file that is no topic.
    QString TopicLink(const QString& path) const { return topicLinks.value(path); }

    /// Path of the file that `path` names: exactly, or ignoring case, or as a folder with an index page.
    QString Locate(const QString& path) const;

    /// File on disk; empty when there is none.
    QString RealPath(const QString& path) const;

    /// Address of a file of the documentation, to resolve references against.
    static QUrl AddressOf(const QString& path);

    /// Resolves `reference`, found in `page`, against `base`.
    Target Resolve(const QString& reference, const QUrl& base, const QString& page) const;

private:
    struct Folder
    {
        QString path;
        QString realFolder;
    };

    QString LocateFile(const QString& path) const;
    QString OnDisk(const QString& path) const;

    QHash<QString, QString> files;
    QHash<QString, QString> foldedPaths;
    QHash<QString, QString> topicLinks;
    std::vector<Folder> folders;
};

/// Names of the page that stands for its folder, in the order of preference.
const QStringList& IndexPageNames();

/// True for the name of a file that holds a page.
bool IsPageName(const QString& name);

} // namespace helpbuild
