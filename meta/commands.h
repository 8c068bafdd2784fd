// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The commands of a graph: their parameters and their effects.
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

    /// Sets the line width in scaled file units and starts a new path, unless the width is the
    /// same.
    virtual void SetPenWidth(int width) = 0;
    /// Sets the line color and starts a new path, unless index equals the current mapped color.
    virtual void SetColor(int index) = 0;
    /// Draws text with its baseline at the text position, without a line feed at its end.
    virtual void DrawTextKorvel(char* text) = 0;

protected:
    ~CommandTarget() = default;
};

/// The context of a command.
struct CommandContext {
    const PlfPass& pass;
    ParameterReader& reader;
    TextState& text;
    CommandTarget& target;
    uint32_t dwClrMap[kLineIndexCount] = {}; // line index -> palette index
};

/// Executes a command.
/// @param count  number of characters of the sequence: 0 for a control character outside a command,
///               1 for an escape without a letter
/// @param seq    the characters; a missing second letter is NUL
/// @return 1 for BEL, else 0
int gprosq(ptrdiff_t count, const char* seq, CommandContext& context);

/// Whether these are the letters of a known command; the parameters of others are skipped.
bool IsKnownCommand(const char* seq);
