#pragma once

#include "htmldocument.h"

namespace helpbuild {

/// What a reader of the page sees, as plain text: blocks on lines of their own, white space collapsed,
/// without scripts, styles and hidden parts.
QString PlainText(const HtmlDocument& document);

/// Text of one element, on one line.
QString PlainText(const GumboNode& node);

} // namespace helpbuild
