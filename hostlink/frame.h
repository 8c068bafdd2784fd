// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The wire format of the host link, without a socket: a 16-bit length of what follows and a string
// (a 32-bit byte count and UTF-16), all big-endian.
#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

/// Bytes of the length field in front of a frame.
constexpr qsizetype kFrameLengthSize = 2;

/// The frame of a message. The length field has 16 bits: of the length of a message with more than
/// 32765 characters only the low ones are in it.
QByteArray EncodeFrame(const QString& message);

/// Reads one message, as far as the device holds it. The length is read first and alone when it
/// has come alone; it is not compared with anything. As soon as any byte follows it, the string is
/// taken to be complete: one that is not, or that is no string, reads as empty.
/// @param blockSize  length of the frame being read; 0 = not read yet. The caller sets it back to
///                   0 when the next frame shall begin with a length.
/// @param message    receives the string
/// @return false when more bytes have to come first
bool ReadFrame(QIODevice* device, qint16* blockSize, QString* message);

/// Takes one frame off the front of received bytes, once it is there as a whole by its length.
/// @param message  receives the string
/// @return false when bytes are missing
bool TakeFrame(QByteArray& received, QString* message);
