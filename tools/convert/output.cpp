// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/output.h"

#include "tools/common/filename.h"

#include <unistd.h>

#include <cstring>

namespace convert {

namespace {

// Empty when there was no error.
QString Reason(int error)
{
    return error == 0 ? QString() : QString::fromLocal8Bit(strerror(error));
}

std::string HiddenName(const QByteArray& token)
{
    return ".plfconvert-" + token.toStdString();
}

} // namespace

QByteArray TemporaryName(const QByteArray& name, const QByteArray& token)
{
    return QByteArray::fromStdString(WholeFile::HiddenPath(name.toStdString(), HiddenName(token)));
}

// A picture that replaces no older one does not wait for the disk: it can be made again.
Output::Output(const QByteArray& name, const QByteArray& token)
    : isStandardOutput(name == tools::kStandardStream),
      file(name.toStdString(), HiddenName(token), {.inPlace = false, .sync = true})
{
}

QString Output::Open()
{
    error = isStandardOutput ? file.OpenCopyOf(STDOUT_FILENO) : file.Open();
    if (error == 0)
        open(QIODevice::WriteOnly);
    return Reason(error);
}

qint64 Output::readData(char* /*data*/, qint64 /*size*/)
{
    return -1;
}

// Failures are reported at the end, once: some of those who write do not look, and others print
// words of their own.
qint64 Output::writeData(const char* data, qint64 size)
{
    file.Write(data, static_cast<size_t>(size));
    written += size;
    return size;
}

QString Output::Commit(bool keepExisting)
{
    error = file.Commit(keepExisting);
    return Reason(error);
}

} // namespace convert
