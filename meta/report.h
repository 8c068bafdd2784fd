// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Reports to an observer what the decoder has done, with the position of each item in the file.
#pragma once

#include "meta/observer.h"
#include "meta/plfgraph.h"
#include "meta/state.h"
#include "meta/walk.h"

#include <string_view>

class ObserverReport
{
public:
    /// Whether the decoder must report each item, so it may not take the fast path.
    static constexpr bool kFollows = true;

    /// All of them outlive the report.
    ObserverReport(const PlfBytes& graph, const PassState& passState, PlfObserver& follower)
        : bytes(graph), state(passState), observer(follower)
    {
    }

    [[nodiscard]] PlfObserver& Observer() { return observer; }

    /// An address was drawn, after the byte after it had been read.
    /// @param wasMove  whether it moved the beam instead of drawing a vector
    /// @param from     the beam before the address
    void Address(const Walk& walk, bool wasMove, const BeamState& from);
    /// An escape came before the end of an address or command.
    void Escape(const Walk& walk);
    /// A control character outside commands.
    void Control(const Walk& walk, int c);
    /// A command was executed.
    void Command(const Walk& walk);
    void Text(std::string_view text);
    /// @param last  the character that ended the drawing, 0 for the zero byte
    void End(const Walk& walk, int last);

private:
    [[nodiscard]] size_t OffsetOf(const char* at) const { return bytes.OffsetOf(at); }

    PlfBytes bytes;
    const PassState& state;
    PlfObserver& observer;
};

/// Reports everything but the addresses that were drawn or moved to.
class SkimReport : public ObserverReport
{
public:
    static constexpr bool kFollows = false;

    using ObserverReport::ObserverReport;
    void Address(const Walk& /*walk*/, bool /*wasMove*/, const BeamState& /*from*/) {}
};

/// Reports nothing.
class NoReport
{
public:
    static constexpr bool kFollows = false;

    [[nodiscard]] PlfObserver& Observer() { return nobody; }
    void Address(const Walk& /*walk*/, bool /*wasMove*/, const BeamState& /*from*/) {}
    void Escape(const Walk& /*walk*/) {}
    void Control(const Walk& /*walk*/, int /*c*/) {}
    void Command(const Walk& /*walk*/) {}
    void Text(std::string_view /*text*/) {}
    void End(const Walk& /*walk*/, int /*last*/) {}

private:
    NoObserver nobody;
};
