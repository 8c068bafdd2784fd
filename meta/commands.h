// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The commands of a graph: which parameters each reads, and what it does.
#pragma once

#include "meta/colormap.h"
#include "meta/pass.h"
#include "meta/reader.h"
#include "meta/state.h"

#include <cstddef>
#include <cstdint>

/// What commands change in the drawing itself.
class CommandTarget
{
public:
    CommandTarget() = default;
    CommandTarget(const CommandTarget&) = delete;
    CommandTarget& operator=(const CommandTarget&) = delete;

    /// Sets the line width in scaled file units and starts a new path, unless it is current.
    virtual void SetPenWidth(int width) = 0;
    /// Sets the line color and starts a new path, unless index equals the current mapped color.
    virtual void SetColor(int index) = 0;
    /// Draws text with its baseline at the text position; a last line feed is removed from it.
    virtual void DrawTextKorvel(char* text) = 0;

protected:
    ~CommandTarget() = default;
};

/// What a command works with.
struct CommandContext {
    const PlfPass& pass;
    ParameterReader& reader;
    TextState& text;
    CommandTarget& target;
    uint32_t dwClrMap[kLineIndexCount] = {}; // line index -> palette index
};

/// Carries a command out.
/// @param count  characters of the sequence: 0 is a control character outside a command, 1 an
///               escape that no letter followed
/// @param seq    them; a second letter that is missing is NUL
/// @return 1 for BEL, else 0
int gprosq(ptrdiff_t count, const char* seq, CommandContext& context);

/// Whether the letters of a command have a meaning; the parameters of others are skipped.
bool IsKnownCommand(const char* seq);
