#include "addresstable.h"

#include "sitefolder.h"
#include "weblink.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QUrl>

namespace helpbuild {
namespace {

// As the viewer takes it: up to the last dot.
QString BaseName(const QString& path)
{
    return QFileInfo(path).completeBaseName();
}

class MapWriter
{
public:
    explicit MapWriter(const QString& languageTag) : language(languageTag) {}

    // The server compares without regard to case, and refuses a word that comes twice.
    void Add(const QString& topic, const QString& path)
    {
        const QString folded = topic.toLower();
        if (known.contains(folded))
            return;
        known.insert(folded);
        text += QLatin1Char('"') + language + QLatin1Char('/') +
                QString::fromLatin1(QUrl::toPercentEncoding(topic)) + QLatin1String("\" \"/") + language +
                QLatin1String("/OriginalData/") + EncodedPath(path) + QLatin1String("\";\n");
    }

    QByteArray Text() const { return text.toUtf8(); }

private:
    QString language;
    QSet<QString> known;
    QString text;
};

} // namespace

QByteArray AddressTable(const SiteFacts& facts, const std::vector<PlannedTopic>& topics)
{
    QJsonArray rows;
    for (const PlannedTopic& topic : topics)
        rows.append(QJsonObject{{QStringLiteral("key"), topic.key},
                                {QStringLiteral("path"), topic.filePath},
                                {QStringLiteral("title"), topic.title}});
    const QJsonObject table{{QStringLiteral("generator"), SiteGenerator()},
                            {QStringLiteral("product"), facts.product},
                            {QStringLiteral("version"), facts.version},
                            {QStringLiteral("language"), facts.language},
                            {QStringLiteral("topics"), rows}};
    return QJsonDocument(table).toJson();
}

QByteArray AddressMap(const SiteFacts& facts, const std::vector<PlannedTopic>& topics)
{
    MapWriter map(facts.language);
    map.Add(QString(), topics.front().filePath);
    for (const PlannedTopic& topic : topics)
        map.Add(topic.key, topic.filePath);
    for (const PlannedTopic& topic : topics)
        map.Add(BaseName(topic.filePath), topic.filePath);
    return map.Text();
}

} // namespace helpbuild
