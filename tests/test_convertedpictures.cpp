// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The pictures that the converter makes, against a plain painting of what the graph holds.
#include "meta/palette.h"
#include "tests/converter.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/files.h"
#include "tests/kit/graph.h"
#include "tests/kit/plainpainter.h"
#include "tests/kit/plf.h"
#include "tests/likeness.h"
#include "tests/reference/reference.h"
#include "tests/reference/streams.h"

#include <QImage>
#include <QtTest>

#include <algorithm>

namespace {

QStringList Operations(const QByteArray& graph, const reference::View& view)
{
    QStringList operations;
    for (const std::string& operation : reference::Draw(graph.toStdString(), view).operations)
        operations += QString::fromStdString(operation);
    return operations;
}

reference::View ViewOf(bool whiteBackground, double widthScale = 1.0)
{
    reference::View view;
    view.whiteBackground = whiteBackground;
    view.widthScale = widthScale;
    return view;
}

// As a picture file has it.
QImage Stored(const QImage& image)
{
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                         : QImage::Format_RGB32);
}

// What options ask for, read in the plainest way.
class Wish
{
public:
    explicit Wish(const QStringList& options)
        : words(options), area(Value("--area", "0,0,4096,3120").split(u',')),
          background(Value("--background", "white"))
    {
    }

    [[nodiscard]] reference::View View() const
    {
        // As a window of that width has them, zoomed to the area.
        const double viewers =
            Size().width() / 640.0 * (4096.0 / (area[2].toInt() - area[0].toInt()));
        const QString scale = Value("--line-scale", "");
        reference::View view =
            ViewOf(background != u"file", scale.isEmpty() ? viewers : scale.toDouble());
        if (words.contains(Text("--area"))) {
            view.zoomLeft = area[0].toLong();
            view.zoomTop = area[1].toLong();
            view.zoomRight = area[2].toLong();
            view.zoomBottom = area[3].toLong();
        }
        return view;
    }

    [[nodiscard]] QSize Size() const
    {
        const QStringList sides = Value("--size", "").split(u'x');
        if (sides.size() == 2)
            return {sides[0].toInt(), sides[1].toInt()};
        const int width = Value("--width", "640").toInt();
        return {width,
                width * (area[3].toInt() - area[1].toInt()) / (area[2].toInt() - area[0].toInt())};
    }

    [[nodiscard]] QImage::Format Format() const
    {
        return background == u"transparent" ? QImage::Format_ARGB32_Premultiplied
                                            : QImage::Format_RGB32;
    }

    // The operation as it shall be painted: one or none.
    [[nodiscard]] QStringList Changed(const QString& operation) const
    {
        QStringList parts = operation.split(u' ');
        if (parts[0] == u"fill" && background == u"transparent")
            return {};
        if (parts[0] == u"line") {
            const int thinnest = Value("--min-line-width", "0").toInt() / 2;
            parts[6] = QString::number(std::max(parts[6].toInt(), thinnest));
        }
        if (words.contains(Text("--black")) && parts[0] == u"line")
            parts[5] = Text("#000000");
        if (words.contains(Text("--black")) && parts[0] == u"text")
            parts[3] = Text("#000000");
        return {parts.join(u' ')};
    }

private:
    [[nodiscard]] QString Value(const char* name, const char* otherwise) const
    {
        const qsizetype at = words.indexOf(Text(name));
        return at < 0 ? Text(otherwise) : words[at + 1];
    }

    QStringList words;
    QStringList area;
    QString background;
};

} // namespace

class TestConvertedPictures : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void initTestCase() { initGraphics(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void png_isAPlainPaintingOfTheGraph_data();
    void png_isAPlainPaintingOfTheGraph();
    void png_ofSeededStreams_isTheirPlainPainting();
    void png_knowsItsResolution();
    void jpeg_looksLikeThePng();
    void jpeg_ofLowerQuality_isSmaller();
    void pdf_page_hasTheLengthsAskedFor_data();
    void pdf_page_hasTheLengthsAskedFor();
    void page_hasTheGraphInItsMiddle();
    void eps_hasTheExactWidth_data();
    void eps_hasTheExactWidth();
    void eps_hasDots_ifAsked();
    void eps_isTheViewers_data() { SampleRows(); }
    void eps_isTheViewers();
    void eps_ofSeededStreams_isTheViewers();
    void eps_takesTheOptions();

    void format_mayDifferFromTheExtension();
};

void TestConvertedPictures::png_isAPlainPaintingOfTheGraph_data()
{
    QTest::addColumn<QString>("sample");
    QTest::addColumn<QString>("options");
    for (const char* sample : {"tour.plf", "energy.plf", "bode.plf"}) {
        for (const char* options :
             {"", "--background file", "--background transparent", "--width 1000",
              "--size 300x500 --background file", "--line-scale 2.5", "--area 1000,500,3000,1500",
              "--area 2300,1000,3300,2500 --background transparent --width 300", "--black",
              "--min-line-width 20", "--min-line-width 21 --black --background file", "--dpi 300"})
            QTest::addRow("%s %s", sample, options) << Text(sample) << Text(options);
    }
}

// What the options say, done to the operations of the second interpreter.
void TestConvertedPictures::png_isAPlainPaintingOfTheGraph()
{
    QFETCH(QString, sample);
    QFETCH(QString, options);
    const QByteArray graph = Sample(sample);
    Write(Path("graph.plf"), graph);
    const QStringList words = options.split(u' ', Qt::SkipEmptyParts);
    const Call call = Run(words + QStringList{Text("graph.plf"), Text("graph.png")});
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);

    const Wish wish(words);
    QStringList expected;
    for (const QString& operation : Operations(graph, wish.View()))
        expected += wish.Changed(operation);
    QCOMPARE(Loaded(Path("graph.png")), Stored(PaintPlainly(expected, wish.Size(), wish.Format())));
}

// In one call, with their own backgrounds.
void TestConvertedPictures::png_ofSeededStreams_isTheirPlainPainting()
{
    constexpr unsigned kStreams = 80;
    for (unsigned seed = 1; seed <= kStreams; ++seed)
        Write(Path(QString::number(seed) + Text(".plf")), SeededGraph(seed));
    const Call call = Run("--background file --output-dir out .");
    // Nearly all of them are damaged.
    QVERIFY2(call.output.startsWith("80 files: 80 converted, 0 failed; "), call.output.constData());
    QCOMPARE(call.code, 0);
    for (unsigned seed = 1; seed <= kStreams; ++seed) {
        const QStringList operations = Operations(SeededGraph(seed), ViewOf(false));
        QCOMPARE(Loaded(Path(QStringLiteral("out/%1.png").arg(seed))),
                 PaintPlainly(operations, kDefaultSize));
    }
}

void TestConvertedPictures::png_knowsItsResolution()
{
    Write(Path("a.plf"), SmallGraph());
    ConvertWell("a.plf a.png");
    QCOMPARE(QImage(Path("a.png")).dotsPerMeterX(), 3780); // 96 per inch
    ConvertWell("--dpi 300 a.plf a.png");
    QCOMPARE(QImage(Path("a.png")).dotsPerMeterX(), 11811);
    QCOMPARE(QImage(Path("a.png")).dotsPerMeterY(), 11811);
}

void TestConvertedPictures::jpeg_looksLikeThePng()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.png");
    ConvertWell("a.plf a.jpg");
    QVERIFY(ReadFile(Path("a.jpg")).startsWith("\xff\xd8\xff"));
    QVERIFY(LookAlike(Loaded(Path("a.png")), Loaded(Path("a.jpg")), kJpegTolerance));
}

void TestConvertedPictures::jpeg_ofLowerQuality_isSmaller()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.jpg");
    ConvertWell("--quality 20 a.plf b.jpeg");
    QVERIFY(ReadFile(Path("b.jpeg")).size() < ReadFile(Path("a.jpg")).size() / 2);
    ConvertWell("--quality 90 a.plf c.jpg");
    QCOMPARE(ReadFile(Path("c.jpg")), ReadFile(Path("a.jpg"))); // which nobody gave a quality
}

void TestConvertedPictures::pdf_page_hasTheLengthsAskedFor_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("size"); // as pdfinfo says it
    const auto row = [](const char* options, const char* size) {
        QTest::newRow(options) << Text(options) << QByteArray(size);
    };
    row("--width 6in", "432 x 329.0");
    row("--width 100mm", "283.4");
    row("--page letter --margin 15mm", "792 x 612 ");
    row("--page 10x20cm", "283.4");
    row("--width 40000 --dpi 400", "7200 x 5484"); // more pixels than an image may have
}

void TestConvertedPictures::pdf_page_hasTheLengthsAskedFor()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, size);
    Write(Path("a.plf"), SmallGraph());
    ConvertWell((options + Text(" a.plf a.pdf")).toLatin1().constData());
    const QByteArray about = RunTool(Text("pdfinfo"), {Path("a.pdf")});
    QVERIFY2(about.contains("Page size:       " + size), about.constData());
}

// A page with a margin has the graph in its middle, and nothing around it.
void TestConvertedPictures::page_hasTheGraphInItsMiddle()
{
    const std::string graph =
        plf::Start() + plf::Line(0, 1, 4095, 1) + plf::Line(0, 1, 0, 3119) + plf::End();
    Write(Path("a.plf"), QByteArray::fromStdString(graph));
    ConvertWell("--page letter --margin 36pt --dpi 72 a.plf a.png");
    const QImage page = Loaded(Path("a.png"));
    QCOMPARE(page.size(), QSize(792, 612));
    QRect dark;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            if (qGray(page.pixel(x, y)) < 128)
                dark |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(QRect(42, 36, 709, 540).contains(dark));
    QVERIFY(dark.width() >= 706 && dark.height() >= 537);
}

void TestConvertedPictures::eps_hasTheExactWidth_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("box");
    QTest::newRow("points") << QStringLiteral("--width 100pt") << QByteArray("0 0 100 77\n");
    QTest::newRow("pixels") << QStringLiteral("--width 100") << QByteArray("0 0 75 58\n");
    QTest::newRow("page") << QStringLiteral("--page letter --margin 36pt")
                          << QByteArray("0 0 709 540\n");
    QTest::newRow("huge") << QStringLiteral("--width 40000pt") << QByteArray("0 0 40000 30469\n");
}

void TestConvertedPictures::eps_hasTheExactWidth()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, box);
    Write(Path("a.plf"), SmallGraph());
    ConvertWell((options + Text(" a.plf a.eps")).toLatin1().constData());
    const QByteArray eps = ReadFile(Path("a.eps"));
    QVERIFY2(eps.contains("%%BoundingBox: " + box), eps.left(300).constData());
}

void TestConvertedPictures::eps_hasDots_ifAsked()
{
    const std::string graph = plf::Start() + plf::Width(40) + plf::Line(1000, 500, 1000, 500);
    Write(Path("a.plf"), QByteArray::fromStdString(graph + plf::End()));
    ConvertWell("a.plf a.eps");
    ConvertWell("--dots a.plf b.eps");
    QVERIFY(!ReadFile(Path("a.eps")).contains("rectfill"));
    QVERIFY(ReadFile(Path("b.eps")).contains(" 980.00 480.00 40 40 rectfill "));
}

void TestConvertedPictures::eps_isTheViewers()
{
    QFETCH(QString, sample);
    const QByteArray graph = Sample(sample);
    Write(Path("a.plf"), graph);
    ConvertWell("a.plf a.eps");
    LoadBytes(graph);
    QCOMPARE(ReadFile(Path("a.eps")), Eps());
    // These say what the viewer does anyway.
    ConvertWell("--background white --line-scale 1 --min-line-width 5 a.plf b.eps");
    QCOMPARE(ReadFile(Path("b.eps")), ReadFile(Path("a.eps")));
}

void TestConvertedPictures::eps_ofSeededStreams_isTheViewers()
{
    constexpr unsigned kStreams = 200;
    for (unsigned seed = 1; seed <= kStreams; ++seed)
        Write(Path(QString::number(seed) + Text(".plf")),
              QByteArray::fromStdString(streams::Make(seed)));
    QCOMPARE(Run("--format eps --output-dir out .").code, 0);
    for (unsigned seed = 1; seed <= kStreams; ++seed) {
        const std::string expected = reference::DrawEps(streams::Make(seed), ViewOf(true), {});
        QCOMPARE(ReadFile(Path(QStringLiteral("out/%1.eps").arg(seed))),
                 QByteArray::fromStdString(expected));
    }
}

void TestConvertedPictures::eps_takesTheOptions()
{
    const std::string graph =
        plf::WithBackground(plf::Start() + plf::Width(7) + plf::Line(0, 0, 4095, 3119), 10) +
        plf::End();
    Write(Path("a.plf"), QByteArray::fromStdString(graph));
    ConvertWell("--width 1024 --dpi 72 --background file --black --min-line-width 9 "
                "--area 100,200,2148,1760 --line-scale 2 a.plf a.eps");
    reference::View view = ViewOf(false, 2.0);
    view.zoomLeft = 100;
    view.zoomTop = 200;
    view.zoomRight = 2148;
    view.zoomBottom = 1760;
    reference::EpsOptions options;
    options.scale = 0.5;
    options.minLineWidth = 9;
    options.linesToBlack = true;
    options.fillBackground = true;
    options.backgroundIndex = 10;
    QCOMPARE(ReadFile(Path("a.eps")),
             QByteArray::fromStdString(reference::DrawEps(graph, view, options)));
}

void TestConvertedPictures::format_mayDifferFromTheExtension()
{
    Write(Path("a.plf"), SmallGraph());
    ConvertWell("--format png a.plf thumbnail");
    QVERIFY(ReadFile(Path("thumbnail")).startsWith("\x89PNG"));
    ConvertWell("--format svg a.plf b.png");
    QVERIFY(ReadFile(Path("b.png")).startsWith("<?xml"));
}

QTEST_MAIN(TestConvertedPictures)
#include "test_convertedpictures.moc"
