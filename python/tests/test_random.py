# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""What holds for every graph, and for every file."""
import pytest
from hypothesis import HealthCheck, given, settings
from hypothesis import strategies as st

import plf
import plotvw

points = st.tuples(st.integers(0, 4095), st.integers(0, 4095))
polylines = st.lists(st.tuples(st.integers(0, 5000), st.lists(points, min_size=2, max_size=9)), max_size=12)
plain = {"deadline": None, "database": None, "suppress_health_check": list(HealthCheck)}


def write(lines):
    """Polylines, each with its width, as a graph."""
    return plf.graph(*(b"\x1bGT" + plf.integer(width) + plf.polyline(line) for width, line in lines))


@settings(**plain)
@given(polylines)
def test_what_is_written_is_read(lines):
    g = plotvw.read(write(lines), strict=True)
    expected = [
        (*begin, *end, 0, width, number)
        for number, (width, line) in enumerate(lines)
        for begin, end in zip(line, line[1:])
    ]
    assert g.vectors.tolist() == expected
    assert [[tuple(point) for point in path.tolist()] for path in g.paths()] == [line for _, line in lines]
    assert g.info()["vectors"] == len(expected)
    assert g.damage == []


@settings(**plain)
@given(st.binary(max_size=200), st.booleans())
def test_no_bytes_do_harm(content, has_header):
    content = plf.HEADER + content if has_header else content
    try:
        g = plotvw.read(content)
    except plotvw.PlfError as error:
        assert not has_header
        assert 0 <= error.offset <= len(content)
        return
    vectors = g.vectors
    assert all(((vectors[name] >= 0) & (vectors[name] <= 4095)).all() for name in ("x1", "y1", "x2", "y2"))
    assert (vectors["color"] < len(g.palette)).all()
    assert sum(len(path) - 1 for path in g.paths()) == len(vectors)
    assert g.info()["vectors"] == len(vectors)
    assert all(0 <= damage.offset <= len(content) for damage in g.damage)
    assert bytes(g) == content


@settings(max_examples=30, **plain)
@given(st.sampled_from(plf.SAMPLES), st.data())
@pytest.mark.filterwarnings("ignore::UserWarning")
def test_damaged_samples_are_drawn(sample, data):
    content = bytearray(sample.read_bytes())
    for _ in range(data.draw(st.integers(1, 20))):
        content[data.draw(st.integers(len(plf.HEADER), len(content) - 1))] = data.draw(st.integers(0, 255))
    g = plotvw.read(content[: data.draw(st.integers(len(plf.HEADER), len(content)))])
    assert g.render(width=80, background="file").shape == (60, 80, 4)
