#include "multireplace.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <memory>
#include <optional>
#include <vector>

namespace {

using Pair = std::pair<QString, QString>;

/// Finds the places of many keys in one walk. The walk skips: a table tells, for the two characters at the
/// end of a window as wide as the shortest key, how far the next place can be at the nearest.
class KeySearch
{
public:
    explicit KeySearch(const QVector<Pair>& pairs);

    /// False when a key is too short to be looked for in this way.
    bool Usable() const { return width >= 2; }
    bool IsKeyCharacter(QChar c) const { return characters->test(c.unicode()); }
    /// Calls found(place, key) for each occurrence, overlapping ones included, until that returns false.
    template <typename Found>
    bool Walk(const QString& text, Found found) const;

private:
    static constexpr std::size_t kSlots = 4096;

    static std::size_t SlotOf(const QChar* window)
    {
        return (window[0].unicode() * 61U + window[1].unicode()) % kSlots;
    }

    const QVector<Pair>& pairs;
    int width = 0;
    std::array<int, kSlots> skips{};
    std::vector<std::vector<int>> keysAtEnd{kSlots};
    std::unique_ptr<std::bitset<0x10000>> characters = std::make_unique<std::bitset<0x10000>>();
};

KeySearch::KeySearch(const QVector<Pair>& replacements) : pairs(replacements)
{
    const auto shortest = std::min_element(pairs.begin(), pairs.end(), [](const Pair& a, const Pair& b) {
        return a.first.size() < b.first.size();
    });
    width = shortest == pairs.end() ? 0 : shortest->first.size();
    if (!Usable())
        return;
    skips.fill(width - 1);
    for (int key = 0; key < pairs.size(); ++key) {
        const QString& text = pairs.at(key).first;
        for (const QChar c : text)
            characters->set(c.unicode());
        const int last = width - 2;
        for (int i = 0; i <= last; ++i) {
            int& skip = skips[SlotOf(text.constData() + i)];
            skip = std::min(skip, last - i);
        }
        keysAtEnd[SlotOf(text.constData() + last)].push_back(key);
    }
}

template <typename Found>
bool KeySearch::Walk(const QString& text, Found found) const
{
    int at = 0;
    while (at + width <= text.size()) {
        const std::size_t slot = SlotOf(text.constData() + at + width - 2);
        if (skips[slot] > 0) {
            at += skips[slot];
            continue;
        }
        for (const int key : keysAtEnd[slot]) {
            if (text.midRef(at).startsWith(pairs.at(key).first) && !found(at, key))
                return false;
        }
        ++at;
    }
    return true;
}

struct Occurrence
{
    int at;
    int key;
};

// All occurrences, provided that replacing them at once comes to the same as replacing key by key. It does
// when each has a character on either side that is part of no key, and no text that goes in holds a key:
// then no occurrence touches another, and none can arise that includes a character of a text put in.
std::optional<std::vector<Occurrence>> Separate(const QString& text, const QVector<Pair>& pairs,
                                                const KeySearch& search)
{
    std::vector<Occurrence> occurrences;
    std::vector<bool> used(static_cast<std::size_t>(pairs.size()));
    const bool apart = search.Walk(text, [&](int at, int key) {
        const int end = at + pairs.at(key).first.size();
        if ((at > 0 && search.IsKeyCharacter(text.at(at - 1))) ||
            (end < text.size() && search.IsKeyCharacter(text.at(end))))
            return false;
        occurrences.push_back({at, key});
        used[static_cast<std::size_t>(key)] = true;
        return true;
    });
    if (!apart)
        return std::nullopt;
    for (int key = 0; key < pairs.size(); ++key) {
        const auto holdsKey = [](int, int) { return false; };
        if (used[static_cast<std::size_t>(key)] && !search.Walk(pairs.at(key).second, holdsKey))
            return std::nullopt;
    }
    return occurrences;
}

QString Compose(const QString& text, const QVector<Pair>& pairs, const std::vector<Occurrence>& occurrences)
{
    int size = text.size();
    for (const Occurrence& occurrence : occurrences)
        size += pairs.at(occurrence.key).second.size() - pairs.at(occurrence.key).first.size();

    QString composed;
    composed.reserve(size);
    int from = 0;
    for (const Occurrence& occurrence : occurrences) {
        const Pair& pair = pairs.at(occurrence.key);
        composed.append(text.midRef(from, occurrence.at - from));
        composed.append(pair.second);
        from = occurrence.at + pair.first.size();
    }
    composed.append(text.midRef(from));
    return composed;
}

// A repeated key finds only what other pairs brought in, which Separate rules out: its first pair counts.
QVector<Pair> FirstOfEachKey(QVector<Pair> pairs)
{
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const Pair& a, const Pair& b) { return a.first < b.first; });
    pairs.erase(std::unique(pairs.begin(), pairs.end(),
                            [](const Pair& a, const Pair& b) { return a.first == b.first; }),
                pairs.end());
    return pairs;
}

bool ReplaceAtOnce(QString& text, const QVector<Pair>& pairs)
{
    const QVector<Pair> distinct = FirstOfEachKey(pairs);
    const KeySearch search(distinct);
    if (!search.Usable())
        return false;
    const auto occurrences = Separate(text, distinct, search);
    if (!occurrences)
        return false;
    text = Compose(text, distinct, *occurrences);
    return true;
}

} // namespace

void ReplaceInOrder(QString& text, const QVector<std::pair<QString, QString>>& pairs)
{
    // Pair by pair, a long page with hundreds of images takes twenty times as long.
    constexpr int kFewPairs = 3;
    if (pairs.size() > kFewPairs && ReplaceAtOnce(text, pairs))
        return;
    for (const auto& [before, after] : pairs) {
        if (!before.isEmpty())
            text.replace(before, after);
    }
}
