// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// From the bytes of a graph to what is drawn: addresses become vectors, escape sequences commands.
// Made for each kind of sink and report, all of them in decoder.cpp.
#pragma once

#include "meta/commands.h"
#include "meta/pass.h"
#include "meta/reader.h"
#include "meta/report.h"
#include "meta/sinks.h"
#include "meta/state.h"
#include "meta/walk.h"

/// Decodes for one pass.
/// @tparam Sink      takes what is drawn, see NoSink
/// @tparam Reporter  is told what is read, see NoReport
template <class Sink, class Reporter> class Decoder final : public CommandTarget
{
public:
    /// All of them outlive the decoder.
    Decoder(const PlfPass& decodedPass, const PassState& passState, Sink& target, Reporter& teller);

    /// The pass from its begin to its end: background, first pen, every byte.
    /// @return the vectors drawn
    unsigned long Run();

    void SetPenWidth(int width) override;
    void SetColor(int index) override;
    void DrawTextKorvel(char* text) override;
    /// Draws a vector and counts it.
    /// @param continues  the path, instead of starting a new one
    void Draw(bool continues, int x1, int y1, int x2, int y2);

private:
    int Plf2Screen();
    int DecodeAll();
    int NextChar();
    void CollectEscape(int c);
    void FinishEscape(int c);
    void CollectAddress(int c);
    void tekcodeq(const char* seq);
    void FinishAddress();
    bool DrawAddresses();
    void GoTo(const AddressParts& part);
    void ClearPenPos() { state.beam.xPathEnd = -1; } // the next vector starts a new path

    const PlfPass& pass;
    PassState state;
    Sink& sink;
    Reporter& report;
    ParameterReader reader;
    CommandContext context;
    Walk walk;
    unsigned long vectors = 0;
};
