#pragma once

#include "buildoptions.h"
#include "databasepage.h"
#include "databasewriter.h"
#include "diagnostics.h"
#include "docsite.h"
#include "imagestore.h"
#include "resourcefile.h"
#include "topicplan.h"

#include <QHash>

#include <functional>
#include <memory>

namespace helpbuild {

class OutputFolder;
class ScriptStore;
class SheetStore;

/// One run: from the inputs to the files of one language.
class HelpBuilder
{
public:
    /// Told of each page before it is prepared; false stops the build.
    using Observer = std::function<bool(int done, int total, const QString& page)>;

    HelpBuilder(const BuildOptions& buildOptions, Diagnostics& messages, Observer pageObserver = {});
    ~HelpBuilder();

    /// False, with the error in the diagnostics, when nothing was built.
    bool Run();

    /// What was built, in one line.
    QString Result() const { return result; }

private:
    bool ReadInputs();
    bool ReadInput(const QString& path);
    QString FolderPrefix(const QString& path);
    bool OpenStores();
    bool WritePages();
    bool WritePage(PlannedTopic& topic);
    bool WriteRows(const PlannedTopic& topic, const TopicRow& row);
    bool WriteLists();
    bool WriteScripts();
    bool Finish();
    QString ListTitle(const PlannedTopic& topic) const;
    QString ListHtml(const PlannedTopic& topic) const;
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
    QString result;
};

} // namespace helpbuild
