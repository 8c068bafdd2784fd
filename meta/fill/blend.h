// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A color laid over others by a share of each pixel, a group of pixels at a time, with the
// roundings of QPainter.
#pragma once

#include "meta/fill/coverage.h"

#include <QRgb>

#include <cstdint>
#include <cstring>

/// For each half of a pixel a part of its color, or a share in 255ths: every other byte.
using Halves = uint16_t __attribute__((vector_size(sizeof(Coverage::Areas))));

constexpr int kFullShare = 255;

/// All pixels of a group alike.
inline Halves Everywhere(QRgb color)
{
    return reinterpret_cast<Halves>(Coverage::Areas{} + static_cast<int>(color));
}

/// The shares of pixels of which such areas are covered. The sign of an area does not matter, but
/// is there when it is rounded down.
inline Halves Shares(Coverage::Areas areas)
{
    using Signed = int16_t __attribute__((vector_size(sizeof(Coverage::Areas))));
    constexpr int kShareBits = 8;
    areas >>= Coverage::kAreaBits - kShareBits;
    const auto shares = reinterpret_cast<Signed>((areas & 0xFFFF) | areas << 16);
    const Signed positive = shares < 0 ? -shares : shares;
    return reinterpret_cast<Halves>(positive < kFullShare ? positive : kFullShare + Signed{});
}

/// Divides by 255, nearly: as QPainter does, which rounds a few products the wrong way.
inline Halves Times(Halves parts, Halves shares)
{
    const Halves product = parts * shares;
    return (product + (product >> 8) + 128) >> 8;
}

/// A color laid over what is there. Each of the two products is rounded by itself.
inline Halves Mix(Halves color, Halves shares, Halves there)
{
    const Halves rest = kFullShare - shares;
    const Halves low = Times(color & 255, shares) + Times(there & 255, rest);
    const Halves high = Times(color >> 8, shares) + Times(there >> 8, rest);
    return low | high << 8;
}

/// Whether a color laid over itself is the same again, by any share. A few parts of colors, such as
/// 152 of 255, are rounded to another.
inline bool KeepsItself(QRgb color)
{
    const Halves colors = Everywhere(color);
    for (int share = 1; share <= kFullShare; ++share) {
        const Halves mixed = Mix(colors, Halves{} + static_cast<uint16_t>(share), colors);
        if (memcmp(&mixed, &colors, sizeof(mixed)) != 0)
            return false;
    }
    return true;
}
