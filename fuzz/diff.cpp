// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: one graph or two, one behind the other, that are compared by rules which the last bytes
// choose. One graph is compared with itself after a few changes. Each is equal to itself, and both
// directions find the same vectors.
#include "fuzz/graphmutator.h"
#include "fuzz/target.h"
#include "tools/diff/compare.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

using fuzz::Require;

constexpr size_t kChoices = 3;
using Choices = std::array<uint8_t, kChoices>;

Choices ChoicesOf(std::string_view input)
{
    Choices choices = {};
    const size_t count = std::min(input.size(), kChoices);
    std::copy(input.end() - static_cast<ptrdiff_t>(count), input.end(), choices.begin());
    return choices;
}

diff::Rules RulesOf(const Choices& choices)
{
    constexpr double kTolerances[] = {0, 0, 0.5, 1, 3, 20, 700, 4096};
    diff::Rules rules;
    rules.tolerance = kTolerances[choices[0] % std::size(kTolerances)];
    rules.ignoresColor = (choices[1] & 1) != 0;
    rules.ignoresWidth = (choices[1] & 2) != 0;
    rules.ignoresText = (choices[1] & 4) != 0;
    rules.ignoresOrder = (choices[1] & 8) != 0;
    rules.ignoresBackground = (choices[1] & 16) != 0;
    rules.ignoresDots = (choices[1] & 32) != 0;
    if ((choices[1] & 64) != 0)
        rules.ignoredAreas.push_back({choices[2] * 8, 1000, choices[2] * 16, 3000});
    return rules;
}

std::string SecondGraph(std::string_view input, size_t begin, const Choices& choices)
{
    constexpr size_t kMore = 64; // bytes that changes may add
    if (begin != std::string_view::npos)
        return std::string(input.substr(begin));
    return fuzz::MutateGraph(input, choices[2], input.size() + kMore);
}

PlfDrawing Drawn(std::string_view bytes)
{
    const char* problem = nullptr;
    const PlfGraph graph = PlfGraph::FromBytes(bytes, &problem);
    return graph.IsLoaded() ? ReadDrawing(graph.Bytes()) : PlfDrawing();
}

// The vectors of one drawing that the other does not have.
size_t MissingOf(const diff::Comparison& result, size_t side)
{
    const auto& fates = result.fates[side];
    return fates.size() -
           static_cast<size_t>(std::count(fates.begin(), fates.end(), diff::Fate::kFound));
}

void CheckAreas(const diff::Comparison& result)
{
    size_t vectors = 0;
    for (const diff::ChangedArea& each : result.areas) {
        Require(each.area.left <= each.area.right && each.area.bottom <= each.area.top,
                "an area is a rectangle");
        vectors += each.counts.Vectors();
    }
    Require(vectors == result.counts.Vectors(), "every change is in one area");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    fuzz::PrepareQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const Choices choices = ChoicesOf(input);
    const diff::Rules rules = RulesOf(choices);
    const size_t begin = input.find({gszPlfhdr, kPlfHeaderSize}, 1);
    const PlfDrawing first = Drawn(input.substr(0, begin));
    const PlfDrawing second = Drawn(SecondGraph(input, begin, choices));
    Require(diff::Compare(first, first, rules).Changes() == 0, "a graph is equal to itself");
    const diff::Comparison there = diff::Compare(first, second, rules);
    const diff::Comparison back = diff::Compare(second, first, rules);
    Require(MissingOf(there, 0) == MissingOf(back, 1) && MissingOf(there, 1) == MissingOf(back, 0),
            "both directions find the same vectors");
    CheckAreas(there);
    CheckAreas(back);
    return 0;
}
