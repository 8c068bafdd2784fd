#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Measure how much work a byte of a graph can cost.

    worst.py NAME=PLFCONVERT...

For each program, shape of graph and size of picture: the processor seconds that a kilobyte takes at worst, among several
line widths, as a Markdown table. The start of the program is not counted.
"""
import os
import sys
import tempfile
from pathlib import Path

HEADER = b"\x1bTG140000\x1bTG141000"  # ends an entry of the color map, so that anything may follow
COLORS = b"\x1bTG142A0C2F4\x1bTG143~0C2F4"  # indices 2 and 3, of two hues
WIDTHS = (0, 1, 4, 16, 56, 80, 4000)
PICTURES = {
    "640 x 446": ["--size", "640x446"],
    "1200 x 900": ["--size", "1200x900"],
    "256 wide": ["--width", "256"],
}
KILOBYTE = 1000
# A graph grows until it takes this long, or is as large as that.
ENOUGH_SECONDS = 0.4
LEAST_BYTES, MOST_BYTES = 250, 256 * KILOBYTE
GROWTH = 4
RIGHT, TOP = 4092, 3116


def integer(value):
    """An integer parameter."""
    code = chr(0x30 + (value & 15))
    value >>= 4
    while value:
        code = chr(0x40 + (value & 63)) + code
        value >>= 6
    return code.encode()


def address(x, y):
    """A position on the grid of four units, whole."""
    return bytes((32 + (y >> 7), 96 + ((y >> 2) & 31), 32 + (x >> 7), 64 + ((x >> 2) & 31)))


def diagonals(between=lambda number: b""):
    """Lines from edge to edge, which turn; before each what a function of its number gives."""
    number = 0
    while True:
        turn = number // 2 % 64 * 32
        yield between(number) + (address(turn, 0) if number % 2 else address(RIGHT - turn, TOP))
        number += 1


def repeated(*pieces):
    """The pieces over and over."""
    while True:
        yield from pieces


# The densest way to write each: parts of addresses that did not change are left out.
SHAPES = {
    "dots": lambda width: repeated(b"A"),
    "short lines": lambda width: repeated(b"@", b"_"),
    "short diagonals": lambda width: repeated(b"\x60@", b"\x7f_"),
    "full horizontals": lambda width: repeated(*(bytes((96 + y, edge, low)) for y in range(32)
                                                 for edge, low in ((32, 64), (63, 95)))),
    "full diagonals": lambda width: diagonals(),
    "diagonals, each of another color": lambda width: diagonals(lambda n: b"\x1bML" + integer(2 + n % 2)),
    "diagonals, each of another width": lambda width: diagonals(lambda n: b"\x1bGT" + integer(width + n % 2)),
    "texts of a letter": lambda width: repeated(b"\x1bZDM"),
    "texts of 1000 letters": lambda width: repeated(b"\x1bZD" + b"M" * 1000),
}


def graph(shape, width, size):
    """A graph of about so many bytes."""
    parts = [HEADER, COLORS, b"\x1bZP100,1500;GT", integer(width), b"\x1d", address(0, 1500)]
    length = sum(map(len, parts))
    for piece in SHAPES[shape](width):
        if length >= size:
            break
        parts.append(piece)
        length += len(piece)
    return b"".join(parts) + b"\x1b\x07"


def seconds(program, options, content, folder):
    """Processor time of a conversion, that of its workers included."""
    (folder / "g.plf").write_bytes(content)
    arguments = [program, "-j", "1", *options, str(folder / "g.plf"), str(folder / "g.png")]
    child = os.posix_spawn(program, arguments, {**os.environ, "PLOTVW_THREADS": "1"})
    _, status, usage = os.wait4(child, 0)
    if status != 0:
        sys.exit(f"{' '.join(arguments)} failed")
    return usage.ru_utime + usage.ru_stime


def per_kilobyte(program, options, shape, width, folder):
    """Seconds that a kilobyte of a shape takes."""
    start = min(seconds(program, options, graph(shape, width, 0), folder) for _ in range(3))
    size = LEAST_BYTES
    while True:
        content = graph(shape, width, size)
        taken = seconds(program, options, content, folder) - start
        if taken >= ENOUGH_SECONDS or size >= MOST_BYTES:
            return max(taken, 0) / len(content) * KILOBYTE
        size *= GROWTH


def worst(program, options, shape, folder):
    """The largest of all widths: seconds for a kilobyte, and the width."""
    widths = (0,) if shape.startswith("texts") else WIDTHS
    return max((per_kilobyte(program, options, shape, width, folder), width) for width in widths)


def main():
    """Measure and print."""
    programs = dict(argument.split("=", 1) for argument in sys.argv[1:] if "=" in argument)
    if not programs:
        sys.exit(__doc__)
    print("| Graph | Picture | " + " | ".join(programs) + " |\n|---|---|" + "---:|" * len(programs), flush=True)
    with tempfile.TemporaryDirectory() as folder:
        for shape in SHAPES:
            for picture, options in PICTURES.items():
                cells = (worst(program, options, shape, Path(folder)) for program in programs.values())
                print(f"| {shape} | {picture} | " + " | ".join(f"{time:.4f} (width {width})" for time, width in cells) +
                      " |", flush=True)


if __name__ == "__main__":
    main()
