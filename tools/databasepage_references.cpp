#include "databasepage.h"

#include "cssprep.h"
#include "docsite.h"
#include "imagestore.h"
#include "pageedit.h"

#include <QFileInfo>

namespace helpbuild {
namespace {

const QByteArray kBlankTarget("target=\"_blank\"");

// An object shows an image; what else it may hold the viewer can't reach.
bool IsImageName(const QString& path)
{
    static const QStringList endings{QStringLiteral("png"),  QStringLiteral("gif"), QStringLiteral("jpg"),
                                     QStringLiteral("jpeg"), QStringLiteral("bmp"), QStringLiteral("ico"),
                                     QStringLiteral("svg"),  QStringLiteral("webp")};
    return endings.contains(QFileInfo(path).suffix().toLower());
}

} // namespace

bool DatabasePage::WriteReference(const PageReference& reference)
{
    switch (reference.kind) {
    case PageReference::Link:
        WriteLink(reference);
        return true;
    case PageReference::Image:
        return WriteImage(reference);
    case PageReference::InlineStyle:
        return WriteInlineStyle(reference);
    case PageReference::Object:
        if (IsImageName(reference.value))
            return WriteImage(reference);
        WriteDeadReference(reference, "the object ");
        return true;
    case PageReference::Media:
        WriteDeadReference(reference, "the recording ");
        return true;
    case PageReference::Frame:
        WriteDeadReference(reference, "the frame ");
        return true;
    case PageReference::Form:
        WriteForm(reference);
        return true;
    case PageReference::Superfluous:
        RemoveAttribute(reference.attribute);
        return true;
    }
    return true;
}

// A link to another topic is the path of the topic alone: the viewer compares the whole of it, anchor
// included. It opens in the page's place, since a window of its own would be the desktop's browser, which
// knows no topics. A link that leads nowhere loses its address and stays as text.
void DatabasePage::WriteLink(const PageReference& reference)
{
    const Target target = shared.site.Resolve(reference.value, base, pagePath);
    switch (target.kind) {
    case Target::External:
        WriteExternalLink(reference, target.address);
        return;
    case Target::Special:
        ReplaceAttribute(reference, reference.value);
        return;
    case Target::Topic:
        ReplaceAttribute(reference, shared.site.TopicLink(target.path));
        break;
    case Target::SamePage:
        if (target.fragment.isEmpty() && !reference.value.trimmed().startsWith(QLatin1Char('#')))
            ReplaceAttribute(reference, shared.site.TopicLink(pagePath));
        else
            ReplaceAttribute(reference, QLatin1Char('#') + target.fragment);
        break;
    case Target::File:
        Report(Finding::FileLink, reference.tag.begin,
               QLatin1String("the link to \"") + reference.value + QLatin1String("\" leads to no page"));
        RemoveAttribute(reference.attribute);
        break;
    case Target::Missing:
        Report(Finding::DeadLink, reference.tag.begin,
               QLatin1String("the link to \"") + reference.value + QLatin1String("\" leads nowhere"));
        RemoveAttribute(reference.attribute);
        break;
    }
    if (!reference.target.IsEmpty())
        RemoveAttribute(reference.target);
}

// Only a window of its own brings a link out into the desktop's browser.
void DatabasePage::WriteExternalLink(const PageReference& reference, const QString& address)
{
    const QByteArray attribute = AttributeName(reference.name) + '=' + AttributeValue(address);
    if (reference.target.IsEmpty()) {
        edits.Replace(reference.attribute, attribute + " " + kBlankTarget);
        return;
    }
    edits.Replace(reference.attribute, attribute);
    edits.Replace(reference.target, kBlankTarget);
}

bool DatabasePage::WriteImage(const PageReference& reference)
{
    QString text;
    if (!ImageText(reference.value, reference.tag.begin, text))
        return false;
    if (!text.isEmpty())
        ReplaceAttribute(reference, text);
    return true;
}

// What stands in the page for the image; nothing when the reference stays as it is.
bool DatabasePage::ImageText(const QString& value, int position, QString& text)
{
    const Target target = shared.site.Resolve(value, base, pagePath);
    if (target.kind == Target::External || target.kind == Target::Special || value.trimmed().isEmpty())
        return true;
    if (target.kind != Target::File) {
        Report(Finding::MissingImage, position,
               QLatin1String("the image \"") + value + QLatin1String("\" doesn't exist"));
        return true;
    }
    const auto image = shared.images.Add(shared.site.RealPath(target.path));
    if (!image)
        return shared.diagnostics.Fail({pageFile, LineAt(position)},
                                       QLatin1String("the image \"") + value +
                                           QLatin1String("\" can't be read as an image"));
    text = image->key.isEmpty() ? image->address : image->key;
    if (!image->key.isEmpty() && !imageKeys.contains(image->key))
        imageKeys << image->key;
    return true;
}

bool DatabasePage::WriteInlineStyle(const PageReference& reference)
{
    QString style;
    int copied = 0;
    for (const CssReference& part : ScanStyleSheet(reference.value)) {
        QString text;
        if (!ImageText(part.value, reference.tag.begin, text))
            return false;
        if (text.isEmpty())
            continue;
        style += reference.value.midRef(copied, part.begin - copied);
        style += QLatin1String("url('") + text + QLatin1String("')");
        copied = part.end;
    }
    if (copied > 0) {
        style += reference.value.midRef(copied);
        ReplaceAttribute(reference, style);
    }
    return true;
}

// A form that is sent to a page would take the viewer to a file that isn't there.
void DatabasePage::WriteForm(const PageReference& reference)
{
    const Target target = shared.site.Resolve(reference.value, base, pagePath);
    if (target.kind == Target::External || target.kind == Target::Special)
        return;
    edits.Replace(reference.attribute, "onsubmit=\"return false\"");
}

void DatabasePage::WriteDeadReference(const PageReference& reference, const char* what)
{
    const Target target = shared.site.Resolve(reference.value, base, pagePath);
    if (target.kind == Target::External || target.kind == Target::Special)
        return;
    Report(Finding::LeftOut, reference.tag.begin,
           QLatin1String(what) + QLatin1Char('"') + reference.value + QLatin1Char('"'));
    RemoveAttribute(reference.attribute);
}

} // namespace helpbuild
