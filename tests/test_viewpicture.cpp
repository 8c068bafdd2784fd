// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the view draws, whole and zoomed, and where drawIt draws it.
#include "app/drawview.h"
#include "tests/kit/viewfixture.h"

#include <QFileDialog>
#include <QPrinter>
#include <QScreen>

using fixture::AreaUnder;
using fixture::Box;
using fixture::CrossFile;
using fixture::IsNear;
using fixture::kCross;
using fixture::kSelection;
using fixture::kViewSize;
using fixture::kWholeArea;
using fixture::Settle;
using fixture::View;
using fixture::Window;

namespace {

// What the cross looks like, painted here: the window mapping and the pen are the caller's.
QImage CrossPicture(QSize size, const QRect& area, int penWidth, const QColor& base)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(base);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setWindow(area);
    painter.fillRect(kWholeArea, QColor(0, 255, 0));
    painter.setPen(QPen(QColor(255, 0, 0), penWidth));
    for (const QLine& line : kCross)
        painter.drawLine(line.x1(), 3120 - line.y1(), line.x2(), 3120 - line.y2());
    return picture;
}

} // namespace

class TestViewPicture : public QObject, protected fixture::ViewTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void selecting_aRepaintShowsTheRectanglesPart();
    void drag_repaintsOnlyWhatTheBandChanges();
    void drag_leavesTheGraphAroundTheBandAsItWas_data();
    void drag_leavesTheGraphAroundTheBandAsItWas();
    void exposedPart_isDrawnAsInTheWholePicture_data();
    void exposedPart_isDrawnAsInTheWholePicture();

    void picture_wholeGraph_data();
    void picture_wholeGraph();
    void picture_zoomed_data();
    void picture_zoomed();
    void picture_whiteBackground_isWhite();
    void picture_withoutAFile_isTheBaseColor();
    void picture_afterAFailedLoad_isTheBaseColor();
    void picture_onTheScreen_isTheSame();
    void zoom_resizedWindow_keepsTheSelectionInPixels();
    void zoom_anotherFile_isKept();
    void zoom_refresh_endsIt();

    void drawIt_withoutAFile_touchesNothing();
    void drawIt_penWidth_followsTheViewsWidth_data();
    void drawIt_penWidth_followsTheViewsWidth();
    void drawIt_penWidth_growsWithTheZoom();
    void drawIt_printing_mapsThePage();
    void drawIt_withoutAPainter_walksTheFile();
    void drawIt_emptyRectangle_showsTheWholeGraph();
    void drawIt_viewWithoutASize_isSurvived();
    void drawIt_shortForms_areSlotsToo();
};

void TestViewPicture::selecting_aRepaintShowsTheRectanglesPart()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    view.Press(Qt::RightButton, {10, 10});
    view.Move({18, 26});
    QCOMPARE(view.Shown(), AreaUnder({{108, 96}, {308, 246}}, kViewSize));
}

// Everything under the band would be as slow as the whole graph.
void TestViewPicture::drag_repaintsOnlyWhatTheBandChanges()
{
    View view(Cross());
    view.BeginDrag({{100, 80}, {300, 230}});
    Settle();
    fixture::PaintLog paints(view.Get());
    view.Move({310, 240});
    Settle();
    QVERIFY(paints.Covers(QRect(100, 80, 210, 2)));
    QVERIFY(paints.Covers(QRect(298, 80, 12, 160)));
    QVERIFY(paints.Covers(QRect(100, 228, 210, 12)));
    QVERIFY(!paints.Touches(QRect(110, 90, 180, 130)));
    QVERIFY(!paints.Touches(QRect(320, 0, 100, 390)));
}

void TestViewPicture::drag_leavesTheGraphAroundTheBandAsItWas_data()
{
    QTest::addColumn<bool>("zoomed");
    QTest::newRow("whole graph") << false;
    QTest::newRow("zoomed") << true;
}

// What the band covered and uncovers again, and what it covered when it was hidden.
void TestViewPicture::drag_leavesTheGraphAroundTheBandAsItWas()
{
    QFETCH(bool, zoomed);
    View view(Cross());
    if (zoomed)
        view.Select(kSelection);
    const auto screen = [&view] {
        Settle();
        const QImage window = view->screen()->grabWindow(view.window->winId()).toImage();
        return window.copy(QRect(view->pos(), view->size()));
    };
    const QImage before = screen();
    view.Press(zoomed ? Qt::RightButton : Qt::LeftButton, {60, 50});
    for (const QPoint at : {QPoint(100, 90), QPoint(400, 300), QPoint(150, 120)})
        view.Move(at);
    const QRect band = view.Band()->geometry();
    QImage during = screen();
    QVERIFY(during != before);
    QPainter painter(&during);
    painter.drawImage(band.topLeft(), before, band);
    painter.end();
    QVERIFY(IsNear(during, before));
}

void TestViewPicture::exposedPart_isDrawnAsInTheWholePicture_data()
{
    QTest::addColumn<QRegion>("part");
    const QRegion frame = QRegion(50, 40, 300, 200) - QRegion(54, 44, 292, 192);
    QRegion manyParts;
    for (int i = 0; i < 20; ++i)
        manyParts += QRect(20 * i, 15 * i, 9, 7);
    QTest::newRow("strip") << QRegion(0, 200, 512, 10);
    QTest::newRow("frame") << frame;
    QTest::newRow("many parts") << manyParts;
    QTest::newRow("pixel on a line") << QRegion(125, 200, 1, 1);
}

void TestViewPicture::exposedPart_isDrawnAsInTheWholePicture()
{
    QFETCH(QRegion, part);
    View view(Cross());
    const QImage whole = view.Picture();
    QImage exposed(kViewSize, QImage::Format_RGB32);
    exposed.fill(Qt::magenta);
    QImage expected = exposed;
    view->render(&exposed, part.boundingRect().topLeft(), part);
    QPainter painter(&expected);
    painter.setClipRegion(part);
    painter.drawImage(0, 0, whole);
    painter.end();
    QVERIFY(IsNear(exposed, expected));
}

void TestViewPicture::picture_wholeGraph_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("penWidth");
    QTest::newRow("512 x 390") << QSize(512, 390) << 9;
    QTest::newRow("640 x 300") << QSize(640, 300) << 12;
    QTest::newRow("333 x 555") << QSize(333, 555) << 6;
}

void TestViewPicture::picture_wholeGraph()
{
    QFETCH(QSize, size);
    QFETCH(int, penWidth);
    const View view(Cross(), size);
    QCOMPARE(view.Picture(),
             CrossPicture(size, kWholeArea, penWidth, view->palette().color(QPalette::Base)));
}

void TestViewPicture::picture_zoomed_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<int>("penWidth");
    QTest::newRow("a quarter") << QSize(512, 390) << QPoint(128, 90) << QPoint(256, 188) << 38;
    QTest::newRow("off the pixel grid")
        << QSize(640, 301) << QPoint(101, 57) << QPoint(302, 209) << 38;
    QTest::newRow("flat") << QSize(512, 390) << QPoint(50, 100) << QPoint(350, 150) << 16;
    QTest::newRow("beyond the corner")
        << QSize(512, 390) << QPoint(384, 300) << QPoint(640, 480) << 19;
}

void TestViewPicture::picture_zoomed()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(int, penWidth);
    View view(Cross(), size);
    QPalette colors = view->palette();
    colors.setColor(QPalette::Base, Qt::magenta); // seen where the file ends
    view->setPalette(colors);
    view.Select({from, to});
    QCOMPARE(view.Picture(),
             CrossPicture(size, AreaUnder({from, to}, size), penWidth, Qt::magenta));
}

void TestViewPicture::picture_whiteBackground_isWhite()
{
    const View view(Cross());
    QCOMPARE(view.Picture().pixelColor(10, 10), QColor(0, 255, 0));
    gbBkClrWhite = true;
    QCOMPARE(view.Picture().pixelColor(10, 10), QColor(255, 255, 255));
}

void TestViewPicture::picture_withoutAFile_isTheBaseColor()
{
    Window window;
    dialogs->Expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    window.AddView();
    QVERIFY(window.Show());
    QPalette colors = window->view->palette();
    colors.setColor(QPalette::Base, Qt::cyan);
    window->view->setPalette(colors);
    QImage expected(window->view->size(), QImage::Format_RGB32);
    expected.fill(Qt::cyan);
    QCOMPARE(window->view->grab().toImage().convertToFormat(QImage::Format_RGB32), expected);
}

void TestViewPicture::picture_afterAFailedLoad_isTheBaseColor()
{
    const View view(Cross());
    Box box;
    fixture::ExpectBox(*dialogs, box);
    view.window->load(QString::fromStdString(directories->Path("none.plf")));
    QImage expected(kViewSize, QImage::Format_RGB32);
    expected.fill(view->palette().color(QPalette::Base));
    QCOMPARE(view.Picture(), expected);
}

// Not only what the view would draw, but what its window holds.
void TestViewPicture::picture_onTheScreen_isTheSame()
{
    View view(Cross());
    view.Select(kSelection);
    const QRect place(view->mapTo(view.window.Get(), QPoint(0, 0)), kViewSize);
    const QImage window = view.window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    QCOMPARE(window.copy(place), view.Picture());
}

void TestViewPicture::zoom_resizedWindow_keepsTheSelectionInPixels()
{
    View view(Cross());
    view.Select(kSelection);
    for (const QSize size : {QSize(700, 500), QSize(300, 390), QSize(512, 390)}) {
        view.Resize(size);
        QCOMPARE(view.Shown(), AreaUnder(kSelection, size));
    }
}

void TestViewPicture::zoom_anotherFile_isKept()
{
    View view(Cross());
    view.Select(kSelection);
    view.window->load(QString::fromStdString(directories->Write("b.plf", CrossFile())));
    QCOMPARE(view.window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    view.Press(Qt::LeftButton, {10, 10});
    QVERIFY2(!view.Band()->isVisible(), "still zoomed");
}

void TestViewPicture::zoom_refresh_endsIt()
{
    View view(Cross());
    const QImage whole = view.Picture();
    view.Select(kSelection);
    QVERIFY(view.Picture() != whole);
    QTest::keyClick(view.window.Get(), Qt::Key_Escape);
    QCOMPARE(view.Picture(), whole);
    view.Press(Qt::LeftButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), QRect(10, 10, 1, 1));
}

void TestViewPicture::drawIt_withoutAFile_touchesNothing()
{
    const View view(Cross());
    gszPlffileOrig[0] = 0;
    gdwVectorCnt = 77;
    QImage image(10, 10, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QPainter painter(&image);
    view->drawIt(&painter);
    QCOMPARE(painter.window(), QRect(0, 0, 10, 10));
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::blue));
    QCOMPARE(gdwVectorCnt, 77UL);
}

// The width of the pen that drew a file's last line.
static int LastPenWidth(DrawView& view, bool printing = false)
{
    QImage image(100, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    view.drawIt(&painter, printing);
    return painter.pen().width();
}

void TestViewPicture::drawIt_penWidth_followsTheViewsWidth_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("width");
    QTest::newRow("640") << QSize(640, 390) << 60;
    QTest::newRow("640, less high") << QSize(640, 200) << 60;
    QTest::newRow("320") << QSize(320, 390) << 30;
    QTest::newRow("1000") << QSize(1000, 390) << 93; // 187 units
}

void TestViewPicture::drawIt_penWidth_followsTheViewsWidth()
{
    QFETCH(QSize, size);
    QFETCH(int, width);
    const std::string file = plf::Start() + plf::Width(120) + plf::Line(0, 0, 9, 9) + plf::End();
    const View view(directories->Write("wide.plf", file), size);
    QCOMPARE(LastPenWidth(*view.Get()), width);
    // On paper a pen is not halved but doubled.
    QCOMPARE(LastPenWidth(*view.Get(), true), 2 * (120 * size.width() / 640));
}

void TestViewPicture::drawIt_penWidth_growsWithTheZoom()
{
    const std::string file = plf::Start() + plf::Width(20) + plf::Line(0, 0, 9, 9) + plf::End();
    View view(directories->Write("wide.plf", file), QSize(640, 390));
    view.Select({{100, 100}, {260, 200}});
    QCOMPARE(LastPenWidth(*view.Get()), 40); // four times as wide
    view.Resize(QSize(320, 390));
    QCOMPARE(LastPenWidth(*view.Get()), 10);
}

void TestViewPicture::drawIt_printing_mapsThePage()
{
    const View view(Cross());
    const QPrinter printer(QPrinter::HighResolution);
    QImage image(100, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    view->drawIt(&painter, true, 0);
    const double dpi = printer.logicalDpiX();
    QCOMPARE(painter.viewport(), QRect(static_cast<int>(dpi * 0.8), static_cast<int>(dpi * 0.6),
                                       static_cast<int>(dpi * 9.0), static_cast<int>(dpi * 6.855)));
    QPainter screen;
    painter.end();
    QVERIFY(screen.begin(&image));
    view->drawIt(&screen);
    QCOMPARE(screen.viewport(), QRect(0, 0, 100, 100));
}

void TestViewPicture::drawIt_withoutAPainter_walksTheFile()
{
    const View view(Cross());
    gdwVectorCnt = 0;
    view->drawIt(nullptr);
    QCOMPARE(gdwVectorCnt, 3UL);
}

// The rectangle of a right press at the start has no width: everything is divided by zero.
void TestViewPicture::drawIt_emptyRectangle_showsTheWholeGraph()
{
    View view(Cross());
    view.Press(Qt::RightButton, {40, 30});
    QCOMPARE(view.Shown(), kWholeArea);
    QCOMPARE(view.Picture().pixelColor(10, 10), QColor(0, 255, 0));
    view->repaint();
    QCOMPARE(gdwVectorCnt, 3UL);
}

void TestViewPicture::drawIt_viewWithoutASize_isSurvived()
{
    View view(Cross());
    view.Select(kSelection);
    view.window->takeCentralWidget();
    view->resize(0, 0);
    gdwVectorCnt = 0;
    view->drawIt(nullptr);
    QCOMPARE(gdwVectorCnt, 3UL);
    static_cast<void>(view.Shown());
    view.window->setCentralWidget(view.Get());
}

void TestViewPicture::drawIt_shortForms_areSlotsToo()
{
    const View view(Cross());
    QImage image(100, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    QPainter* target = &painter;
    gdwVectorCnt = 0;
    QVERIFY(QMetaObject::invokeMethod(view.Get(), "drawIt", Q_ARG(QPainter*, target)));
    QCOMPARE(gdwVectorCnt, 3UL);
    QCOMPARE(painter.viewport(), QRect(0, 0, 100, 100));
    QVERIFY(QMetaObject::invokeMethod(view.Get(), "drawIt", Q_ARG(QPainter*, target),
                                      Q_ARG(bool, true)));
    QVERIFY(painter.viewport() != QRect(0, 0, 100, 100));
}

QTEST_MAIN(TestViewPicture)
#include "test_viewpicture.moc"
