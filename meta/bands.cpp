// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/bands.h"

#include "meta/bandqueue.h"
#include "meta/bandtarget.h"
#include "meta/fill/paintcheck.h"
#include "meta/imagepainter.h"
#include "meta/lookahead.h"
#include "meta/paintersink.h"
#include "meta/passrun.h"
#include "meta/tape.h"
#include "meta/taperecorder.h"

#include <QImage>
#include <QPainter>
#include <QScopeGuard>

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include <sched.h>

namespace {

// More would each decode the whole graph to draw a few rows of it.
constexpr int kMostThreads = 64;

int Processors()
{
    cpu_set_t mine;
    return sched_getaffinity(0, sizeof mine, &mine) == 0 ? CPU_COUNT(&mine) : 1;
}

// The bands of one picture, drawn by whoever takes the next.
class Bands
{
public:
    /// @return null when there is no memory for all that threads need
    static std::unique_ptr<Bands> Make(const PlfPass& pass, const QPainter& callers,
                                       const BandTarget& target, const RowCuts& cuts,
                                       const PassValues& begin);

    PlfResult Paint();
    /// What the pass left.
    [[nodiscard]] PassValues Values() const;

private:
    struct Band {
        QRect pixels;
        QImage image;  // all pixels of the picture
        QImage before; // those of the band, as they were
        PassValues values;
        PlfResult result;
        bool isDone = false;
    };

    // What a pass left that was recorded whole.
    struct Recorded {
        PlfResult result;
        PassValues values;
    };

    Bands(const PlfPass& drawnPass, const QPainter& callers, const BandTarget& target,
          const RowCuts& cuts, const PassValues& start);
    [[nodiscard]] bool HasImages() const;
    void Record();
    void RecordWhole();
    void Try(Band& band, PassWatch* watch) const;
    void PaintBand(Band& band, PassWatch* watch) const;
    void Play(Band& band, const PlfPass& own) const;
    void PlayBlocks(const Band& band, PainterSink& sink) const;
    void Decode(Band& band, const PlfPass& own) const;
    static void Restore(Band& band);

    const PlfPass& pass;
    const PassValues& begin;
    const int background;
    PainterState state;
    QTransform toDevice;
    QRect pixels;
    Tape tape;
    std::optional<Recorded> recorded; // if not, each band decodes the graph
    std::vector<Band> bands;
    std::shared_ptr<BandQueue> queue;
};

std::unique_ptr<Bands> Bands::Make(const PlfPass& pass, const QPainter& callers,
                                   const BandTarget& target, const RowCuts& cuts,
                                   const PassValues& begin)
{
    try {
        std::unique_ptr<Bands> made(new Bands(pass, callers, target, cuts, begin));
        return made->HasImages() ? std::move(made) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Bands::Bands(const PlfPass& drawnPass, const QPainter& callers, const BandTarget& target,
             const RowCuts& cuts, const PassValues& start)
    : pass(drawnPass), begin(start), background(pass.Background()), state(callers),
      toDevice(callers.deviceTransform()), pixels(target.pixels)
{
    RowCuts ends = cuts;
    ends.push_back(pixels.y() + pixels.height());
    int top = pixels.y();
    for (const int cut : ends) {
        const int end = std::min(cut, ends.back());
        if (end <= top)
            continue;
        const QRect rows(pixels.x(), top, pixels.width(), end - top);
        bands.push_back(
            {rows, SharedPixels(*target.image), target.image->copy(rows), {}, {}, false});
        top = end;
    }
    queue = std::make_shared<BandQueue>(
        bands.size(), [this](size_t band, PassWatch* watch) { Try(bands[band], watch); });
}

bool Bands::HasImages() const
{
    return std::none_of(bands.begin(), bands.end(), [](const Band& band) {
        return band.image.isNull() || band.before.isNull();
    });
}

PlfResult Bands::Paint()
{
    // Whatever the watch does, threads that draw need what they draw with.
    const auto close = qScopeGuard([this] { queue->Close(); });
    const int helpers = std::min(pass.threads, static_cast<int>(bands.size())) - 1;
    BandQueue::CallThreads(queue, helpers);
    Record();
    queue->Work(pass.watch);
    queue->Wait(pass.watch);
    for (Band& band : bands) {
        if (band.isDone)
            continue;
        Restore(band);
        PaintBand(band, pass.watch);
    }
    return recorded ? recorded->result : bands.front().result;
}

// Others draw meanwhile. A graph that is too large is decoded by each band.
void Bands::Record()
{
    Tape::End how = Tape::End::kAbandoned; // unless what follows says otherwise
    const auto finish = qScopeGuard([&] { tape.Finish(how); });
    try {
        if (pass.graph.size <= Tape::kMostBytes)
            RecordWhole();
        how = recorded ? Tape::End::kWhole : Tape::End::kTooLong;
    } catch (const std::bad_alloc&) {
        how = Tape::End::kTooLong; // decoding needs next to none
    }
}

void Bands::RecordWhole()
{
    PassRun run(pass, begin);
    TapeRecorder recorder(tape, pass, pixels, toDevice, begin.pen.widthF());
    const PlfResult result = run.Into(recorder);
    recorded = {result, run.values};
}

PassValues Bands::Values() const
{
    if (!recorded)
        return bands.front().values;
    PassValues values = recorded->values;
    values.pen = bands.front().values.pen;
    return values;
}

void Bands::Try(Band& band, PassWatch* watch) const
{
    try {
        PaintBand(band, watch);
        band.isDone = true;
    } catch (const std::bad_alloc&) {
        return; // there may be enough when the others are done
    }
}

void Bands::PaintBand(Band& band, PassWatch* watch) const
{
    PlfPass own = pass;
    own.watch = watch;
    if (tape.HowItEnded() != Tape::End::kTooLong)
        Play(band, own);
    if (tape.HowItEnded() == Tape::End::kTooLong) {
        Restore(band);
        Decode(band, own);
    }
}

// Draws what is recorded and what is being recorded.
void Bands::Play(Band& band, const PlfPass& own) const
{
    QPainter painter(&band.image);
    state.ApplyTo(painter);
    band.values.pen = begin.pen;
    PainterSink sink(painter, own, background, band.values.pen);
    sink.LimitTo(band.pixels);
    sink.Begin();
    PlayBlocks(band, sink);
    sink.Finish();
}

// From the first pen on that hides much, it pays to look ahead.
void Bands::PlayBlocks(const Band& band, PainterSink& sink) const
{
    // Only where lines are known to fill what is within them.
    bool mayLook = !HasSameScales(toDevice);
    int penWidth = begin.pen.width();
    std::vector<Tape::Hidden> hidden;
    size_t first = 0; // whose vectors may be hidden
    size_t number = 0;
    for (; const Tape::Block* block = tape.Await(number); ++number) {
        if (mayLook && MayHide(*block, penWidth, toDevice, pass.minPenWidth)) {
            mayLook = false;
            first = number;
            if (FillsLikePainter())
                hidden = FindHidden(tape, first, penWidth, band.pixels, toDevice, pass.minPenWidth);
        }
        block->Play(sink, number - first < hidden.size() ? hidden[number - first] : Tape::Hidden());
        penWidth = WidthAfter(*block, penWidth);
    }
}

void Bands::Decode(Band& band, const PlfPass& own) const
{
    QPainter painter(&band.image);
    state.ApplyTo(painter);
    PassRun run(own, begin);
    PainterSink sink(painter, own, background, run.values.pen);
    sink.LimitTo(band.pixels);
    band.result = run.Into(sink);
    band.values = run.values;
}

void Bands::Restore(Band& band)
{
    QPainter painter(&band.image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    ClipToPixels(painter, band.pixels);
    painter.resetTransform();
    const double ratio = band.image.devicePixelRatio();
    painter.scale(1 / ratio, 1 / ratio);
    painter.drawImage(band.pixels, band.before);
}

PlfResult PaintWhole(const PlfPass& pass, QPainter& painter, PassValues& values)
{
    PassRun run(pass, values);
    PainterSink sink(painter, pass, run.background, run.values.pen);
    const PlfResult result = run.Into(sink);
    values = run.values;
    return result;
}

} // namespace

int ThreadLimit()
{
    bool isNumber = false;
    const int asked = qEnvironmentVariableIntValue("PLOTVW_THREADS", &isNumber);
    return std::clamp(isNumber ? asked : Processors(), 1, kMostThreads);
}

PlfResult PaintInBands(const PlfPass& pass, QPainter& painter, const RowCuts& cuts,
                       PassValues* values)
{
    PassValues unasked;
    PassValues& state = values != nullptr ? *values : unasked;
    if (cuts.empty())
        return PaintWhole(pass, painter, state);
    const std::optional<BandTarget> target = FindBandTarget(pass, painter);
    const auto bands = target && IsExactInBands(pass, painter, target->pixels)
                           ? Bands::Make(pass, painter, *target, cuts, state)
                           : nullptr;
    if (bands == nullptr)
        return PaintWhole(pass, painter, state);
    const PlfResult result = bands->Paint();
    state = bands->Values();
    return result;
}
