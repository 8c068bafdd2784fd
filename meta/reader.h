// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Reads the parameters of commands, and reports each of them to the observer.
#pragma once

#include "meta/observer.h"
#include "meta/plfgraph.h"
#include "meta/state.h"

#include <cstdint>

/// Control characters are 0..31 and 128..255; the latter are negative.
constexpr int kLastControl = 31;
/// Begins a command.
constexpr int kEsc = 27;

// Modes of getseq.
constexpr int kCountedString = 3;
constexpr int kInteger = 4;
constexpr int kSkip = 5;

class ParameterReader
{
public:
    /// @param graph     the graph to read
    /// @param state     the position in it, and the rest of the state that readers share
    /// @param follower  outlives the reader, as does the state
    ParameterReader(const PlfBytes& graph, InputState& state, PlfObserver& follower)
        : bytes(graph), input(state), observer(follower)
    {
    }

    /// Reads one parameter.
    /// @param mode  kCountedString, kInteger, or kSkip (everything up to a control character)
    /// @return the integer, the length of the skipped string, or 0
    int getseq(int mode);
    /// Reads a text up to ESC, which remains pending, or up to the end of the data. If it does not
    /// fit, buf (kTextSize bytes) becomes empty.
    /// @return the length
    int GetTextKorvel(char* buf);
    /// Reads a decimal position up to ESC or ';', either of which begins the next command. Missing
    /// numbers leave the values unchanged.
    /// @param y  in drawing units, y downward
    void GetXYKorvel(int* x, int* y);

    // Commas as parameters: see the color map command.

    /// Sets whether a comma counts as a parameter from now on.
    void TakeCommas(bool asParameter) { input.fCommaOk = asParameter ? 1 : 0; }
    /// Whether the last integer was a comma; the call resets it.
    bool HadComma();

private:
    bool TakeChar(int* c);
    int ReadInteger();
    int ReadCountedString();
    int SkipToControl();
    int Report(int value, PlfInteger kind);
    void Report(const char* begin, const char* end, bool isWhole);

    PlfBytes bytes;
    InputState& input;
    PlfObserver& observer;
};
