#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <functional>
#include <memory>

/// One thing that a FaultyServer does with a request.
struct Answer
{
    enum class Way {
        Reply,    ///< Status, headers and body at once.
        Chunked,  ///< The same, the body in chunks without a length.
        Drip,     ///< The status, then the body byte by byte, one each 20 milliseconds.
        Hang,     ///< Nothing, and the connection stays.
        Close,    ///< Nothing, and the connection ends.
        Truncate, ///< Half of the body that was promised, then the connection ends.
        Reset,    ///< The connection is reset before the request has been read.
    };

    Way way = Way::Reply;
    int status = 200;
    QByteArray body;
    QList<QPair<QByteArray, QByteArray>> headers;

    static Answer Body(const QByteArray& body, int status = 200) { return {Way::Reply, status, body, {}}; }
    static Answer Html(const QByteArray& body)
    {
        return {Way::Reply, 200, body, {{"Content-Type", "text/html; charset=utf-8"}}};
    }
    static Answer Redirect(const QByteArray& address)
    {
        return {Way::Reply, 302, {}, {{"Location", address}}};
    }
    static Answer Fault(Way way, const QByteArray& body = {}) { return {way, 200, body, {}}; }
};

/// A request as it arrived.
struct Request
{
    QByteArray method;
    QString path;        ///< Decoded, without the query.
    QByteArray rawQuery; ///< Still encoded.
    QList<QPair<QByteArray, QByteArray>> headers;

    /// The query's parameters in their order, percent-decoded to bytes.
    QList<QPair<QByteArray, QByteArray>> Parameters() const;
    /// The first parameter of that name; a null array when there is none.
    QByteArray Parameter(const QByteArray& name) const;
};

/// A web server on the loopback interface, in a thread of its own, that misbehaves as told. Its functions may
/// be called from any thread. A path without an answer gives 404.
class FaultyServer
{
public:
    using Handler = std::function<Answer(const Request&)>;

    FaultyServer();
    ~FaultyServer();
    FaultyServer(const FaultyServer&) = delete;
    FaultyServer& operator=(const FaultyServer&) = delete;

    void SetAnswer(const QString& path, const Answer& answer);
    /// The handler is called in the server's thread.
    void SetHandler(const QString& path, const Handler& handler);

    /// Address of a path of this server, such as "http://127.0.0.1:4711/path".
    QString Url(const QString& path = QStringLiteral("/")) const;

    /// All requests so far, except those that were reset.
    QList<Request> Requests() const;
    void ClearRequests();

private:
    class Private;
    std::unique_ptr<Private> d;
};
