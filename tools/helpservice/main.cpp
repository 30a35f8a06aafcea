#include "addressbook.h"
#include "service.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextCodec>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

namespace {

constexpr std::chrono::milliseconds kPause{50};

std::atomic<bool> ended{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void End(int)
{
    ended = true;
}

int Fail(const QString& text)
{
    std::fprintf(stderr, "yxhelp-service: %s\n", text.toUtf8().constData());
    return 1;
}

int Serve(const QString& site, const QString& host, int port)
{
    AddressBook book;
    if (!book.Load(site))
        return Fail(book.Error());
    Service service(book, site);
    const int taken = service.Bind(host.toStdString(), port);
    if (taken == 0)
        return Fail(QStringLiteral("%1:%2 can't be taken").arg(host).arg(port));
    std::printf("http://%s:%d/\n", host.toUtf8().constData(), taken);
    std::fflush(stdout);

    std::atomic<bool> failed{false};
    std::thread answers([&service, &failed] {
        service.Run();
        failed = true;
    });
    // A signal can do no more than set a flag.
    while (!failed && !(ended && service.IsRunning()))
        std::this_thread::sleep_for(kPause);
    service.Stop();
    answers.join();
    return ended ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("yxhelp-service"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0.0"));
    std::signal(SIGINT, End);
    std::signal(SIGTERM, End);

    const QCommandLineOption site(QStringLiteral("site"),
                                  QStringLiteral("Folder that \"yxhelp-build --site\" wrote."),
                                  QStringLiteral("dir"));
    const QCommandLineOption host(QStringLiteral("host"), QStringLiteral("Address to listen at (127.0.0.1)."),
                                  QStringLiteral("host"), QStringLiteral("127.0.0.1"));
    const QCommandLineOption port(QStringLiteral("port"),
                                  QStringLiteral("Port to listen at (0: any that is free)."),
                                  QStringLiteral("number"), QStringLiteral("0"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Serves a web site of yxhelp-build, and tells at /address where its topics are:\n"
                       "/address?product=&version=&language=&topic=&path=. For trying and testing.\n"
                       "The first line that it writes is the address of the site."));
    parser.addOptions({site, host, port});
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(application);

    bool isPort = false;
    const int number = parser.value(port).toUShort(&isPort);
    if (!isPort)
        return Fail(QStringLiteral("--port must be a number up to 65535"));
    if (!parser.isSet(site))
        return Fail(QStringLiteral("--site is missing"));
    return Serve(parser.value(site), parser.value(host), number);
}
