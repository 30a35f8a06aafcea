#pragma once

#include "docinput.h"

#include <QString>

#include <vector>

namespace helpbuild {

class DocSite;

/// Parent number of rows that stand outside the contents tree.
constexpr int kOutsideTree = 65535;

/// A topic as it will stand in the database. Its number is its place in the plan plus one.
struct PlannedTopic
{
    int id = 0;
    int parentId = 0;
    int topParentId = 0; ///< The ancestor below the root, which search results are filtered by.
    QString title;       ///< Text of the entry; empty: the title of its page.
    QString page;        ///< Page in the documentation; empty: a list of the children.
    QString filePath;    ///< With forward slashes.
    QString key;
    bool repeated = false; ///< Its page has an entry further up, and is found by a search there.
    SourcePlace place;
    std::vector<int> children; ///< Numbers of the entries below.
};

/// The entries in the order of the tree, then the pages outside it.
std::vector<PlannedTopic> PlanTopics(const std::vector<DocInput>& inputs, const QString& title, DocSite& site,
                                     Diagnostics& diagnostics);

} // namespace helpbuild
