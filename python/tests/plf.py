# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Graphs made for tests."""
import os
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
SAMPLES = sorted((TOP / "samples").glob("*.plf"))

HEADER = b"\x1bTG140000\x1bTG1410F40"
BEL = b"\x07"
GS = b"\x1d"


def integer(value):
    """A number as commands have it."""
    low = bytes([(0x30 if value >= 0 else 0x20) | abs(value) & 15])
    high, rest = b"", abs(value) >> 4
    while rest:
        high, rest = bytes([0x40 | rest & 63]) + high, rest >> 6
    return high + low


def address(x, y):
    """A point with all of its bytes."""
    return bytes([0x20 | y >> 7, 0x60 | (y & 3) << 2 | x & 3, 0x60 | y >> 2 & 31, 0x20 | x >> 7, 0x40 | x >> 2 & 31])


def polyline(points):
    """A move and lines."""
    return GS + b"".join(address(x, y) for x, y in points)


def graph(*items):
    """A whole graph."""
    return HEADER + b"".join(items) + BEL


def triangle():
    """A graph with three lines of width 13."""
    return graph(b"\x1bGT", integer(13), polyline([(1000, 500), (3000, 500), (2000, 2500), (1000, 500)]))


def text(words, x, y):
    """A text."""
    return b"\x1bZP%d,%d;ZD%s\x1b" % (x, y, words)


def environment(**changes):
    """That of a new process; None takes a variable away."""
    merged = {**os.environ, **changes}
    return {name: value for name, value in merged.items() if value is not None}
