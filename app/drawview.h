// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The widget that shows the graph: it draws the whole file on every repaint and lets the user
// select the part to see.
#pragma once

#include "app/shownpicture.h"
#include "support/rect.h"

#include <QPainter>
#include <QPen>
#include <QPixmap>
#include <QRegion>
#include <QWidget>

#include <functional>

class AppWindow;
class QPrinter;
class QRubberBand;

/// The argument of an empty slot, which is part of the meta-object.
class QCustomEvent
{
};

/// What the mouse is doing with the zoom rectangle. In any state but None, the part of the graph
/// under the rectangle is shown.
enum ZoomState {
    kZoomNone = 0,
    kZoomSelecting = 1,
    kZoomMoving = 2,
    kZoomed = 3,
};

class DrawView : public QWidget
{
    Q_OBJECT

public:
    /// Sets itself as the parent's view and then loads gszPlffileOrig or, if that is empty, asks
    /// the user for a file.
    explicit DrawView(AppWindow* parent);
    ~DrawView() override;

    /// Returns to the whole graph, without a repaint.
    void ClearZoom() { zoomState = kZoomNone; }

    /// Places the rubber band on the zoom rectangle, at least 1 pixel wide and high, and shows it.
    /// @param painter  not used
    void DrawRubberRect(QPainter* painter);

    /// Draws the current file on the view's printer, as one job. Does nothing if the printer cannot
    /// start; without a file the page is empty.
    void PrintGraph();

    // The order of the slots is the order of their indices in the meta-object.
public slots:
    /// Requests a repaint.
    void updateIt();
    /// Shows the print dialog and prints if the user accepts it.
    void printIt();
    /// Prints with the orientation and paper of the command line and the configuration file, then
    /// runs the other pending jobs.
    void cmdPrint();
    /// Does nothing; it exists for the order of the slots.
    void customEvent(QCustomEvent* e);
    /// Marks a command-line job as done, asks the application to quit if none is left and "-q" was
    /// given, and runs the remaining ones: print, JPEG, EPS. Processes pending events first.
    /// @param iNotval  number of the job (1 print, 2 JPEG, 3 EPS), or 0 for none
    void PostCmdargDone(int iNotval);
    /// Draws the current file, if any.
    /// @param ppainter   target, or null for a conversion only
    /// @param fPrinting  whether the painter paints on the view's printer
    /// @param iCvtopt    conversion mode of the interpreter
    void drawIt(QPainter* ppainter, bool fPrinting = false, int iCvtopt = 0);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    using QWidget::customEvent; // keeps the event handler visible next to the slot

    void MakePrinter();
    void PaintElsewhere(QPainter* painter);
    void RenewPicture(const QRegion& part);
    void PlaceBand(const QRect& to);
    void HideBand();
    void ChangeBand(const QRegion& changed, const std::function<void()>& change);
    void SetZoomRect(int64_t left, int64_t top, int64_t right, int64_t bottom);
    void MoveZoomRect(const QPoint& to);
    void FinishSelecting(int x);
    Rect ZoomSource(const Rect& whole) const;

    Rect zoomRect = {};        // view pixels; inverted if dragged up or to the left
    int zoomState = kZoomNone; // a ZoomState
    int lastX = 0;             // mouse at the last step of a move
    int lastY = 0;
    QPen pen;                     // dotted white; not used
    QPixmap pixmap;               // empty; not used
    QRubberBand* rubberBand;      // child of the view
    QPrinter* pPrinter = nullptr; // keeps its settings as long as the view exists
    ShownPicture picture;         // what the view shows
    QRegion bandPart;             // the part that is being repainted for the rubber band only
    bool wasPainted = false;      // the empty view has been on the screen
};
