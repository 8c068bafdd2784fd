// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/picturesize.h"

#include "meta/plfarea.h"

#include <algorithm>
#include <cstdint>

namespace convert {

QSize PictureSize(const PictureSettings& settings)
{
    if (settings.size)
        return *settings.size;
    const QSize shape = settings.area ? settings.area->size() : QSize(kPlfWidth, kPlfHeight);
    const int width = settings.width.value_or(kDefaultWidth);
    return {width, std::max(width * shape.height() / shape.width(), 1)};
}

bool IsPossible(QSize size)
{
    return size.width() <= kMaxSide && size.height() <= kMaxSide &&
           int64_t{size.width()} * size.height() <= kMaxPixels;
}

} // namespace convert
