#pragma once

#include <QRegExp>
#include <QString>
#include <QStringView>

#include <array>
#include <variant>

/// A text that is found in whatever case, with the rules of a case-insensitive QRegExp.
class CaselessText
{
public:
    /// True when a QRegExp finds the text character by character, so that a CaselessText can stand in for it.
    static bool Replaces(const QString& expression);

    /// The text must not be empty.
    explicit CaselessText(const QString& text);

    qsizetype Size() const { return lower.size(); }
    /// The first place at or behind `from` where the text lies wholly before `end`, or -1.
    qsizetype Find(QStringView page, qsizetype from, qsizetype end) const;

private:
    /// A character of the text by which places are ruled out, in all its cases.
    struct Pivot
    {
        qsizetype offset = 0;
        std::array<char16_t, 3> forms{};

        bool Fits(char16_t c) const { return c == forms[0] || c == forms[1] || c == forms[2]; }
    };

    static constexpr qsizetype kBlock = 32;

    Pivot PivotAt(qsizetype offset) const;
    qsizetype SkipBlocks(const char16_t* page, qsizetype at, qsizetype stop) const;
    bool StandsAt(const char16_t* place) const;

    QString lower;
    std::array<Pivot, 2> pivots;
};

/// Tells the pages that hold a text with no ASCII letter beside it, in the section of the title or of the
/// body, tags included. The text may be a regular expression; one that is invalid is in no page. A matcher
/// serves one thread.
class TextMatcher
{
public:
    explicit TextMatcher(const QString& text);

    bool Matches(const QString& html) const;

private:
    std::variant<CaselessText, QRegExp> sought;
};
