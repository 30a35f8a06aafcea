#include "scriptstrings.h"

namespace helpbuild {
namespace {

bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool IsNamePart(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '$';
}

class ScriptScanner
{
public:
    explicit ScriptScanner(const QByteArray& script) : text(script) {}

    std::vector<ScriptString> Scan()
    {
        while (position < text.size())
            Step();
        return std::move(strings);
    }

private:
    void Step()
    {
        const char character = text.at(position);
        if (character == '/' && At(1) == '/')
            SkipTo("\n");
        else if (character == '/' && At(1) == '*')
            SkipTo("*/");
        else if (character == '"' || character == '\'')
            ReadString(character);
        else if (character == '`')
            SkipQuoted('`');
        else if (character == '/' && StartsExpression())
            SkipRegularExpression();
        else {
            if (!IsBlank(character))
                last = position;
            ++position;
        }
    }

    char At(int offset) const { return position + offset < text.size() ? text.at(position + offset) : '\0'; }

    void SkipTo(const char* end)
    {
        const int found = text.indexOf(end, position + 2);
        position = found < 0 ? text.size() : found + static_cast<int>(qstrlen(end));
    }

    // Behind a value a slash divides; anywhere else it opens a regular expression.
    bool StartsExpression() const
    {
        if (last < 0)
            return true;
        const char before = text.at(last);
        if (before == ')' || before == ']' || before == '}')
            return false;
        if (!IsNamePart(before))
            return before != '"' && before != '\'' && before != '`';
        int begin = last;
        while (begin > 0 && IsNamePart(text.at(begin - 1)))
            --begin;
        const QByteArray word = text.mid(begin, last - begin + 1);
        return word == "return" || word == "typeof" || word == "case" || word == "in" || word == "of";
    }

    void SkipQuoted(char quote)
    {
        ++position;
        while (position < text.size() && text.at(position) != quote)
            position += text.at(position) == '\\' ? 2 : 1;
        last = qMin(position, text.size() - 1);
        position = last + 1;
    }

    void SkipRegularExpression()
    {
        bool inClass = false;
        for (++position; position < text.size(); ++position) {
            const char character = text.at(position);
            if (character == '\n' || (character == '/' && !inClass))
                break;
            if (character == '\\')
                ++position;
            else if (character == '[' || character == ']')
                inClass = character == '[';
        }
        last = qMin(position, text.size() - 1);
        position = last + 1;
    }

    void ReadString(char quote)
    {
        const int before = last;
        const int begin = position++;
        bool plain = true;
        while (position < text.size() && text.at(position) != quote && text.at(position) != '\n') {
            plain = plain && text.at(position) != '\\';
            position += text.at(position) == '\\' ? 2 : 1;
        }
        if (position >= text.size() || text.at(position) == '\n') {
            position = qMin(position, text.size());
            return;
        }
        last = position++;
        if (plain) {
            const QString value = QString::fromUtf8(text.mid(begin + 1, last - begin - 1));
            strings.push_back({{begin, position}, value, IsKey(before)});
        }
    }

    bool IsKey(int before) const
    {
        int after = position;
        while (after < text.size() && IsBlank(text.at(after)))
            ++after;
        const bool opens = before >= 0 && (text.at(before) == '{' || text.at(before) == ',');
        return opens && after < text.size() && text.at(after) == ':';
    }

    const QByteArray& text;
    int position = 0;
    int last = -1; ///< Where the last character stood that is no blank and no comment.
    std::vector<ScriptString> strings;
};

} // namespace

std::vector<ScriptString> ScanScriptStrings(const QByteArray& script)
{
    return ScriptScanner(script).Scan();
}

} // namespace helpbuild
