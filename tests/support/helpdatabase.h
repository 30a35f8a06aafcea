#pragma once

#include "treeviewmodel.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

/// First column of all rows of a statement on a database.
QStringList SelectFrom(const QString& path, const QString& statement);

/// A deployment with one help database, in a temporary directory of its own. Topics come as lines of text:
///
///     Home
///       Getting started | key=start | path=guide\start.html
///         Install | favorite
///       Reference | html=<body>a | b</body>
///     ~ Legal notice
///
/// Two more blanks than the line above make a child of it; the block as a whole may be indented. "~" puts a
/// row outside the tree. Fields follow behind " | " as name=value: id, parent, top, category, title, file,
/// key, path, html, images, subtitle, body and favorite. `favorite` needs no value, and `html` takes the rest
/// of the line. What isn't given is derived from the title: for
/// "Getting started" the file name is the same, the key "getting_started", the path
/// "topics\getting_started.html", the page has it as title and heading, and the body is the page's text.
/// A field given without a value ("title=") is empty.
///
/// Any failure ends the test program with a message.
class HelpDatabase
{
public:
    explicit HelpDatabase(const QString& topics = QString(),
                          const QString& language = QStringLiteral("en-US"),
                          const QString& fileName = QStringLiteral("YXCADHelp.db"));

    QString RccPath() const { return dir.path(); } ///< What start-up takes for the program's directory.
    QString Language() const { return language; }
    QString FileName() const { return fileName; }
    QString HelpDir() const { return dir.filePath(language) + QLatin1String("/Help"); }
    QString Path() const { return HelpDir() + QLatin1Char('/') + fileName; }

    void AddTopics(const QString& lines);
    /// A script row, outside the tree.
    void AddScript(const QString& name, const QString& content);
    void AddImage(const QString& key, const QByteArray& data);

    /// Runs a statement as it stands, for rows and tables that the functions above can't make.
    void Execute(const QString& statement);
    /// First column of all rows.
    QStringList Select(const QString& statement) const { return SelectFrom(Path(), statement); }
    /// Ids of the marked rows in ascending order, joined by blanks.
    QString Favorites() const;

    /// Damages: the file keeps its first bytes only, or is no database at all.
    void Truncate(qint64 size);
    void Overwrite(const QByteArray& content);

private:
    using Row = QMap<QString, QVariant>; ///< Values by the names of their columns.
    Row ParseLine(const QString& line, int level);

    QTemporaryDir dir;
    QString language;
    QString fileName;
    int lastId = 0;
    QList<int> ancestors; ///< The row at each level of the tree that the next line may stand below.
};

/// The contents list as indented text, one line for each row, in the form that HelpDatabase reads.
QString ContentsText(const QList<TreeViewModel>& rows);

/// An image file with noise, so that its size grows with its sides. `format` as for QImage::save.
QByteArray NoiseImage(int width, int height, const char* format = "png", quint32 seed = 1);
