#include "buildoptions.h"
#include "diagnostics.h"
#include "helpbuilder.h"
#include "progress.h"
#include "terminal.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <limits>

using namespace helpbuild;

namespace {

constexpr int kShownPerKind = 5;

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void Interrupt(int)
{
    interrupted = true;
}

void Print(FILE* stream, const QString& line)
{
    std::fputs(line.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
}

int Build(const BuildOptions& options)
{
    Progress progress(ErrorStreamIsTerminal());
    const auto show = [&progress](const QString& line) {
        progress.Clear();
        Print(stderr, line);
    };
    Diagnostics diagnostics(show, options.verbose ? std::numeric_limits<int>::max() : kShownPerKind);
    HelpBuilder builder(options, diagnostics, [&progress](int done, int total, const QString& page) {
        progress.Show(done, total, page);
        return !interrupted;
    });
    const bool built = builder.Run();
    progress.Clear();
    if (!built) {
        Print(stderr, diagnostics.Error());
        return 1;
    }
    const QStringList summary = diagnostics.Summary();
    for (const QString& line : summary)
        Print(stderr, line);
    const QStringList results = builder.Results();
    for (const QString& line : results)
        Print(stdout, line);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    // Before the application reads its arguments: file names are UTF-8 whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("yxhelp-build"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0.0"));
    std::signal(SIGINT, Interrupt);
    std::signal(SIGTERM, Interrupt);

    const ParsedOptions parsed = ParseOptions(QCoreApplication::arguments());
    switch (parsed.kind) {
    case ParsedOptions::Run:
        return Build(parsed.options);
    case ParsedOptions::ShowText:
        std::fputs(parsed.text.toLocal8Bit().constData(), stdout);
        return 0;
    case ParsedOptions::Wrong:
        Print(stderr, QLatin1String("yxhelp-build: ") + parsed.text + QLatin1String(" (--help tells more)"));
        return 1;
    }
    return 1;
}
