#include "helpdatabase.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <functional>

namespace {

const QLatin1String kConnection("helpdatabase-test");

void Run(QSqlQuery& query, const QString& statement, const QVariantList& values = {})
{
    bool done = query.prepare(statement);
    for (const QVariant& value : values)
        query.addBindValue(value);
    done = done && query.exec();
    if (!done)
        qFatal("%s: %s", qUtf8Printable(statement), qUtf8Printable(query.lastError().text()));
}

void WithQuery(const QString& path, const std::function<void(QSqlQuery&)>& work)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kConnection);
        database.setDatabaseName(path);
        if (!database.open())
            qFatal("no test database %s", qUtf8Printable(path));
        QSqlQuery query(database);
        Run(query, QStringLiteral("PRAGMA synchronous = OFF"));
        work(query);
    }
    QSqlDatabase::removeDatabase(kConnection);
}

QString Slug(const QString& title)
{
    QString slug = title.toLower();
    for (QChar& c : slug) {
        if (!c.isLetterOrNumber())
            c = QLatin1Char('_');
    }
    return slug;
}

int Indentation(const QString& line)
{
    int blanks = 0;
    while (blanks < line.size() && line.at(blanks) == QLatin1Char(' '))
        ++blanks;
    return blanks;
}

void SetField(TopicRow& row, const QString& name, const QString& value)
{
    static const QHash<QString, int TopicRow::*> numbers{
        {QStringLiteral("id"), &TopicRow::id},
        {QStringLiteral("parent"), &TopicRow::parent},
        {QStringLiteral("top"), &TopicRow::top},
        {QStringLiteral("category"), &TopicRow::category},
    };
    static const QHash<QString, QString TopicRow::*> texts{
        {QStringLiteral("title"), &TopicRow::title},       {QStringLiteral("file"), &TopicRow::file},
        {QStringLiteral("key"), &TopicRow::key},           {QStringLiteral("path"), &TopicRow::path},
        {QStringLiteral("html"), &TopicRow::html},         {QStringLiteral("images"), &TopicRow::images},
        {QStringLiteral("subtitle"), &TopicRow::subtitle}, {QStringLiteral("body"), &TopicRow::body},
    };
    if (name == QLatin1String("favorite"))
        row.favorite = true;
    else if (numbers.contains(name))
        row.*numbers.value(name) = value.toInt();
    else if (texts.contains(name))
        row.*texts.value(name) = value;
    else
        qFatal("no field \"%s\" in a topic", qUtf8Printable(name));
}

void SetFields(TopicRow& row, QString rest)
{
    while (!rest.isEmpty()) {
        const int end = rest.startsWith(QLatin1String("html=")) ? -1 : rest.indexOf(QLatin1String(" | "));
        const QString field = rest.left(end);
        rest = end < 0 ? QString() : rest.mid(end + 3);
        const int equals = field.indexOf(QLatin1Char('='));
        SetField(row, field.left(equals).trimmed(), equals < 0 ? QString() : field.mid(equals + 1));
    }
}

} // namespace

HelpDatabase::HelpDatabase(const QString& topics, const QString& languageTag, const QString& databaseName)
    : language(languageTag), fileName(databaseName)
{
    if (!dir.isValid() || !QDir().mkpath(HelpDir()))
        qFatal("no temporary directory");
    Execute(
        QStringLiteral("CREATE TABLE HelpFileList (ID INTEGER PRIMARY KEY, Title TEXT, FileName TEXT, "
                       "KeyName TEXT, FilePath TEXT, ParentID INTEGER, TopParentId INTEGER, Body TEXT, "
                       "ImagePath TEXT, Category INTEGER, SubTitle TEXT, IsFavorite BOOLEAN, Html TEXT)"));
    Execute(QStringLiteral("CREATE TABLE ImageList (ImagePath TEXT, ImageData BLOB)"));
    AddTopics(topics);
}

QString HelpDatabase::HelpDir() const
{
    return dir.path() + QLatin1Char('/') + language + QLatin1String("/Help");
}

QString HelpDatabase::Path() const
{
    return HelpDir() + QLatin1Char('/') + fileName;
}

void HelpDatabase::AddTopics(const QString& lines)
{
    const QStringList each = lines.split(QLatin1Char('\n'));
    int margin = lines.size();
    for (const QString& line : each) {
        if (!line.trimmed().isEmpty())
            margin = std::min(margin, Indentation(line));
    }
    QList<TopicRow> rows;
    for (const QString& line : each) {
        if (!line.trimmed().isEmpty())
            rows.append(ParseLine(line.trimmed(), (Indentation(line) - margin) / 2));
    }
    Insert(rows);
}

TopicRow HelpDatabase::ParseLine(const QString& line, int level)
{
    const bool outside = line.startsWith(QLatin1Char('~'));
    const int titleEnd = line.indexOf(QLatin1String(" | "));
    const QString title = line.left(titleEnd).mid(outside ? 1 : 0).trimmed();

    TopicRow row;
    row.title = title;
    row.file = title;
    row.key = Slug(title);
    row.path = QLatin1String("topics\\") + row.key + QLatin1String(".html");
    row.html = QLatin1String("<html><head><title>") + title + QLatin1String("</title></head><body><h1>") +
               title + QLatin1String("</h1></body></html>");

    ancestors = ancestors.mid(0, level);
    row.id = lastId + 1;
    row.parent = outside ? kOutsideTree : ancestors.isEmpty() ? 0 : ancestors.last().id;
    // The search filter goes by the rows below the root.
    row.top = ancestors.size() > 1 ? ancestors.at(1).id : row.id;
    if (titleEnd >= 0)
        SetFields(row, line.mid(titleEnd + 3));
    if (row.body.isNull()) {
        static const QRegularExpression tags(QStringLiteral("<[^>]*>"));
        row.body = QString(row.html).remove(tags);
    }
    lastId = row.id;
    ancestors.append(row);
    return row;
}

void HelpDatabase::AddTopic(TopicRow row)
{
    if (row.id == 0)
        row.id = lastId + 1;
    lastId = row.id;
    Insert({row});
}

void HelpDatabase::Insert(const QList<TopicRow>& rows)
{
    WithQuery(Path(), [&](QSqlQuery& query) {
        Run(query, QStringLiteral("BEGIN"));
        for (const TopicRow& row : rows) {
            Run(query,
                QStringLiteral("INSERT INTO HelpFileList (ID, Title, FileName, KeyName, FilePath, ParentID, "
                               "TopParentId, Body, ImagePath, Category, SubTitle, IsFavorite, Html) "
                               "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                {row.id, row.title, row.file, row.key, row.path, row.parent, row.top, row.body, row.images,
                 row.category, row.subtitle, row.favorite, row.html});
        }
        Run(query, QStringLiteral("COMMIT"));
    });
}

void HelpDatabase::AddScript(const QString& name, const QString& content)
{
    TopicRow row;
    row.parent = kOutsideTree;
    row.file = name;
    row.html = content;
    row.body = QStringLiteral("js");
    AddTopic(row);
}

void HelpDatabase::AddImage(const QString& key, const QByteArray& data)
{
    WithQuery(Path(), [&](QSqlQuery& query) {
        Run(query, QStringLiteral("INSERT INTO ImageList (ImagePath, ImageData) VALUES (?, ?)"), {key, data});
    });
}

void HelpDatabase::Execute(const QString& statement)
{
    WithQuery(Path(), [&](QSqlQuery& query) { Run(query, statement); });
}

QStringList HelpDatabase::Select(const QString& statement) const
{
    QStringList values;
    WithQuery(Path(), [&](QSqlQuery& query) {
        Run(query, statement);
        while (query.next())
            values.append(query.value(0).toString());
    });
    return values;
}

QString HelpDatabase::Favorites() const
{
    return Select(QStringLiteral("SELECT ID FROM HelpFileList WHERE IsFavorite = true ORDER BY ID"))
        .join(QLatin1Char(' '));
}

void HelpDatabase::Truncate(qint64 size)
{
    if (!QFile::resize(Path(), size))
        qFatal("%s not truncated", qUtf8Printable(Path()));
}

void HelpDatabase::Overwrite(const QByteArray& content)
{
    QFile file(Path());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s not overwritten", qUtf8Printable(Path()));
}

QString ContentsText(const QList<TreeViewModel>& rows)
{
    QString text;
    QHash<int, int> levels;
    for (const TreeViewModel& row : rows) {
        const bool outside = row.ParentId >= kOutsideTree;
        const int level = levels.value(row.ParentId, -1) + 1;
        levels.insert(row.Id, level);
        text += QString(level * 2, QLatin1Char(' ')) + QLatin1String(outside ? "~ " : "") + row.FileName +
                QLatin1Char('\n');
    }
    return text;
}

QByteArray NoiseImage(int width, int height, const char* format)
{
    QImage image(width, height, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, 0xff000000U | random.generate());
    }
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        qFatal("no image in format %s", format);
    return data;
}
