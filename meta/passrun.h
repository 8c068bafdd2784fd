// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The decoder and all that it changes, for the functions that make a pass.
#pragma once

#include "meta/decoder.h"
#include "meta/pass.h"

#include <QPen>

/// Runs one pass, with its own state.
class PassRun
{
public:
    explicit PassRun(const PlfPass& drawnPass) : pass(drawnPass), background(pass.Background()) {}

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

    const PlfPass& pass;
    int background;
    QPen pen;
    int epsItems = 1;

private:
    template <class Sink, class Reporter> PlfResult Run(Sink& sink, Reporter& report)
    {
        const unsigned long vectors = Decoder<Sink, Reporter>(pass, state, sink, report).Run();
        return {vectors, background, input.nTextsRefused};
    }

    TextState text;
    InputState input;
    LineState line;
    BeamState beam;
    AddressParts address;
    PassState state = {text, input, line, beam, address};
};
