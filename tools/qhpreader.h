#pragma once

#include "docinput.h"

namespace helpbuild {

class DocSite;

/// Reads a Qt help project: its sections become the tree, its keywords the topic keys, its files go to
/// `site`. False, with the error in `diagnostics`, when the project is broken or names files that don't
/// exist.
bool ReadHelpProject(const QString& file, DocSite& site, Diagnostics& diagnostics, DocInput& input);

} // namespace helpbuild
