#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Make a variant of a graph for comparisons, in another order and with some of its vectors moved.

    variant.py GRAPH VARIANT COPIES MOVED

The vectors of GRAPH are written COPIES times, each copy a unit farther to the right, and in the variant every vector
with a move of its own, the later half first; MOVED of them are 40 units higher. GRAPH.copies gets the same vectors as
they were.
"""
import re
import sys
from pathlib import Path


def address(x, y):
    """All five bytes of a position."""
    x, y = min(x, 4095), min(y, 4095)
    return bytes((32 + (y >> 7), 96 + ((y & 3) << 2 | x & 3), 96 + (y >> 2 & 31), 32 + (x >> 7), 64 + (x >> 2 & 31)))


def vectors(stream):
    """The vectors of a stream of whole addresses and GS, x1, y1, x2, y2 each."""
    hi_y = lo_y = hi_x = extra = 0
    beam = None
    for moves, high, lows, right, low in re.findall(rb"(\x1d?)([ -?]?)([`-\x7f]*)([ -?]?)([@-_])", stream):
        if high and lows or high and not right:
            hi_y = high[0] & 31
        if len(lows) > 1:
            extra = lows[0] & 15
        if lows:
            lo_y = lows[-1] & 31
        if right:
            hi_x = right[0] & 31
        point = ((hi_x << 5 | low[0] & 31) * 4 + (extra & 3), (hi_y << 5 | lo_y) * 4 + (extra >> 2))
        if not moves and beam:
            yield *beam, *point
        beam = point


def main():
    """Write the files."""
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    graph = Path(sys.argv[1]).read_bytes()
    copies, moved = int(sys.argv[3]), int(sys.argv[4])
    begin = graph.index(b"\x1d")
    end = graph[begin:].find(b"\x1b")
    once = list(vectors(graph[begin:] if end < 0 else graph[begin : begin + end]))
    lines = [(x1 + i, y1, x2 + i, y2) for i in range(copies) for x1, y1, x2, y2 in once]
    with open(sys.argv[1] + ".copies", "wb") as file:
        file.write(graph[:begin])
        last = None
        for line in lines:
            file.write((b"" if line[:2] == last else b"\x1d" + address(*line[:2])) + address(*line[2:]))
            last = line[2:]
        file.write(b"\x07")
    half = len(lines) // 2
    step = max(len(lines) // max(moved, 1), 1)
    higher = {i * step for i in range(moved)}
    with open(sys.argv[2], "wb") as file:
        file.write(graph[:begin])
        for i in [*range(half, len(lines)), *range(half)]:
            x1, y1, x2, y2 = lines[i]
            up = 40 if i in higher else 0
            file.write(b"\x1d" + address(x1, y1 + up) + address(x2, y2 + up))
        file.write(b"\x07")


if __name__ == "__main__":
    main()
