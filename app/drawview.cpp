// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/drawview.h"

#include "app/appwindow.h"
#include "app/state/globals.h"
#include "app/statustext.h"
#include "app/waitcursor.h"
#include "meta/passwatch.h"
#include "meta/plfarea.h"
#include "meta/plfmeta.h"
#include "support/numbers.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPrinter>
#include <QRubberBand>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

// A selection narrower than this is a click, pixels.
constexpr int kMinSelection = 20;

// Widest frame that a style draws around a rubber band, pixels.
constexpr int kBandFrame = 4;

QRect WithoutFrame(const QRect& band)
{
    return band.adjusted(kBandFrame, kBandFrame, -kBandFrame, -kBandFrame);
}

} // namespace

DrawView::DrawView(AppWindow* parent)
    : rubberBand(new QRubberBand(QRubberBand::Rectangle, this)), picture(this)
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

// The constructor's last step, unless a host's command has printed while the file dialog was open.
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

// The part of the file under the zoom rectangle, in drawing units. An inverted rectangle remains
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

// Line widths depend only on the width of the view, even on paper.
void DrawView::drawIt(QPainter* ppainter, bool fPrinting, int iCvtopt)
{
    if (gszPlffileOrig[0] == 0)
        return;
    Rect whole = kWholeArea;
    Rect source = {};
    double scale = width() / double{kUnscaledWidth};
    if (zoomState != kZoomNone) {
        // An empty rectangle gives an infinite or undefined scale, which the interpreter accepts.
        scale *= width() / static_cast<double>(zoomRect.width);
        source = ZoomSource(whole);
    }
    WaitCursor cursor;
    PassWatch watch([&cursor] { cursor.Show(); });
    CPlfMeta meta(gszPlffileOrig, ppainter, fPrinting ? pPrinter : nullptr, scale, iCvtopt);
    meta.Watch(&watch);
    meta.DrawPlf(&source, &whole);
}

void DrawView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    if (!picture.IsScreen(painter)) {
        PaintElsewhere(&painter);
        return;
    }
    if (!picture.Fits() || !(event->region() - bandPart).isEmpty())
        RenewPicture(event->region());
    picture.Show(&painter, event->region());
}

// A picture that somebody makes of the view, such as an exported one.
void DrawView::PaintElsewhere(QPainter* painter)
{
    const auto draw = [this](QPainter* target) { drawIt(target, false, 0); };
    painter->setRenderHint(QPainter::Antialiasing);
    if (!picture.PaintOnPixels(*painter, draw))
        draw(painter);
}

// The first paint leaves the view empty, so that the window and its menus appear before a pass that
// may take long.
void DrawView::RenewPicture(const QRegion& part)
{
    if (!std::exchange(wasPainted, true)) {
        picture.Renew(part, [](QPainter*) {});
        update();
        return;
    }
    picture.Renew(part, [this](QPainter* painter) { drawIt(painter, false, 0); });
    if (gpMainwnd != nullptr)
        gpMainwnd->statusText()->PassEnded();
}

void DrawView::DrawRubberRect(QPainter* /*painter*/)
{
    PlaceBand({SaturateToInt(zoomRect.left), SaturateToInt(zoomRect.top),
               SaturateToInt(std::max<int64_t>(zoomRect.width, 1)),
               SaturateToInt(std::max<int64_t>(zoomRect.height, 1))});
}

// Changes the band and repaints that part of the screen immediately, without drawing the graph:
// everything under and around the band looks as in the last full repaint. The part under the
// rectangle is shown by the next ordinary repaint.
void DrawView::ChangeBand(const QRegion& changed, const std::function<void()>& change)
{
    // Otherwise Qt would repaint everything under the band, now or from the event loop.
    setAttribute(Qt::WA_UpdatesDisabled);
    rubberBand->setAttribute(Qt::WA_UpdatesDisabled);
    change();
    QCoreApplication::removePostedEvents(rubberBand, QEvent::UpdateLater);
    rubberBand->setAttribute(Qt::WA_UpdatesDisabled, false);
    setAttribute(Qt::WA_UpdatesDisabled, false);
    if (changed.isEmpty())
        return;
    // Immediately, because Qt paints the view twice under the band, and an ordinary repaint must
    // not be mistaken for one of the band.
    bandPart = changed;
    repaint(changed);
    bandPart = QRegion();
}

// The picture changes only in the frames, and where only one of the two bands is.
void DrawView::PlaceBand(const QRect& to)
{
    const QRect from = rubberBand->isVisible() ? rubberBand->geometry() : QRect();
    const QRegion changed =
        to == from ? QRegion() : (QRegion(from) | to) - (WithoutFrame(from) & WithoutFrame(to));
    ChangeBand(changed, [this, &to] {
        rubberBand->setGeometry(to);
        rubberBand->show();
    });
}

void DrawView::HideBand()
{
    if (rubberBand->isVisible())
        ChangeBand(rubberBand->geometry(), [this] { rubberBand->hide(); });
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

// A release close to the rectangle's left edge, at any height, was a click. The release point
// itself is not used: the last move set the rectangle's corner.
void DrawView::FinishSelecting(int x)
{
    if (std::abs(x - zoomRect.left) < kMinSelection) {
        zoomState = kZoomNone; // the band is left unchanged, deliberately
        update();
        return;
    }
    zoomState = kZoomed;
    DrawRubberRect(nullptr);
    update();
    HideBand();
}
