// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a graph file and, after its last zero byte, a name for it. Whatever both are, plfinfo
// prints JSON and CSV that a program can read, its kinds of output agree, and nothing is in them
// that a terminal would obey.
#include "fuzz/target.h"
#include "meta/colormap.h"
#include "meta/damage.h"
#include "meta/palette.h"
#include "meta/plfgraph.h"
#include "support/files.h"
#include "support/visible.h"
#include "tools/common/commandline.h"
#include "tools/common/filename.h"
#include "tools/info/run.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

using fuzz::Require;

constexpr int kLargestCoordinate = 4095;

// Takes what is printed on a stream while it lives.
class Capture
{
public:
    explicit Capture(FILE** captured)
        : stream(captured), former(std::exchange(*captured, open_memstream(&text, &size)))
    {
    }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    ~Capture()
    {
        fclose(std::exchange(*stream, former));
        free(text);
    }

    [[nodiscard]] QByteArray Text() const
    {
        fflush(*stream);
        return {text, static_cast<qsizetype>(size)};
    }

private:
    char* text = nullptr;
    size_t size = 0;
    FILE** stream;
    FILE* former;
};

// What a terminal obeys, besides line ends.
bool HasControls(const QByteArray& utf8)
{
    const QString text = QString::fromUtf8(utf8);
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c != u'\n' && IsHidden(c.unicode()); });
}

bool IsWithin(const QJsonValue& value, double least, double most)
{
    return value.isDouble() && value.toDouble() >= least && value.toDouble() <= most;
}

void CheckAll(const QJsonValue& values, double least, double most, const char* promise)
{
    for (const QJsonValue value : values.toArray())
        Require(IsWithin(value, least, most), promise);
}

void CheckExtent(const QJsonValue& extent)
{
    for (const QJsonValue edge : extent.toObject())
        Require(IsWithin(edge, 0, kLargestCoordinate), "vectors lie in the graph");
}

// Counts and offsets, none of which can be larger than the file.
void CheckCounts(const QJsonObject& graph)
{
    const double size = graph[QStringLiteral("size")].toDouble();
    for (const char* key : {"header", "vectors", "moves", "skippedBytes"})
        Require(IsWithin(graph[QLatin1StringView(key)], 0, size), "a count is that of bytes");
    for (const QJsonValue count : graph[QStringLiteral("commands")].toObject())
        Require(IsWithin(count, 1, size), "a command takes bytes");
    for (const char* key : {"texts", "damage"}) {
        for (const QJsonValue entry : graph[QLatin1StringView(key)].toArray())
            Require(IsWithin(entry.toObject()[QStringLiteral("offset")], 0, size),
                    "an offset is in the file");
    }
    Require(IsWithin(graph[QStringLiteral("end")].toObject()[QStringLiteral("offset")], 0, size),
            "the end is in the file");
}

void CheckGraph(const QJsonObject& graph, qsizetype size)
{
    Require(graph[QStringLiteral("size")] == static_cast<qint64>(size), "the size is the file's");
    CheckCounts(graph);
    CheckAll(graph[QStringLiteral("lineIndices")], 0, kLineIndexCount - 1, "indices are known");
    CheckAll(graph[QStringLiteral("colors")], 0, kPaletteSize, "colors are known");
    CheckAll(graph[QStringLiteral("widths")], -0x1p31, 0x1p31 - 1, "widths are integers");
    CheckExtent(graph[QStringLiteral("extent")]);
}

QJsonObject Parsed(const QByteArray& json)
{
    QJsonParseError error = {};
    const QJsonObject parsed = QJsonDocument::fromJson(json, &error).object();
    Require(error.error == QJsonParseError::NoError, "JSON can be parsed");
    Require(parsed[QStringLiteral("version")] == 1, "JSON has its version");
    return parsed;
}

// The object of the only graph.
QJsonObject CheckJson(const QByteArray& json, qsizetype size)
{
    const QJsonArray graphs = Parsed(json)[QStringLiteral("graphs")].toArray();
    Require(graphs.size() == 1, "a graph gives an object");
    QJsonObject graph = graphs.first().toObject();
    Require(graph[QStringLiteral("file")].isString(), "an object names its file");
    if (!graph.contains(QStringLiteral("error")))
        CheckGraph(graph, size);
    return graph;
}

void CheckLine(const QByteArray& line, const QJsonObject& graph)
{
    Require(line.count('\n') == 1 && line.endsWith('\n'), "a graph has a line");
    QJsonObject object = Parsed(line);
    object.remove(QStringLiteral("version"));
    Require(object == graph, "the line says what the document says");
}

void CheckRows(const QByteArray& rows, const QJsonObject& graph)
{
    const auto vectors = static_cast<qsizetype>(graph[QStringLiteral("vectors")].toDouble());
    // The name may be that of a folder, whose graphs have their names in the rows.
    Require(rows.startsWith("x1,y1,x2,y2,color,width,path\n") ||
                rows.startsWith("file,x1,y1,x2,y2,color,width,path\n"),
            "the columns have their names");
    Require(rows.count('\n') == 1 + vectors, "a vector has a row");
}

bool IsLossWord(const QString& word)
{
    return word != QLatin1StringView(DamageWord(PlfDamage::kUnknownCommand));
}

void CheckVerdict(const QByteArray& lines, int code, const QJsonObject& graph)
{
    const QJsonArray damage = graph[QStringLiteral("damage")].toArray();
    const bool isDamaged = std::any_of(damage.begin(), damage.end(), [](const QJsonValue& noted) {
        return IsLossWord(noted.toObject()[QStringLiteral("kind")].toString());
    });
    const bool isUnread = graph.contains(QStringLiteral("error"));
    Require(lines.count('\n') == (isDamaged ? 1 : 0), "a damaged graph has a line");
    Require(code == (isDamaged || isUnread ? tools::kFailed : tools::kDone), "the code tells");
}

// Some names are those of no file.
void Write(const QByteArray& name, const QByteArray& bytes)
{
    const FilePtr file(fopen(name.constData(), "wb"));
    if (file != nullptr)
        fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), file.get());
}

// What a call prints, none of which a terminal would obey.
QByteArray Printed(info::Options options, const QByteArray& name, int* code)
{
    options.names = {tools::DecodeName(name)};
    QByteArray printed;
    QByteArray messages;
    {
        const Capture output(&stdout);
        const Capture errors(&stderr);
        *code = info::Run(options);
        printed = output.Text();
        messages = errors.Text();
    }
    Require(!HasControls(messages), "a message has no control characters");
    Require(!HasControls(printed), "the output has no control characters");
    return printed;
}

QByteArray PrintedWith(bool info::Options::*flag, const QByteArray& name, int* code)
{
    info::Options options;
    options.*flag = true;
    return Printed(options, name, code);
}

void Inspect(const QByteArray& name, qsizetype size)
{
    int code = -1;
    const QJsonObject graph = CheckJson(PrintedWith(&info::Options::asJson, name, &code), size);
    CheckLine(PrintedWith(&info::Options::asJsonLines, name, &code), graph);
    CheckRows(PrintedWith(&info::Options::asVectors, name, &code), graph);
    const QByteArray lines = PrintedWith(&info::Options::isCheck, name, &code);
    CheckVerdict(lines, code, graph);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::PrepareQt();
    new QCoreApplication(*argc, *argv); // as long as the process
    static const fuzz::Sandbox sandbox;
    tools::SetProgramName("plfinfo");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype zero = input.lastIndexOf('\0');
    const QByteArray name = zero < 0 ? QByteArray("graph.plf") : input.sliced(zero + 1);
    const QByteArray graph = zero < 0 ? input : input.first(zero);
    if (name.contains('/') || name == ".." || name == tools::kStandardStream)
        return 0; // not in the sandbox
    Write(name, graph);
    Inspect(name, graph.size());
    remove(name.constData());
    return 0;
}
