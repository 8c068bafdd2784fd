// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Exported pictures beside those of one call of Qt for each line, byte for byte, and other pictures
// that somebody makes of the view.
#include "tests/kit/bandpicture.h"
#include "tests/kit/exporting.h"
#include "tests/kit/graph.h"
#include "tests/kit/plainpainter.h"
#include "tests/kit/recorder.h"
#include "tests/kit/sanitized.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

using fixture::kUsualView;
using fixture::Settle;
using fixture::Window;

namespace {

constexpr int kManyLines = 40000; // worth another thread

// The last one is not the graph's shape, and its pixels are no whole number at any ratio.
constexpr QSize kSizes[] = {{512, 390}, {641, 447}};

QByteArray Jpeg(const QImage& image)
{
    constexpr int kBest = 100;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", kBest);
    return bytes;
}

QStringList Operations(DrawView& view)
{
    Recorder recorder(view.size());
    QPainter painter(&recorder);
    view.drawIt(&painter);
    return recorder.Operations();
}

// The pixels of the view, with nothing in it.
QImage Empty(const DrawView& view)
{
    const double ratio = view.devicePixelRatioF();
    QImage image((QSizeF(view.size()) * ratio).toSize(), QImage::Format_RGB32);
    image.fill(view.palette().color(QPalette::Base));
    image.setDevicePixelRatio(ratio);
    return image;
}

void PaintPlainlyOn(QPainter& painter, DrawView& view)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(view.font());
    painter.setViewport(view.rect());
    painter.setWindow(view.rect());
    PaintPlainly(Operations(view), painter);
}

QImage PlainPicture(DrawView& view)
{
    QImage image = Empty(view);
    QPainter painter(&image);
    PaintPlainlyOn(painter, view);
    return image;
}

qsizetype Threads()
{
    const QDir tasks(QStringLiteral("/proc/self/task"));
    return tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace

Q_DECLARE_METATYPE(QPainter::CompositionMode)

class TestExportPixels : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init()
    {
        Begin();
        gbBkClrWhite = false;
    }
    void cleanup()
    {
        End();
        qunsetenv("PLOTVW_THREADS");
    }

    void largeGraph_isDrawnByThreads(); // the first one: they stay for a while
    void samples_equalPlainLines_data();
    void samples_equalPlainLines();
    void seededGraphs_equalPlainLines();
    void viewNeverShown_equalsPlainLines();
    void pictureAlreadyShown_isExportedAlike();
    void pictureElsewhere_isTheView_data();
    void pictureElsewhere_isTheView();
    void recordedPicture_hasTheSameOperations();

private:
    [[nodiscard]] QByteArray Exported(const Window& window) const;
    void Compare(const std::string& path);
    void CompareSizes(Window& window) const;
    [[nodiscard]] std::string Seeded(unsigned seed, int lines = 100) const
    {
        constexpr int kWidths[] = {0, 4, 16, 80};
        return directories->Write("seeded.plf", SeededGraph(seed, kWidths[seed % 4], true, lines));
    }
};

// As a command line asks for it, so that no dialog comes.
QByteArray TestExportPixels::Exported(const Window& window) const
{
    const std::string path = Path("out.jpg");
    QFile::remove(QString::fromStdString(path));
    [&] { QVERIFY(CopyText(gszCvtFilenameBase, path.c_str())); }();
    giCmdArg = 2;
    window->ExportJpeg();
    return ReadFile(path);
}

void TestExportPixels::CompareSizes(Window& window) const
{
    for (const QSize size : kSizes) {
        window.ResizeView(size);
        Settle();
        const QByteArray plain = Jpeg(PlainPicture(*window->view));
        for (const char* threads : {"1", "2"}) {
            qputenv("PLOTVW_THREADS", threads);
            QVERIFY2(Exported(window) == plain, threads);
        }
    }
}

void TestExportPixels::Compare(const std::string& path)
{
    Window window;
    OpenView(window, path);
    CompareSizes(window);
    window.ResizeView(kUsualView);
    Settle(); // a repaint between press and release would show a pixel of the graph
    Zoom(window);
    CompareSizes(window);
}

void TestExportPixels::largeGraph_isDrawnByThreads()
{
    qputenv("PLOTVW_THREADS", "1");
    Window window;
    OpenView(window, Seeded(2, kManyLines));
    const QByteArray one = Exported(window);
    const qsizetype before = Threads();
    qputenv("PLOTVW_THREADS", "2");
    QVERIFY(Exported(window) == one);
    QCOMPARE(Threads(), before + 1);
    QVERIFY(one == Jpeg(PlainPicture(*window->view)));
}

void TestExportPixels::samples_equalPlainLines_data()
{
    QTest::addColumn<std::string>("path");
    const QDir samples(QStringLiteral(PLOTVW_SAMPLES));
    for (const QFileInfo& sample : samples.entryInfoList({QStringLiteral("*.plf")}))
        QTest::newRow(qPrintable(sample.baseName())) << sample.filePath().toStdString();
}

void TestExportPixels::samples_equalPlainLines()
{
    QFETCH(std::string, path);
    Compare(path);
}

void TestExportPixels::seededGraphs_equalPlainLines()
{
    constexpr unsigned kSeeds = kSanitized ? 2 : 8;
    for (unsigned seed = 0; seed < kSeeds; ++seed)
        Compare(Seeded(seed));
}

// Its window has no screen, and nothing was painted before.
void TestExportPixels::viewNeverShown_equalsPlainLines()
{
    Window window;
    window.AddViewOf(Seeded(2, kManyLines));
    window->view->resize(kUsualView);
    qputenv("PLOTVW_THREADS", "2");
    const QImage grabbed = window->view->grab().toImage();
    QCOMPARE(grabbed.convertToFormat(QImage::Format_RGB32), PlainPicture(*window->view));
}

void TestExportPixels::pictureAlreadyShown_isExportedAlike()
{
    qputenv("PLOTVW_THREADS", "2");
    Window window;
    OpenView(window, Seeded(2, kManyLines));
    window->view->repaint();
    const QByteArray first = Exported(window);
    QVERIFY(first == Jpeg(PlainPicture(*window->view)));
    Zoom(window);
    QVERIFY(Exported(window) != first);
    QVERIFY(Exported(window) == Jpeg(PlainPicture(*window->view)));
}

void TestExportPixels::pictureElsewhere_isTheView_data()
{
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<QPainter::CompositionMode>("mode");
    QTest::newRow("moved") << QPoint(7, 5) << QPainter::CompositionMode_SourceOver;
    QTest::newRow("mixed") << QPoint(0, 0) << QPainter::CompositionMode_Multiply;
}

// Where the view is not all there is, or is mixed with what is there.
void TestExportPixels::pictureElsewhere_isTheView()
{
    QFETCH(QPoint, place);
    QFETCH(QPainter::CompositionMode, mode);
    constexpr QRgb kGround = 0xFF0010FF;
    Window window;
    OpenView(window, GraphFile());
    QImage expected(kUsualView, QImage::Format_RGB32);
    expected.fill(kGround);
    QImage rendered = expected;
    QImage view = expected;
    view.fill(window->view->palette().color(QPalette::Base));
    QPainter plain(&view);
    PaintPlainlyOn(plain, *window->view);
    plain.end();
    QPainter mixing(&expected);
    mixing.setCompositionMode(mode);
    mixing.drawImage(place, view);
    mixing.end();
    QPainter painter(&rendered);
    painter.setCompositionMode(mode);
    window->view->render(&painter, place);
    painter.end();
    QVERIFY(fixture::IsNear(rendered, expected));
}

// No bands and no images: paper and vector pictures get lines.
void TestExportPixels::recordedPicture_hasTheSameOperations()
{
    qputenv("PLOTVW_THREADS", "2");
    Window window;
    OpenView(window, Seeded(2, kManyLines));
    Recorder recorder(kUsualView);
    window->view->render(&recorder);
    const QStringList operations = Operations(*window->view);
    QVERIFY(operations.size() > kManyLines);
    QCOMPARE(Drawn(recorder.Operations()), Drawn(operations));
}

QTEST_MAIN(TestExportPixels)
#include "test_exportpixels.moc"
