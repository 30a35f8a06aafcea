#include "helpbuilder.h"

#include "charset.h"
#include "folderreader.h"
#include "outputfolder.h"
#include "plaintext.h"
#include "qhpreader.h"
#include "scriptstore.h"
#include "sheetstore.h"
#include "sitewriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace helpbuild {
namespace {

// Marks a script row; the viewer looks for it.
const QLatin1String kScriptBody("js");

QString WithBackslashes(QString path)
{
    return path.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

} // namespace

HelpBuilder::HelpBuilder(const BuildOptions& buildOptions, Diagnostics& messages, Observer pageObserver)
    : options(buildOptions), diagnostics(messages), observer(std::move(pageObserver))
{
}

HelpBuilder::~HelpBuilder() = default;

bool HelpBuilder::Run()
{
    if (!options.product.isEmpty() && !QFileInfo(options.product).isFile())
        return diagnostics.Fail({options.product, 0}, QStringLiteral("doesn't exist"));
    return CheckProduct(options.product, diagnostics, product) && ReadInputs() && OpenDatabase() &&
           OpenSite() && WritePages() && WriteLists() && FinishDatabase() && Install();
}

bool HelpBuilder::ReadInputs()
{
    for (const QString& path : qAsConst(options.inputs)) {
        inputs.emplace_back();
        if (!ReadInput(path))
            return false;
    }
    topics = PlanTopics(inputs, options.title, site, diagnostics);
    for (const PlannedTopic& topic : topics) {
        if (topic.repeated)
            repeats[topic.page].push_back(topic.id);
    }
    return true;
}

bool HelpBuilder::ReadInput(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return diagnostics.Fail({path, 0}, QStringLiteral("doesn't exist"));
    if (info.isDir())
        return ReadPageFolder(path, FolderPrefix(path), site, diagnostics, inputs.back());
    if (info.suffix().compare(QLatin1String("qhp"), Qt::CaseInsensitive) == 0)
        return ReadHelpProject(path, site, diagnostics, inputs.back());
    return diagnostics.Fail({path, 0}, QStringLiteral("is neither a Qt help project nor a folder"));
}

// Where a folder of pages stands in the documentation: alone at its root, else below its own name.
QString HelpBuilder::FolderPrefix(const QString& path)
{
    if (options.inputs.size() == 1)
        return {};
    const QString name = QDir(QDir(path).absolutePath()).dirName();
    QString prefix = name;
    for (int number = 2; prefixes.contains(prefix); ++number)
        prefix = name + QLatin1Char('-') + QString::number(number);
    prefixes << prefix;
    return prefix;
}

bool HelpBuilder::OpenDatabase()
{
    if (options.output.isEmpty())
        return true;
    output = std::make_unique<OutputFolder>(options.output, options.language, options.database, diagnostics);
    if (!output->Open())
        return false;
    if (!database.Open(output->DatabaseFile()))
        return FailWriting();
    images = std::make_unique<ImageStore>(
        [this](const QString& key, const QByteArray& data) { return database.AddImage(key, data); });
    sheets = std::make_unique<SheetStore>(site, output->StyleFolder(), diagnostics);
    scripts = std::make_unique<ScriptStore>(site, *sheets, *images);
    return true;
}

bool HelpBuilder::OpenSite()
{
    if (options.site.isEmpty())
        return true;
    // Pages have the same faults for both.
    webSite = std::make_unique<SiteWriter>(site, topics,
                                           SiteFacts{product.product, product.version, options.language},
                                           options.site, diagnostics, output ? unheard : diagnostics);
    return webSite->Open();
}

bool HelpBuilder::WritePages()
{
    int done = 0;
    for (PlannedTopic& topic : topics) {
        if (observer && !observer(done++, static_cast<int>(topics.size()), topic.page))
            return diagnostics.Fail({}, QStringLiteral("interrupted"));
        if (!topic.page.isEmpty() && !topic.repeated && !WritePage(topic))
            return false;
    }
    return true;
}

bool HelpBuilder::WritePage(PlannedTopic& topic)
{
    const QString real = site.RealPath(topic.page);
    QFile file(real);
    if (!file.open(QIODevice::ReadOnly))
        return diagnostics.Fail({real, 0}, QStringLiteral("can't be read: ") + file.errorString());
    const DecodedText decoded = DecodePage(file.readAll());
    if (!decoded.problem.isEmpty())
        diagnostics.Report(Finding::Encoding, {real, 0}, decoded.problem);

    const HtmlDocument document(WithoutNoScript(decoded.utf8));
    if (document.HasMarkupErrors())
        diagnostics.Report(Finding::BrokenMarkup, {real, 0}, QStringLiteral("broken markup"));
    const PageParts parts = ScanPage(document);
    QString title = parts.title.isEmpty() ? parts.heading : parts.title;
    if (title.isEmpty())
        title = QFileInfo(topic.page).completeBaseName();
    if (topic.title.isEmpty())
        topic.title = title;
    for (const int id : repeats.value(topic.page)) {
        PlannedTopic& repeat = topics[static_cast<std::size_t>(id) - 1];
        if (repeat.title.isEmpty())
            repeat.title = topic.title;
    }
    if (output && !WriteDatabasePage(topic, document, parts, title))
        return false;
    return !webSite || webSite->WritePage(topic, repeats.value(topic.page), document, parts, real);
}

bool HelpBuilder::WriteDatabasePage(const PlannedTopic& topic, const HtmlDocument& document,
                                    const PageParts& parts, const QString& title)
{
    DatabasePage page(document, parts, topic.page, site.RealPath(topic.page),
                      {site, *images, *sheets, *scripts, diagnostics});
    if (!page.Write())
        return false;
    if (!images->IsSound() || !sheets->IsSound())
        return FailWriting();
    TopicRow row = RowOf(topic);
    row.title = title;
    row.images = page.ImageKeys();
    row.body = PlainText(document);
    row.html = page.Html();
    return WriteRows(topic, row);
}

// A further entry of a page holds the page, too, but is left out of the search.
bool HelpBuilder::WriteRows(const PlannedTopic& topic, const TopicRow& row)
{
    if (!AddRow(row))
        return false;
    for (const int id : repeats.value(topic.page)) {
        TopicRow further = RowOf(topics[static_cast<std::size_t>(id) - 1]);
        further.title = row.title;
        further.images = row.images;
        further.html = row.html;
        if (!AddRow(further))
            return false;
    }
    return true;
}

// Entries without a page of their own get one that lists what is below. It is made last, when all titles
// are known.
bool HelpBuilder::WriteLists()
{
    for (PlannedTopic& topic : topics) {
        if (topic.page.isEmpty())
            topic.title = ListTitle(topic);
    }
    for (const PlannedTopic& topic : topics) {
        if (topic.page.isEmpty() && !WriteList(topic))
            return false;
    }
    return true;
}

bool HelpBuilder::WriteList(const PlannedTopic& topic)
{
    if (output) {
        TopicRow row = RowOf(topic);
        row.title = topic.title;
        row.html = ListHtml(topic, [](const PlannedTopic& child) { return child.filePath; });
        row.body = PlainText(HtmlDocument(row.html.toUtf8()));
        if (!AddRow(row))
            return false;
    }
    return !webSite || webSite->WriteMadePage(topic, ListHtml(topic, [&](const PlannedTopic& child) {
                                                  return webSite->Link(topic, child);
                                              }));
}

QString HelpBuilder::ListTitle(const PlannedTopic& topic) const
{
    if (!topic.title.isEmpty())
        return topic.title;
    return product.productName.isEmpty() ? QStringLiteral("Help") : product.productName;
}

template <typename Link>
QString HelpBuilder::ListHtml(const PlannedTopic& topic, Link link) const
{
    const QString title = topic.title.toHtmlEscaped();
    QString html = QLatin1String("<!DOCTYPE html>\n<html lang=\"") + options.language +
                   QLatin1String("\">\n<head>\n<meta charset=\"utf-8\">\n<title>") + title +
                   QLatin1String("</title>\n</head>\n<body>\n<h1>") + title + QLatin1String("</h1>\n<ul>\n");
    for (const int id : topic.children) {
        const PlannedTopic& child = topics[static_cast<std::size_t>(id) - 1];
        html += QLatin1String("<li><a href=\"") + link(child) + QLatin1String("\">") +
                child.title.toHtmlEscaped() + QLatin1String("</a></li>\n");
    }
    html += QLatin1String("</ul>\n</body>\n</html>\n");
    return html;
}

bool HelpBuilder::WriteScripts()
{
    int id = static_cast<int>(topics.size());
    for (const ScriptStore::Stored& script : scripts->Scripts()) {
        TopicRow row;
        row.id = ++id;
        row.parentId = kOutsideTree;
        row.fileName = script.fileName;
        row.key = QLatin1String("scripts/") + script.fileName;
        row.filePath = WithBackslashes(row.key);
        row.body = kScriptBody;
        row.html = script.text;
        if (!AddRow(row))
            return false;
    }
    return true;
}

bool HelpBuilder::FinishDatabase()
{
    if (!output)
        return true;
    if (!WriteScripts())
        return false;
    if (!database.Finish())
        return FailWriting();
    results << QStringLiteral("%1: %2 topics, %3 images, %4 scripts, %5 style files")
                   .arg(QDir::toNativeSeparators(output->FinalDatabase()))
                   .arg(topics.size())
                   .arg(images->Count())
                   .arg(scripts->Scripts().size())
                   .arg(sheets->Names().size());
    return WriteResourceFile(options.product, output->Folder(), output->ResourceFile(), diagnostics);
}

// Nothing is moved before all is written.
bool HelpBuilder::Install()
{
    if (webSite && !webSite->WriteTables())
        return false;
    if (output && !output->Install(sheets->Names()))
        return false;
    if (webSite && !webSite->Install())
        return false;
    if (webSite)
        results << webSite->Result();
    return true;
}

TopicRow HelpBuilder::RowOf(const PlannedTopic& topic) const
{
    TopicRow row;
    row.id = topic.id;
    row.parentId = topic.parentId;
    row.topParentId = topic.topParentId;
    row.fileName = topic.title;
    row.key = topic.key;
    row.filePath = WithBackslashes(topic.filePath);
    return row;
}

bool HelpBuilder::AddRow(const TopicRow& row)
{
    return database.AddTopic(row) || FailWriting();
}

bool HelpBuilder::FailWriting()
{
    const QString reason =
        database.Error().isEmpty() ? QString() : QString(QLatin1String(": ") + database.Error());
    return diagnostics.Fail({output->Folder(), 0}, QLatin1String("can't be written to") + reason);
}

} // namespace helpbuild
