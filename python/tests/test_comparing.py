# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Comparing graphs."""
import numpy as np
import pytest

import plf
import plotvw

LINES = [[(100, 100), (900, 100), (900, 800)], [(2000, 2000), (3000, 2500)]]
FIRST = plotvw.read(plf.graph(*map(plf.polyline, LINES)))
MOVED = plotvw.read(plf.graph(plf.polyline(LINES[0]), plf.polyline([(2000, 2006), (3000, 2506)])))


def fates(array):
    """Names instead of numbers."""
    return [plotvw.FATES[number] for number in array]


def test_the_same_in_other_bytes():
    reversed_lines = plotvw.read(plf.graph(*(plf.polyline(line[::-1]) for line in LINES[::-1])))
    result = plotvw.diff(FIRST, reversed_lines)
    assert (result.changes, result.areas, fates(result.first)) == (0, [], ["found"] * 3)


def test_a_vector_that_moved():
    result = plotvw.diff(FIRST, MOVED)
    assert (result.changes, result.counts["moved"], result.farthest) == (1, 1, 6.0)
    assert fates(result.first) == fates(result.second) == ["found", "found", "moved"]
    left, top, right, bottom = result.areas[0]
    assert left <= 2000 and right >= 3000 and top <= 3120 - 2506 and bottom >= 3120 - 2000
    assert plotvw.diff(FIRST, MOVED, tolerance=5.9).changes == 1
    assert plotvw.diff(FIRST, MOVED, tolerance=6).changes == 0
    assert plotvw.diff(FIRST, MOVED, tolerance="1%").changes == 0


def test_what_does_not_count():
    assert plotvw.diff(FIRST, MOVED, ignore_areas=[(1900, 500, 3100, 1200)]).changes == 0
    wide = plotvw.read(plf.graph(b"\x1bGT" + plf.integer(50), *map(plf.polyline, LINES)))
    assert plotvw.diff(FIRST, wide).counts["rewidened"] == 3
    assert plotvw.diff(FIRST, wide, ignore=["width"]).changes == 0
    assert plotvw.diff(FIRST, wide, ignore="width").changes == 0


@pytest.mark.parametrize("settings", [
    {"tolerance": -1}, {"tolerance": "far"}, {"tolerance": float("nan")},
    {"ignore": ["taste"]}, {"ignore_areas": [(1, 2, 3)]}, {"tolerance": "\ud800"}, {"ignore": ["\ud800"]},
])
def test_settings_without_a_meaning(settings):
    with pytest.raises(ValueError, match=r"tolerance|ignore|area"):
        plotvw.diff(FIRST, MOVED, **settings)


def test_what_is_no_graph():
    for pair in ((None, FIRST), (FIRST, b"bytes"), ("name.plf", FIRST)):
        with pytest.raises(TypeError, match=r"expected a plotvw\.Graph, not (NoneType|bytes|str)"):
            plotvw.diff(*pair)


def test_numbers_of_numpy():
    area = np.array([[1900, 500, 3100, 1200]], np.int16)
    assert plotvw.diff(FIRST, MOVED, ignore_areas=area).changes == 0
    assert [plotvw.diff(FIRST, MOVED, tolerance=tolerance).changes for tolerance in (np.float32(5.5), np.uint8(6))] == [1, 0]
