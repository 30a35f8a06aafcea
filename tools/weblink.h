#pragma once

#include <QString>

namespace helpbuild {

/// The path as it stands in an address. Only what has a meaning there, or may not stand there, is encoded.
QString EncodedPath(const QString& path);

/// What a link in the page at `from` says to lead to `to`. Both are paths with forward slashes below one
/// folder.
QString RelativeLink(const QString& from, const QString& to);

/// The part behind the path in links between pages. The viewer finds the topic of an address only when it
/// holds a "?".
QString LinkQuery(const QString& language);

/// An anchor as it is written behind "#". A "?" in it would be taken for the query's.
QString EncodedAnchor(QString anchor);

} // namespace helpbuild
