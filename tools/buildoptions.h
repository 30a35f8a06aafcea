#pragma once

#include <QString>
#include <QStringList>

namespace helpbuild {

struct BuildOptions
{
    QStringList inputs;
    QString output; ///< Empty: no database is built.
    QString site;   ///< Empty: no web site is written.
    QString language;
    QString database = QStringLiteral("YXCADHelp.db");
    QString title;
    QString product; ///< Product description; empty for the built-in one.
    bool verbose = false;
};

struct ParsedOptions
{
    enum Kind {
        Run,
        ShowText, ///< Help or version: `text` is what was asked for.
        Wrong,    ///< `text` tells what is wrong.
    };

    Kind kind = Run;
    BuildOptions options;
    QString text;
};

/// Reads the command line, the program's name first.
ParsedOptions ParseOptions(const QStringList& arguments);

} // namespace helpbuild
