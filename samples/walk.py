#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Print the points of a random walk in the plane, scaled into the unit square.

    walk.py POINTS SEED [MEMORY [PULL]]

MEMORY (0..1, 0.9 when left out) is the share of its velocity that the walker keeps at each step, PULL (0 when left
out) how strongly the origin draws it back. The same arguments give the same points.
"""

import random
import sys


def walk(points, seed, memory, pull):
    source = random.Random(seed)
    x = y = dx = dy = 0.0
    for _ in range(points):
        yield x, y
        dx = memory * dx - pull * x + source.random() - 0.5
        dy = memory * dy - pull * y + source.random() - 0.5
        x, y = x + dx, y + dy


def unit(values):
    low, high = min(values), max(values)
    return [(value - low) / (high - low) for value in values]


def main(arguments):
    if not 2 <= len(arguments) <= 4:
        sys.exit(__doc__)
    points, seed = map(int, arguments[:2])
    memory, pull = map(float, arguments[2:] + ["0.9", "0"][len(arguments) - 2 :])
    xs, ys = zip(*walk(points, seed, memory, pull))
    sys.stdout.writelines(f"{x:.6f} {y:.6f}\n" for x, y in zip(unit(xs), unit(ys)))


if __name__ == "__main__":
    main(sys.argv[1:])
