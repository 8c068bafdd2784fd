// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Decodes the bytes of a graph: addresses become vectors, escape sequences become commands.
// decoder.cpp instantiates it for each combination of sink and report.
#pragma once

#include "meta/commands.h"
#include "meta/pass.h"
#include "meta/reader.h"
#include "meta/report.h"
#include "meta/sinks.h"
#include "meta/state.h"
#include "meta/walk.h"

/// Decodes for one pass.
/// @tparam Sink      receives what is drawn, see NoSink
/// @tparam Reporter  receives what is read, see NoReport
template <class Sink, class Reporter> class Decoder final : public CommandTarget
{
public:
    /// All of them outlive the decoder.
    Decoder(const PlfPass& decodedPass, const PassState& passState, Sink& target, Reporter& teller);

    /// Runs the whole pass: background, first pen, every byte.
    /// @return the number of vectors drawn
    unsigned long Run();

    void SetPenWidth(int width) override;
    void SetColor(int index) override;
    void DrawTextKorvel(char* text) override;
    /// Draws a vector and counts it.
    /// @param continues  whether it continues the path; otherwise it starts a new one
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
