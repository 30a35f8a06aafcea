#include "cssprep.h"

#include <algorithm>

namespace helpbuild {
namespace {

const QLatin1String kUtf8Rule("@charset \"utf-8\";");

class CssScanner
{
public:
    explicit CssScanner(const QString& sheet) : text(sheet) {}

    std::vector<CssReference> Scan()
    {
        while (position < text.size()) {
            const QChar character = text.at(position);
            if (AtComment())
                SkipComment();
            else if (IsQuote(character))
                ReadString();
            else if (character == QLatin1Char('@') && AtWord("@import"))
                ReadImport();
            else if (AtWord("url(") && !AfterName())
                references.push_back(ReadUrl());
            else
                ++position;
        }
        return std::move(references);
    }

private:
    static bool IsQuote(QChar character)
    {
        return character == QLatin1Char('"') || character == QLatin1Char('\'');
    }

    bool AtComment() const { return text.midRef(position, 2) == QLatin1String("/*"); }

    bool AtWord(const char* word) const
    {
        const QLatin1String wanted(word);
        return text.midRef(position, wanted.size()).compare(wanted, Qt::CaseInsensitive) == 0;
    }

    // "my-url(" is another function.
    bool AfterName() const
    {
        const QChar before = position > 0 ? text.at(position - 1) : QChar();
        return before.isLetterOrNumber() || before == QLatin1Char('-') || before == QLatin1Char('_');
    }

    void SkipComment()
    {
        const int end = text.indexOf(QLatin1String("*/"), position + 2);
        position = end < 0 ? text.size() : end + 2;
    }

    void SkipBlanks()
    {
        while (position < text.size() && (text.at(position).isSpace() || AtComment())) {
            if (AtComment())
                SkipComment();
            else
                ++position;
        }
    }

    // A backslash takes the next character as it is, or a code of up to six digits and one blank.
    QChar ReadEscape()
    {
        ++position;
        QString digits;
        while (position < text.size() && digits.size() < 6 && IsHexDigit(text.at(position)))
            digits += text.at(position++);
        if (digits.isEmpty())
            return position < text.size() ? text.at(position++) : QChar();
        if (position < text.size() && text.at(position).isSpace())
            ++position;
        return QChar(static_cast<ushort>(digits.toUInt(nullptr, 16)));
    }

    static bool IsHexDigit(QChar character)
    {
        const ushort code = character.toLower().unicode();
        return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'f');
    }

    QString ReadString()
    {
        const QChar quote = text.at(position++);
        QString value;
        while (position < text.size() && text.at(position) != quote &&
               text.at(position) != QLatin1Char('\n')) {
            if (text.at(position) == QLatin1Char('\\'))
                value += ReadEscape();
            else
                value += text.at(position++);
        }
        ++position;
        return value;
    }

    CssReference ReadUrl()
    {
        CssReference reference;
        reference.begin = position;
        position += 4;
        SkipBlanks();
        if (position < text.size() && IsQuote(text.at(position))) {
            reference.value = ReadString();
            SkipBlanks();
        } else {
            while (position < text.size() && text.at(position) != QLatin1Char(')')) {
                if (text.at(position) == QLatin1Char('\\'))
                    reference.value += ReadEscape();
                else
                    reference.value += text.at(position++);
            }
            reference.value = reference.value.trimmed();
        }
        position = qMin(position + 1, text.size());
        reference.end = position;
        return reference;
    }

    void ReadImport()
    {
        CssReference reference;
        const int begin = position;
        position += 7;
        SkipBlanks();
        if (position < text.size() && IsQuote(text.at(position)))
            reference.value = ReadString();
        else if (AtWord("url("))
            reference.value = ReadUrl().value;
        else
            return;
        const int end = text.indexOf(QLatin1Char(';'), position);
        reference.media = text.mid(position, end < 0 ? -1 : end - position).trimmed();
        position = end < 0 ? text.size() : end + 1;
        reference.begin = begin;
        reference.end = position;
        reference.isImport = true;
        references.push_back(reference);
    }

    const QString& text;
    int position = 0;
    std::vector<CssReference> references;
};

} // namespace

std::vector<CssReference> ScanStyleSheet(const QString& text)
{
    return CssScanner(text).Scan();
}

QString CssString(const QString& text)
{
    QString quoted = text;
    quoted.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    quoted.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString CssUrl(const QString& address)
{
    return QLatin1String("url(") + CssString(address) + QLatin1Char(')');
}

QString CssImport(const QString& address, const QString& media)
{
    const QString condition = media.isEmpty() ? QString() : QString(QLatin1Char(' ') + media);
    return QLatin1String("@import ") + CssString(address) + condition + QLatin1Char(';');
}

QString WithUtf8Rule(const QString& sheet)
{
    QString text = sheet;
    if (text.startsWith(QLatin1String("@charset"))) {
        const int end = text.indexOf(QLatin1Char(';'));
        text.remove(0, end < 0 ? 0 : end + 1);
    }
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](QChar character) { return character.unicode() < 0x80; });
    return isAscii ? text : QString(kUtf8Rule + text);
}

} // namespace helpbuild
