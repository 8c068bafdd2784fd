#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Write a PLF graph from terminal streams of plotting programs and from drawing words.

    plfwrap.py OUT.plf WORD=VALUE ...

The words are written in their order:

    background=COLOR      the graph's own background; give it first
    width=N                line width for what follows
    color=COLOR          line color for what follows, a name or an index 0..15
    stream=FILE            the vectors of a Tektronix 4010, 4014 or 4100 stream
    path=X,Y X,Y ...       a polyline
    rect=X1,Y1,X2,Y2       the outline of a rectangle
    hatch=X1,Y1,X2,Y2,N    a rectangle shaded with N vertical strokes
    font=FAMILY            text font family
    size=N                 text size in points
    style=N                text style: 1 bold, 2 italic, 3 both
    ink=COLOR             text color
    text=X,Y,STRING        a text that starts at X,Y
    raw=BYTES              bytes as they are: \\e is ESC, \\f is FF, \\g is GS, {N} is N in the integer code,
                           {X,Y} is an address

X runs 0..4095 to the right and Y 0..3119 upward. One line about the result goes to standard output.
"""

import os
import re
import sys

ESC = b"\x1b"
GS = b"\x1d"
BEL = b"\x07"

# Every reader expects these bytes first: the color-map entry of index 0, and index 1 up to its hue.
HEADER = b"\x1bTG140000\x1bTG1410"

# What the header leaves open of index 1: lightness and saturation.
INDEX_1_REST = (100, 0)

# Hue, lightness and saturation of the other indices, so that every index has a color of its own.
COLOR_MAP = {
    2: (120, 25, 100),
    3: (240, 25, 100),
    4: (0, 25, 100),
    5: (300, 25, 100),
    6: (60, 25, 100),
    7: (180, 50, 100),
    8: (150, 25, 100),
    9: (210, 50, 100),
    10: (270, 50, 100),
    11: (330, 50, 100),
    12: (30, 50, 100),
    13: (90, 50, 100),
    14: (0, 25, 0),
    15: (0, 50, 0),
}
COLORS = (
    "black white darkred darkgreen navy teal purple yellow olive green cyan blue magenta red darkgray gray"
).split()

# Readers look for the background only from this offset on, and take the second one they meet.
BACKGROUND_FROM = 100

MAX_X, MAX_Y = 4095, 3119

# What terminal streams consist of. The 4100 series writes ESC LF for a move and ESC LG for a draw; all other escapes
# (modes, line styles, private sequences) and alpha text, which US opens, are dropped.
TOKENS = re.compile(
    rb"""(?P<move> \x1d | \x1bLF )
       | (?P<address> [\x20-\x3f\x60-\x7f]{0,4} [\x40-\x5f] )
       | (?P<dropped> \x1bLG | \x1b\[ [\x20-\x3f]* [\x40-\x7e] | \x1b%+!. | \x1b[A-Z][A-Z] [^\x00-\x1f]* | \x1b.
                    | \x1f [^\x1b\x1d]* | . )
    """,
    re.VERBOSE | re.DOTALL,
)


def integer(value):
    """The integer code: six bits in each high character, then four bits and the sign in the low one."""
    low = (0x30 if value >= 0 else 0x20) + (abs(value) & 15)
    rest, high = abs(value) >> 4, []
    while rest:
        high.insert(0, 0x40 + (rest & 63))
        rest >>= 6
    return bytes(high + [low])


def address(x, y):
    """All five bytes of a vector address."""
    if not (0 <= x <= MAX_X and 0 <= y <= MAX_Y):
        raise ValueError(f"point {x},{y} is outside the drawing area")
    high_y, extra, low_y = y >> 7, (y & 3) << 2 | x & 3, y >> 2 & 31
    high_x, low_x = x >> 7, x >> 2 & 31
    return bytes([0x20 + high_y, 0x60 + extra, 0x60 + low_y, 0x20 + high_x, 0x40 + low_x])


def polyline(points):
    return GS + b"".join(address(x, y) for x, y in points)


class Beam:
    """Follows addresses, of which a stream repeats only the bytes that change."""

    def __init__(self):
        self.high_y = self.extra = self.low_y = self.high_x = 0

    def point(self, text):
        """Take the bytes of one address and return its x and y."""
        lows = [byte & 31 for byte in text if byte >= 0x60]
        if lows:
            self.low_y = lows[-1]
        if len(lows) > 1:
            self.extra = lows[-2]
        first_low = next((i for i, byte in enumerate(text) if byte >= 0x60), len(text))
        for i, byte in enumerate(text[:-1]):
            if byte < 0x40 and i < first_low:
                self.high_y = byte & 31
            elif byte < 0x40:
                self.high_x = byte & 31
        x = self.high_x << 7 | (text[-1] & 31) << 2 | self.extra & 3
        y = self.high_y << 7 | self.low_y << 2 | self.extra >> 2
        return x, y


def vectors(stream):
    """Keep only the moves and addresses of a terminal stream. Return them and the number of vectors they draw."""
    # A stream that never sends the extra byte relies on its being zero.
    out, beam = bytearray(polyline([(0, 0)])), Beam()
    move, end, count, drawn = True, (0, 0), 0, 0
    for token in TOKENS.finditer(stream):
        if token.lastgroup == "move":
            out += GS
            move = True
        elif token.lastgroup == "address":
            start, end = end, beam.point(token.group())
            out += token.group()
            if not move:
                if max(start[1], end[1]) > MAX_Y:
                    raise ValueError(f"the vector from {start} to {end} leaves the drawing area")
                count, drawn = count + 1, len(out)
            move = False
    # Moves after the last vector draw nothing.
    return bytes(out[:drawn]), count


def color_index(name):
    """The line index of a color, given by name or number."""
    index = int(name) if name.isdigit() else COLORS.index(name)
    if index > 15:
        raise ValueError(f"color index {index} is outside 0..15")
    return index


def background_byte(index):
    """The character that stands for a line index in a background command; index 0 is written as a negative zero."""
    return integer(index) if index else b" "


class PlfWriter:
    """Collects the commands of one graph."""

    def __init__(self):
        self.count = 0
        self.after_text = False
        self.out = bytearray(HEADER + b"".join(map(integer, INDEX_1_REST)))
        for index, components in COLOR_MAP.items():
            self.command("TG", 1, 4, index, *components)

    def put(self, data):
        """Add bytes that draw; a text before them needs an ESC to end it."""
        if self.after_text and not data.startswith(ESC):
            self.out += ESC
        self.after_text = False
        self.out += data

    def command(self, letters, *integers):
        self.put(ESC + letters.encode("ascii") + b"".join(map(integer, integers)))

    def string(self, opening, value):
        """A string, which runs up to the next ESC, and the bytes that open it."""
        if not value or "\x1b" in value:
            raise ValueError("a string is empty or holds an ESC")
        self.put(opening + value.encode("utf-8"))
        self.after_text = True

    def background(self, name):
        if len(self.out) < BACKGROUND_FROM:
            raise ValueError("the background comes too early in the file")
        self.put(ESC + b"RA1" + background_byte(color_index("white")))
        self.put(ESC + b"RA1" + background_byte(color_index(name)))

    def stream(self, path):
        with open(path, "rb") as file:
            data, count = vectors(file.read())
        if not count:
            raise ValueError(f"{path} holds no vectors")
        self.put(data)
        self.count += count

    def path(self, points):
        self.put(polyline(points))
        self.count += len(points) - 1

    def rect(self, x1, y1, x2, y2):
        self.path([(x1, y1), (x2, y1), (x2, y2), (x1, y2), (x1, y1)])

    def hatch(self, x1, y1, x2, y2, strokes):
        for stroke in range(strokes):
            x = x1 + (x2 - x1) * (2 * stroke + 1) // (2 * strokes)
            self.path([(x, y1), (x, y2)])

    def text(self, x, y, value):
        # The semicolon that ends a position replaces the ESC of the next command.
        self.string(ESC + f"ZP{x},{y};ZD".encode("ascii"), value)

    def raw(self, template):
        def code(match):
            numbers = [int(number) for number in match.group(1).split(",")]
            return (integer(*numbers) if len(numbers) == 1 else address(*numbers)).decode("ascii")

        text = template.replace(r"\e", "\x1b").replace(r"\g", "\x1d").replace(r"\f", "\x0c")
        text = re.sub(r"\{(-?\d+|\d+,\d+)\}", code, text)
        self.put(text.encode("utf-8"))
        self.count += len(re.findall(r"\{\d+,\d+\}", template)) - template.count(r"\g")

    def data(self):
        """The whole file. BEL ends the graph, which completes the last address."""
        return bytes(self.out) + (ESC if self.after_text else b"") + BEL


def integers(text, count):
    """Exactly so many decimal integers between commas."""
    values = [int(part) for part in text.split(",")]
    if len(values) != count:
        raise ValueError(f"expected {count} numbers")
    return values


def placed_text(plf, value):
    x, y, string = value.split(",", 2)
    plf.text(int(x), int(y), string)


WORDS = {
    "background": PlfWriter.background,
    "width": lambda plf, value: plf.command("GT", int(value)),
    "color": lambda plf, value: plf.command("ML", color_index(value)),
    "stream": PlfWriter.stream,
    "path": lambda plf, value: plf.path([integers(point, 2) for point in value.split()]),
    "rect": lambda plf, value: plf.rect(*integers(value, 4)),
    "hatch": lambda plf, value: plf.hatch(*integers(value, 5)),
    "font": lambda plf, value: plf.string(ESC + b"ZF", value),
    "size": lambda plf, value: plf.command("ZS", int(value)),
    "style": lambda plf, value: plf.command("ZA", int(value)),
    "ink": lambda plf, value: plf.command("ZC", color_index(value)),
    "text": placed_text,
    "raw": PlfWriter.raw,
}


def main(arguments):
    if len(arguments) < 2:
        sys.exit(__doc__)
    output, plf = arguments[0], PlfWriter()
    for argument in arguments[1:]:
        word, _, value = argument.partition("=")
        if word not in WORDS:
            sys.exit(f"plfwrap.py: unknown word in {argument}")
        try:
            WORDS[word](plf, value)
        except (OSError, ValueError) as error:
            sys.exit(f"plfwrap.py: {argument}: {error}")
    data = plf.data()
    with open(output, "wb") as file:
        file.write(data)
    print(f"{os.path.basename(output)}: {plf.count} vectors, {len(data)} bytes")


if __name__ == "__main__":
    main(sys.argv[1:])
