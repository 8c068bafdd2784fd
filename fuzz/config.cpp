// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a configuration file. A graph is then drawn with its settings, on paper and as EPS.
#include "support/config.h"
#include "app/state/globals.h"
#include "fuzz/target.h"
#include "meta/palette.h"
#include "meta/plfarea.h"
#include "meta/plfmeta.h"
#include "support/text.h"
#include "tests/kit/globals.h"
#include "tests/kit/plf.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPrinter>

#include <string>

namespace {

// The lines of every EPS file, with the longest numbers.
constexpr qsizetype kEpsHead = 4096;

fuzz::Sandbox& Home()
{
    static fuzz::Sandbox sandbox;
    return sandbox;
}

std::string Graph()
{
    return plf::Start() + plf::Width(3) + plf::Line(0, 0, 4095, 3119) + plf::Draw(17, 3000) +
           plf::Text(100, 100, "text") + plf::End();
}

void LoadGraph()
{
    const std::string graph = Graph();
    const std::basic_string<uint8_t> bytes(graph.begin(), graph.end());
    fuzz::Require(fuzz::LoadGraph(bytes.data(), bytes.size()), "a good graph loads");
}

void DrawWith(QPainter* painter, QPrinter* printer, int conversion)
{
    Rect zoom = {};
    Rect whole = kWholeArea;
    char name[] = "fuzz.plf";
    CPlfMeta meta(name, painter, printer, 1.0, conversion);
    meta.DrawPlf(&zoom, &whole);
    fuzz::Require(gdwVectorCnt == 2, "no configuration loses a vector");
}

void DrawOnPaper()
{
    static QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    QImage image(64, 48, QImage::Format_RGB32);
    QPainter painter(&image);
    DrawWith(&painter, &printer, 0);
}

void WriteEps()
{
    static fuzz::MemoryFile output;
    fuzz::Require(CopyText(gszCvtFilename, output.Path()), "a short path fits");
    DrawWith(nullptr, nullptr, kConvertEps);
    const QByteArray eps = output.Contents();
    fuzz::Require(eps.startsWith("%!PS-Adobe-3.0 EPSF-3.0\n") && eps.endsWith("\nstroke\n"),
                  "every EPS is whole");
    fuzz::Require(eps.size() < kEpsHead, "no configuration makes the EPS long");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::PrepareQt();
    new QGuiApplication(*argc, *argv); // as long as the process
    initGraphics();
    Home();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Home().Write("plotvw.cfg",
                 QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    fuzz::Require(ReadCfgFile() == 0, "a file that is there is read");
    for (const int flag : {gfEpsCvt2Blk, gfEpsUseBkClr, giAutosave})
        fuzz::Require(flag == 0 || flag == 1, "a yes or no is 1 or 0");
    LoadGraph();
    DrawOnPaper();
    WriteEps();
    ResetGlobals();
    return 0;
}
