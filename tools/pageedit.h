#pragma once

#include "pagescan.h"
#include "textedit.h"

#include <QByteArray>
#include <QString>

namespace helpbuild {

/// Value of an attribute, with its quotes.
QByteArray AttributeValue(const QString& value);

/// Removes an attribute with the blank before it, unless that is all that parts its neighbours.
void RemoveAttribute(const HtmlDocument& document, const TextRange& attribute, EditList& edits);

/// Makes the page say that it is UTF-8, when it would be taken for something else.
void DeclareUtf8(const HtmlDocument& document, const PageParts& parts, EditList& edits);

} // namespace helpbuild
