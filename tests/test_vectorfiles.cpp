// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter's vector files as others read them: what they look like, how large they are, what
// can be found in them.
#include "tests/converter.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"
#include "tests/kit/sanitized.h"
#include "tests/likeness.h"

#include <QImage>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtTest>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <string>

namespace {

constexpr int kMillion = 1000000;
constexpr qint64 kMegabyte = 1000000;

QByteArray Bytes(const std::string& text)
{
    return QByteArray::fromStdString(text);
}

// An SVG as a reader of XML finds it.
struct Svg {
    QString error;
    QString title;
    QStringList texts;
    QString family;
    QList<QXmlStreamAttributes> paths;
};

Svg ReadSvg(const QString& name)
{
    const QByteArray bytes = ReadFile(name);
    QXmlStreamReader xml(bytes);
    Svg svg;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.attributes().hasAttribute(Text("font-family")))
            svg.family = xml.attributes().value(Text("font-family")).toString();
        if (xml.name() == u"path")
            svg.paths += xml.attributes();
        else if (xml.name() == u"title")
            svg.title = xml.readElementText();
        else if (xml.name() == u"text")
            svg.texts += xml.readElementText();
    }
    svg.error = xml.errorString();
    return svg;
}

QStringList PathData(const Svg& svg)
{
    QStringList data;
    for (const QXmlStreamAttributes& path : svg.paths)
        data += path.value(Text("d")).toString();
    return data;
}

// What pdfinfo says of something.
QByteArray PdfFact(const QString& name, const char* fact)
{
    for (const QByteArray& line : RunTool(Text("pdfinfo"), {Text("-isodates"), name}).split('\n')) {
        if (line.startsWith(fact))
            return line.sliced(line.indexOf(':') + 1).trimmed();
    }
    return {};
}

qint64 Size(const QString& name)
{
    return QFileInfo(name).size();
}

// A line of a million joined vectors that turns a little at each point.
QByteArray Walk()
{
    QRandomGenerator random(1);
    std::string graph = plf::Start() + plf::Move(2048, 1560);
    double x = 2048, y = 1560, speedX = 0, speedY = 0;
    for (int i = 0; i < kMillion; ++i) {
        speedX = 0.9 * speedX + random.bounded(6.0) - 3.0 + (2048 - x) / 2000;
        speedY = 0.9 * speedY + random.bounded(6.0) - 3.0 + (1560 - y) / 2000;
        x = std::clamp(x + speedX, 0.0, 4095.0);
        y = std::clamp(y + speedY, 0.0, 3119.0);
        graph += plf::Draw(static_cast<int>(x), static_cast<int>(y));
    }
    return Bytes(graph + plf::End());
}

// A million vectors, each with a move of its own: the edges of a mesh.
QByteArray Mesh()
{
    constexpr int kSide = 707;
    const auto point = [](int i, int j) {
        return std::pair(48 + i * 4 + j, 20 + j * 3 + ((i * i + 3 * j * j) >> 7) % 40);
    };
    std::string graph = plf::Start();
    for (int i = 0; i < kSide; ++i) {
        for (int j = 0; j < kSide; ++j) {
            const auto [x, y] = point(i, j);
            const auto [rightX, rightY] = point(i + 1, j);
            const auto [downX, downY] = point(i, j + 1);
            graph += plf::Line(x, y, rightX, rightY) + plf::Line(x, y, downX, downY);
        }
    }
    return Bytes(graph + plf::End());
}

// Wide lines, joined at corners of all kinds.
QByteArray WideCorners()
{
    std::string graph = plf::Start() + plf::Width(300);
    for (int i = 0; i < 8; ++i) {
        const int x = 300 + 900 * (i % 4), y = 500 + 1500 * (i / 4);
        const int turn = 80 * i;
        graph += plf::Line(x, y, x + 300, y) + plf::Draw(x + 300 - turn, y + 300);
    }
    return Bytes(graph + plf::Width(60) + plf::Line(100, 1200, 1100, 1200) + plf::Draw(100, 1210) +
                 plf::End());
}

} // namespace

class TestVectorFiles : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void svg_looksLikeThePng_data() { SampleRows(); }
    void svg_looksLikeThePng();
    void pdf_looksLikeThePng_data() { SampleRows(); }
    void pdf_looksLikeThePng();
    void seededStreams_lookLikeThePng();
    void wideCorners_lookLikeThePng();
    void areas_lookLikeThePng_data();
    void areas_lookLikeThePng();

    void joinedVectors_areOneLine();
    void pens_beginNewLines();
    void dots_areSquaresOfTheirPen();
    void millionJoinedVectors_areSmall();
    void millionSeparateVectors_areSmall();
    void millionVectors_needLittleMemory();

    void area_leavesOutWhatIsOutside_data();
    void area_leavesOutWhatIsOutside();
    void epsOfAnArea_breaksLinesThatLeaveIt();

    void texts_areWholeAndFound();
    void texts_ofOddCharacters_areValid();
    void texts_nameAFamilyThatReadersHave();
    void title_isTheGraphsName();
    void title_ofOddNames_isVisible();
    void sourceDate_isTheFilesDate();
    void sourceDate_makesEqualFiles_data();
    void sourceDate_makesEqualFiles();
    void pdf_isExactlyAsLargeAsItsPixels_data();
    void pdf_isExactlyAsLargeAsItsPixels();
};

void TestVectorFiles::svg_looksLikeThePng()
{
    QFETCH(QString, sample);
    Write(Path("a.plf"), Sample(sample));
    ConvertWell("--background file a.plf a.png");
    ConvertWell("--background file a.plf a.svg");
    QVERIFY(!ReadFile(Path("a.svg")).contains("<image")); // vectors are vectors
    QVERIFY(LookAlike(Loaded(Path("a.png")), RenderedSvg(Path("a.svg")), kEdgeTolerance));
}

void TestVectorFiles::pdf_looksLikeThePng()
{
    QFETCH(QString, sample);
    Write(Path("a.plf"), Sample(sample));
    ConvertWell("--background file --width 1280 a.plf a.png");
    ConvertWell("--background file --width 1280 a.plf a.pdf");
    const QImage png = Loaded(Path("a.png"));
    QVERIFY(LookAlike(png, RenderedPdf(Path("a.pdf"), png.size()), kPopplerTolerance));
    // Two lines of heading and no picture.
    QCOMPARE(RunTool(Text("pdfimages"), {Text("-list"), Path("a.pdf")}).count('\n'), 2);
}

// With lines of seven units: vector files have none below a pixel, deliberately.
void TestVectorFiles::seededStreams_lookLikeThePng()
{
    constexpr unsigned kStreams = 200;
    for (unsigned seed = 1; seed <= kStreams; ++seed)
        Write(Path(QString::number(seed) + Text(".plf")), SeededGraph(seed));
    for (const char* format : {"png", "svg", "pdf"})
        QCOMPARE(Run({Text("--background"), Text("file"), Text("--min-line-width"), Text("14"),
                      Text("--format"), Text(format), Text("--output-dir"), Text("."), Text(".")})
                     .code,
                 0);
    QStringList different;
    for (unsigned seed = 1; seed <= kStreams; ++seed) {
        const QString base = Path(QString::number(seed));
        const QImage png = Loaded(base + Text(".png"));
        if (!LookAlike(png, RenderedSvg(base + Text(".svg")), kEdgeTolerance))
            different += QStringLiteral("%1.svg").arg(seed);
        if (!LookAlike(png, RenderedPdf(base + Text(".pdf"), png.size()), kPopplerTolerance))
            different += QStringLiteral("%1.pdf").arg(seed);
    }
    QCOMPARE(different, QStringList());
}

// At a tolerance that a missing tip would exceed.
void TestVectorFiles::wideCorners_lookLikeThePng()
{
    Write(Path("a.plf"), WideCorners());
    ConvertWell("a.plf a.png");
    ConvertWell("a.plf a.svg");
    ConvertWell("a.plf a.pdf");
    const QImage png = Loaded(Path("a.png"));
    const auto differing = [&png](const QImage& other) {
        int pixels = 0;
        for (int y = 0; y < png.height(); ++y) {
            for (int x = 0; x < png.width(); ++x)
                pixels += std::abs(qGray(png.pixel(x, y)) - qGray(other.pixel(x, y))) > 128 ? 1 : 0;
        }
        return pixels;
    };
    QCOMPARE(differing(RenderedSvg(Path("a.svg"))), 0);
    QVERIFY(differing(RenderedPdf(Path("a.pdf"), png.size())) < 10);
}

void TestVectorFiles::areas_lookLikeThePng_data()
{
    QTest::addColumn<QString>("options");
    for (const char* options : {"--area 1000,500,3000,1500", "--area 2300,1000,3300,2500",
                                "--area 1200,2500,1300,2600", "--size 300x500 --line-scale 1"})
        QTest::newRow(options) << Text(options);
}

void TestVectorFiles::areas_lookLikeThePng()
{
    QFETCH(QString, options);
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    for (const char* name : {"a.png", "a.svg", "a.pdf"})
        QCOMPARE(Run(options.split(u' ') +
                     QStringList{Text("--background"), Text("file"), Text("a.plf"), Text(name)})
                     .code,
                 0);
    const QImage png = Loaded(Path("a.png"));
    QVERIFY(LookAlike(png, RenderedSvg(Path("a.svg")), kPopplerTolerance));
    QVERIFY(LookAlike(png, RenderedPdf(Path("a.pdf"), png.size()), kPopplerTolerance));
}

void TestVectorFiles::joinedVectors_areOneLine()
{
    Write(Path("a.plf"),
          Bytes(plf::Start() + plf::Line(100, 3020, 110, 3000) + plf::Draw(120, 2970) +
                plf::Draw(125, 2900) + plf::Line(200, 3020, 300, 3021) + plf::End()));
    ConvertWell("a.plf a.svg");
    QCOMPARE(PathData(ReadSvg(Path("a.svg"))), QStringList(Text("m100 100 10 20 10 30 5 70"
                                                                "m75-120 100-1")));
}

void TestVectorFiles::pens_beginNewLines()
{
    Write(Path("a.plf"),
          Bytes(plf::Start() + plf::ColorMapEntry(1, 90, 50, 100) + plf::Width(20) +
                plf::Line(100, 3020, 110, 3020) + plf::LineIndex(1) + plf::Draw(120, 3020) +
                plf::Width(40) + plf::Draw(130, 3020) + plf::End()));
    ConvertWell("a.plf a.svg");
    QStringList pens;
    const Svg svg = ReadSvg(Path("a.svg"));
    for (const QXmlStreamAttributes& path : svg.paths)
        pens += path.value(Text("stroke")).toString() + u' ' +
                path.value(Text("stroke-width")).toString();
    QCOMPARE(pens, QStringList({Text("#000000 10"), Text("#ff0000 10"), Text("#ff0000 20")}));
    QCOMPARE(PathData(svg),
             QStringList({Text("m100 100 10 0"), Text("m110 100 10 0"), Text("m120 100 10 0")}));
}

// 320 units are 50 pixels.
void TestVectorFiles::dots_areSquaresOfTheirPen()
{
    Write(Path("a.plf"), Bytes(plf::Start() + plf::Width(640) + plf::Line(2048, 1560, 2048, 1560) +
                               plf::Line(2208, 1560, 2208, 1560) + plf::End()));
    ConvertWell("a.plf a.svg");
    ConvertWell("a.plf a.pdf");
    const auto black = [](const QImage& image) {
        QRect found;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                found |= qGray(image.pixel(x, y)) < 128 ? QRect(x, y, 1, 1) : QRect();
        }
        return qGray(image.pixel(332, 243)) < 128 ? found : QRect(); // where both are
    };
    QCOMPARE(black(RenderedSvg(Path("a.svg"))), QRect(295, 219, 75, 49));
    QCOMPARE(black(RenderedPdf(Path("a.pdf"), kDefaultSize)), QRect(295, 219, 75, 49));
}

void TestVectorFiles::millionJoinedVectors_areSmall()
{
    Write(Path("a.plf"), Walk());
    ConvertWell("a.plf a.svg");
    ConvertWell("a.plf a.pdf");
    ConvertWell("a.plf a.png");
    QVERIFY(Size(Path("a.svg")) <= 12 * kMegabyte);
    QVERIFY(Size(Path("a.pdf")) <= 44 * kMegabyte / 10);
    const QImage png = Loaded(Path("a.png"));
    QVERIFY(LookAlike(png, RenderedSvg(Path("a.svg")), kEdgeTolerance));
    QVERIFY(LookAlike(png, RenderedPdf(Path("a.pdf"), png.size()), kPopplerTolerance));
}

void TestVectorFiles::millionSeparateVectors_areSmall()
{
    Write(Path("a.plf"), Mesh());
    ConvertWell("a.plf a.svg");
    ConvertWell("a.plf a.pdf");
    QVERIFY(Size(Path("a.svg")) <= 30 * kMegabyte);
    QVERIFY(Size(Path("a.pdf")) <= 12 * kMegabyte);
    QCOMPARE(RenderedSvg(Path("a.svg")).size(), kDefaultSize);
    QCOMPARE(RenderedPdf(Path("a.pdf"), kDefaultSize).size(), kDefaultSize);
}

// The graph is read as a whole and takes 6 of the megabytes.
void TestVectorFiles::millionVectors_needLittleMemory()
{
    if (kSanitized)
        QSKIP("A sanitizer takes more memory than the limit allows.");
    Write(Path("a.plf"), Walk());
    ConvertWell("--memory 64 a.plf a.svg");
    QVERIFY(Size(Path("a.svg")) > kMegabyte);
}

void TestVectorFiles::area_leavesOutWhatIsOutside_data()
{
    QTest::addColumn<QString>("format");
    for (const char* format : {"svg", "pdf", "eps"})
        QTest::newRow(format) << Text(format);
}

void TestVectorFiles::area_leavesOutWhatIsOutside()
{
    QFETCH(QString, format);
    std::string outside = plf::Text(3000, 100, "outside") + plf::Move(2000, 3000);
    for (int i = 0; i < 2000; ++i)
        outside += plf::Draw(2000 + i, 3000 - i % 7);
    const std::string inside = plf::Text(500, 500, "inside") + plf::Line(400, 400, 600, 600);
    QVERIFY(QDir(folder->path()).mkpath(Text("both")) && QDir(folder->path()).mkpath(Text("one")));
    Write(Path("both/a.plf"), Bytes(plf::Start() + outside + inside + plf::End()));
    Write(Path("one/a.plf"), Bytes(plf::Start() + inside + plf::End()));
    environment.insert(Text("SOURCE_DATE_EPOCH"), Text("1"));
    for (const char* name : {"both", "one"}) {
        const Call call = Run({Text("--area"), Text("300,2300,900,2800"), Text("-f"), format,
                               Text(name) + Text("/a.plf"), Text(name) + Text("/a")});
        QCOMPARE(call.code, 0);
    }
    QCOMPARE(ReadFile(Path("both/a")), ReadFile(Path("one/a")));
}

void TestVectorFiles::epsOfAnArea_breaksLinesThatLeaveIt()
{
    Write(Path("a.plf"),
          Bytes(plf::Start() + plf::Line(100, 3020, 110, 3000) + plf::Draw(3000, 500) +
                plf::Draw(3000, 600) + plf::Draw(130, 2990) + plf::Draw(140, 2980) + plf::End()));
    ConvertWell("--area 0,0,400,400 a.plf a.eps");
    const QByteArray eps = ReadFile(Path("a.eps"));
    QVERIFY2(eps.contains("100 3020 moveto 110 3000 lineto 3000 500 lineto "
                          "3000 600 moveto 130 2990 lineto 140 2980 lineto"),
             eps.constData());
}

void TestVectorFiles::texts_areWholeAndFound()
{
    const char* text = "20 °C, 5 µm, ½ Ω  <&> \"日本\" end";
    Write(Path("a.plf"),
          Bytes(plf::Start() + plf::Text(500, 500, text) + plf::Text(500, 900, "b") + plf::End()));
    ConvertWell("a.plf a.svg");
    QCOMPARE(ReadSvg(Path("a.svg")).texts, QStringList({Text(text), Text("b")}));
    const char* common = "20 °C, 5 µm, ½ Ω <&> end";
    Write(Path("a.plf"), Bytes(plf::Start() + plf::Text(500, 500, common) + plf::End()));
    ConvertWell("a.plf a.pdf");
    QCOMPARE(RunTool(Text("pdftotext"), {Path("a.pdf"), Text("-")}).trimmed(), QByteArray(common));
    const QRegularExpression embedded(Text("Identity-H +yes (yes|no) +yes "));
    for (const QByteArray& line : RunTool(Text("pdffonts"), {Path("a.pdf")}).split('\n').sliced(2))
        QVERIFY2(line.isEmpty() || embedded.match(Text(line)).hasMatch(), line.constData());
}

void TestVectorFiles::texts_ofOddCharacters_areValid()
{
    Write(Path("a.plf"), Bytes(plf::Start() + plf::Text(500, 500, "a\x01\tb\r\nc") +
                               plf::Text(500, 600, "\xed\xa0\x80\xef\xbf\xbf") + plf::End()));
    ConvertWell("a.plf a.svg");
    const Svg svg = ReadSvg(Path("a.svg"));
    QCOMPARE(svg.error, QString());
    QCOMPARE(svg.texts.size(), 2);
    QCOMPARE(svg.texts[0], Text("a\xef\xbf\xbd b  c"));
}

void TestVectorFiles::texts_nameAFamilyThatReadersHave()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.svg");
    const QString family = ReadSvg(Path("a.svg")).family;
    QVERIFY2(family.endsWith(Text("sans-serif")), qPrintable(family));
    QVERIFY(!family.contains(Text("Sans Serif")));
}

void TestVectorFiles::title_isTheGraphsName()
{
    Write(Path("Größe <1>.plf"), SmallGraph());
    QCOMPARE(Run({Path("Größe <1>.plf"), Text("a.svg")}).code, 0);
    QCOMPARE(Run({Path("Größe <1>.plf"), Text("a.pdf")}).code, 0);
    QCOMPARE(ReadSvg(Path("a.svg")).title, Text("Größe <1>.plf"));
    QCOMPARE(PdfFact(Path("a.pdf"), "Title"), QByteArray("Größe <1>.plf"));
    const Call call = Run("-f svg - -", SmallGraph());
    QVERIFY(call.output.contains("<title>KORVEL graph</title>"));
}

void TestVectorFiles::title_ofOddNames_isVisible()
{
    QVERIFY(WriteFile(folder->path().toStdString() + "/\x1b\xff.plf", SmallGraph()));
    const Call call = Run("--output-dir out -f svg .");
    QCOMPARE(call.code, 0);
    QProcess shell;
    shell.setWorkingDirectory(Path("out"));
    shell.start(Text("bash"), {Text("-c"), Text("cat ./*")});
    QVERIFY(shell.waitForFinished(kTimeout));
    const QByteArray svg = shell.readAllStandardOutput();
    QVERIFY2(svg.contains("<title>\\x1b\\xff.plf</title>"), svg.constData());
    std::filesystem::remove_all(folder->path().toStdString()); // Qt cannot: the name is no text
}

void TestVectorFiles::sourceDate_isTheFilesDate()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    environment.insert(Text("SOURCE_DATE_EPOCH"), Text("1000000000"));
    ConvertWell("a.plf a.pdf");
    QCOMPARE(PdfFact(Path("a.pdf"), "CreationDate"), QByteArray("2001-09-09T01:46:40Z"));
}

void TestVectorFiles::sourceDate_makesEqualFiles_data()
{
    QTest::addColumn<QString>("format");
    for (const char* format : {"png", "jpg", "svg", "pdf", "eps"})
        QTest::newRow(format) << Text(format);
}

// Also in another time zone.
void TestVectorFiles::sourceDate_makesEqualFiles()
{
    QFETCH(QString, format);
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    environment.insert(Text("SOURCE_DATE_EPOCH"), Text("1000000000"));
    QCOMPARE(Run({Text("-f"), format, Text("a.plf"), Text("first")}).code, 0);
    environment.insert(Text("TZ"), Text("EST5"));
    QCOMPARE(Run({Text("-f"), format, Text("a.plf"), Text("second")}).code, 0);
    QCOMPARE(ReadFile(Path("second")), ReadFile(Path("first")));
}

void TestVectorFiles::pdf_isExactlyAsLargeAsItsPixels_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("size");
    QTest::newRow("whole") << Text("--size 1500x900 --dpi 300") << QByteArray("360 x 216 pts");
    QTest::newRow("fraction") << Text("--width 1280") << QByteArray("960 x 731.25 pts");
    QTest::newRow("shorter than rounded")
        << Text("--size 1333x1333") << QByteArray("999.75 x 999.75 pts");
    QTest::newRow("smallest") << Text("--size 1x1 --dpi 1200") << QByteArray("0.06 x 0.06 pts");
}

void TestVectorFiles::pdf_isExactlyAsLargeAsItsPixels()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, size);
    Write(Path("a.plf"), SmallGraph());
    QCOMPARE(Run(options.split(u' ') + QStringList{Text("a.plf"), Text("a.pdf")}).code, 0);
    QCOMPARE(PdfFact(Path("a.pdf"), "Page size"), size);
}

QTEST_MAIN(TestVectorFiles)
#include "test_vectorfiles.moc"
