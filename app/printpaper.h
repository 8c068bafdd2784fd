// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Keeps a printer's paper through the toolkit's print dialog, which begins with the queue's own.
#pragma once

#include <QObject>
#include <QPageLayout>
#include <QPointer>

class QDialog;
class QPrinter;

/// Lives while a print dialog runs. The dialog's properties window, which is made late and with the
/// paper of the queue, then opens with the printer's paper.
class PrintPaper : public QObject
{
    Q_OBJECT

public:
    /// @param printer  the dialog's printer; must outlive the object
    explicit PrintPaper(QPrinter* printer);

    /// After the dialog was accepted: gives the printer its paper, orientation and margins back,
    /// unless the user accepted others in the properties window.
    void Restore();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Prepare(QDialog* window);

    QPrinter* printer;
    const QPageLayout layout;   // the printer's before the dialog
    QPointer<QDialog> known;    // the properties window that was shown last
    QPointer<QDialog> accepted; // the one whose paper the user accepted
};
