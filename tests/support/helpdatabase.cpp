#include "helpdatabase.h"

#include "literal.h"

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
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE"_s, kConnection);
        database.setDatabaseName(path);
        if (!database.open())
            qFatal("no test database %s", qUtf8Printable(path));
        QSqlQuery query(database);
        Run(query, "PRAGMA synchronous = OFF"_s);
        work(query);
    }
    QSqlDatabase::removeDatabase(kConnection);
}

void Insert(QSqlQuery& query, const QMap<QString, QVariant>& row)
{
    const QString places = QStringList("?, "_s.repeated(row.size())).join(QString()).chopped(2);
    Run(query,
        "INSERT INTO HelpFileList (%1) VALUES (%2)"_s.arg(QStringList(row.keys()).join(", "_s), places),
        row.values());
}

int Indentation(const QString& line)
{
    return line.indexOf(QRegularExpression("[^ ]|$"_s));
}

void SetFields(QMap<QString, QVariant>& row, QString rest)
{
    static const QHash<QString, QString> columns{{"id"_s, "ID"_s},
                                                 {"parent"_s, "ParentID"_s},
                                                 {"top"_s, "TopParentId"_s},
                                                 {"category"_s, "Category"_s},
                                                 {"title"_s, "Title"_s},
                                                 {"file"_s, "FileName"_s},
                                                 {"key"_s, "KeyName"_s},
                                                 {"path"_s, "FilePath"_s},
                                                 {"html"_s, "Html"_s},
                                                 {"images"_s, "ImagePath"_s},
                                                 {"subtitle"_s, "SubTitle"_s},
                                                 {"body"_s, "Body"_s},
                                                 {"favorite"_s, "IsFavorite"_s}};
    while (!rest.isEmpty()) {
        const int end = rest.startsWith("html="_s) ? -1 : rest.indexOf(" | "_s);
        const QString field = rest.left(end);
        rest = end < 0 ? QString() : rest.mid(end + 3);
        const int equals = field.indexOf(QLatin1Char('='));
        const QString column = columns.value(field.left(equals).trimmed());
        if (column.isEmpty())
            qFatal("no such field in a topic: %s", qUtf8Printable(field));
        row[column] = equals < 0 ? QVariant(true) : QVariant(field.mid(equals + 1));
    }
}

} // namespace

HelpDatabase::HelpDatabase(const QString& topics, const QString& languageTag, const QString& databaseName)
    : language(languageTag), fileName(databaseName)
{
    if (!dir.isValid() || !QDir().mkpath(HelpDir()))
        qFatal("no temporary directory");
    Execute("CREATE TABLE HelpFileList (ID INTEGER PRIMARY KEY, Title TEXT, FileName TEXT, "
            "KeyName TEXT, FilePath TEXT, ParentID INTEGER, TopParentId INTEGER, Body TEXT, "
            "ImagePath TEXT, Category INTEGER, SubTitle TEXT, IsFavorite BOOLEAN, Html TEXT)"_s);
    Execute("CREATE TABLE ImageList (ImagePath TEXT, ImageData BLOB)"_s);
    AddTopics(topics);
}

void HelpDatabase::AddTopics(const QString& lines)
{
    QStringList each = lines.split(QLatin1Char('\n'));
    each.erase(std::remove_if(each.begin(), each.end(),
                              [](const QString& line) { return line.trimmed().isEmpty(); }),
               each.end());
    int margin = lines.size();
    for (const QString& line : each)
        margin = std::min(margin, Indentation(line));
    WithQuery(Path(), [&](QSqlQuery& query) {
        Run(query, "BEGIN"_s);
        for (const QString& line : each)
            Insert(query, ParseLine(line.trimmed(), (Indentation(line) - margin) / 2));
        Run(query, "COMMIT"_s);
    });
}

HelpDatabase::Row HelpDatabase::ParseLine(const QString& line, int level)
{
    const bool outside = line.startsWith(QLatin1Char('~'));
    const int titleEnd = line.indexOf(" | "_s);
    const QString title = line.left(titleEnd).mid(outside ? 1 : 0).trimmed();
    const QString key = title.toLower().replace(
        QRegularExpression("[\\W_]"_s, QRegularExpression::UseUnicodePropertiesOption), "_"_s);
    ancestors = ancestors.mid(0, level);
    const int id = lastId + 1;
    Row row{{"ID"_s, id},
            {"ParentID"_s, outside               ? kOutsideTree
                           : ancestors.isEmpty() ? 0
                                                 : ancestors.last()},
            // The search filter goes by the rows below the root.
            {"TopParentId"_s, ancestors.size() > 1 ? ancestors.at(1) : id},
            {"Category"_s, 0},
            {"IsFavorite"_s, false},
            {"Title"_s, title},
            {"FileName"_s, title},
            {"KeyName"_s, key},
            {"FilePath"_s, "topics\\%1.html"_s.arg(key)},
            {"Html"_s, QString("<html><head><title>"_s + title + "</title></head><body><h1>"_s + title +
                               "</h1></body></html>"_s)}};
    if (titleEnd >= 0)
        SetFields(row, line.mid(titleEnd + 3));
    if (!row.contains("Body"_s))
        row["Body"_s] = row["Html"_s].toString().remove(QRegularExpression("<[^>]*>"_s));
    lastId = row["ID"_s].toInt();
    ancestors.append(lastId);
    return row;
}

void HelpDatabase::AddScript(const QString& name, const QString& content)
{
    WithQuery(Path(), [&](QSqlQuery& query) {
        Insert(query, {{"ID"_s, ++lastId},
                       {"ParentID"_s, kOutsideTree},
                       {"FileName"_s, name},
                       {"Html"_s, content},
                       {"IsFavorite"_s, false},
                       {"Body"_s, "js"_s}});
    });
}

void HelpDatabase::AddImage(const QString& key, const QByteArray& data)
{
    WithQuery(Path(), [&](QSqlQuery& query) {
        Run(query, "INSERT INTO ImageList (ImagePath, ImageData) VALUES (?, ?)"_s, {key, data});
    });
}

void HelpDatabase::Execute(const QString& statement)
{
    WithQuery(Path(), [&](QSqlQuery& query) { Run(query, statement); });
}

QStringList SelectFrom(const QString& path, const QString& statement)
{
    QStringList values;
    WithQuery(path, [&](QSqlQuery& query) {
        Run(query, statement);
        while (query.next())
            values.append(query.value(0).toString());
    });
    return values;
}

QString HelpDatabase::Favorites() const
{
    return Select("SELECT ID FROM HelpFileList WHERE IsFavorite = true ORDER BY ID"_s).join(QLatin1Char(' '));
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
        const int level = levels[row.Id] = levels.value(row.ParentId, -1) + 1;
        text += "  "_s.repeated(level) + (row.ParentId >= kOutsideTree ? "~ "_s : QString()) + row.FileName +
                QLatin1Char('\n');
    }
    return text;
}

QByteArray NoiseImage(int width, int height, const char* format, quint32 seed)
{
    QImage image(width, height, QImage::Format_RGB32);
    QRandomGenerator random(seed);
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
