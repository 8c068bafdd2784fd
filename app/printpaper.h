// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Keeps a printer's paper during Qt's print dialog, which starts with the paper of the queue.
#pragma once

#include <QObject>
#include <QPageLayout>
#include <QPointer>

class QDialog;
class QPrinter;

/// Exists while a print dialog runs. The dialog's properties window, which Qt creates late and with
/// the paper of the queue, then opens with the printer's paper.
class PrintPaper : public QObject
{
    Q_OBJECT

public:
    /// @param printer  the dialog's printer; must outlive the object
    explicit PrintPaper(QPrinter* printer);

    /// To be called after the dialog was accepted: restores the printer's paper, orientation and
    /// margins, unless the user chose others in the properties window.
    void Restore();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Prepare(QDialog* window);

    QPrinter* printer;
    const QPageLayout layout;   // the printer's before the dialog
    QPointer<QDialog> known;    // the last properties window
    QPointer<QDialog> accepted; // the one whose paper the user accepted
};
