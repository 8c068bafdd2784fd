// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a byte, the number of bytes that arrive at a time, and the bytes that a host sends.
#include "hostlink/frame.h"
#include "fuzz/target.h"

#include <QBuffer>

#include <algorithm>

namespace {

// Most characters for which the length of the frame fits its field.
constexpr qsizetype kLongestMessage = 32765;

void CheckRoundTrip(const QString& message)
{
    QByteArray frame = EncodeFrame(message);
    if (message.size() <= kLongestMessage)
        fuzz::Require(frame.size() == 6 + 2 * message.size(), "a frame has its length");
    QBuffer device(&frame);
    device.open(QIODevice::ReadOnly);
    qint16 length = 0;
    QString again;
    fuzz::Require(ReadFrame(&device, &length, &again) && again == message, "a frame comes back");
}

// One call of the slot: what it reads, and the length that it keeps after a message without a file.
void Arrive(QBuffer& device, qint16& length)
{
    const qint64 before = device.pos();
    QString message;
    const bool read = ReadFrame(&device, &length, &message);
    fuzz::Require(device.pos() <= device.size(), "nothing is read that has not come");
    fuzz::Require(2 * message.size() <= device.pos() - before, "a message was sent whole");
    fuzz::Require(read || message.isEmpty(), "what has to wait gives nothing");
    if (!message.isEmpty()) {
        length = 0;
        CheckRoundTrip(message);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const auto atATime = static_cast<qsizetype>(data[0] + 1);
    const QByteArray sent(reinterpret_cast<const char*>(data + 1),
                          static_cast<qsizetype>(size - 1));
    QBuffer device;
    device.open(QIODevice::ReadOnly);
    qint16 length = 0;
    for (qsizetype at = 0; at < sent.size(); at += atATime) {
        device.buffer().append(sent.mid(at, atATime));
        Arrive(device, length);
    }
    return 0;
}
