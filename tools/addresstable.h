#pragma once

#include "topicplan.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace helpbuild {

/// What a web site is for.
struct SiteFacts
{
    QString product;
    QString version;
    QString language;
};

/// The table from which an address service answers, as JSON: the topics in the order of the tree, the home
/// topic first, each with its key and its path below "OriginalData".
QByteArray AddressTable(const SiteFacts& facts, const std::vector<PlannedTopic>& topics);

/// The same for a web server that answers by itself: lines for nginx's "map" of
/// "$arg_language/$arg_topic" to the page's path. A topic stands there by its key, by the name of its file
/// where no key is alike, and the home topic also by the empty text.
QByteArray AddressMap(const SiteFacts& facts, const std::vector<PlannedTopic>& topics);

} // namespace helpbuild
