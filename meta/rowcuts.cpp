// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/rowcuts.h"

#include "meta/bandtarget.h"
#include "meta/fill/coveredtiles.h"
#include "meta/imagepainter.h"
#include "meta/passrun.h"
#include "meta/surveysink.h"

#include <QPainter>

#include <algorithm>
#include <new>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace {

// A graph up to twice that long is looked at whole.
constexpr size_t kSampleSize = size_t{128} * 1024;
// Fewer would miss what comes and goes, more would each consist of too much that is misread.
constexpr size_t kSamplePieces = 256;
constexpr char kGs = 29;

// A graph that is drawn at once by anybody: a look at it would take as long.
constexpr size_t kSmallGraph = size_t{16} * 1024;
// Work that is worth another thread, nanoseconds: it takes up to a tenth of that to begin.
constexpr double kWorthAThread = 1e6;

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

// The work of each band, for so many threads that take one after the other: more bands than
// threads, as nobody knows which lines will be hidden, and the last ones small, so that all end at
// about the same time. The caller comes later than the others, when it has decoded the graph.
std::vector<double> Shares(int threads)
{
    constexpr double kHelpers = 0.45;
    std::vector<double> shares(static_cast<size_t>(threads - 1), kHelpers);
    shares.insert(shares.end(), {0.3, 0.15, 0.1});
    const double all = std::accumulate(shares.begin(), shares.end(), 0.0);
    for (double& share : shares)
        share /= all;
    return shares;
}

// The work of each row in nanoseconds.
struct RowWork {
    std::vector<double> rows;
    int top;

    [[nodiscard]] double Sum() const { return std::accumulate(rows.begin(), rows.end(), 0.0); }
    [[nodiscard]] RowCuts Cut(int threads) const;
};

RowCuts RowWork::Cut(int threads) const
{
    RowCuts cuts;
    if (threads < 2)
        return cuts;
    const double all = Sum();
    const std::vector<double> shares = Shares(threads);
    double sum = 0;
    double end = all * shares[0];
    for (size_t row = 0; row < rows.size(); ++row) {
        if (cuts.size() + 1 < shares.size() && sum >= end) {
            cuts.push_back(top + static_cast<int>(row));
            end += all * shares[cuts.size()];
        }
        sum += rows[row];
    }
    return cuts;
}

SurveySink MakeSurvey(const PlfPass& pass, const QPainter& painter, const QRect& pixels)
{
    return {pixels, painter.deviceTransform(), pass.minPenWidth};
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

bool IsExactInBands(const PlfPass& pass, const QPainter& painter, const QRect& pixels)
{
    if (!HasSameScales(painter.deviceTransform()))
        return true;
    SurveySink survey = MakeSurvey(pass, painter, pixels);
    Survey(pass, pass.graph, survey);
    return !survey.HasWidth();
}

RowCuts FindCuts(const PlfPass& pass, QPainter& painter)
{
    if (pass.graph.size < kSmallGraph)
        return {};
    const std::optional<BandTarget> target = FindBandTarget(pass, painter);
    if (!target)
        return {};
    try {
        return CutsIn(target->pixels, pass, painter);
    } catch (const std::bad_alloc&) {
        return {}; // one band needs less
    }
}
