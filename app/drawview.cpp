// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/drawview.h"

#include "app/appwindow.h"
#include "app/globals.h"
#include "meta/plfmeta.h"
#include "support/numbers.h"

#include <QMouseEvent>
#include <QPrinter>
#include <QRubberBand>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

// A selection narrower than this is a click, pixels.
constexpr int kMinSelection = 20;
// View width that shows the file's line widths as they are, pixels.
constexpr double kUnitWidth = 640.0;

// Widest frame that a style draws around a rubber band, pixels.
constexpr int kBandFrame = 4;

QRect WithoutFrame(const QRect& band)
{
    return band.adjusted(kBandFrame, kBandFrame, -kBandFrame, -kBandFrame);
}

} // namespace

DrawView::DrawView(AppWindow* parent) : rubberBand(new QRubberBand(QRubberBand::Rectangle, this))
{
    parent->view = this;
    if (gszPlffileOrig[0] != 0)
        parent->loadFile(QByteArray(gszPlffileOrig), QString::fromLocal8Bit(gszPlffileOrig));
    else
        parent->choose();
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    pen.setStyle(Qt::DotLine);
    pen.setColor(Qt::white);
    setParent(parent, Qt::WindowFlags());
    setGeometry(0, 0, width(), height());
    MakePrinter();
}

DrawView::~DrawView()
{
    delete pPrinter;
    if (gpDraw == this)
        gpDraw = nullptr;
}

// The constructor's last step, unless a host's command printed while its file dialog stood open.
void DrawView::MakePrinter()
{
    if (pPrinter == nullptr)
        pPrinter = new QPrinter(QPrinter::HighResolution);
}

void DrawView::updateIt()
{
    update();
}

void DrawView::customEvent(QCustomEvent* /*e*/) {}

// The part of the file under the zoom rectangle, in drawing units. An inverted rectangle stays
// inverted.
Rect DrawView::ZoomSource(const Rect& whole) const
{
    const auto scaled = [](int64_t at, int pixels, int64_t units) {
        return TruncToInt(static_cast<double>(at) / pixels * static_cast<double>(units));
    };
    const int w = width();
    const int h = height();
    Rect source = {};
    SetRect(&source, scaled(zoomRect.left, w, whole.width), scaled(zoomRect.top, h, whole.height),
            scaled(zoomRect.right, w, whole.width), scaled(zoomRect.bottom, h, whole.height));
    return source;
}

// Line widths follow the width of the view alone, also on paper.
void DrawView::drawIt(QPainter* ppainter, bool fPrinting, int iCvtopt)
{
    if (gszPlffileOrig[0] == 0)
        return;
    Rect whole = {};
    SetRect(&whole, 0, 0, kPlfWidth, kPlfHeight);
    Rect source = {};
    double scale = width() / kUnitWidth;
    if (zoomState != kZoomNone) {
        // An empty rectangle gives an infinite scale or none, which the interpreter takes.
        scale *= width() / static_cast<double>(zoomRect.width);
        source = ZoomSource(whole);
    }
    CPlfMeta meta(gszPlffileOrig, ppainter, fPrinting ? pPrinter : nullptr, scale, iCvtopt);
    meta.DrawPlf(&source, &whole);
}

void DrawView::paintEvent(QPaintEvent* event)
{
    const bool isUnderBand = (event->region() - underBand).isEmpty();
    underBand = QRegion();
    if (isUnderBand) {
        PaintAsShown();
        return;
    }
    if ((QRegion(rect()) - event->region()).isEmpty()) {
        shownState = zoomState;
        shownRect = zoomRect;
    }
    Paint();
}

void DrawView::Paint()
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawIt(&painter, false, 0);
}

// What the moving band uncovers looks as it did before: the part under the rectangle is shown by
// the next repaint of another cause.
void DrawView::PaintAsShown()
{
    std::swap(zoomState, shownState);
    std::swap(zoomRect, shownRect);
    Paint();
    std::swap(zoomState, shownState);
    std::swap(zoomRect, shownRect);
}

void DrawView::DrawRubberRect(QPainter* /*painter*/)
{
    PlaceBand({SaturateToInt(zoomRect.left), SaturateToInt(zoomRect.top),
               SaturateToInt(std::max<int64_t>(zoomRect.width, 1)),
               SaturateToInt(std::max<int64_t>(zoomRect.height, 1))});
}

// Moves and shows the band. The toolkit would repaint everything under it, with all the lines that
// lie there; the picture changes only in the frames and in what one of the bands alone covers.
void DrawView::PlaceBand(const QRect& to)
{
    const QRect from = rubberBand->isVisible() ? rubberBand->geometry() : QRect();
    setAttribute(Qt::WA_UpdatesDisabled);
    rubberBand->setAttribute(Qt::WA_UpdatesDisabled);
    rubberBand->setGeometry(to);
    rubberBand->show();
    rubberBand->setAttribute(Qt::WA_UpdatesDisabled, false);
    setAttribute(Qt::WA_UpdatesDisabled, false);
    if (to == from)
        return;
    const QRegion changed = (QRegion(from) | to) - (WithoutFrame(from) & WithoutFrame(to));
    underBand |= changed;
    update(changed);
}

void DrawView::HideBand()
{
    if (rubberBand->isVisible())
        underBand |= rubberBand->geometry();
    rubberBand->hide();
}

void DrawView::SetZoomRect(int64_t left, int64_t top, int64_t right, int64_t bottom)
{
    SetRect(&zoomRect, SaturateToInt(left), SaturateToInt(top), SaturateToInt(right),
            SaturateToInt(bottom));
    DrawRubberRect(nullptr);
}

void DrawView::mousePressEvent(QMouseEvent* event)
{
    const QPoint at = event->pos();
    if (event->button() == Qt::LeftButton && zoomState == kZoomNone) {
        zoomState = kZoomSelecting;
        SetZoomRect(at.x(), at.y(), at.x() + 1, at.y() + 1);
    } else if (event->button() == Qt::RightButton) {
        zoomState = kZoomMoving;
        lastX = at.x();
        lastY = at.y();
    }
}

void DrawView::mouseMoveEvent(QMouseEvent* event)
{
    if (zoomState == kZoomNone)
        return;
    const QPoint at = event->pos();
    DrawRubberRect(nullptr);
    if (zoomState == kZoomSelecting)
        SetZoomRect(zoomRect.left, zoomRect.top, at.x(), at.y());
    else if (zoomState == kZoomMoving)
        MoveZoomRect(at);
}

void DrawView::MoveZoomRect(const QPoint& to)
{
    const int dx = to.x() - lastX;
    const int dy = to.y() - lastY;
    lastX = to.x();
    lastY = to.y();
    SetZoomRect(zoomRect.left + dx, zoomRect.top + dy, zoomRect.right + dx, zoomRect.bottom + dy);
}

void DrawView::mouseReleaseEvent(QMouseEvent* event)
{
    if (zoomState == kZoomSelecting) {
        FinishSelecting(event->pos().x());
        return;
    }
    if (zoomState == kZoomMoving)
        zoomState = kZoomSelecting;
    HideBand();
}

// A release close to the rectangle's left edge, whatever the height, was a click. The release point
// itself goes nowhere: the last move gave the rectangle its corner.
void DrawView::FinishSelecting(int x)
{
    if (std::abs(x - zoomRect.left) < kMinSelection) {
        zoomState = kZoomNone; // the band stays as it is, deliberately
        update();
        return;
    }
    zoomState = kZoomed;
    DrawRubberRect(nullptr);
    update();
    HideBand();
}
