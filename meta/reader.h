// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Reads the parameters of commands, and tells the observer each of them.
#pragma once

#include "meta/observer.h"
#include "meta/plfgraph.h"
#include "meta/state.h"

#include <cstdint>

/// Control characters are 0..31, and 128..255, which are negative.
constexpr int kLastControl = 31;
/// Opens a command.
constexpr int kEsc = 27;

// What getseq reads.
constexpr int kCountedString = 3;
constexpr int kInteger = 4;
constexpr int kSkip = 5;

class ParameterReader
{
public:
    /// @param graph     what is read
    /// @param state     where in it, and the rest of what readers leave for one another
    /// @param follower  outlives the reader, like the state
    ParameterReader(const PlfBytes& graph, InputState& state, PlfObserver& follower)
        : bytes(graph), input(state), observer(follower)
    {
    }

    /// Reads one parameter.
    /// @param mode  kCountedString, kInteger or kSkip: everything up to a control character
    /// @return the integer, the length of the string that was skipped, or 0
    int getseq(int mode);
    /// Reads a text up to ESC, which stays pending, or to the end of the data. One that does not
    /// fit leaves buf (kTextSize bytes) empty.
    /// @return the length
    int GetTextKorvel(char* buf);
    /// Reads a decimal position up to ESC or ';', either of which opens the next command. Numbers
    /// that are missing leave what was there.
    /// @param y  becomes a drawing unit, y downward
    void GetXYKorvel(int* x, int* y);

    // Commas as parameters: see the color map's command.

    /// From now on a comma stands for a parameter, or no longer.
    void TakeCommas(bool asParameter) { input.fCommaOk = asParameter ? 1 : 0; }
    /// Whether the last integer was a comma; only the first who asks hears of it.
    bool HadComma();

private:
    bool TakeChar(int* c);
    int ReadInteger();
    int ReadCountedString();
    int SkipToControl();
    int Tell(int value, PlfInteger kind);
    void Tell(const char* begin, const char* end, bool isWhole);

    PlfBytes bytes;
    InputState& input;
    PlfObserver& observer;
};
