#pragma once

#include "treeviewmodel.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// One row of the topics as a test describes it.
struct TopicRow
{
    int id = 0; ///< 0: one more than the row before.
    int parent = 0;
    int top = 0;
    int category = 0;
    bool favorite = false;
    QString title;
    QString file;
    QString key;
    QString path;
    QString html;
    QString images;
    QString subtitle;
    QString body;
};

/// A deployment with one help database, in a temporary directory of its own. Topics come as lines of text:
///
///     Home
///       Getting started | key=start | path=guide\start.html
///         Install | favorite
///       Reference | html=<body>a | b</body>
///     ~ Legal notice
///
/// Two more blanks than the line above make a child of it; the block as a whole may be indented. "~" puts a
/// row outside the tree. Fields follow behind " | " as name=value, with the names of TopicRow; `favorite`
/// needs no value, and `html` takes the rest of the line. What isn't given is derived from the title: for
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
    QString HelpDir() const;
    QString Path() const;

    void AddTopics(const QString& lines);
    /// A row with the values as they stand.
    void AddTopic(TopicRow row);
    /// A script row, outside the tree.
    void AddScript(const QString& name, const QString& content);
    void AddImage(const QString& key, const QByteArray& data);

    /// Runs a statement as it stands, for rows and tables that the functions above can't make.
    void Execute(const QString& statement);
    /// First column of all rows.
    QStringList Select(const QString& statement) const;
    /// Ids of the marked rows in ascending order, joined by blanks.
    QString Favorites() const;

    /// Damages: the file keeps its first bytes only, or is no database at all.
    void Truncate(qint64 size);
    void Overwrite(const QByteArray& content);

private:
    TopicRow ParseLine(const QString& line, int level);
    void Insert(const QList<TopicRow>& rows);

    QTemporaryDir dir;
    QString language;
    QString fileName;
    int lastId = 0;
    QList<TopicRow> ancestors; ///< The row at each level of the tree that the next line may stand below.
};

/// The contents list as indented text, one line for each row, in the form that HelpDatabase reads.
QString ContentsText(const QList<TreeViewModel>& rows);

/// An image file with noise, so that its size grows with its sides. `format` as for QImage::save.
QByteArray NoiseImage(int width, int height, const char* format = "png");
