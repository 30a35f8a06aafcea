#include "buildoptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

namespace helpbuild {
namespace {

const char* const kDescription =
    "Turns documentation into a help database for the viewer: <output>/<language>/Help/ with the\n"
    "database, the folder \"styles\" and the resource file \"YxHelpSystem.rcc\".\n"
    "\n"
    "With --site the same topics are written as a web site, for the viewer's online mode:\n"
    "<site>/<language>/ with the pages in \"OriginalData\", a home page \"index.html\" and the tables\n"
    "\"addresses.json\" and \"addresses.conf\", from which a service or nginx answers where a topic is.\n"
    "With --site alone no database is built. Each language is a call of its own.\n"
    "\n"
    "An input is a Qt help project (.qhp) or a folder of HTML pages. A project's sections become the\n"
    "contents tree, its keywords the topic keys. Of a folder, the folders become the tree, pages go by\n"
    "their titles and by their file names as keys, and an index page becomes its folder's entry.\n"
    "Several inputs stand side by side below one root.\n"
    "\n"
    "Pages are made ready for the viewer: links lead from topic to topic, without anchors; links to what\n"
    "is no topic stay as text; links to servers open in the browser. Images, scripts, style sheets and\n"
    "the files that these refer to are taken along, drawings (SVG) become part of the page. Style sheets\n"
    "and scripts on servers are left out. Keys are written in ASCII, unique whatever their case.\n"
    "\n"
    "A product is described by an INI file; beside it may lie \"YxHelp.qss\", \"top_background.png\" and\n"
    "\"YxPrdIcon.png\". Values with commas or semicolons must stand in quotation marks.\n"
    "\n"
    "What is wrong with the input ends the build with one line, \"file:line: text\", and exit code 1; what\n"
    "was there before stays. Broken markup, dead links and missing images are counted and told, and the\n"
    "exit code is 0. The same input gives the same bytes.";

ParsedOptions Wrong(const QString& text)
{
    ParsedOptions parsed;
    parsed.kind = ParsedOptions::Wrong;
    parsed.text = text;
    return parsed;
}

bool IsLanguageTag(const QString& text)
{
    static const QRegularExpression tag(QStringLiteral("\\A[A-Za-z0-9]+(-[A-Za-z0-9]+)*\\z"));
    return tag.match(text).hasMatch();
}

bool IsDatabaseName(const QString& text)
{
    return text.endsWith(QLatin1String(".db")) && text.size() > 3 && !text.contains(QLatin1Char('/')) &&
           !text.contains(QLatin1Char('\\')) && !text.startsWith(QLatin1Char('.'));
}

ParsedOptions Check(const BuildOptions& options)
{
    if (options.inputs.isEmpty())
        return Wrong(QStringLiteral("--input is missing"));
    if (options.output.isEmpty() && options.site.isEmpty())
        return Wrong(QStringLiteral("--output or --site is missing"));
    if (!IsLanguageTag(options.language))
        return Wrong(QStringLiteral("--language must be a tag such as \"en-US\""));
    if (!IsDatabaseName(options.database))
        return Wrong(QStringLiteral("--database must be a file name that ends in \".db\""));
    ParsedOptions parsed;
    parsed.options = options;
    return parsed;
}

} // namespace

ParsedOptions ParseOptions(const QStringList& arguments)
{
    const QCommandLineOption input({QStringLiteral("i"), QStringLiteral("input")},
                                   QStringLiteral("A Qt help project or a folder of pages; may be repeated."),
                                   QStringLiteral("path"));
    const QCommandLineOption output({QStringLiteral("o"), QStringLiteral("output")},
                                    QStringLiteral("Folder that holds the folders of the languages."),
                                    QStringLiteral("dir"));
    const QCommandLineOption site(QStringLiteral("site"),
                                  QStringLiteral("Folder that holds the languages of the web site."),
                                  QStringLiteral("dir"));
    const QCommandLineOption language({QStringLiteral("l"), QStringLiteral("language")},
                                      QStringLiteral("Language tag, such as \"en-US\" or \"zh-CN\"."),
                                      QStringLiteral("tag"));
    const QCommandLineOption database(QStringLiteral("database"),
                                      QStringLiteral("File name of the database (YXCADHelp.db)."),
                                      QStringLiteral("name"));
    const QCommandLineOption title(
        QStringLiteral("title"),
        QStringLiteral("Text of the root entry (the title that the root has in the "
                       "input, or else the product's name)."),
        QStringLiteral("text"));
    const QCommandLineOption product(QStringLiteral("product"),
                                     QStringLiteral("Product description (a built-in one)."),
                                     QStringLiteral("ini"));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Shows all warnings, not only the first of each kind."));
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(kDescription));
    parser.addOptions({input, output, site, language, database, title, product, verbose});
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();

    if (!parser.parse(arguments))
        return Wrong(parser.errorText());
    ParsedOptions parsed;
    parsed.kind = ParsedOptions::ShowText;
    if (parser.isSet(help)) {
        parsed.text = parser.helpText();
        return parsed;
    }
    if (parser.isSet(version)) {
        parsed.text = QCoreApplication::applicationName() + QLatin1Char(' ') +
                      QCoreApplication::applicationVersion() + QLatin1Char('\n');
        return parsed;
    }
    if (!parser.positionalArguments().isEmpty())
        return Wrong(QLatin1String("what is \"") + parser.positionalArguments().constFirst() +
                     QLatin1String("\" for? Inputs stand behind --input"));

    BuildOptions options;
    options.inputs = parser.values(input);
    options.output = parser.value(output);
    options.site = parser.value(site);
    options.language = parser.value(language);
    if (parser.isSet(database))
        options.database = parser.value(database);
    options.title = parser.value(title).simplified();
    options.product = parser.value(product);
    options.verbose = parser.isSet(verbose);
    return Check(options);
}

} // namespace helpbuild
