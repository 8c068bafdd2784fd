// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/messages.h"

#include <QCoreApplication>
#include <QMessageBox>

void ShowError(QWidget* parent, const QString& title, const QString& text)
{
    const OwnDialog<QMessageBox> box(QMessageBox::Critical, title, text, QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->exec();
}

void ShowTooLong(QWidget* parent, const QString& what, size_t length, size_t limit)
{
    const QString text = QCoreApplication::translate(
        "Messages", "%1 is too long (%2 bytes, limit %3) and was ignored.");
    ShowError(parent, QCoreApplication::translate("Messages", "Error"),
              text.arg(what).arg(length).arg(limit));
}
