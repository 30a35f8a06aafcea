#pragma once

#include <QString>

#include <vector>

namespace helpbuild {

/// Something in a style sheet that refers to a file.
struct CssReference
{
    int begin = 0; ///< Of an import the whole rule, else the "url(...)", in characters.
    int end = 0;
    QString value;
    QString media; ///< Behind the address of an import.
    bool isImport = false;
};

/// Finds the references of a style sheet, not those in comments and strings.
std::vector<CssReference> ScanStyleSheet(const QString& text);

/// Text as a string of a style sheet, with its quotes.
QString CssString(const QString& text);

QString CssUrl(const QString& address);
QString CssImport(const QString& address, const QString& media);

/// The sheet with a rule that it is UTF-8 in place of one that says otherwise, if it needs one.
QString WithUtf8Rule(const QString& sheet);

} // namespace helpbuild
