// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The wire format of the host link, without a socket: a 16-bit length of the rest, and a string (a
// 32-bit byte count and UTF-16), all big-endian.
#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

/// Bytes of the length field at the start of a frame.
constexpr qsizetype kFrameLengthSize = 2;

/// The frame of a message. The length field has 16 bits; for a message that is too long, it
/// contains only the low 16 bits of the length.
QByteArray EncodeFrame(const QString& message);

/// Reads one message, as far as the device has received it. The length is read first, even if
/// nothing else has arrived, and is not checked. As soon as any byte follows it, the string is
/// expected to be complete; an incomplete or invalid string is read as empty.
/// @param blockSize  length of the frame being read; 0 = not read yet. The caller resets it to 0 if
///                   the next frame begins with a length.
/// @param message    receives the string
/// @return false if more bytes are needed
bool ReadFrame(QIODevice* device, qint16* blockSize, QString* message);

/// Removes one frame from the start of received bytes, if it is complete according to its length.
/// @param message  receives the string
/// @return false if bytes are missing
bool TakeFrame(QByteArray& received, QString* message);
