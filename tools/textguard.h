#pragma once

#include "textedit.h"

namespace helpbuild {

/// The viewer works on pages as on plain text: it takes any `<script`, `href="` and `.css"` for the real
/// thing. Here words that merely look like it are written in another way that means the same.

/// Guards a page. The marked pieces are the real thing and stay. `hrefLimit` is a position in the edited
/// text; up to it no other `href="` may stand, since the viewer would take all that follows for a style
/// sheet's name.
QByteArray GuardPage(const EditedText& page, int hrefLimit);

/// Guards the text of a script that the viewer writes into pages.
QByteArray GuardScript(const EditedText& script);

/// Writes letters and digits outside ASCII that stand as character references in plain, because the search
/// looks for them in the page's text.
void DecodeLetters(const QByteArray& source, const std::vector<TextRange>& raw, EditList& edits);

} // namespace helpbuild
