#pragma once

#include "docinput.h"

namespace helpbuild {

class DocSite;

/// Reads a folder of pages: its folders become the tree. `path` is where the folder stands in the
/// documentation, empty for its root. False, with the error in `diagnostics`, when it holds no page.
bool ReadPageFolder(const QString& folder, const QString& path, DocSite& site, Diagnostics& diagnostics,
                    DocInput& input);

/// Order of file names as people expect it: numbers by value, letters without regard to case.
bool NaturalLess(const QString& left, const QString& right);

} // namespace helpbuild
