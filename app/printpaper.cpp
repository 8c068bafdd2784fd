// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/printpaper.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QPageSize>
#include <QPrinter>

namespace {

// Qt's name of the list of papers in the properties window. In a version with another name, that
// window opens with the queue's paper.
QComboBox* PaperList(const QDialog* window)
{
    return window->findChild<QComboBox*>(QStringLiteral("pageSizeCombo"));
}

// The row of a paper in the list, or -1. The rows are papers of the queue, whose names may differ.
int FindPaper(const QComboBox* list, const QPageSize& paper)
{
    for (int row = 0; row < list->count(); ++row) {
        if (list->itemData(row).value<QPageSize>().isEquivalentTo(paper))
            return row;
    }
    return -1;
}

} // namespace

PrintPaper::PrintPaper(QPrinter* dialogPrinter)
    : printer(dialogPrinter), layout(dialogPrinter->pageLayout())
{
    qApp->installEventFilter(this);
}

void PrintPaper::Restore()
{
    // Another queue may reject these margins; it still gets the paper.
    if (accepted.isNull() && !printer->setPageLayout(layout))
        printer->setPageSize(layout.pageSize());
}

bool PrintPaper::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        auto* window = qobject_cast<QDialog*>(watched);
        if (window != nullptr && PaperList(window) != nullptr)
            Prepare(window);
    }
    return QObject::eventFilter(watched, event);
}

// A window that was accepted shows the chosen paper. One that was rejected has returned to the
// queue's paper.
void PrintPaper::Prepare(QDialog* window)
{
    if (window == accepted)
        return;
    QComboBox* list = PaperList(window);
    const int row = FindPaper(list, layout.pageSize());
    if (row >= 0)
        list->setCurrentIndex(row);
    if (window == known)
        return;
    known = window;
    connect(window, &QDialog::accepted, this, [this, window] { accepted = window; });
}
