// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The decoder and all that it changes, for the functions that make a pass.
#pragma once

#include "meta/decoder.h"
#include "meta/pass.h"

#include <QPen>

#include <utility>

/// What a pass changes on its way, with the pen that lines are drawn with.
struct PassValues {
    TextState text;
    InputState input;
    LineState line;
    BeamState beam;
    AddressParts address;
    QPen pen;
};

/// Runs one pass, with its own state.
class PassRun
{
public:
    /// @param begin  what an earlier pass left
    explicit PassRun(const PlfPass& drawnPass, PassValues begin = {})
        : pass(drawnPass), background(pass.Background()), values(std::move(begin))
    {
    }

    template <class Sink> PlfResult Into(Sink& sink)
    {
        NoReport report;
        return Run(sink, report);
    }
    template <class Sink> PlfResult Into(Sink& sink, PlfObserver& observer)
    {
        ObserverReport report(pass.graph, state, observer);
        return Run(sink, report);
    }
    /// Reports addresses only where something is wrong with them, which is faster.
    template <class Sink> PlfResult Skim(Sink& sink, PlfObserver& observer)
    {
        SkimReport report(pass.graph, state, observer);
        return Run(sink, report);
    }

    const PlfPass& pass;
    int background;
    PassValues values;
    int epsItems = 1;

private:
    template <class Sink, class Reporter> PlfResult Run(Sink& sink, Reporter& report)
    {
        const unsigned long vectors = Decoder<Sink, Reporter>(pass, state, sink, report).Run();
        return {vectors, background, values.input.nTextsRefused, values.input.nTexts};
    }

    PassState state = {values.text, values.input, values.line, values.beam, values.address};
};
