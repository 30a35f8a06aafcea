#pragma once

#include "htmldocument.h"

#include <vector>

namespace helpbuild {

/// A string of a script, written without escapes.
struct ScriptString
{
    TextRange range; ///< With its quotes.
    QString value;
    bool isKey = false; ///< Name of a property, where no expression can stand.
};

/// Finds the strings of a script; not what looks like one in comments, templates and regular expressions.
std::vector<ScriptString> ScanScriptStrings(const QByteArray& script);

} // namespace helpbuild
