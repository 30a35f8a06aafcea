#include "topicnames.h"

#include <QCryptographicHash>

namespace helpbuild {
namespace {

constexpr int kMaxKeyLength = 127;
constexpr int kHashLength = 8;

// Letters that have no accent to drop, but a usual spelling.
QString UsualSpelling(uint code)
{
    switch (code) {
    case 0xc6:
        return QStringLiteral("AE");
    case 0xd8:
        return QStringLiteral("O");
    case 0xdf:
        return QStringLiteral("ss");
    case 0xe6:
        return QStringLiteral("ae");
    case 0xf8:
        return QStringLiteral("o");
    case 0x142:
        return QStringLiteral("l");
    default:
        return {};
    }
}

bool IsSafeInName(QChar character)
{
    const ushort code = character.unicode();
    return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') ||
           code == '.' || code == '_' || code == '-';
}

// Quotes and percent signs break statements, which are put together from text; a backslash would be taken
// for part of a path.
bool IsSafeInKey(QChar character)
{
    const ushort code = character.unicode();
    return code >= 0x20 && code < 0x7f && code != '\'' && code != '"' && code != '%' && code != '\\';
}

QString LastPart(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

// `pattern` as the viewer's LIKE sees it: "_" fits any character.
bool FitsPattern(const QString& pattern, const QString& text)
{
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern.at(i) != QLatin1Char('_') && pattern.at(i) != text.at(i))
            return false;
    }
    return true;
}

} // namespace

QString AsciiText(const QString& text)
{
    QString result;
    const QVector<uint> codes = text.normalized(QString::NormalizationForm_KD).toUcs4();
    for (const uint code : codes) {
        if (code < 0x80)
            result += QChar(code);
        else if (const QString usual = UsualSpelling(code); !usual.isEmpty())
            result += usual;
        else if (QChar::category(code) != QChar::Mark_NonSpacing)
            result += QLatin1Char('u') + QString::number(code, 16).rightJustified(4, QLatin1Char('0'));
    }
    return result;
}

QString SafeFileName(const QString& name)
{
    QString safe = AsciiText(name);
    for (QChar& character : safe) {
        if (!IsSafeInName(character))
            character = QLatin1Char('-');
    }
    if (safe.isEmpty() || safe.startsWith(QLatin1Char('.')))
        safe.prepend(QLatin1Char('x'));
    return safe;
}

QString Numbered(const QString& path, int number)
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    const int end = dot > slash + 1 ? dot : path.size();
    return path.left(end) + QLatin1Char('-') + QString::number(number) + path.mid(end);
}

QString TopicPaths::Take(const QString& wanted)
{
    QStringList parts = wanted.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (QString& part : parts)
        part = SafeFileName(part);
    const QString path = parts.join(QLatin1Char('/'));
    QString result = path;
    for (int number = 2; !IsFree(result); ++number)
        result = Numbered(path, number);
    Keep(result);
    return result;
}

bool TopicPaths::IsFree(const QString& path) const
{
    const QString folded = path.toLower();
    const QStringList sameName = byName.value(LastPart(folded));
    for (const QString& earlier : sameName) {
        if (earlier.contains(folded))
            return false;
    }
    if (!folded.contains(QLatin1Char('_')))
        return true;
    const QStringList sameLength = byLength.value(folded.size());
    for (const QString& earlier : sameLength) {
        if (FitsPattern(folded, earlier))
            return false;
    }
    return true;
}

void TopicPaths::Keep(const QString& path)
{
    const QString folded = path.toLower();
    byName[LastPart(folded)] << folded;
    byLength[folded.size()] << folded;
}

QString TopicKeys::Clean(const QString& text)
{
    QString key = AsciiText(text.simplified());
    for (QChar& character : key) {
        if (!IsSafeInKey(character))
            character = QLatin1Char('-');
    }
    // The command line takes a word with a leading slash for a switch.
    while (key.startsWith(QLatin1Char('/')))
        key.remove(0, 1);
    if (key.size() > kMaxKeyLength) {
        const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex();
        key = key.left(kMaxKeyLength - kHashLength - 1) + QLatin1Char('-') +
              QString::fromLatin1(hash.left(kHashLength));
    }
    return key.isEmpty() ? QStringLiteral("topic") : key;
}

bool TopicKeys::Keep(const QString& key)
{
    const QString folded = key.toLower();
    if (taken.contains(folded))
        return false;
    taken.insert(folded);
    return true;
}

QString TopicKeys::Take(const QString& wanted, const QString& qualified)
{
    const QString key = Clean(wanted);
    if (Keep(key))
        return key;
    const QString longKey = Clean(qualified);
    if (Keep(longKey))
        return longKey;
    for (int number = 2;; ++number) {
        const QString ending = QLatin1Char('-') + QString::number(number);
        const QString numbered = key.left(kMaxKeyLength - ending.size()) + ending;
        if (Keep(numbered))
            return numbered;
    }
}

} // namespace helpbuild
