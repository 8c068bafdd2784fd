// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/widebox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QScreen>

// In these events the box sets its size. The label of the text has Qt's own name; in a version with
// another name, the box is like a plain one.
bool WideBox::event(QEvent* event)
{
    const bool result = QMessageBox::event(event);
    auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (label == nullptr ||
        (event->type() != QEvent::Show && event->type() != QEvent::LayoutRequest))
        return result;
    const int before = width();
    Widen(*label);
    if (event->type() == QEvent::Show) // it has just been centered
        move(x() - (width() - before) / 2, y());
    return result;
}

// On a screen that is too narrow the box keeps the line breaks that Qt made. The changes here must
// not trigger this function again.
void WideBox::Widen(QLabel& label)
{
    const bool isWrapped = label.wordWrap();
    label.setWordWrap(false);
    const QSize whole = layout()->totalMinimumSize();
    if (whole.width() <= screen()->availableGeometry().width())
        setFixedSize(whole);
    else
        label.setWordWrap(isWrapped);
    QCoreApplication::removePostedEvents(this, QEvent::LayoutRequest);
}
