// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/texts.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string_view>
#include <unordered_map>

namespace diff {

namespace {

// Candidates in each cell that are looked at for one text: where a near one is searched, and where
// only the report gains.
constexpr size_t kLooksForEqual = 4096;
constexpr size_t kLooksForChanged = 64;

double Distance(const TextRecord& a, const TextRecord& b)
{
    return std::hypot(0.0 + a.x - b.x, 0.0 + a.y - b.y);
}

// Texts by a key, from which they can be taken.
class TextTable
{
public:
    void Add(size_t key, size_t number) { numbers[key].push_back(number); }
    /// Takes the nearest text out that fits and whose distance is at most this.
    /// @param looks  so many are looked at in each cell
    template <typename Fits>
    bool TakeNearest(const std::vector<size_t>& keys, const TextRecord& wanted,
                     const std::vector<TextRecord>& texts, double most, size_t looks, Fits fits,
                     size_t* taken)
    {
        std::vector<size_t>* from = nullptr;
        size_t at = 0;
        for (const size_t key : keys) {
            const auto found = numbers.find(key);
            if (found == numbers.end())
                continue;
            std::vector<size_t>& list = found->second;
            for (size_t i = 0; i < std::min(list.size(), looks); ++i) {
                const TextRecord& text = texts[list[i]];
                const double distance = Distance(wanted, text);
                if (distance > most || (from != nullptr && distance == most) || !fits(text))
                    continue;
                most = distance;
                from = &list;
                at = i;
            }
        }
        if (from == nullptr)
            return false;
        *taken = (*from)[at];
        (*from)[at] = from->back();
        from->pop_back();
        return true;
    }

private:
    std::unordered_map<size_t, std::vector<size_t>> numbers;
};

class TextSearch
{
public:
    TextSearch(const Rules& searchRules, const std::vector<TextRecord>& ours,
               const std::vector<TextRecord>& theirs)
        : rules(searchRules), first(ours),
          second(theirs), isFound{std::vector<bool>(ours.size()), std::vector<bool>(theirs.size())}
    {
    }

    TextComparison Run()
    {
        FindSame();
        if (rules.tolerance > 0) {
            FindNear(first, second, &isFound[0], true);
            FindNear(second, first, &isFound[1], false);
        }
        PairRest();
        std::sort(result.same.begin(), result.same.end(),
                  [](const TextPair& a, const TextPair& b) { return a.first < b.first; });
        return std::move(result);
    }

private:
    [[nodiscard]] int ColorOf(const TextRecord& text) const
    {
        return rules.ignoresColor ? 0 : text.lineColor;
    }
    [[nodiscard]] bool LookAlike(const TextRecord& a, const TextRecord& b) const
    {
        return ColorOf(a) == ColorOf(b) && a.text == b.text;
    }
    [[nodiscard]] bool IsIgnored(const TextRecord& text) const
    {
        return std::any_of(rules.ignoredAreas.begin(), rules.ignoredAreas.end(),
                           [&](const Area& area) { return area.Contains(text.x, text.y); });
    }
    [[nodiscard]] bool ComesBefore(const TextRecord& a, const TextRecord& b) const
    {
        if (const int order = a.text.compare(b.text); order != 0)
            return order < 0;
        return std::tuple(ColorOf(a), a.x, a.y) < std::tuple(ColorOf(b), b.x, b.y);
    }
    [[nodiscard]] std::vector<size_t> Sorted(const std::vector<TextRecord>& texts) const
    {
        std::vector<size_t> sorted(texts.size());
        for (size_t i = 0; i < sorted.size(); ++i)
            sorted[i] = i;
        std::stable_sort(sorted.begin(), sorted.end(),
                         [&](size_t a, size_t b) { return ComesBefore(texts[a], texts[b]); });
        return sorted;
    }

    // A text that is drawn over itself counts once.
    void FindSame()
    {
        const std::vector<size_t> one = Sorted(first);
        const std::vector<size_t> two = Sorted(second);
        size_t b = 0;
        for (size_t a = 0; a < one.size();) {
            const TextRecord& text = first[one[a]];
            while (b < two.size() && ComesBefore(second[two[b]], text))
                ++b;
            size_t endOfB = b;
            while (endOfB < two.size() && !ComesBefore(text, second[two[endOfB]]))
                isFound[1][two[endOfB++]] = true;
            for (; a < one.size() && !ComesBefore(text, first[one[a]]); ++a) {
                if (endOfB == b)
                    continue;
                isFound[0][one[a]] = true;
                result.same.push_back({one[a], two[endOfB - 1]});
            }
            b = endOfB;
        }
    }

    [[nodiscard]] int64_t CellOf(int at) const
    {
        return static_cast<int64_t>(std::floor(at / std::max(rules.tolerance, 1.0)));
    }
    static size_t KeyOf(int64_t column, int64_t row, size_t look)
    {
        return std::hash<int64_t>()(column * 0x9E3779B1 + row * 0x85EBCA77) ^ look;
    }
    [[nodiscard]] size_t LookKey(const TextRecord& text) const
    {
        return std::hash<std::string_view>()(text.text) * 31 + static_cast<size_t>(ColorOf(text));
    }
    // Those of the cell of a text and of the cells around it.
    [[nodiscard]] std::vector<size_t> KeysAround(const TextRecord& text, size_t look) const
    {
        std::vector<size_t> keys;
        for (int64_t column = CellOf(text.x) - 1; column <= CellOf(text.x) + 1; ++column) {
            for (int64_t row = CellOf(text.y) - 1; row <= CellOf(text.y) + 1; ++row)
                keys.push_back(KeyOf(column, row, look));
        }
        return keys;
    }
    [[nodiscard]] TextTable TableOf(const std::vector<TextRecord>& texts,
                                    const std::vector<bool>* without, bool byLook) const
    {
        TextTable table;
        for (size_t i = 0; i < texts.size(); ++i) {
            if (without == nullptr || !(*without)[i])
                table.Add(
                    KeyOf(CellOf(texts[i].x), CellOf(texts[i].y), byLook ? LookKey(texts[i]) : 0),
                    i);
        }
        return table;
    }

    // Texts that are near one in the other drawing, which may be near more than one.
    void FindNear(const std::vector<TextRecord>& ours, const std::vector<TextRecord>& theirs,
                  std::vector<bool>* found, bool isFirst)
    {
        TextTable table = TableOf(theirs, nullptr, true);
        for (size_t i = 0; i < ours.size(); ++i) {
            size_t other = 0;
            const TextRecord& text = ours[i];
            if ((*found)[i] ||
                !table.TakeNearest(
                    KeysAround(text, LookKey(text)), text, theirs, rules.tolerance * (1 + 1e-9),
                    kLooksForEqual, [&](const TextRecord& each) { return LookAlike(text, each); },
                    &other))
                continue;
            table.Add(
                KeyOf(CellOf(theirs[other].x), CellOf(theirs[other].y), LookKey(theirs[other])),
                other);
            (*found)[i] = true;
            if (isFirst)
                result.same.push_back({i, other});
        }
    }

    // First those in the same place, then those with the same characters.
    void PairRest()
    {
        TextTable places = TableOf(second, &isFound[1], false);
        PairWith(
            TextChange::kChanged, &places, rules.tolerance,
            [this](const TextRecord& text) { return KeysAround(text, 0); },
            [](const TextRecord&, const TextRecord&) { return true; });
        TextTable looks;
        for (size_t i = 0; i < second.size(); ++i) {
            if (!isFound[1][i])
                looks.Add(LookKey(second[i]), i);
        }
        PairWith(
            TextChange::kMoved, &looks, HUGE_VAL,
            [this](const TextRecord& text) { return std::vector<size_t>{LookKey(text)}; },
            [this](const TextRecord& a, const TextRecord& b) { return LookAlike(a, b); });
        for (size_t i = 0; i < first.size(); ++i) {
            if (!isFound[0][i] && !IsIgnored(first[i]))
                result.changes.push_back({TextChange::kGone, i, 0});
        }
        for (size_t i = 0; i < second.size(); ++i) {
            if (!isFound[1][i] && !IsIgnored(second[i]))
                result.changes.push_back({TextChange::kNew, 0, i});
        }
    }

    template <typename Keys, typename Fits>
    void PairWith(TextChange::Kind kind, TextTable* table, double most, Keys keys, Fits fits)
    {
        for (size_t i = 0; i < first.size(); ++i) {
            size_t other = 0;
            const TextRecord& text = first[i];
            if (isFound[0][i] ||
                !table->TakeNearest(
                    keys(text), text, second, most, kLooksForChanged,
                    [&](const TextRecord& each) { return fits(text, each); }, &other))
                continue;
            isFound[0][i] = isFound[1][other] = true;
            if (!IsIgnored(text) || !IsIgnored(second[other]))
                result.changes.push_back({kind, i, other});
        }
    }

    const Rules& rules;
    const std::vector<TextRecord>& first;
    const std::vector<TextRecord>& second;
    std::vector<bool> isFound[2];
    TextComparison result;
};

} // namespace

TextComparison CompareTexts(const Rules& rules, const std::vector<TextRecord>& first,
                            const std::vector<TextRecord>& second)
{
    return TextSearch(rules, first, second).Run();
}

} // namespace diff
