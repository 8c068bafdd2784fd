// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "hostlink/frame.h"

#include <QBuffer>
#include <QDataStream>
#include <QtEndian>

namespace {

// The stream format of the hosts, number 7.
constexpr QDataStream::Version kStreamVersion = QDataStream::Qt_4_0;
static_assert(kStreamVersion == 7);

} // namespace

QByteArray EncodeFrame(const QString& message)
{
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::WriteOnly);
    stream.setVersion(kStreamVersion);
    stream << qint16{0} << message;
    stream.device()->seek(0);
    stream << static_cast<qint16>(frame.size() - kFrameLengthSize);
    return frame;
}

bool ReadFrame(QIODevice* device, qint16* blockSize, QString* message)
{
    QDataStream stream(device);
    stream.setVersion(kStreamVersion);
    if (*blockSize == 0) {
        if (device->bytesAvailable() < kFrameLengthSize)
            return false;
        stream >> *blockSize;
    }
    if (stream.atEnd())
        return false;
    stream >> *message;
    return true;
}

bool TakeFrame(QByteArray& received, QString* message)
{
    if (received.size() < kFrameLengthSize)
        return false;
    const qsizetype size = kFrameLengthSize + qFromBigEndian<quint16>(received.constData());
    if (received.size() < size)
        return false;
    QByteArray frame = received.left(size);
    received.remove(0, size);
    QBuffer device(&frame);
    device.open(QIODevice::ReadOnly);
    qint16 blockSize = 0;
    return ReadFrame(&device, &blockSize, message);
}
