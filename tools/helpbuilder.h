#pragma once

#include "buildoptions.h"
#include "databasepage.h"
#include "databasewriter.h"
#include "diagnostics.h"
#include "docsite.h"
#include "imagestore.h"
#include "pagescan.h"
#include "resourcefile.h"
#include "topicplan.h"

#include <QHash>

#include <functional>
#include <memory>

namespace helpbuild {

class OutputFolder;
class ScriptStore;
class SheetStore;
class SiteWriter;

/// One run: from the inputs to the help database and the web site of one language, or one of them.
class HelpBuilder
{
public:
    /// Told of each page before it is prepared; false stops the build.
    using Observer = std::function<bool(int done, int total, const QString& page)>;

    HelpBuilder(const BuildOptions& buildOptions, Diagnostics& messages, Observer pageObserver = {});
    ~HelpBuilder();

    /// False, with the error in the diagnostics, when nothing was built.
    bool Run();

    /// What was built, in a line for each place.
    QStringList Results() const { return results; }

private:
    bool ReadInputs();
    bool ReadInput(const QString& path);
    QString FolderPrefix(const QString& path);
    bool OpenDatabase();
    bool OpenSite();
    bool WritePages();
    bool WritePage(PlannedTopic& topic);
    bool WriteDatabasePage(const PlannedTopic& topic, const HtmlDocument& document, const PageParts& parts,
                           const QString& title);
    bool WriteRows(const PlannedTopic& topic, const TopicRow& row);
    bool WriteLists();
    bool WriteScripts();
    bool FinishDatabase();
    bool Install();
    QString ListTitle(const PlannedTopic& topic) const;
    bool WriteList(const PlannedTopic& topic);
    template <typename Link>
    QString ListHtml(const PlannedTopic& topic, Link link) const;
    TopicRow RowOf(const PlannedTopic& topic) const;
    bool AddRow(const TopicRow& row);
    bool FailWriting();

    BuildOptions options;
    Diagnostics& diagnostics;
    Observer observer;
    ProductInfo product;
    DocSite site;
    std::vector<DocInput> inputs;
    QStringList prefixes;
    std::vector<PlannedTopic> topics;
    QHash<QString, std::vector<int>> repeats; ///< By page, the numbers of its further entries.
    DatabaseWriter database;
    std::unique_ptr<OutputFolder> output;
    std::unique_ptr<ImageStore> images;
    std::unique_ptr<SheetStore> sheets;
    std::unique_ptr<ScriptStore> scripts;
    Diagnostics unheard; ///< Takes what has been reported once.
    std::unique_ptr<SiteWriter> webSite;
    QStringList results;
};

} // namespace helpbuild
