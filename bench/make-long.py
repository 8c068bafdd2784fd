#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Make a graph of 100,000 lines of 600 units in all directions, whose starts are all over the area.

    make-long.py TARGET.plf
"""
import math
import random
import sys

LINES, LENGTH = 100_000, 600
WIDTH, HEIGHT = 4096, 3120


def address(x, y):
    """A position, all five bytes of it; beyond what addresses reach, the nearest one that they do."""
    x, y = (min(max(round(at), 0), WIDTH - 1) for at in (x, y))
    return bytes((32 + (y >> 7), 96 + ((y & 3) << 2 | x & 3), 96 + (y >> 2 & 31), 32 + (x >> 7), 64 + (x >> 2 & 31)))


def main():
    """Write the graph."""
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    draw = random.Random(1)
    graph = bytearray(b"\x1bTG140000\x1bTG14100000\x1bGT0")
    for _ in range(LINES):
        turn, x, y = math.tau * draw.random(), WIDTH * draw.random(), HEIGHT * draw.random()
        graph += b"\x1d" + address(x, y) + address(x + LENGTH * math.cos(turn), y + LENGTH * math.sin(turn))
    with open(sys.argv[1], "wb") as file:
        file.write(graph + b"\x07")


if __name__ == "__main__":
    main()
