// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What looks damaged in a graph: the kinds of damage and their words, the same in every program.
#pragma once

#include "meta/observer.h"
#include "meta/plfgraph.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>

/// A sign that the file is not what its writer meant.
enum class PlfDamage {
    kUnknownCommand,
    kUnfinishedParameter,
    kUnfinishedCommand,
    kCutInCommand,
    kUnfinishedAddress,
    kBrokenAddress,
    kIndexOutOfRange,
    kTextTooLong,
    kNoEndMark,
    kDataAfterTheEnd,
    kCutInPackedData
};

/// Such as "unknown command"; the manual page of plfinfo has the list.
const char* DamageWord(PlfDamage kind);

/// Whether a graph with that kind of damage lacks something, or shows something else than its
/// writer meant. Unknown commands do not count: other terminals have commands that draw nothing
/// here, and whole graphs contain them.
bool IsLoss(PlfDamage kind);

/// Where one kind of damage was met first, and how often. Data after the end counts in bytes.
struct PlfDamageCount {
    size_t offset = 0;
    uint64_t count = 0;
};

using PlfDamageMap = std::map<PlfDamage, PlfDamageCount>;

/// What of it is a loss, see IsLoss.
PlfDamageMap LossesOf(PlfDamageMap damage);
bool HasLoss(const PlfDamageMap& damage);

/// Notes the damage of a graph that it observes.
class DamageObserver : public NoObserver
{
public:
    /// To be called before a pass.
    /// @param observed  outlives it
    void Begin(const PlfBytes& observed);
    /// To be called after it.
    [[nodiscard]] const PlfDamageMap& Damage() const { return damage; }

    void Integer(int value, PlfInteger kind) override;
    void String(std::string_view text, bool isWhole) override;
    void Position(int x, int y, bool isClosed) override;
    void Command(PlfSpan span, std::string_view letters, bool isKnown) override;
    void BrokenAddress(size_t begin) override;
    void DroppedAddress(size_t begin) override;
    void DroppedCommand(size_t begin) override;
    void End(size_t offset, PlfEnd reason) override;

private:
    // Of the command that is being read.
    struct Parameters {
        std::array<int, 3> values = {}; // the first ones, of which one may be an index
        size_t count = 0;
        uint64_t unfinished = 0;
        uint64_t longTexts = 0;
        bool isOpen = false; // the last one is a string or a position that never ended
    };

    void AddParameter(int value, bool isWhole);
    void Note(PlfDamage kind, size_t offset, uint64_t count = 1);
    void NoteUnfinished(PlfSpan span, bool isText);
    void NoteIndex(size_t offset, std::string_view letters);
    void NoteRest(size_t begin);

    PlfBytes graph;
    size_t dataEnd = 0; // without zero bytes at the end
    bool endsInControl = false;
    PlfDamageMap damage;
    Parameters parameters;
    std::optional<size_t> dropped; // offset of the command that the drawing ended in
};

/// Runs a graph through the interpreter, without drawing.
PlfDamageMap FindDamage(const PlfBytes& graph);
