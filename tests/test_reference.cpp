// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Compares the interpreter with a second, plain one over seeded streams, operation by operation.
// PLOTVW_SEEDS=FIRST:COUNT chooses other streams.
#include "app/state/globals.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "tests/kit/graph.h"
#include "tests/kit/recorder.h"
#include "tests/kit/seeds.h"
#include "tests/reference/reference.h"
#include "tests/reference/streams.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPrinter>
#include <QTest>

#include <algorithm>

namespace {

constexpr unsigned kStreams = 6000;

// Qt lays texts out in 26.6 fixed point; an x beyond that becomes its smallest number.
QString AsLaidOut(const QString& text)
{
    constexpr int kLimit = 1 << 25;
    const int x = text.section(u' ', 1, 1).toInt();
    if (x >= -kLimit && x < kLimit)
        return text;
    return QStringLiteral("text %1 %2").arg(-kLimit).arg(text.section(u' ', 2));
}

// A tab in a text makes Qt draw it in two parts that a recording cannot join.
std::string WithoutTabs(std::string file)
{
    std::replace(file.begin(), file.end(), '\t', '\f');
    return file;
}

// Qt draws what another font has to stand in for as a part of its own, if such a font is installed.
void DrawTextsWhole()
{
    QFont font = QGuiApplication::font();
    font.setStyleStrategy(QFont::NoFontMerging);
    QGuiApplication::setFont(font);
}

// A painter's window that is set twice before anything is painted shows only the second time.
QStringList Expected(const reference::Result& result)
{
    QStringList operations;
    for (const std::string& operation : result.operations) {
        const QString text = QString::fromStdString(operation);
        if (text.startsWith(u"window ") && !operations.isEmpty())
            operations.removeLast();
        operations += text.startsWith(u"text ") ? AsLaidOut(text) : text;
    }
    return operations;
}

void SetGlobals(const reference::View& view)
{
    gbBkClrWhite = view.whiteBackground;
    giPrtMinLineWidth = view.minPrintWidth;
    giPageX = view.pageX;
    giPageY = view.pageY;
    gdPageSizeX = view.pageSizeX;
    gdPageSizeY = view.pageSizeY;
}

QStringList Draw(const reference::View& view, QPrinter* printer)
{
    SetGlobals(view);
    Recorder recorder({640, 487}, view.printing);
    QPainter painter(&recorder);
    Rect zoom = {};
    SetRect(&zoom, static_cast<int>(view.zoomLeft), static_cast<int>(view.zoomTop),
            static_cast<int>(view.zoomRight), static_cast<int>(view.zoomBottom));
    Rect full = kWholeArea;
    char name[] = "stream.plf";
    CPlfMeta meta(name, &painter, view.printing ? printer : nullptr, view.widthScale, 0);
    meta.DrawPlf(&zoom, &full);
    return recorder.Operations();
}

// Says where two lists begin to differ; the comparison that fails then shows only that they do.
void ShowDifference(unsigned seed, const QStringList& drawn, const QStringList& expected)
{
    const auto [left, right] =
        std::mismatch(drawn.begin(), drawn.end(), expected.begin(), expected.end());
    if (left == drawn.end() && right == expected.end())
        return;
    qWarning("seed %u, operation %d: drawn \"%s\", expected \"%s\"", seed,
             static_cast<int>(left - drawn.begin()), left == drawn.end() ? "" : qPrintable(*left),
             right == expected.end() ? "" : qPrintable(*right));
}

// A printer's horizontal and vertical resolution are the same.
reference::View PrintableView(unsigned seed)
{
    reference::View view = streams::MakeView(seed);
    view.dpiY = view.dpiX;
    return view;
}

} // namespace

class TestReference : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { DrawTextsWhole(); }
    void cleanupTestCase() { FreePlfBuffer(); }

    void everyStream_isDrawnAsTheReferenceDrawsIt()
    {
        const auto [first, count] = ChosenSeeds(kStreams);
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        qsizetype operations = 0;
        for (unsigned seed = first; seed < first + count; ++seed) {
            const std::string file = WithoutTabs(streams::Make(seed));
            const reference::View view = PrintableView(seed);
            printer.setResolution(view.dpiX);
            const reference::Result expected = reference::Draw(file, view);
            LoadBytes(QByteArray::fromStdString(file));
            const QStringList drawn = Draw(view, &printer);
            ShowDifference(seed, drawn, Expected(expected));
            QCOMPARE(drawn, Expected(expected));
            QCOMPARE(gdwVectorCnt, expected.vectors);
            QCOMPARE(gdwBkClrFile, static_cast<unsigned long>(expected.background));
            operations += drawn.size();
        }
        QVERIFY2(operations > 10 * static_cast<qsizetype>(count), "the streams draw too little");
    }
};

QTEST_MAIN(TestReference)
#include "test_reference.moc"
