#include "sitepage.h"

#include "docsite.h"
#include "pageedit.h"
#include "sitefiles.h"
#include "weblink.h"

namespace helpbuild {
namespace {

QString Quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString WithFragment(const QString& link, const QString& fragment)
{
    return fragment.isEmpty() ? link : QString(link + QLatin1Char('#') + EncodedAnchor(fragment));
}

} // namespace

SitePage::SitePage(const HtmlDocument& htmlDocument, const PageParts& pageParts, const QString& path,
                   const QString& file, const SiteParts& siteParts)
    : document(htmlDocument)
    , parts(pageParts)
    , shared(siteParts)
    , pagePath(path)
    , pageFile(file)
    , place(siteParts.site.TopicLink(path))
    , base(DocSite::AddressOf(path))
{
    if (!parts.base.isEmpty())
        base = base.resolved(QUrl(parts.base));
}

QByteArray SitePage::Write()
{
    for (const TextRange& range : parts.dropped)
        edits.Remove(range);
    DeclareUtf8(document, parts, edits);
    WriteRedirects();
    WriteScripts();
    WriteSheets();
    for (const PageReference& reference : parts.references)
        WriteReference(reference);
    return edits.Apply(document.Text(), {}).text;
}

void SitePage::WriteRedirects()
{
    for (std::size_t i = 0; i < parts.redirects.size(); ++i) {
        const QString reference = parts.redirectTargets.at(static_cast<int>(i));
        const Target target = shared.site.Resolve(reference, base, pagePath);
        if (reference.isEmpty() || target.kind == Target::External)
            continue;
        edits.Remove(parts.redirects[i]);
        if (target.kind == Target::Topic) {
            const QString content =
                QLatin1String("0; url=") + WithFragment(TopicLink(target.path), target.fragment);
            edits.Insert(parts.redirects[i].begin,
                         "<meta http-equiv=\"refresh\" content=" + AttributeValue(content) + '>');
        } else if (target.kind == Target::Missing) {
            Report(Finding::DeadLink, parts.redirects[i].begin,
                   QLatin1String("the link to ") + Quoted(reference) + QLatin1String(" leads nowhere"));
        }
    }
}

void SitePage::WriteScripts()
{
    for (const PageScript& script : parts.scripts) {
        if (script.reference.isEmpty()) {
            shared.files.TakeNamedIn(script.text.toUtf8(), base);
            continue;
        }
        const Target target = shared.site.Resolve(script.reference, base, pagePath);
        if (target.kind == Target::External || target.kind == Target::Special)
            continue;
        const QString file =
            target.kind == Target::File ? shared.files.TakeScript(target.path, base) : QString();
        if (file.isEmpty())
            Report(Finding::MissingFile, script.element.begin,
                   QLatin1String("the script ") + Quoted(script.reference) + QLatin1String(" doesn't exist"));
        else
            ReplaceReference(script.attribute, script.reference, RelativeLink(place, file));
    }
}

void SitePage::WriteSheets()
{
    for (const PageSheet& sheet : parts.sheets) {
        if (!sheet.linked) {
            const QString text = shared.files.Sheet(sheet.value, base, place, PlaceAt(sheet.content.begin));
            if (text != sheet.value)
                edits.Replace(sheet.content, text.toUtf8());
            continue;
        }
        const Target target = shared.site.Resolve(sheet.value, base, pagePath);
        if (target.kind == Target::External || target.kind == Target::Special)
            continue;
        const QString link = target.kind == Target::File ? FileLink(target.path) : QString();
        if (link.isEmpty())
            Report(Finding::MissingFile, sheet.element.begin,
                   QLatin1String("the style sheet ") + Quoted(sheet.value) + QLatin1String(" doesn't exist"));
        else
            ReplaceReference(sheet.attribute, sheet.value, link);
    }
}

void SitePage::WriteReference(const PageReference& reference)
{
    switch (reference.kind) {
    case PageReference::Link:
        WriteLink(reference);
        break;
    case PageReference::Image:
    case PageReference::Object:
    case PageReference::Media:
    case PageReference::Frame:
    case PageReference::Form:
        WriteFile(reference);
        break;
    case PageReference::InlineStyle:
        WriteInlineStyle(reference);
        break;
    case PageReference::Superfluous:
        RemoveAttribute(document, reference.attribute, edits);
        break;
    }
}

void SitePage::WriteLink(const PageReference& reference)
{
    const Target target = shared.site.Resolve(reference.value, base, pagePath);
    QString link;
    switch (target.kind) {
    case Target::Special:
        return;
    case Target::External:
        link = target.address;
        break;
    case Target::Topic:
        link = WithFragment(TopicLink(target.path), target.fragment);
        break;
    case Target::SamePage: {
        const bool isAnchor =
            !target.fragment.isEmpty() || reference.value.trimmed().startsWith(QLatin1Char('#'));
        link = isAnchor ? QString(QLatin1Char('#') + EncodedAnchor(target.fragment)) : TopicLink(pagePath);
        break;
    }
    case Target::File:
        // A page that is no topic has no topic's neighbours, and its own links would lead nowhere.
        if (!IsPageName(target.path))
            link = FileLink(target.path);
        if (link.isEmpty())
            Report(Finding::FileLink, reference.tag.begin,
                   QLatin1String("the link to ") + Quoted(reference.value) +
                       QLatin1String(" leads to no page"));
        break;
    case Target::Missing:
        Report(Finding::DeadLink, reference.tag.begin,
               QLatin1String("the link to ") + Quoted(reference.value) + QLatin1String(" leads nowhere"));
        break;
    }
    if (link.isEmpty())
        RemoveAttribute(document, reference.attribute, edits);
    else
        ReplaceReference(reference.attribute, reference.value, link);
}

void SitePage::WriteFile(const PageReference& reference)
{
    const Target target = shared.site.Resolve(reference.value, base, pagePath);
    if (target.kind == Target::External || target.kind == Target::Special ||
        reference.value.trimmed().isEmpty())
        return;
    const bool isImage = reference.kind == PageReference::Image;
    QString link;
    if (target.kind == Target::File && !IsPageName(target.path))
        link = FileLink(target.path);
    else if (!isImage && (target.kind == Target::Topic || target.kind == Target::SamePage))
        link = TopicLink(target.kind == Target::Topic ? target.path : pagePath);
    if (link.isEmpty()) {
        Report(isImage ? Finding::MissingImage : Finding::MissingFile, reference.tag.begin,
               QLatin1String(isImage ? "the image " : "the file ") + Quoted(reference.value) +
                   QLatin1String(" doesn't exist"));
        return;
    }
    ReplaceReference(reference.attribute, reference.value, WithFragment(link, target.fragment));
}

void SitePage::WriteInlineStyle(const PageReference& reference)
{
    const QString style = shared.files.Sheet(reference.value, base, place, PlaceAt(reference.tag.begin));
    ReplaceReference(reference.attribute, reference.value, style);
}

QString SitePage::TopicLink(const QString& path) const
{
    return RelativeLink(place, shared.site.TopicLink(path)) + shared.query;
}

QString SitePage::FileLink(const QString& path)
{
    const QString file = shared.files.Take(path);
    return file.isEmpty() ? QString() : RelativeLink(place, file);
}

// What leads to the right place as it stands keeps the author's spelling.
void SitePage::ReplaceReference(const TextRange& attribute, const QString& old, const QString& reference)
{
    if (reference == old)
        return;
    const QByteArray text = document.Text().mid(attribute.begin, attribute.end - attribute.begin);
    const QByteArray name = text.left(text.indexOf('=')).trimmed();
    edits.Replace(attribute, name + '=' + AttributeValue(reference));
}

void SitePage::Report(Finding finding, int position, const QString& text)
{
    shared.diagnostics.Report(finding, PlaceAt(position), text);
}

SourcePlace SitePage::PlaceAt(int position) const
{
    return {pageFile, document.Text().left(position).count('\n') + 1};
}

} // namespace helpbuild
