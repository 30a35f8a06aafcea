#pragma once

#include "diagnostics.h"

#include <QHash>
#include <QString>

#include <vector>

namespace helpbuild {

/// One entry of the contents tree as an input gives it.
struct DocNode
{
    QString title;         ///< Text of the entry; empty: the title of its page.
    QString page;          ///< Path of its page in the documentation; empty: a list of its children is made.
    QString folder;        ///< For an entry without a page: where its page would stand.
    bool anchored = false; ///< The entry leads into the middle of the page.
    SourcePlace place;
    std::vector<DocNode> children;
};

/// A topic key that an input asks for.
struct WantedKey
{
    QString key;
    SourcePlace place;
};

/// What one help project or folder of pages brings in, beside the files it adds to the site.
struct DocInput
{
    std::vector<DocNode> tops;
    std::vector<DocNode> outside;   ///< Pages that links may reach, but no entry shows.
    QHash<QString, WantedKey> keys; ///< By path of the page.
};

} // namespace helpbuild
