#pragma once

#include "htmldocument.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace helpbuild {

/// An attribute of a page that refers to something.
struct PageReference
{
    enum Kind {
        Link,
        Image,
        InlineStyle, ///< A "style" attribute, which may name images.
        Object,      ///< An image, or else something that can't be shown.
        Media,
        Frame,
        Form,        ///< Where what the reader fills in is sent to.
        Superfluous, ///< An attribute that does harm in the viewer and has a stand-in beside it.
    };

    Kind kind = Link;
    TextRange tag; ///< The start tag.
    TextRange name;
    TextRange attribute; ///< Name and value.
    TextRange target;    ///< Of a link, its "target" attribute; empty without one.
    QString value;
};

struct PageSheet
{
    TextRange element;
    TextRange attribute; ///< Of a linked sheet.
    TextRange content;   ///< Of a sheet that stands in the page.
    QString value;       ///< Reference or text.
    QString media;
    bool linked = false;
};

struct PageScript
{
    TextRange element;
    TextRange attribute; ///< Of a script file, the one that names it.
    QString reference;   ///< Empty for a script that stands in the page.
    QString text;
    bool runs = true; ///< A script that the viewer can carry, and no data block or module.
    bool deferred = false;
    bool data = false; ///< For search engines only.
};

/// A page taken apart: where in its text the things stand that can't stay as they are. Positions are bytes
/// of the document's text, which this object does not own.
struct PageParts
{
    std::vector<PageReference> references;
    std::vector<PageSheet> sheets;
    std::vector<PageScript> scripts;
    std::vector<TextRange> dropped;    ///< Elements without a use in the viewer.
    std::vector<TextRange> rawText;    ///< Text in which character references mean nothing.
    std::vector<TextRange> otherHrefs; ///< Names of "href" attributes that are none of the above.
    std::vector<TextRange> redirects;  ///< Elements that lead to another page by themselves.
    QStringList redirectTargets;       ///< Where these lead to.
    TextRange charset;                 ///< Value of the declaration of a character set that isn't UTF-8.
    QString base;                      ///< Address that references are relative to, when the page gives one.
    QString title;
    QString heading;
    int headStart = 0;    ///< Where the head begins, or the page's text when no tag tells.
    int bodyStart = -1;   ///< Where the body begins.
    int bodyEnd = -1;     ///< Where it ends.
    bool bodyTag = false; ///< The start tag is written.
    bool bodyEndTag = false;
    bool charsetDeclared = false;
    bool frames = false;
};

/// Takes the page apart.
PageParts ScanPage(const HtmlDocument& document);

} // namespace helpbuild
