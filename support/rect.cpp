// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/rect.h"

#include "support/numbers.h"

#include <cstring>

namespace {

// A window rectangle comes from a file or a command line, so it may contain any values; the sum
// wraps where plain addition would be undefined.
int64_t WrapAdd64(int64_t a, int b)
{
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(int64_t{b}));
}

// NormalizeRect truncates a value to 32 bits when it moves it to the opposite side.
int64_t Low32(int64_t value)
{
    return static_cast<int32_t>(value);
}

} // namespace

Rect* SetRect(Rect* r, int l, int t, int rt, int b)
{
    *r = {l, t, rt, b, WrapSubtract(rt, l), WrapSubtract(b, t)};
    return r;
}

Rect* MoveRect(Rect* r, int dx, int dy)
{
    r->left = WrapAdd64(r->left, dx);
    r->right = WrapAdd64(r->right, dx);
    r->top = WrapAdd64(r->top, dy);
    r->bottom = WrapAdd64(r->bottom, dy);
    return r;
}

Rect* NormalizeRect(Rect* r)
{
    if (r->left > r->right) {
        const int64_t oldLeft = r->left;
        r->left = r->right;
        r->right = Low32(oldLeft);
    }
    if (r->top > r->bottom) {
        r->top = r->bottom;
        r->bottom = Low32(r->left); // left, not the old top: deliberate, see the header
    }
    return r;
}

Rect* CopyRect(Rect* dst, Rect* src)
{
    *dst = *src;
    return dst;
}

RECT* CopyRect(RECT* dst, Rect* src)
{
    std::memcpy(dst, src, sizeof(RECT)); // bytes, not fields: deliberate, see the header
    return dst;
}
