#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Write many small graphs for measurements, all different.

  many-graphs.py DIR COUNT

Each has a frame, a grid and three curves, about 700 vectors. DIR gets 00001.plf and so on, and for each a .tek of the
same name, which is the stream of vectors alone, as a terminal would be sent it.
"""

import math
import os
import sys

HEADER = b"\x1bTG140000\x1bTG141000"  # ends an entry of the color map, so that anything may follow
POINTS = 200
CURVES = 3
LEFT, RIGHT, BOTTOM, TOP = 300, 3900, 250, 2950


def address(x, y):
    """All five bytes of a position."""
    return bytes((32 + (y >> 7), 96 + ((y & 3) << 2) + (x & 3), 96 + ((y >> 2) & 31), 32 + (x >> 7), 64 + ((x >> 2) & 31)))


def polyline(points):
    """Goes to the first point and draws to the others."""
    return b"\x1d" + b"".join(address(x, y) for x, y in points)


def frame():
    """A rectangle with a grid."""
    lines = [polyline([(LEFT, BOTTOM), (RIGHT, BOTTOM), (RIGHT, TOP), (LEFT, TOP), (LEFT, BOTTOM)])]
    for i in range(1, 10):
        x = LEFT + (RIGHT - LEFT) * i // 10
        y = BOTTOM + (TOP - BOTTOM) * i // 10
        lines.append(polyline([(x, BOTTOM), (x, TOP)]))
        lines.append(polyline([(LEFT, y), (RIGHT, y)]))
    return b"".join(lines)


def curve(number, which):
    """A damped wave whose shape depends on the number of the graph."""
    damping = 0.5 + (number % 97) / 30
    waves = 2 + which + (number % 13) / 4
    points = []
    for i in range(POINTS + 1):
        t = i / POINTS
        height = math.exp(-damping * t) * math.cos(2 * math.pi * waves * t + number)
        points.append((LEFT + round((RIGHT - LEFT) * t), round((BOTTOM + TOP) / 2 + 1300 * height)))
    return polyline(points)


def main():
    """Write the files."""
    folder, count = sys.argv[1], int(sys.argv[2])
    os.makedirs(folder, exist_ok=True)
    start = frame()
    for number in range(1, count + 1):
        stream = start + b"".join(curve(number, which) for which in range(CURVES))
        name = os.path.join(folder, f"{number:05}")
        with open(name + ".plf", "wb") as graph:
            graph.write(HEADER + stream + b"\x07")
        with open(name + ".tek", "wb") as plain:
            plain.write(b"\x1b\x0c" + stream + b"\x1f")


main()
