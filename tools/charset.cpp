#include "charset.h"

#include "htmldocument.h"

#include <QTextCodec>
#include <QXmlStreamReader>

namespace helpbuild {
namespace {

// Browsers look no further for a declaration.
constexpr int kDeclarationReach = 4096;

QByteArray XmlDeclaration(const QByteArray& head)
{
    if (!head.startsWith("<?xml"))
        return {};
    QXmlStreamReader xml(head);
    xml.readNext();
    return xml.documentEncoding().toString().toLatin1();
}

QByteArray MetaDeclaration(const QByteArray& head)
{
    const HtmlDocument document(head);
    QByteArray charset;
    document.ForEachNode([&](const GumboNode& node) {
        if (!charset.isEmpty() || node.type != GUMBO_NODE_ELEMENT || node.v.element.tag != GUMBO_TAG_META)
            return;
        charset = CharsetOfMeta(node.v.element);
    });
    return charset;
}

QByteArray CssDeclaration(const QByteArray& bytes)
{
    const QByteArray opening("@charset \"");
    if (!bytes.startsWith(opening))
        return {};
    return bytes.mid(opening.size(), bytes.indexOf('"', opening.size()) - opening.size());
}

// What the names mean in browsers: the old names stand for the larger sets that followed them.
QByteArray UsualName(const QByteArray& charset)
{
    const QByteArray name = charset.trimmed().toLower();
    if (name == "iso-8859-1" || name == "latin1" || name == "us-ascii" || name == "ascii")
        return "windows-1252";
    if (name == "gb2312" || name == "gbk" || name == "gb_2312-80")
        return "GB18030";
    // A declaration that could be read at all is not in two-byte units.
    if (name.startsWith("utf-16"))
        return "UTF-8";
    return name;
}

bool IsValidUtf8(const QByteArray& bytes)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

DecodedText Decode(const QByteArray& bytes, const QTextCodec& codec)
{
    DecodedText result;
    QTextCodec::ConverterState state;
    QString text = codec.toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        result.problem = QStringLiteral("bytes that aren't valid in ") + QString::fromLatin1(codec.name());
    text.remove(QChar(QChar::Null));
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    result.utf8 = text.toUtf8();
    return result;
}

DecodedText DecodeDeclared(const QByteArray& bytes, const QByteArray& charset)
{
    const QTextCodec* utf8 = QTextCodec::codecForName("UTF-8");
    if (const QTextCodec* marked = QTextCodec::codecForUtfText(bytes, nullptr))
        return Decode(bytes, *marked);
    if (!charset.isEmpty()) {
        if (const QTextCodec* codec = QTextCodec::codecForName(UsualName(charset)))
            return Decode(bytes, *codec);
    }
    DecodedText result =
        Decode(bytes, IsValidUtf8(bytes) ? *utf8 : *QTextCodec::codecForName("windows-1252"));
    if (!charset.isEmpty())
        result.problem =
            QStringLiteral("unknown character set \"") + QString::fromLatin1(charset) + QLatin1Char('"');
    return result;
}

} // namespace

DecodedText DecodePage(const QByteArray& bytes)
{
    const QByteArray head = bytes.left(kDeclarationReach);
    QByteArray charset = MetaDeclaration(head);
    if (charset.isEmpty())
        charset = XmlDeclaration(head);
    return DecodeDeclared(bytes, charset);
}

DecodedText DecodeStyleSheet(const QByteArray& bytes)
{
    return DecodeDeclared(bytes, CssDeclaration(bytes));
}

DecodedText DecodeScript(const QByteArray& bytes)
{
    return DecodeDeclared(bytes, {});
}

} // namespace helpbuild
