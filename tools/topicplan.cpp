#include "topicplan.h"

#include "docsite.h"
#include "topicnames.h"

#include <QSet>

namespace helpbuild {
namespace {

QString LastPart(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString FolderOf(const QString& path)
{
    return path.left(qMax(0, path.lastIndexOf(QLatin1Char('/'))));
}

QString WithoutExtension(const QString& path)
{
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    return dot > path.lastIndexOf(QLatin1Char('/')) + 1 ? path.left(dot) : path;
}

// A page goes by its name, but the index page of a folder by the folder's.
QString KeyFromPath(const QString& path)
{
    const QString name = LastPart(path);
    const QString folder = FolderOf(path);
    if (!folder.isEmpty() && IndexPageNames().contains(name.toLower()))
        return LastPart(folder);
    return LastPart(WithoutExtension(path));
}

class Planner
{
public:
    Planner(const std::vector<DocInput>& docInputs, DocSite& docSite, Diagnostics& messages)
        : inputs(docInputs), site(docSite), diagnostics(messages)
    {
    }

    std::vector<PlannedTopic> Plan(const QString& title)
    {
        std::size_t tops = 0;
        for (const DocInput& input : inputs) {
            tops += input.tops.size();
            for (const DocNode& node : input.tops)
                CollectWholePages(node);
        }
        if (tops == 1)
            AddSingleRoot(title);
        else
            AddListRoot(title);
        AddOutsidePages();
        TakePaths();
        TakeKeys();
        return std::move(topics);
    }

private:
    void CollectWholePages(const DocNode& node)
    {
        if (!node.anchored && !node.page.isEmpty())
            wholePages.insert(node.page);
        for (const DocNode& child : node.children)
            CollectWholePages(child);
    }

    void AddSingleRoot(const QString& title)
    {
        for (const DocInput& input : inputs) {
            inputTops.push_back(0);
            for (const DocNode& node : input.tops)
                Visit(node, 0, 0);
        }
        // A folder's name says little above all of its pages.
        if (!title.isEmpty() || topics.front().page.isEmpty())
            topics.front().title = title;
    }

    void AddListRoot(const QString& title)
    {
        DocNode root;
        root.title = title;
        Add(root, 0, 0, false);
        for (const DocInput& input : inputs) {
            inputTops.push_back(static_cast<int>(topics.size()) + 1);
            for (const DocNode& node : input.tops)
                Visit(node, 1, 0);
        }
    }

    int Add(const DocNode& node, int parentId, int topParentId, bool repeated)
    {
        PlannedTopic topic;
        topic.id = static_cast<int>(topics.size()) + 1;
        topic.parentId = parentId;
        topic.topParentId = parentId == 1 ? topic.id : topParentId;
        topic.title = node.title;
        topic.page = node.page;
        topic.repeated = repeated;
        topic.place = node.place;
        topic.filePath = node.page;
        if (node.page.isEmpty())
            topic.filePath = (node.folder.isEmpty() ? QString() : QString(node.folder + QLatin1Char('/'))) +
                             IndexPageNames().first();
        if (parentId > 0 && parentId < kOutsideTree)
            At(parentId).children.push_back(topic.id);
        topics.push_back(topic);
        return topic.id;
    }

    PlannedTopic& At(int id) { return topics[static_cast<std::size_t>(id) - 1]; }

    void Visit(const DocNode& node, int parentId, int topParentId)
    {
        const bool elsewhere = shown.contains(node.page) || (node.anchored && wholePages.contains(node.page));
        const bool known = elsewhere && parentId > 0; // the root has its page whatever follows
        int id = parentId;
        if (node.page.isEmpty() || !known) {
            id = Add(node, parentId, topParentId, false);
            shown.insert(node.page);
        } else if (At(parentId).page == node.page || (node.anchored && node.children.empty())) {
            ReportMerged(node);
        } else if (!node.anchored) {
            id = Add(node, parentId, topParentId, true);
        } else {
            // The viewer opens a page at its top only, so such a section is no more than a heading.
            DocNode heading = node;
            heading.page.clear();
            heading.folder = WithoutExtension(node.page);
            id = Add(heading, parentId, topParentId, false);
        }
        const int top = At(id).topParentId;
        for (const DocNode& child : node.children)
            Visit(child, id, top);
    }

    void ReportMerged(const DocNode& node)
    {
        diagnostics.Report(Finding::Section, node.place,
                           QLatin1String("the section \"") + node.title +
                               QLatin1String("\" leads into a page that has an entry already"));
    }

    void AddOutsidePages()
    {
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            for (const DocNode& node : inputs[i].outside) {
                if (shown.contains(node.page))
                    continue;
                shown.insert(node.page);
                Add(node, kOutsideTree, inputTops[i], false);
            }
        }
    }

    void TakePaths()
    {
        TopicPaths paths;
        for (PlannedTopic& topic : topics) {
            topic.filePath = paths.Take(topic.filePath);
            if (!topic.page.isEmpty() && !topic.repeated)
                site.AddTopic(topic.page, topic.filePath);
        }
    }

    // Keys that somebody wrote come first, so that a file name doesn't take one away.
    void TakeKeys()
    {
        TopicKeys keys;
        for (PlannedTopic& topic : topics) {
            const WantedKey wanted = AuthoredKey(topic);
            if (!wanted.key.isEmpty())
                TakeKey(topic, keys, wanted);
        }
        for (PlannedTopic& topic : topics) {
            if (topic.key.isEmpty())
                TakeKey(topic, keys, {KeyFromPath(PathForKey(topic)), topic.place});
        }
    }

    WantedKey AuthoredKey(const PlannedTopic& topic) const
    {
        if (topic.page.isEmpty() || topic.repeated)
            return {};
        for (const DocInput& input : inputs) {
            const auto key = input.keys.constFind(topic.page);
            if (key != input.keys.constEnd())
                return key.value();
        }
        return {};
    }

    static QString PathForKey(const PlannedTopic& topic)
    {
        return topic.page.isEmpty() ? topic.filePath : topic.page;
    }

    void TakeKey(PlannedTopic& topic, TopicKeys& keys, const WantedKey& wanted)
    {
        QString qualified = WithoutExtension(PathForKey(topic));
        qualified.replace(QLatin1Char('/'), QLatin1Char('-'));
        topic.key = keys.Take(wanted.key, topic.repeated ? wanted.key : qualified);
        if (topic.key != wanted.key)
            diagnostics.Report(Finding::RewrittenKey, wanted.place,
                               QLatin1String("the topic key \"") + wanted.key +
                                   QLatin1String("\" is written \"") + topic.key + QLatin1Char('"'));
    }

    const std::vector<DocInput>& inputs;
    DocSite& site;
    Diagnostics& diagnostics;
    std::vector<PlannedTopic> topics;
    std::vector<int> inputTops; // of each input, the number of its first entry below the root
    QSet<QString> shown;
    QSet<QString> wholePages;
};

} // namespace

std::vector<PlannedTopic> PlanTopics(const std::vector<DocInput>& inputs, const QString& title, DocSite& site,
                                     Diagnostics& diagnostics)
{
    return Planner(inputs, site, diagnostics).Plan(title);
}

} // namespace helpbuild
