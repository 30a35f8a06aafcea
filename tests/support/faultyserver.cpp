#include "faultyserver.h"

#include <QEventLoop>
#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace {

constexpr int kDripInterval = 20;
// As long as less of a request is taken from the system than has come, closing the connection resets it.
constexpr int kBytesAtOnce = 64;

QByteArray Head(const Answer& answer, bool withLength)
{
    QByteArray head("HTTP/1.1 ");
    head += QByteArray::number(answer.status);
    head += " Answer\r\nConnection: close\r\n";
    for (const auto& [name, value] : answer.headers) {
        head += name;
        head += ": ";
        head += value;
        head += "\r\n";
    }
    if (withLength) {
        head += "Content-Length: ";
        head += QByteArray::number(answer.body.size());
        head += "\r\n";
    } else {
        head += "Transfer-Encoding: chunked\r\n";
    }
    return head + QByteArray("\r\n");
}

QByteArray Chunks(const QByteArray& body)
{
    constexpr int kChunk = 7; // cuts through words and characters
    QByteArray chunks;
    for (int i = 0; i < body.size(); i += kChunk) {
        const QByteArray chunk = body.mid(i, kChunk);
        chunks += QByteArray::number(chunk.size(), 16);
        chunks += "\r\n";
        chunks += chunk;
        chunks += "\r\n";
    }
    return chunks + QByteArray("0\r\n\r\n");
}

Request ParseRequest(const QByteArray& text)
{
    QList<QByteArray> lines = text.split('\n');
    const QList<QByteArray> words = lines.takeFirst().trimmed().split(' ');
    const QByteArray target = words.value(1);
    const int mark = target.indexOf('?');
    Request request;
    request.method = words.value(0);
    request.path = QString::fromUtf8(QByteArray::fromPercentEncoding(mark < 0 ? target : target.left(mark)));
    request.rawQuery = mark < 0 ? QByteArray() : target.mid(mark + 1);
    for (const QByteArray& line : lines) {
        const int colon = line.indexOf(':');
        if (colon > 0)
            request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
    return request;
}

void Drip(QTcpSocket* socket, const QByteArray& body)
{
    auto* timer = new QTimer(socket);
    timer->setInterval(kDripInterval);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, timer, body, sent = 0]() mutable {
        if (sent < body.size())
            socket->write(body.constData() + sent++, 1);
        else
            timer->stop();
    });
    timer->start();
}

void Send(QTcpSocket* socket, const Answer& answer)
{
    switch (answer.way) {
    case Answer::Way::Reply:
        socket->write(Head(answer, true));
        socket->write(answer.body);
        socket->disconnectFromHost();
        break;
    case Answer::Way::Chunked:
        socket->write(Head(answer, false));
        socket->write(Chunks(answer.body));
        socket->disconnectFromHost();
        break;
    case Answer::Way::Drip:
        socket->write(Head(answer, true));
        Drip(socket, answer.body);
        break;
    case Answer::Way::Truncate:
        socket->write(Head(answer, true));
        socket->write(answer.body.left(answer.body.size() / 2));
        socket->disconnectFromHost();
        break;
    case Answer::Way::Close:
        socket->disconnectFromHost();
        break;
    case Answer::Way::Hang:
    case Answer::Way::Reset:
        break;
    }
}

} // namespace

QList<QPair<QByteArray, QByteArray>> Request::Parameters() const
{
    QList<QPair<QByteArray, QByteArray>> parameters;
    for (const QByteArray& parameter : rawQuery.split('&')) {
        const int sign = parameter.indexOf('=');
        const QByteArray name = sign < 0 ? parameter : parameter.left(sign);
        const QByteArray value = sign < 0 ? QByteArray() : parameter.mid(sign + 1);
        parameters.append({QByteArray::fromPercentEncoding(name), QByteArray::fromPercentEncoding(value)});
    }
    return parameters;
}

QByteArray Request::Parameter(const QByteArray& name) const
{
    const auto all = Parameters();
    const auto found =
        std::find_if(all.begin(), all.end(), [&name](const auto& p) { return p.first == name; });
    if (found == all.end())
        return QByteArray();
    return found->second.isNull() ? QByteArray("") : found->second;
}

// The two threads meet at standard locks only, which thread checkers see; Qt's own they don't.
class FaultyServer::Private
{
public:
    void Run();
    Answer AnswerTo(const Request& request) const;

    std::unique_ptr<QThread> thread;
    mutable std::mutex mutex;
    std::condition_variable changed;
    bool running = false;
    quint16 port = 0;
    QHash<QString, Handler> handlers;
    QList<Request> requests;

private:
    void Accept(QTcpSocket* socket);
    void Read(QTcpSocket* socket, QByteArray& received);
};

void FaultyServer::Private::Run()
{
    {
        QTcpServer server;
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this, &server] {
            while (QTcpSocket* socket = server.nextPendingConnection())
                Accept(socket);
        });
        if (!server.listen(QHostAddress::LocalHost))
            qFatal("The test's web server can't listen");
        {
            const std::lock_guard lock(mutex);
            port = server.serverPort();
            running = true;
            changed.notify_all();
        }
        QEventLoop().exec();
    }
    const std::lock_guard lock(mutex);
    running = false;
    changed.notify_all();
}

void FaultyServer::Private::Accept(QTcpSocket* socket)
{
    socket->setReadBufferSize(kBytesAtOnce);
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QTcpSocket::readyRead, socket,
                     [this, socket, received = QByteArray()]() mutable { Read(socket, received); });
}

void FaultyServer::Private::Read(QTcpSocket* socket, QByteArray& received)
{
    const bool knewPath = received.indexOf('?') > 0 || received.indexOf('\n') > 0;
    received += socket->readAll();
    if (!knewPath && (received.indexOf('?') > 0 || received.indexOf('\n') > 0)) {
        if (AnswerTo(ParseRequest(received)).way == Answer::Way::Reset) {
            socket->abort();
            return;
        }
        socket->setReadBufferSize(0);
    }
    if (!received.endsWith("\r\n\r\n"))
        return;
    const Request request = ParseRequest(received);
    received.clear();
    {
        const std::lock_guard lock(mutex);
        requests.append(request);
    }
    Send(socket, AnswerTo(request));
}

Answer FaultyServer::Private::AnswerTo(const Request& request) const
{
    Handler handler;
    {
        const std::lock_guard lock(mutex);
        handler = handlers.value(request.path);
    }
    return handler ? handler(request) : Answer::Body("no such page", 404);
}

FaultyServer::FaultyServer() : d(new Private)
{
    d->thread.reset(QThread::create([server = d.get()] { server->Run(); }));
    d->thread->start();
    std::unique_lock lock(d->mutex);
    d->changed.wait(lock, [this] { return d->running; });
}

FaultyServer::~FaultyServer()
{
    d->thread->quit();
    {
        std::unique_lock lock(d->mutex);
        d->changed.wait(lock, [this] { return !d->running; });
    }
    d->thread->wait();
}

void FaultyServer::SetAnswer(const QString& path, const Answer& answer)
{
    SetHandler(path, [answer](const Request&) { return answer; });
}

void FaultyServer::SetHandler(const QString& path, const Handler& handler)
{
    const std::lock_guard lock(d->mutex);
    d->handlers.insert(path, handler);
}

QString FaultyServer::Url(const QString& path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(d->port).arg(path);
}

QList<Request> FaultyServer::Requests() const
{
    const std::lock_guard lock(d->mutex);
    return d->requests;
}

void FaultyServer::ClearRequests()
{
    const std::lock_guard lock(d->mutex);
    d->requests.clear();
}
