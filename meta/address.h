// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The code of addresses.
#pragma once

#include "meta/integercode.h"
#include "meta/plfarea.h"
#include "meta/state.h"

/// The bytes that end an address.
constexpr int kFirstLowX = 64;
constexpr int kLastLowX = 95;

/// A point in drawing units.
struct PlfPoint {
    int x = 0;
    int y = 0;
};

/// Decodes one address, up to its low-X byte. Missing parts keep their last values.
/// @return the byte after the address, or null if a byte below lowest comes before its end
inline const char* ReadAddress(const char* seq, int lowest, AddressParts& part)
{
    for (;; ++seq) {
        const int b = static_cast<signed char>(*seq);
        if (b > kLastLowX) {
            if (++part.nLoY == 2)
                part.extra = part.loY; // the first of two such bytes held the extra bits
            part.loY = b & 31;
        } else if (b >= kFirstLowX) {
            part.nLoY = 0;
            part.loX = b & 31;
            return seq + 1;
        } else if (b < lowest) {
            return nullptr;
        } else if (part.nLoY != 0) {
            part.hiX = b & 31;
            part.nLoY = 0;
        } else {
            part.hiY = b & 31;
        }
    }
}

/// The point that an address means.
inline PlfPoint PointOf(const AddressParts& part)
{
    return {((part.hiX << 5) + part.loX) * 4 + (part.extra & 3),
            kPlfHeight - (((part.hiY << 5) + part.loY) * 4 + ((part.extra & 12) >> 2))};
}
