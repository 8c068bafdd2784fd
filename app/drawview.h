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

/// The argument of an empty slot that stands in the meta-object's order.
class QCustomEvent
{
};

/// What the mouse is doing to the zoom rectangle. Any state but None shows the part of the graph
/// under the rectangle.
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
    /// Makes itself the parent's view and then loads gszPlffileOrig or, when that is empty, lets
    /// the user choose a file.
    explicit DrawView(AppWindow* parent);
    ~DrawView() override;

    /// Back to the whole graph, without a repaint.
    void ClearZoom() { zoomState = kZoomNone; }

    /// Places the rubber band on the zoom rectangle, at least 1 pixel wide and high, and shows it.
    /// @param painter  not used
    void DrawRubberRect(QPainter* painter);

    /// Draws the current file on the view's printer, as one job. Nothing happens when the printer
    /// does not begin; without a file the page is empty.
    void PrintGraph();

    // The order of the slots is the order of their indices in the meta-object.
public slots:
    /// Asks for a repaint.
    void updateIt();
    /// Shows the print dialog and prints when the user accepts it.
    void printIt();
    /// Prints with the orientation and paper of the command line and the configuration file, then
    /// goes on with the pending jobs.
    void cmdPrint();
    /// Does nothing; it keeps its place in the order of the slots.
    void customEvent(QCustomEvent* e);
    /// Marks a command-line job as done, asks the application to quit when none is left and "-q"
    /// was given, and runs those that are left: print, JPEG, EPS. Processes pending events first.
    /// @param iNotval  number of the job (1 print, 2 JPEG, 3 EPS), or 0 for none
    void PostCmdargDone(int iNotval);
    /// Draws the current file; nothing without one.
    /// @param ppainter   target, or null when only a conversion is wanted
    /// @param fPrinting  the painter stands on the view's printer
    /// @param iCvtopt    conversion mode of the interpreter
    void drawIt(QPainter* ppainter, bool fPrinting = false, int iCvtopt = 0);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    using QWidget::customEvent; // the event handler stays reachable beside the slot

    void MakePrinter();
    void RenewPicture(const QRegion& part);
    void PlaceBand(const QRect& to);
    void HideBand();
    void ChangeBand(const QRegion& changed, const std::function<void()>& change);
    void SetZoomRect(int64_t left, int64_t top, int64_t right, int64_t bottom);
    void MoveZoomRect(const QPoint& to);
    void FinishSelecting(int x);
    Rect ZoomSource(const Rect& whole) const;

    Rect zoomRect = {};        // view pixels; inverted when dragged up or to the left
    int zoomState = kZoomNone; // a ZoomState
    int lastX = 0;             // mouse at the last step of a move
    int lastY = 0;
    QPen pen;                     // dotted white; nothing reads it
    QPixmap pixmap;               // empty; nothing reads it
    QRubberBand* rubberBand;      // child of the view
    QPrinter* pPrinter = nullptr; // keeps its settings for the view's life
    ShownPicture picture;         // what the view shows
    QRegion bandPart;             // is being repainted for the rubber band alone
    bool wasPainted = false;      // the empty view has been on the screen
};
