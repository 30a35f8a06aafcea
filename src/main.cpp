#include "builtinresources.h"
#include "dpiscale.h"
#include "instances.h"
#include "launchargs.h"
#include "qcommon.h"
#include "yxhelp.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QResource>
#include <QTextCodec>
#include <QTranslator>

#include <algorithm>
#include <vector>

namespace {

/// Argument vector for the application object, with one more switch for the web engine. The count takes in
/// the terminating null. It has to outlive the application object, which keeps references.
class ApplicationArguments
{
public:
    ApplicationArguments(int argc, char** argv)
        : count(argc + 2), block(static_cast<std::size_t>(count), nullptr)
    {
        std::copy_n(argv, argc, block.begin());
        block[static_cast<std::size_t>(argc)] = webSecurity;
    }

    int count;
    char webSecurity[23] = "--disable-web-security";
    std::vector<char*> block;
};

void LoadTranslations(const QString& tag, const QString& localeName, QTranslator& viewer, QTranslator& qt)
{
    // The source texts are English.
    if (tag == QLatin1String("en-US"))
        return;
    const QString catalogue = QCoreApplication::applicationDirPath() % QLatin1Char('/') % tag %
                              QLatin1String("/YxHelp_") % localeName % QLatin1String(".qm");
    if (viewer.load(catalogue, QString(), QString(), QString()))
        QCoreApplication::installTranslator(&viewer);
    if (qt.load(QStringLiteral(":/language/Qt_QM/qt_%1.qm").arg(localeName)))
        QCoreApplication::installTranslator(&qt);
}

void ApplyStyleSheet(QApplication& application)
{
    QFile file(QStringLiteral(":/Resource/qss/YxHelp.qss"));
    if (file.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(file.readAll()));
}

int ShowWindowAndRun(const HelpLaunchArgs& args, const QString& tag)
{
    YxHelp window;
    if (!window.Init(args, tag))
        return -1;
    if (!args.topic.isEmpty()) {
        constexpr std::int32_t kNoProcess = -1;
        window.ShowRedirectedTopic(MakeSMData(kNoProcess, args));
    }
    window.ShowCentered();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QString localeName = ReadCurrentLang();
    QString tag = LocaleNameToTag(localeName);
    HelpLaunchArgs args = ParseLaunchArgs(argc, argv);
    // Before anything that a launch which hands over doesn't need.
    if (DiscoverInstances(tag) && ForwardToRunningInstance(args, tag))
        return 0;

    InitBuiltInResources();
    QCoreApplication::setAttribute(Qt::AA_UseOpenGLES, true);
    ApplicationArguments arguments(argc, argv);
    QApplication application(arguments.count, arguments.block.data());
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("utf-8"));

    if (args.language.isEmpty()) {
        args.language = tag;
    } else {
        tag = args.language;
        localeName = TagToLocaleName(tag);
    }
    QTranslator viewerTexts;
    QTranslator qtTexts;
    LoadTranslations(tag, localeName, viewerTexts, qtTexts);

    if (args.rccPath.isEmpty())
        args.rccPath = QCoreApplication::applicationDirPath();
    const QString resourceFile =
        args.rccPath % QLatin1Char('/') % tag % QLatin1String("/Help/YxHelpSystem.rcc");
    if (!QFileInfo::exists(resourceFile)) {
        QMessageBox::warning(nullptr, QObject::tr("Error"),
                             QStringLiteral("The resource file: %1 is missing.").arg(resourceFile),
                             QMessageBox::Ok, QMessageBox::NoButton);
        return 0;
    }
    QResource::registerResource(resourceFile, QString());
    ApplyStyleSheet(application);
    // Everything that the window's form creates is scaled with the result.
    InitScale();
    return ShowWindowAndRun(args, tag);
}
