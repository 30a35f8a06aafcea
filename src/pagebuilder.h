#pragma once

#include "treeviewmodel.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// The stages that turn the stored source of a page into one that stands alone, in their order. Each works
/// on text; nothing is parsed. A stage with nothing to do returns its argument.

/// Writes the script files that the page refers to into the page. `page` names it when the page is refused:
/// more script files than script elements end the program.
QString InlineScripts(QString html, const QList<JsFileContent>& scripts, const QString& page);

/// Puts what `replacements` holds in the place of each key, one key after the other: a replacement can bring
/// in a later key. Keys without one stay.
QString ReplaceImages(QString html, const QStringList& keys, const QHash<QString, QString>& replacements);

/// Points links to style sheets at the directory "styles" below `styleRoot`.
QString RedirectStyleSheets(QString html, const QString& styleRoot);

/// Leads links into the variants of the article directories to the plain directories.
QString FoldLinks(QString html);
