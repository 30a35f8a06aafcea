#include "service.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

namespace {

const char* ContentType(const QString& file)
{
    static const QHash<QString, const char*> types{
        {QStringLiteral("html"), "text/html; charset=utf-8"},
        {QStringLiteral("htm"), "text/html; charset=utf-8"},
        {QStringLiteral("xhtml"), "text/html; charset=utf-8"},
        {QStringLiteral("css"), "text/css; charset=utf-8"},
        {QStringLiteral("js"), "text/javascript; charset=utf-8"},
        {QStringLiteral("mjs"), "text/javascript; charset=utf-8"},
        {QStringLiteral("json"), "application/json"},
        {QStringLiteral("txt"), "text/plain; charset=utf-8"},
        {QStringLiteral("png"), "image/png"},
        {QStringLiteral("jpg"), "image/jpeg"},
        {QStringLiteral("jpeg"), "image/jpeg"},
        {QStringLiteral("gif"), "image/gif"},
        {QStringLiteral("bmp"), "image/bmp"},
        {QStringLiteral("webp"), "image/webp"},
        {QStringLiteral("ico"), "image/x-icon"},
        {QStringLiteral("svg"), "image/svg+xml"},
        {QStringLiteral("woff"), "font/woff"},
        {QStringLiteral("woff2"), "font/woff2"},
        {QStringLiteral("ttf"), "font/ttf"},
        {QStringLiteral("mp4"), "video/mp4"},
        {QStringLiteral("webm"), "video/webm"},
        {QStringLiteral("pdf"), "application/pdf"},
    };
    return types.value(QFileInfo(file).suffix().toLower(), "application/octet-stream");
}

void SetJson(httplib::Response& response, const char* name, const QString& value)
{
    const QByteArray json =
        QJsonDocument(QJsonObject{{QLatin1String(name), value}}).toJson(QJsonDocument::Compact);
    response.set_content(json.constData(), static_cast<std::size_t>(json.size()), "application/json");
}

QString Parameter(const httplib::Request& request, const char* name)
{
    return QString::fromStdString(request.get_param_value(name));
}

// The request's own word for this machine is the one that its sender can reach.
std::string HostOf(const httplib::Request& request, const std::string& ownHost)
{
    static const QRegularExpression sound(QStringLiteral("\\A[A-Za-z0-9.:\\[\\]-]+\\z"));
    const std::string host = request.get_header_value("Host");
    return sound.match(QString::fromStdString(host)).hasMatch() ? host : ownHost;
}

QString EncodedPath(const QString& path)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(path, "/!&'()*+,;=:@"));
}

} // namespace

Service::Service(const AddressBook& book, const QString& siteFolder)
    : addresses(book), root(QDir(siteFolder).canonicalPath() + QLatin1Char('/'))
{
    // An idle connection holds up the end.
    server.set_keep_alive_timeout(1);
    server.Get("/address", [this](const auto& request, auto& response) { AnswerAddress(request, response); });
    server.Get("/.*", [this](const auto& request, auto& response) { AnswerFile(request, response); });
}

int Service::Bind(const std::string& host, int port)
{
    if (port == 0)
        port = qMax(0, server.bind_to_any_port(host));
    else if (!server.bind_to_port(host, port))
        port = 0;
    ownHost = host + ':' + std::to_string(port);
    return port;
}

void Service::AnswerAddress(const httplib::Request& request, httplib::Response& response) const
{
    const QString language = Parameter(request, "language");
    const QString topic = Parameter(request, "topic");
    const QString path = addresses.Find(language, topic, Parameter(request, "path"));
    if (path.isEmpty()) {
        response.status = 404;
        SetJson(response, "error",
                QLatin1String("no topic \"") + topic + QLatin1String("\" in language \"") + language +
                    QLatin1Char('"'));
        return;
    }
    // The viewer takes the topic's path out of the address up to the "?", which must be there.
    QString address = QLatin1String("http://") + QString::fromStdString(HostOf(request, ownHost)) +
                      QLatin1Char('/') + EncodedPath(path);
    char mark = '?';
    for (const char* name : {"product", "version", "language"}) {
        address += QLatin1Char(mark) + QLatin1String(name) + QLatin1Char('=') +
                   QString::fromLatin1(QUrl::toPercentEncoding(Parameter(request, name)));
        mark = '&';
    }
    SetJson(response, "address", address);
}

void Service::AnswerFile(const httplib::Request& request, httplib::Response& response) const
{
    const QString path = QString::fromStdString(request.path);
    if (path == QLatin1String("/")) {
        response.set_redirect('/' + addresses.Languages().constFirst().toStdString() + '/');
        return;
    }
    if (!path.endsWith(QLatin1Char('/')) && !FileFor(path + QLatin1Char('/')).isEmpty()) {
        response.set_redirect(EncodedPath(path).toStdString() + '/');
        return;
    }
    QFile file(FileFor(path));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly)) {
        response.status = 404;
        response.set_content("There is no such page.\n", "text/plain; charset=utf-8");
        return;
    }
    const QByteArray data = file.readAll();
    response.set_content(data.constData(), static_cast<std::size_t>(data.size()),
                         ContentType(file.fileName()));
}

// Hidden files are builds in the works. Whatever way a path takes, it must end below the site.
QString Service::FileFor(const QString& path) const
{
    if (path.contains(QLatin1String("/.")))
        return {};
    const QString wanted =
        path.endsWith(QLatin1Char('/')) ? QString(path + QLatin1String("index.html")) : path;
    const QFileInfo info(root + wanted);
    const QString real = info.canonicalFilePath();
    return info.isFile() && real.startsWith(root) ? real : QString();
}
