#include "testtable.h"
#include "textmatcher.h"

#include <QRandomGenerator>

#include <vector>

namespace {

QRegExp WordExpression(const QString& text)
{
    return QRegExp("[^a-zA-Z]%1[^a-zA-Z]"_s.arg(text), Qt::CaseInsensitive);
}

/// The two sections of a page, taken the plain way.
struct Sections
{
    explicit Sections(const QString& page)
    {
        QRegExp section("<title.*</title>"_s, Qt::CaseInsensitive);
        section.indexIn(page);
        title = section.cap(0);
        section.setPattern("<body.*</body>"_s);
        section.indexIn(page);
        body = section.cap(0);
    }
    bool Hold(const QRegExp& word) const { return word.indexIn(title) >= 0 || word.indexIn(body) >= 0; }

    QString title;
    QString body;
};

// A star stands for what has no place in a source text: NUL, newline and the halves of a surrogate pair.
const QStringList kPieces =
    QString::fromUtf8("a a A b B k K i I s S a b ab t . 1 _ = - < > / * * * * "
                      "\u017f \u212a \u0131 \u0130 \u00e9 \u00c9 \u0301 \u00df \u1e9e "
                      "\u03a3 \u03c3 \u03c2 \u01c4 \u01c5 \u01c6 \u4e2d \u6587 "
                      "<title <TITLE> <tItle </title> </Title> </TITLE </title> "
                      "<body <BODY> <body> </body> </BODY> </body </body> title> body")
        .split(QLatin1Char(' '));
const QStringList kOperators = "$ ( ) * + . ? [ \\ ] ^ { | } .* [^a] {2} (a|b)"_s.split(QLatin1Char(' '));

class Composer
{
public:
    explicit Composer(quint32 seed) : random(seed) {}

    int Below(int bound) { return random.bounded(bound); }
    QString Page()
    {
        const int padded = Below(8) == 0 ? Below(80) : -1;
        const bool hasBody = Below(2) == 0;
        QString page = hasBody ? "<body>"_s : QString();
        for (int left = Below(80); left > 0; --left) {
            page += Below(4) == 0 ? " "_s : Piece();
            if (left == padded)
                page += QString(Below(1500), QLatin1Char(Below(2) == 0 ? 'a' : '.'));
        }
        return hasBody ? page.append("</body>"_s) : page;
    }
    QString Word()
    {
        const bool expression = Below(8) == 0;
        QString word;
        for (int left = 1 + Below(Below(6) + 1); left > 0; --left)
            word += expression && Below(2) == 0 ? kOperators.at(Below(kOperators.size())) : Piece();
        return Below(100) == 0 ? QString() : word;
    }

private:
    QString Piece()
    {
        static const ushort odd[] = {0, '\n', 0xd83d, 0xde00};
        const QString piece = kPieces.at(Below(kPieces.size()));
        return piece == QLatin1Char('*') ? QString(QChar(odd[Below(4)])) : piece;
    }

    QRandomGenerator random;
};

} // namespace

class TestTextMatcher : public QObject
{
    Q_OBJECT

private slots:
    void wordStandsAloneInASection_data();
    void wordStandsAloneInASection();
    void randomPagesAgreeWithTheExpressions();
    void everyCharacterAgreesWithTheExpressions();
    void longWordsAreFoundAnywhere();
};

void TestTextMatcher::wordStandsAloneInASection_data()
{
    const auto row = Columns<QString, QString, bool>("page", "word", "hit");
    row("title", "<title>A Cat</title>", "cat", true);
    row("head only", "<head>cat</head><title>x</title> cat <body>x</body>", "cat", false);
    row("no end", "<title>cat <body>cat ", "cat", false);
    row("longer word", "<body>cats, concat</body>", "cat", false);
    row("tag", "<body><p class=\"cat\"></body>", "cat", true);
    row("other scripts", "<body>\u4e2dcat\u00e9</body>", "cat", true);
    row("between the first and the last", "<BODY></body>\n<title> cat \n<body></Body>", "cat", true);
    row("occurrences overlap", "<body>a-a-a-</body>", "a-a-", true);
    row("first mark needs a character before it", "<body>x</body>", "<body", false);
    row("operators count", "<body>cot</body>", "c.t", true);
    row("invalid", "<body>c(t c( t</body>", "c(", false);
    row("no text", "<body>a</body>", "", true);
}

void TestTextMatcher::wordStandsAloneInASection()
{
    QFETCH(QString, page);
    QFETCH(QString, word);
    QTEST(TextMatcher(word).Matches(page), "hit");
}

void TestTextMatcher::randomPagesAgreeWithTheExpressions()
{
    constexpr int kWords = 3000;
    constexpr int kPages = 10000;
    constexpr int kWordsOfAPage = 24;
    const auto seed = quint32(qEnvironmentVariableIntValue("YXHELP_SEED"));
    Composer composer(seed + 1);
    QStringList texts;
    std::vector<TextMatcher> matchers;
    std::vector<QRegExp> expressions;
    for (int i = 0; i < kWords; ++i) {
        texts.append(composer.Word());
        matchers.emplace_back(texts.last());
        expressions.push_back(WordExpression(texts.last()));
    }
    int hits = 0;
    int nearMisses = 0;
    for (int i = 0; i < kPages; ++i) {
        const QString page = composer.Page();
        const Sections sections(page);
        for (int j = 0; j < kWordsOfAPage; ++j) {
            const int word = composer.Below(kWords);
            const bool expected = sections.Hold(expressions.at(std::size_t(word)));
            if (matchers.at(std::size_t(word)).Matches(page) != expected) {
                qWarning() << "seed" << seed << "word" << texts.at(word) << "page" << page;
                QCOMPARE(!expected, expected);
            }
            hits += expected;
            nearMisses += !expected && page.contains(texts.at(word), Qt::CaseInsensitive);
        }
    }
    const int pairs = kPages * kWordsOfAPage;
    qInfo("%d pairs, %d hits, %d near misses", pairs, hits, nearMisses);
    QVERIFY(hits > pairs / 10 && hits < pairs / 3);
    QVERIFY(nearMisses > pairs / 10);
}

void TestTextMatcher::everyCharacterAgreesWithTheExpressions()
{
    const TextMatcher one("1"_s);
    const QRegExp oneExpression = WordExpression("1"_s);
    QMultiHash<uint, QChar> alike;
    for (ushort code = 0; code < 0xffff; ++code) {
        const QChar c(code);
        for (const QString& page : {QString("<body>1%1</body>"_s).arg(c), "<body>%11</body>"_s.arg(c)})
            QVERIFY2(one.Matches(page) == Sections(page).Hold(oneExpression), qPrintable(page));
        alike.insert(QChar::toCaseFolded(uint(code)), c);
    }
    for (const uint folded : alike.uniqueKeys()) {
        QList<QChar> forms = alike.values(folded);
        for (const QChar form : alike.values(folded))
            forms << form.toUpper() << form.toLower();
        for (const QChar word : qAsConst(forms)) {
            const TextMatcher matcher{QString(word)};
            const QRegExp expression = WordExpression(word);
            for (const QChar c : qAsConst(forms)) {
                const QString page = "<body> %1 </body>"_s.arg(c);
                QVERIFY2(matcher.Matches(page) == Sections(page).Hold(expression), qPrintable(page + word));
            }
        }
    }
}

void TestTextMatcher::longWordsAreFoundAnywhere()
{
    const QString longWord = "ab"_s.repeated(5000) + QLatin1Char('z');
    for (const QString& word : {"z"_s, "az"_s, "signal"_s, longWord}) {
        const TextMatcher matcher(word.toUpper());
        for (int before = 0; before < 70; ++before) {
            const QString page = "<body>"_s + QString(before, QLatin1Char('.')) + word;
            QVERIFY(matcher.Matches(page + "</body>"_s));
            QVERIFY(matcher.Matches(page + "</body>"_s + QString(1000 * before, QLatin1Char('.'))));
            QVERIFY(!matcher.Matches(page + "a</body>"_s));
            QVERIFY(!matcher.Matches(QString(page).replace(before + 6, 1, "#"_s) + "</body>"_s));
        }
    }
}

QTEST_GUILESS_MAIN(TestTextMatcher)
#include "tst_textmatcher.moc"
