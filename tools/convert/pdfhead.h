// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Corrects what Qt writes at the beginning of a PDF: the date, and the size of the page.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QIODevice>
#include <QSizeF>

namespace convert {

/// A date as a PDF has it.
/// @param date  UTC
QByteArray PdfDate(const QDateTime& date);

/// Hands on a PDF that Qt writes, of one page.
class PdfHead final : public QIODevice
{
public:
    /// @param target  open for writing; outlives the object
    /// @param page    size of the page in points, which Qt rounds
    PdfHead(QIODevice* target, const QSizeF& page);

    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QIODevice* output;
    QSizeF pageSize;
    QByteArray head; // everything before the first stream
    bool isHeadDone = false;
};

} // namespace convert
