// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What counts as a change.
#pragma once

#include <vector>

namespace diff {

/// A rectangle in file units, y upward; its edges belong to it.
struct Area {
    int left = 0, bottom = 0;
    int right = 0, top = 0;

    [[nodiscard]] bool Contains(int x, int y) const
    {
        return x >= left && x <= right && y >= bottom && y <= top;
    }
};

/// What of two drawings is compared.
struct Rules {
    double tolerance = 0; // drawing units
    bool ignoresColor = false;
    bool ignoresWidth = false;
    bool ignoresText = false;
    bool ignoresOrder = false;
    bool ignoresBackground = false;
    bool ignoresDots = false;       // vectors of no length
    std::vector<Area> ignoredAreas; // what is inside does not count
};

} // namespace diff
