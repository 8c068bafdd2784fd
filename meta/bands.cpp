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

// A pass that was recorded, and what it left.
struct Recording {
    Recording(const PlfPass& pass, const QRect& pixels, const QTransform& toDevice,
              const PassValues& begin);

    Tape tape;
    PlfResult result;
    PassValues values;
    int background;
};

Recording::Recording(const PlfPass& pass, const QRect& pixels, const QTransform& toDevice,
                     const PassValues& begin)
    : tape(pass, pixels, toDevice, begin.pen.widthF())
{
    PassRun run(pass, begin);
    result = run.Into(tape);
    values = run.values;
    background = run.background;
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

    Bands(const PlfPass& drawnPass, const QPainter& callers, const BandTarget& target,
          const RowCuts& cuts, const PassValues& start);
    [[nodiscard]] bool HasImages() const;
    void Record(const QTransform& toDevice, const QRect& pixels);
    void Try(Band& band, PassWatch* watch) const;
    void PaintBand(Band& band, PassWatch* watch) const;
    [[nodiscard]] std::vector<bool> Hidden(const Band& band, const QTransform& toDevice) const;
    void PlayInto(Band& band, const PlfPass& own, QPainter& painter) const;
    void PaintAgain(Band& band) const;

    const PlfPass& pass;
    const PassValues& begin;
    PainterState state;
    std::unique_ptr<const Recording> recording; // null: each band decodes the graph
    std::vector<Band> bands;
    std::shared_ptr<BandQueue> queue;
};

std::unique_ptr<Bands> Bands::Make(const PlfPass& pass, const QPainter& callers,
                                   const BandTarget& target, const RowCuts& cuts,
                                   const PassValues& begin)
{
    try {
        std::unique_ptr<Bands> made(new Bands(pass, callers, target, cuts, begin));
        if (!made->HasImages())
            return nullptr;
        made->Record(callers.deviceTransform(), target.pixels);
        return made;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Bands::Bands(const PlfPass& drawnPass, const QPainter& callers, const BandTarget& target,
             const RowCuts& cuts, const PassValues& start)
    : pass(drawnPass), begin(start), state(callers)
{
    const QRect& pixels = target.pixels;
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

// A graph that is too large for it is decoded by each band.
void Bands::Record(const QTransform& toDevice, const QRect& pixels)
{
    if (pass.graph.size > Tape::kMostBytes)
        return;
    try {
        auto recorded = std::make_unique<const Recording>(pass, pixels, toDevice, begin);
        if (recorded->tape.IsComplete())
            recording = std::move(recorded);
    } catch (const std::bad_alloc&) {
        return; // decoding needs next to none
    }
}

PlfResult Bands::Paint()
{
    // Whatever the watch does, threads that draw need what they draw with.
    const auto close = qScopeGuard([this] { queue->Close(); });
    const int helpers = std::min(pass.threads, static_cast<int>(bands.size())) - 1;
    BandQueue::CallThreads(queue, helpers);
    queue->Work(pass.watch);
    queue->Wait(pass.watch);
    for (Band& band : bands) {
        if (!band.isDone)
            PaintAgain(band);
    }
    return recording != nullptr ? recording->result : bands.front().result;
}

PassValues Bands::Values() const
{
    if (recording == nullptr)
        return bands.front().values;
    PassValues values = recording->values;
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
    QPainter painter(&band.image);
    state.ApplyTo(painter);
    if (recording != nullptr) {
        PlayInto(band, own, painter);
        return;
    }
    PassRun run(own, begin);
    PainterSink sink(painter, own, run.background, run.values.pen);
    sink.LimitTo(band.pixels);
    band.result = run.Into(sink);
    band.values = run.values;
}

// Only where lines are known to fill what is within them.
std::vector<bool> Bands::Hidden(const Band& band, const QTransform& toDevice) const
{
    if (HasSameScales(toDevice) || !FillsLikePainter())
        return {};
    return FindHidden(recording->tape, band.pixels, toDevice, begin.pen.width(), pass.minPenWidth);
}

void Bands::PlayInto(Band& band, const PlfPass& own, QPainter& painter) const
{
    band.values.pen = begin.pen;
    PainterSink sink(painter, own, recording->background, band.values.pen);
    sink.LimitTo(band.pixels);
    sink.MapWindow();
    recording->tape.Play(sink, Hidden(band, painter.deviceTransform()));
}

void Bands::PaintAgain(Band& band) const
{
    QPainter painter(&band.image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    ClipToPixels(painter, band.pixels);
    painter.resetTransform();
    const double ratio = band.image.devicePixelRatio();
    painter.scale(1 / ratio, 1 / ratio);
    painter.drawImage(band.pixels, band.before);
    painter.end();
    PaintBand(band, pass.watch);
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
