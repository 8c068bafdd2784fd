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

// The toolkit's own name of the list of papers in the properties window. Where another version
// calls it differently, that window opens with the queue's paper.
QComboBox* PaperList(const QDialog* window)
{
    return window->findChild<QComboBox*>(QStringLiteral("pageSizeCombo"));
}

// The list's row of a paper, or -1. Rows carry the queue's own papers, whose names may differ.
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
    // Another queue may not take these margins; it still gets the paper.
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

// A window that the user accepted shows what was chosen there. One that was rejected has gone back
// to the queue's paper.
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
