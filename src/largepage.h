#pragma once

#include <QString>

/// The web engine takes a page as a data address, which has a greatest length. A longer page goes by a file.

/// True when the engine shows `html` as it stands.
bool FitsDataAddress(const QString& html);

/// `html` with what lets it behave in a file as it would in a data address with the base "file:///":
/// relative links start there, and links to "#name" move within the page.
QString RebaseLargePage(QString html);

/// Writes the rebased page to the temporary tree. Returns the path of the file, empty when that failed.
QString WriteLargePage(const QString& html, const QString& language);
