#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// Knows where the topics of a web site are, in each of its languages.
class AddressBook
{
public:
    /// Reads "<language>/addresses.json" of each language. False, with the reason in Error(), when there is
    /// none or one can't be read.
    bool Load(const QString& siteFolder);

    const QString& Error() const { return error; }
    const QStringList& Languages() const { return languages; }

    /// Path of the page below the site, with forward slashes; empty when the topic is unknown. A topic goes
    /// by its key, then by `path`, then by the base name of its file, all without regard to case. The viewer
    /// asks for its first page by the base name of the home page, so among equal names the first one counts.
    QString Find(const QString& language, const QString& topic, const QString& path) const;

private:
    struct Table
    {
        QString folder; ///< Of the pages, with a slash behind.
        QString home;
        QHash<QString, QString> byKey;
        QHash<QString, QString> byPath;
        QHash<QString, QString> byBaseName;
    };

    bool LoadTable(const QString& file, const QString& folder);
    bool Fail(const QString& file, const char* text);

    QHash<QString, Table> tables; ///< By language in lower case.
    QStringList languages;
    QString error;
};
