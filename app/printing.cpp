// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Printing.
#include "app/appwindow.h"
#include "app/drawview.h"
#include "app/jobs.h"
#include "app/printpaper.h"
#include "app/state/globals.h"
#include "support/files.h"

#include <QPageLayout>
#include <QPageSize>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>

namespace {

// Only 0 is Letter and only 2 is A4: deliberate, existing configuration files rely on all other
// values being Legal.
QPageSize::PageSizeId CmdlinePaper()
{
    switch (giCmdPrintPapertype) {
    case 0:
        return QPageSize::Letter;
    case 2:
        return QPageSize::A4;
    default:
        return QPageSize::Legal;
    }
}

// If the system has no printer, QPrinter writes to files but has no file name. A painter cannot
// begin on it then, and after the attempt it could never print.
bool HasOutput(const QPrinter& printer)
{
    return printer.outputFormat() != QPrinter::PdfFormat || !printer.outputFileName().isEmpty();
}

// The name of print jobs and the title of printed files. A failed load leaves the last file name.
QString JobName()
{
    return gszPlffileOrig[0] != 0 ? QString::fromLocal8Bit(gszPlffileName)
                                  : AppWindow::tr("KORVEL Viewer");
}

} // namespace

void AppWindow::print()
{
    view->printIt();
}

void DrawView::printIt()
{
    MakePrinter();
    const QPointer<QPrintDialog> dialog = new QPrintDialog(pPrinter, this); // deleted with the view
    dialog->setWindowTitle(tr("Print Graph"));
    PrintPaper paper(pPrinter);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!isAccepted || dialog.isNull())
        return;
    paper.Restore();
    PrintGraph();
}

void DrawView::cmdPrint()
{
    MakePrinter();
    pPrinter->setPageOrientation(giCmdPrintOrientation == 0 ? QPageLayout::Landscape
                                                            : QPageLayout::Portrait);
    pPrinter->setPageSize(QPageSize(CmdlinePaper()));
    PrintGraph();
    PostCmdargDone(JobNumber(kJobPrint));
}

// A printer that rejects the job is not reported, and a missing one on standard error only: no box
// stops a host.
void DrawView::PrintGraph()
{
    if (!HasOutput(*pPrinter)) {
        qWarning("plotvw: no printer found");
        return;
    }
    // Kept open while Qt opens the file itself, because Qt would wait for a reader of a pipe.
    const QByteArray name = pPrinter->outputFileName().toLocal8Bit();
    const FilePtr output(name.isEmpty() ? nullptr : OpenForWriting(name.constData(), true));
    pPrinter->setDocName(JobName());
    QPainter painter;
    if ((!name.isEmpty() && output == nullptr) || !painter.begin(pPrinter))
        return;
    drawIt(&painter, true, 0);
    painter.end();
}
