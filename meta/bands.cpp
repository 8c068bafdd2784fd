// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/bands.h"

#include "meta/fill/coveredtiles.h"
#include "meta/fill/paintcheck.h"
#include "meta/imagepainter.h"
#include "meta/lookahead.h"
#include "meta/paintersink.h"
#include "meta/passrun.h"
#include "meta/passwatch.h"
#include "meta/surveysink.h"
#include "meta/tape.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRunnable>
#include <QScopeGuard>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <new>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

#include <sched.h>

namespace {

// A graph up to twice that long is looked at whole.
constexpr size_t kSampleSize = size_t{128} * 1024;
// Fewer would miss what comes and goes, more would each consist of too much that is misread.
constexpr size_t kSamplePieces = 256;
constexpr char kGs = 29;

// A graph that is drawn at once by anybody: a look at it would take as long.
constexpr size_t kSmallGraph = size_t{16} * 1024;
// More would each decode the whole graph to draw a few rows of it.
constexpr int kMostThreads = 64;

// Work that is worth another thread, nanoseconds: it takes up to a tenth of that to begin.
constexpr double kWorthAThread = 1e6;

// How long the caller waits before the watch gets a look at the clock.
constexpr std::chrono::milliseconds kLook{10};

int Processors()
{
    cpu_set_t mine;
    return sched_getaffinity(0, sizeof mine, &mine) == 0 ? CPU_COUNT(&mine) : 1;
}

// Some of a graph as a graph of its own: pieces from all over it. What a piece begins in the middle
// of is read as something else, of which there is little.
class Sample
{
public:
    explicit Sample(const PlfBytes& graph);
    [[nodiscard]] PlfBytes Bytes() const { return {bytes.data(), bytes.size() - kPlfTailSize}; }

private:
    std::string bytes; // and their tail
};

Sample::Sample(const PlfBytes& graph)
{
    const size_t pieces = graph.size <= 2 * kSampleSize ? 1 : kSamplePieces;
    const size_t length = pieces == 1 ? graph.size : kSampleSize / kSamplePieces;
    for (size_t i = 0; i < pieces; ++i) {
        bytes += kGs;
        bytes.append(graph.data + graph.size / pieces * i, length);
    }
    bytes.append(kPlfTailSize, '\0');
}

// Lets a graph, or some of it, pass through the sink.
void Survey(const PlfPass& pass, const PlfBytes& bytes, SurveySink& sink)
{
    PlfPass survey = pass;
    survey.graph = bytes;
    PassRun(survey).Into(sink);
}

// The work of each row in nanoseconds.
struct RowWork {
    std::vector<double> rows;
    int top;

    [[nodiscard]] double Sum() const { return std::accumulate(rows.begin(), rows.end(), 0.0); }
    [[nodiscard]] RowCuts Cut(int parts) const;
};

RowCuts RowWork::Cut(int parts) const
{
    RowCuts cuts;
    if (parts < 2)
        return cuts;
    const double all = Sum();
    double sum = 0;
    for (size_t row = 0; row < rows.size(); ++row) {
        const auto before = static_cast<double>(cuts.size() + 1);
        if (before < parts && sum >= all / parts * before)
            cuts.push_back(top + static_cast<int>(row));
        sum += rows[row];
    }
    return cuts;
}

// What the painter of each band has in common with the caller's.
struct PainterState {
    explicit PainterState(const QPainter& painter);
    void ApplyTo(QPainter& painter) const;

    QFont font;
    QPainter::RenderHints hints;
    QRect window, viewport;
    QTransform world;
    bool isViewed, isMapped;
};

PainterState::PainterState(const QPainter& painter)
    : font(painter.font()), hints(painter.renderHints()), window(painter.window()),
      viewport(painter.viewport()), world(painter.worldTransform()),
      isViewed(painter.viewTransformEnabled()), isMapped(painter.worldMatrixEnabled())
{
}

void PainterState::ApplyTo(QPainter& painter) const
{
    painter.setRenderHints(painter.renderHints(), false);
    painter.setRenderHints(hints);
    painter.setFont(font);
    painter.setWindow(window);
    painter.setViewport(viewport);
    painter.setViewTransformEnabled(isViewed);
    painter.setWorldTransform(world);
    painter.setWorldMatrixEnabled(isMapped);
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

// Where a pass can be cut into bands.
struct Target {
    QImage* image;
    QRect pixels; // that may be changed
};

// The bands of one picture, drawn by whoever takes the next.
class Bands
{
public:
    /// @return null when there is no memory for all that threads need
    static std::unique_ptr<Bands> Make(const PlfPass& pass, const QPainter& callers,
                                       const Target& target, const RowCuts& cuts,
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

    // The turn of each band. It may outlive the bands: a thread may come when all is done.
    class Queue
    {
    public:
        explicit Queue(Bands& queued) : bands(queued), count(queued.bands.size()) {}

        /// Draws bands until there are none left.
        void Work(PassWatch* watch);
        /// Waits for the last one.
        void Wait(PassWatch* watch);
        /// Lets nobody begin another one, and waits for those that have begun.
        void Close();

    private:
        // Counts a band as finished, however it ended.
        class Turn;

        Bands& bands; // while there is one to be drawn
        const size_t count;
        std::atomic<size_t> next = 0;
        std::mutex mutex;
        std::condition_variable changed;
        size_t finished = 0;
    };

    // What a thread of the pool runs.
    class Helper final : public QRunnable
    {
    public:
        explicit Helper(std::shared_ptr<Queue> joined) : queue(std::move(joined))
        {
            isReady.store(true, std::memory_order_release);
        }
        void run() override
        {
            if (isReady.load(std::memory_order_acquire))
                queue->Work(nullptr);
        }

    private:
        std::shared_ptr<Queue> queue;
        std::atomic<bool> isReady = false; // how Qt hands it to the thread, no sanitizer can see
    };

    Bands(const PlfPass& drawnPass, const QPainter& callers, const Target& target,
          const RowCuts& cuts, const PassValues& start);
    [[nodiscard]] bool HasImages() const;
    void Record(const QTransform& toDevice, const QRect& pixels);
    void CallThreads() const;
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
    std::shared_ptr<Queue> queue;
};

std::unique_ptr<Bands> Bands::Make(const PlfPass& pass, const QPainter& callers,
                                   const Target& target, const RowCuts& cuts,
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

Bands::Bands(const PlfPass& drawnPass, const QPainter& callers, const Target& target,
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
    queue = std::make_shared<Queue>(*this);
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
    CallThreads();
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

// Qt says nothing of a thread that does not start, and would wait for it at the program's end; so
// the pool is never destroyed.
void Bands::CallThreads() const
{
    const int helpers = std::min(pass.threads, static_cast<int>(bands.size())) - 1;
    try {
        static auto* const pool = new QThreadPool;
        pool->setMaxThreadCount(std::max(helpers, pool->maxThreadCount()));
        for (int i = 0; i < helpers; ++i) {
            auto helper = std::make_unique<Helper>(queue);
            if (!pool->tryStart(helper.get()))
                return;
            static_cast<void>(helper.release()); // the pool deletes it
        }
    } catch (const std::bad_alloc&) {
        return; // the caller draws what they would have drawn
    }
}

class Bands::Queue::Turn
{
public:
    explicit Turn(Queue& turning) : queue(turning) {}
    ~Turn()
    {
        const std::lock_guard lock(queue.mutex);
        ++queue.finished;
        queue.changed.notify_one();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    Queue& queue;
};

void Bands::Queue::Work(PassWatch* watch)
{
    for (size_t mine = next++; mine < count; mine = next++) {
        const Turn turn(*this);
        bands.Try(bands.bands[mine], watch);
    }
}

void Bands::Queue::Close()
{
    const size_t begun = std::min(next.exchange(count), count);
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return finished >= begun; });
}

void Bands::Queue::Wait(PassWatch* watch)
{
    std::unique_lock lock(mutex);
    do {
        if (watch != nullptr)
            watch->Tick();
    } while (!changed.wait_for(lock, kLook, [this] { return finished == count; }));
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

void Map(const PlfPass& pass, QPainter& painter)
{
    QPen pen;
    PainterSink(painter, pass, pass.Background(), pen).MapWindow();
}

std::optional<Target> FindTarget(const PlfPass& pass, QPainter& painter)
{
    constexpr int kDepth = 32;
    if (pass.page || !IsRaster(painter) || !PaintsPlainly(painter))
        return std::nullopt;
    QImage* image = ImageOf(painter);
    if (image == nullptr || image->depth() != kDepth)
        return std::nullopt;
    const std::optional<QRect> clip = PixelClip(painter, *image);
    Map(pass, painter);
    const QTransform toDevice = painter.deviceTransform();
    if (!clip || toDevice.type() > QTransform::TxScale || !toDevice.isInvertible())
        return std::nullopt;
    const QRect pixels = *clip & image->rect();
    if (pixels.isEmpty())
        return std::nullopt;
    return Target{image, pixels};
}

SurveySink MakeSurvey(const PlfPass& pass, const QPainter& painter, const QRect& pixels)
{
    return {pixels, painter.deviceTransform(), pass.minPenWidth};
}

// Whether the pixels of each line are the same in every clip.
bool IsExact(const PlfPass& pass, const QPainter& painter, const QRect& pixels)
{
    if (!HasSameScales(painter.deviceTransform()))
        return true;
    SurveySink survey = MakeSurvey(pass, painter, pixels);
    Survey(pass, pass.graph, survey);
    return !survey.HasWidth();
}

RowCuts CutsIn(const QRect& pixels, const PlfPass& pass, const QPainter& painter)
{
    SurveySink survey = MakeSurvey(pass, painter, pixels);
    const Sample sample(pass.graph);
    Survey(pass, sample.Bytes(), survey);
    if (survey.HasWidth() && HasSameScales(painter.deviceTransform()))
        return {};
    const RowWork work = {survey.Rows(), pixels.y()};
    const double all = work.Sum() * static_cast<double>(pass.graph.size) /
                       static_cast<double>(sample.Bytes().size);
    RowCuts cuts = work.Cut(static_cast<int>(std::min<double>(pass.threads, all / kWorthAThread)));
    const bool hidesMuch = CoveredTiles::CanCover(survey.WidestPen(), painter.deviceTransform());
    if (cuts.empty() && hidesMuch && all > kWorthAThread)
        cuts.push_back(pixels.y() + pixels.height());
    return cuts;
}

} // namespace

int ThreadLimit()
{
    bool isNumber = false;
    const int asked = qEnvironmentVariableIntValue("PLOTVW_THREADS", &isNumber);
    return std::clamp(isNumber ? asked : Processors(), 1, kMostThreads);
}

RowCuts FindCuts(const PlfPass& pass, QPainter& painter)
{
    if (pass.graph.size < kSmallGraph)
        return {};
    const std::optional<Target> target = FindTarget(pass, painter);
    if (!target)
        return {};
    try {
        return CutsIn(target->pixels, pass, painter);
    } catch (const std::bad_alloc&) {
        return {}; // one band needs less
    }
}

PlfResult PaintInBands(const PlfPass& pass, QPainter& painter, const RowCuts& cuts,
                       PassValues* values)
{
    PassValues unasked;
    PassValues& state = values != nullptr ? *values : unasked;
    if (cuts.empty())
        return PaintWhole(pass, painter, state);
    const std::optional<Target> target = FindTarget(pass, painter);
    const auto bands = target && IsExact(pass, painter, target->pixels)
                           ? Bands::Make(pass, painter, *target, cuts, state)
                           : nullptr;
    if (bands == nullptr)
        return PaintWhole(pass, painter, state);
    const PlfResult result = bands->Paint();
    state = bands->Values();
    return result;
}
