// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Follows the interpreter through a graph and writes down what it finds.
#pragma once

#include "meta/damage.h"
#include "meta/observer.h"
#include "meta/plfgraph.h"
#include "tools/info/summary.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace info {

/// A parameter as it was read.
struct Parameter {
    enum Kind { kInteger, kComma, kText, kPosition } kind = kInteger;
    int x = 0; // the integer
    int y = 0;
    std::string text;
    bool isWhole = true;
};

/// A piece of the file. Pieces follow one another without gaps from the start of the file.
struct Item {
    enum Kind { kMove, kLine, kCommand, kGs, kSkipped, kEnd } kind = kSkipped;
    PlfSpan span;
    PlfVector vector;                  // kLine; kMove goes to x2, y2
    std::string_view letters;          // kCommand
    bool isKnown = true;               // kCommand
    std::vector<Parameter> parameters; // kCommand
    PlfEnd end = PlfEnd::kEndOfFile;   // kEnd
};

class Inspector : public PlfObserver
{
public:
    using ItemSink = std::function<void(const Item&)>;

    /// @param itemSink  receives each piece of the file; may be empty
    explicit Inspector(ItemSink itemSink = {}) : sink(std::move(itemSink)) {}

    /// Runs a graph through the interpreter, without drawing.
    /// @return what it holds
    Summary Inspect(const PlfBytes& inspected);

    void Integer(int value, PlfInteger kind) override;
    void String(std::string_view text, bool isWhole) override;
    void Position(int x, int y, bool isClosed) override;
    void Command(PlfSpan span, std::string_view letters, bool isKnown) override;
    void Move(PlfSpan span, int x, int y) override;
    void Vector(PlfSpan span, const PlfVector& vector) override;
    void NextMoves(PlfSpan span) override;
    void Text(const PlfText& text) override;
    void BrokenAddress(size_t begin) override;
    void DroppedAddress(size_t begin) override;
    void DroppedCommand(size_t begin) override;
    void End(size_t offset, PlfEnd reason) override;

private:
    void Add(const Item& item);
    void Skip(size_t end);
    void KeepLineIndex(const Item& command);
    void KeepTexts(const Item& command);

    ItemSink sink;
    DamageObserver damage;
    Summary summary;
    std::vector<Parameter> parameters; // of the command that is being read
    std::vector<DrawnText> drawn;      // by that command
    size_t position = 0;               // where the last piece ended
};

} // namespace info
