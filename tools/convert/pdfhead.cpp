// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/pdfhead.h"

#include "tools/convert/environment.h"

namespace convert {

namespace {

constexpr char kStreamStart[] = "\nstream\n";

// Puts a text between two others in place of what is there. The file has a table of where things
// are in it, so that nothing may move: what is too long is not put there.
void Replace(QByteArray* head, const QByteArray& before, char after, const QByteArray& text)
{
    const qsizetype at = head->indexOf(before) + before.size();
    const qsizetype end = head->indexOf(after, at);
    if (at < before.size() || end - at < text.size())
        return;
    // The first character that is too much ends it, and blanks mean nothing after that.
    const QByteArray whole = text + after;
    head->replace(at, end + 1 - at, whole.leftJustified(end + 1 - at));
}

QByteArray Box(const QSizeF& size)
{
    return "0 0 " + QByteArray::number(size.width(), 'f', 6) + ' ' +
           QByteArray::number(size.height(), 'f', 6);
}

} // namespace

QByteArray PdfDate(const QDateTime& date)
{
    return date.toString(QStringLiteral("'D:'yyyyMMddHHmmss'Z'")).toLatin1();
}

PdfHead::PdfHead(QIODevice* target, const QSizeF& page) : output(target), pageSize(page)
{
    open(QIODevice::WriteOnly);
}

qint64 PdfHead::readData(char* /*data*/, qint64 /*size*/)
{
    return -1;
}

qint64 PdfHead::writeData(const char* data, qint64 size)
{
    if (isHeadDone)
        return output->write(data, size);
    head.append(data, size);
    isHeadDone = head.contains(kStreamStart);
    if (isHeadDone) {
        if (const auto time = SourceDate())
            Replace(&head, "/CreationDate (", ')', PdfDate(*time));
        Replace(&head, "/MediaBox [", ']', Box(pageSize));
        output->write(head);
        head.clear();
    }
    return size;
}

} // namespace convert
