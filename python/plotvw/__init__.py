# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Graphs of the PLF format as data and as pictures.

>>> import plotvw
>>> g = plotvw.read("samples/bode.plf")
>>> g
<plotvw.Graph: 3436 vectors, 0 texts>
>>> g.vectors["x1"].max()
3909
>>> g.render(width=320).shape
(243, 320, 4)

Coordinates of vectors and texts are file units: x from 0 to 4095 to the right, y from 0 upward; the visible part ends at
y 3119. Only the ``area`` of a picture is in drawing units, whose y is ``HEIGHT`` less the file's y and points downward, as
for the program plfconvert.

Whatever takes long releases the interpreter's lock, so that threads work at the same time. A graph never changes, and any
number of threads may use one.
"""
from __future__ import annotations

import json
import operator
import os
from collections.abc import Iterator, Sequence
from contextlib import contextmanager
from typing import Any, BinaryIO, NamedTuple, Union

import numpy as np
import numpy.typing as npt

from plotvw import _core

__all__ = ["HEIGHT", "PALETTE", "FATES", "WIDTH", "Comparison", "Damage", "Graph", "PlfError", "Text", "diff", "keep_ready", "read"]
__version__: str = _core.__version__

#: Width of a graph in units.
WIDTH: int = _core.WIDTH
#: Height of the visible part of a graph in units.
HEIGHT: int = _core.HEIGHT
#: The fixed colors: red, green and blue of each palette index, uint8, shape (17, 3). Row 16 is white, as which a
#: background without a color is drawn.
PALETTE: npt.NDArray[np.uint8] = _core.PALETTE.view()

#: What :func:`diff` says of a vector: only its graph has it; or the other one has it as it is, elsewhere, in another color,
#: or in another width.
FATES = ("alone", "found", "moved", "recolored", "rewidened")

#: The name of a file; bytes are the contents of one.
PathName = Union[str, "os.PathLike[str]", "os.PathLike[bytes]"]


class PlfError(ValueError):
    """Bytes that are no graph, or with ``strict`` a damaged one.

    >>> plotvw.read(b"something else")
    Traceback (most recent call last):
    plotvw.PlfError: not a PLF graph (at byte 0)
    """

    #: What is wrong: "not a PLF graph", "is empty", or one of the kinds of damage.
    reason: str
    #: Where, in bytes from the start of the file.
    offset: int

    def __init__(self, reason: str, offset: int = 0) -> None:
        super().__init__(reason, offset)
        self.reason = reason
        self.offset = offset

    def __str__(self) -> str:
        return f"{self.reason} (at byte {self.offset})"


class Text(NamedTuple):
    """A text of a graph.

    It begins at (x, y), the left end of its baseline, in file units with y upward. It is drawn before the vector with the
    number ``before``, in the palette color ``color`` and in the viewer's own font. What follows is read from the file, and
    not used for drawing.
    """

    text: str
    x: int
    y: int
    before: int
    color: int
    font: str
    size: int
    text_color: int
    bold: bool
    italic: bool


class Damage(NamedTuple):
    """A kind of damage, such as "broken address"; the manual page of plfinfo has the list."""

    kind: str
    #: Where it was met first, in bytes from the start of the file.
    offset: int
    #: How often; data after the end counts in bytes.
    count: int  # type: ignore[assignment]  # as plfinfo has it; nobody counts in a Damage
    #: Whether the graph lacks something, or shows something else than its writer meant.
    loss: bool


class Graph:
    """A graph that :func:`read` has read.

    It can be pickled, so that it may travel to another process or machine; ``bytes(g)`` are those of its file, unpacked.
    """

    __slots__ = ("_held",)
    _held: _core.Graph

    def __init__(self) -> None:
        raise TypeError("graphs are made by plotvw.read()")

    def __repr__(self) -> str:
        return f"<plotvw.Graph: {len(self._held.vectors)} vectors, {len(self._held.texts)} texts>"

    def __bytes__(self) -> bytes:
        return self._held.source()

    def __reduce__(self) -> tuple[Any, ...]:
        return read, (bytes(self),)

    @property
    def vectors(self) -> npt.NDArray[np.void]:
        """The vectors in the order in which they are drawn, later ones over earlier ones: a structured array.

        ======== ====== =========================================================================
        Field    Type   Meaning
        ======== ====== =========================================================================
        x1, y1   int16  start, file units with y upward, 0 to 4095
        x2, y2   int16  end
        color    uint8  palette index, a row of ``palette``
        width    int32  line width as the file has it; 0 is a hairline
        path     uint32 number of the polyline: vectors that continue one another have the same
        ======== ====== =========================================================================

        It is the graph's own memory, not a copy, and read-only. Coordinates are short integers: subtract them, but convert
        them before you multiply.

        >>> v = g.vectors
        >>> v.shape, v.dtype["x1"], v.flags.writeable
        ((3436,), dtype('int16'), False)
        >>> lengths = np.hypot(v["x2"] - v["x1"], v["y2"] - v["y1"])
        >>> round(float(lengths.max()))
        3213
        """
        return self._held.vectors

    def paths(self) -> list[npt.NDArray[np.int32]]:
        """The polylines: for each an int32 array of its N points, shape (N, 2), in file units with y upward.

        The arrays are new, and views of one block.

        >>> paths = g.paths()
        >>> paths[0].shape[1]
        2
        >>> sum(len(path) - 1 for path in paths) == len(g.vectors)
        True
        """
        vectors = self.vectors
        count = len(vectors)
        if count == 0:
            return []
        numbers = vectors["path"]
        starts = np.flatnonzero(np.concatenate(([True], numbers[1:] != numbers[:-1])))
        # Each path has one point more than vectors.
        index = np.arange(count) + np.cumsum(np.bincount(starts, minlength=count))
        points = np.empty((count + len(starts), 2), np.int32)
        points[index, 0], points[index, 1] = vectors["x2"], vectors["y2"]
        firsts = starts + np.arange(len(starts))
        points[firsts, 0], points[firsts, 1] = vectors["x1"][starts], vectors["y1"][starts]
        edges = [*firsts.tolist(), len(points)]
        return [points[begin:end] for begin, end in zip(edges, edges[1:])]

    @property
    def texts(self) -> list[Text]:
        """The texts in the order in which they are drawn."""
        return [Text(*text) for text in self._held.texts]

    @property
    def background(self) -> int:
        """Palette index of the background that the file names; 15, white, without one; 16 for one without a color.

        >>> g.background, g.palette[g.background].tolist()
        (8, [63, 63, 63])
        """
        return self._held.background

    @property
    def palette(self) -> npt.NDArray[np.uint8]:
        """The colors that indices mean, ``PALETTE``: red, green, blue, uint8, shape (17, 3); the same for all graphs."""
        return _core.PALETTE.view()  # its shape may be changed, its bytes may not

    @property
    def damage(self) -> list[Damage]:
        """What looks damaged; empty for a whole graph."""
        return [Damage(*damage) for damage in self._held.damage]

    def info(self) -> dict[str, Any]:
        """What the graph contains, with the keys of ``plfinfo --json`` but "file".

        >>> g.info()["extent"]
        {'bottom': 224, 'left': 355, 'right': 3909, 'top': 2874}
        """
        info: dict[str, Any] = json.loads(self._held.info())
        return info

    def render(
        self,
        *,
        width: int | None = None,
        height: int | None = None,
        area: Sequence[int] | None = None,
        background: str = "white",
        line_scale: float | None = None,
        min_line_width: int = 0,
        black: bool = False,
    ) -> npt.NDArray[np.uint8]:
        """Draw the graph into a new array: red, green, blue and alpha, uint8, shape (height, width, 4).

        The colors are not multiplied with alpha.

        :param width: pixels, 640 by default
        :param height: pixels; of the two, one follows from the other and the shape of the graph
        :param area: the part to draw: left, top, right, bottom in drawing units; by default 0, 0, 4096, 3120
        :param background: "white", "file" for the graph's own, or "transparent"
        :param line_scale: factor on line widths, above 0 and up to 1000; by default that of a window as wide, zoomed to the area
        :param min_line_width: the thinnest line, in the file's line widths
        :param black: draw all lines black
        :raises ValueError: for a setting without a meaning
        :raises MemoryError: for a picture that is too large

        >>> g.render(width=64, area=(0, 0, 2048, 1560), background="file")[0, 0].tolist()
        [63, 63, 63, 255]
        """
        if isinstance(width, str):
            raise TypeError("the width of an array is a number")
        words = _words(area=_join(area), background=_text("background", background), line_scale=_number(line_scale),
                       black=_flag("black", black), min_line_width=_integer(min_line_width))
        return self._held.render(words + _size_words(width, height, area))

    def save(
        self,
        target: PathName | BinaryIO,
        *,
        format: str | None = None,
        width: int | str | None = None,
        height: int | None = None,
        page: str | None = None,
        margin: str | None = None,
        dpi: int | None = None,
        area: Sequence[int] | None = None,
        background: str = "white",
        line_scale: float | None = None,
        min_line_width: int | None = None,
        black: bool = False,
        dots: bool = False,
        quality: int | None = None,
    ) -> None:
        """Write a picture as the program plfconvert does.

        A file appears under its name only when it is whole.

        :param target: name of the file, or a binary file that is open for writing
        :param format: "png", "jpg", "svg", "pdf" or "eps"; by default the extension says it
        :param width: pixels, or a length such as "160mm"
        :param page: fit the graph on a page: "a4", "letter", "210mmx99mm"
        :param margin: of the page, such as "15mm"
        :param dpi: pixels per inch, for the size on paper, 96 by default
        :param min_line_width: the thinnest line, in the file's line widths; by default 5 for EPS, else 0
        :param dots: draw vectors of no length in EPS, as in all other formats
        :param quality: of a JPEG, 1 to 100
        :raises ValueError: for a setting without a meaning, a name with a zero byte, or a SOURCE_DATE_EPOCH that is no time
        :raises OSError: when the file cannot be written; FileExistsError for the name of a graph, which is never replaced

        The other settings are those of :meth:`render`.

        >>> g.save("bode.svg", width=800, background="file")
        """
        words = _words(format=_text("format", format), page=_text("page", page), margin=_text("margin", margin),
                       background=_text("background", background), dots=_flag("dots", dots), black=_flag("black", black),
                       dpi=_integer(dpi), area=_join(area), line_scale=_number(line_scale),
                       min_line_width=_integer(min_line_width), quality=_integer(quality))
        if hasattr(target, "write"):
            if format is None:
                raise ValueError("format is needed for a file that is open")
            words += _size_words(width, height, area, format)
            target.write(self._held.draw(words, format))
            return
        name = _file_name(target)
        kind = format or os.fsdecode(name).rpartition(".")[2]
        self._held.save(name, words + _size_words(width, height, area, kind))

    def _repr_png_(self) -> bytes:
        """The graph as a notebook shows it, 640 pixels wide."""
        return self._held.draw([], "png")


def read(source: PathName | BinaryIO | bytes | bytearray | memoryview, *, strict: bool = False) -> Graph:
    """Read a graph.

    :param source: name of a file or of a pipe, a binary file that is open for reading, or the bytes of a graph; each may be
        packed with gzip
    :param strict: refuse a graph that lacks something, or shows something else than its writer meant. Without it, a damaged
        graph gives what can be read of it, and ``damage`` says what is wrong.
    :raises PlfError: for what is no graph
    :raises OSError: for a file that cannot be read
    :raises ValueError: for a name with a zero byte

    >>> with open("samples/bode.plf", "rb") as file:
    ...     plotvw.read(file)
    <plotvw.Graph: 3436 vectors, 0 texts>
    >>> plotvw.read(bytes(g)[:5000]).damage[-1]
    Damage(kind='no end mark', offset=5000, count=1, loss=True)
    """
    damage_fails = _flag("strict", strict)
    if isinstance(source, (str, os.PathLike)):
        return _graph(_core.read_file(_file_name(source), damage_fails))
    content = source.read() if hasattr(source, "read") else source
    if isinstance(content, str):
        raise TypeError("the file is open for texts; open it with mode 'rb'")
    return _graph(_core.read_bytes(content, damage_fails))


class Comparison(NamedTuple):
    """How two graphs differ, as the program plfdiff says it."""

    #: The number of changes; 0 for graphs that draw the same.
    changes: int
    #: How many vectors are gone, new, moved, recolored, rewidened; texts that changed; reordered units of area.
    counts: dict[str, int]
    #: The longest and the median move of a vector, in units.
    farthest: float
    median_move: float
    other_background: bool
    #: What became of each vector of the first and of the second graph: uint8, an index of ``FATES``.
    first: npt.NDArray[np.uint8]
    second: npt.NDArray[np.uint8]
    #: Where the changes are: left, top, right, bottom in drawing units; those with the most changes first.
    areas: list[tuple[int, int, int, int]]


def diff(
    first: Graph,
    second: Graph,
    *,
    tolerance: float | str = 0,
    ignore: Sequence[str] = (),
    ignore_areas: Sequence[Sequence[int]] = (),
) -> Comparison:
    """Compare what two graphs draw: vectors, not pixels. Neither their direction counts nor how they are cut.

    :param tolerance: how far a vector may be from its place, in units, or a text such as "1%"
    :param ignore: what does not count: "color", "width", "text", "order", "background", "dots"
    :param ignore_areas: what is inside does not count; each is left, top, right, bottom in drawing units
    :raises ValueError: for a setting without a meaning, or graphs with too many vectors

    >>> plotvw.diff(g, g).changes
    0
    >>> other = plotvw.diff(g, plotvw.read("samples/tour.plf"))
    >>> other.changes > 0, len(g.vectors[other.first == plotvw.FATES.index("alone")]) == other.counts["gone"]
    (True, True)
    """
    for graph in (first, second):
        if not isinstance(graph, Graph):
            raise TypeError(f"expected a plotvw.Graph, not {type(graph).__name__}")
    distance = tolerance if isinstance(tolerance, str) else repr(float(tolerance))
    areas = [_join(area) or "" for area in ignore_areas]
    names = [ignore] if isinstance(ignore, str) else ignore
    ignored = ",".join(names)
    for setting, text in (("tolerance", distance), ("ignore", ignored)):
        _text(setting, text)
    return Comparison(*_core.compare(first._held, second._held, distance, ignored, areas))


@contextmanager
def keep_ready() -> Iterator[None]:
    """Keep Qt, which draws the pictures, ready for the next one.

    Otherwise each picture looks for fonts again, which takes longer than drawing a small graph; only pictures drawn at the
    same time share that. A program with windows of its own makes its application object before, or not inside.

    >>> with plotvw.keep_ready():
    ...     small = [g.render(width=width) for width in (100, 200, 300)]
    """
    readiness = _core.Readiness()
    readiness.enter()
    try:
        yield
    finally:
        readiness.exit()


def _graph(held: _core.Graph) -> Graph:
    graph = Graph.__new__(Graph)
    graph._held = held
    return graph


def _file_name(name: PathName | bytes) -> bytes:
    """A name as the system has it, which ends names at a zero byte."""
    encoded = os.fsencode(name)
    if b"\0" in encoded:
        raise ValueError("embedded null byte")
    return encoded


def _flag(setting: str, value: bool) -> bool:
    if not isinstance(value, (bool, np.bool_)):
        raise TypeError(f"{setting} is True or False, not {value!r}")
    return bool(value)


def _text(setting: str, value: str | None) -> str | None:
    """A text that UTF-8 can have, or None."""
    if value is None:
        return None
    if not isinstance(value, str):
        raise TypeError(f"{setting} is a text, not {value!r}")
    if any("\ud800" <= character <= "\udfff" for character in value):
        raise ValueError(f"{setting} {value!r}: half of a character")
    return value


def _integer(value: int | None) -> int | None:
    return None if value is None else operator.index(value)


def _number(value: float | None) -> float | None:
    return None if value is None else float(value)


def _join(values: Sequence[int] | None) -> str | None:
    """Integers as the converter's options have them."""
    return None if values is None else ",".join(str(operator.index(value)) for value in values)


def _words(**settings: Any) -> list[str]:
    """Settings as options of the converter; those without a value are left out."""
    given = {name.replace("_", "-"): value for name, value in settings.items() if value is not None and value is not False}
    return [f"--{name}" if value is True else f"--{name}={value}" for name, value in given.items()]


def _size_words(width: int | str | None, height: int | None, area: Sequence[int] | None, format: str = "png") -> list[str]:
    """The size as options of the converter, which knows none that has only a height."""
    if height is None:
        return _words(width=_text("width", width) if isinstance(width, str) else _integer(width))
    if width is None:
        left, top, right, bottom = (0, 0, WIDTH, HEIGHT) if area is None else map(operator.index, area)
        width = max(operator.index(height) * (right - left) // max(bottom - top, 1), 1)
        if format.lower() == "eps":
            return _words(width=width)
    if isinstance(width, str):
        raise ValueError("width and height together are pixels")
    return [f"--size={operator.index(width)}x{operator.index(height)}"]
