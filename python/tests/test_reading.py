# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Reading: sources, data, errors."""
import errno
import gzip
import io
import json
import mmap
import os
import pathlib
import pickle
import subprocess
import threading

import numpy as np
import pytest

import plf
import plotvw

TRIANGLE = plf.triangle()


def test_every_source_gives_the_same_graph(tmp_path):
    path = tmp_path / "graph.plf"
    path.write_bytes(TRIANGLE)
    with open(path, "rb") as file, open(path, "rb") as mapped:
        memory = mmap.mmap(mapped.fileno(), 0, access=mmap.ACCESS_READ)
        sources = [str(path), path, TRIANGLE, bytearray(TRIANGLE), memoryview(TRIANGLE), file, io.BytesIO(TRIANGLE), memory]
        graphs = [plotvw.read(source) for source in sources]
    assert [g.vectors.tolist() for g in graphs] == [graphs[0].vectors.tolist()] * len(sources)
    assert [bytes(g) for g in graphs] == [TRIANGLE] * len(sources)


def test_a_name_that_is_not_utf8(tmp_path):
    name = os.fsencode(tmp_path) + b"/gr\xe4ph.plf"
    with open(name, "wb") as file:
        file.write(TRIANGLE)
    assert len(plotvw.read(os.fsdecode(name)).vectors) == 3


def test_vectors():
    v = plotvw.read(TRIANGLE).vectors
    assert v.dtype.names == ("x1", "y1", "x2", "y2", "color", "width", "path")
    assert v.dtype.itemsize == 20
    assert v[["x1", "y1", "x2", "y2"]].tolist() == [(1000, 500, 3000, 500), (3000, 500, 2000, 2500), (2000, 2500, 1000, 500)]
    assert v["width"].tolist() == [13] * 3
    assert v["path"].tolist() == [0] * 3


def test_vectors_are_the_graphs_memory():
    g = plotvw.read(TRIANGLE)
    first, second = g.vectors, g.vectors
    assert first.ctypes.data == second.ctypes.data
    with pytest.raises(ValueError):
        first["x1"] = 0
    with pytest.raises(ValueError):
        first.setflags(write=True)


def test_vectors_outlive_their_graph():
    v = plotvw.read(plf.SAMPLES[0]).vectors
    copy = v.copy()
    others = [plotvw.read(sample) for sample in plf.SAMPLES]
    assert others and (v == copy).all()


def test_an_empty_graph():
    g = plotvw.read(plf.graph())
    assert len(g.vectors) == 0
    assert not g.vectors.flags.writeable
    assert g.paths() == []
    assert g.texts == []
    assert (g.render(width=40)[..., :3] == 255).all()


def test_paths():
    lines = [[(0, 0), (10, 20), (30, 5)], [(4095, 3119), (7, 8)]]
    paths = plotvw.read(plf.graph(*map(plf.polyline, lines))).paths()
    assert [path.tolist() for path in paths] == [[list(point) for point in line] for line in lines]
    assert [path.dtype for path in paths] == [np.dtype(np.int32)] * 2


def test_texts():
    g = plotvw.read(plf.graph(plf.polyline([(0, 0), (5, 5)]), plf.text("Größe".encode("latin-1"), 100, 3000)))
    assert g.texts == [plotvw.Text("Größe", 100, 3000, 1, 0, "", 0, 0, False, False)]
    assert g.texts[0].before == 1


def test_the_background_and_the_palette():
    g = plotvw.read(TRIANGLE)
    assert g.background == 15
    assert g.palette.shape == (17, 3)
    assert g.palette[[0, 1, 12, 15, 16]].tolist() == [[0, 0, 0], [0, 0, 127], [255, 0, 0], [255] * 3, [255] * 3]
    with pytest.raises(ValueError):
        g.palette[0] = 1


def test_the_palette_of_one_is_that_of_all():
    g = plotvw.read(TRIANGLE)
    for palette in (g.palette, plotvw.PALETTE):
        while isinstance(palette, np.ndarray):
            with pytest.raises(ValueError):
                palette.setflags(write=True)
            palette = palette.base
    g.palette.shape = (51,)
    assert g.palette.shape == plotvw.PALETTE.shape == (17, 3)


@pytest.mark.parametrize("sample", plf.SAMPLES, ids=lambda sample: sample.stem)
def test_info_is_what_plfinfo_says(sample):
    output = subprocess.run([os.environ["PLFINFO_PROGRAM"], "--json", sample], check=True, capture_output=True).stdout
    (expected,) = json.loads(output)["graphs"]
    del expected["file"]
    g = plotvw.read(sample)
    assert g.info() == expected
    assert len(g.vectors) == expected["vectors"]
    assert [damage._asdict() for damage in g.damage] == [
        {**damage, "loss": damage["kind"] != "unknown command"} for damage in expected["damage"]
    ]


@pytest.mark.parametrize(
    ("content", "reason", "offset"),
    [
        (b"", "is empty", 0),
        (b"something else", "not a PLF graph", 0),
        (plf.HEADER[:5], "not a PLF graph", 5),
        (plf.HEADER[:9] + b"x" + plf.HEADER[10:], "not a PLF graph", 9),
    ],
)
def test_what_is_no_graph(content, reason, offset, tmp_path):
    path = tmp_path / "file"
    path.write_bytes(content)
    for source in (content, path, io.BytesIO(content)):
        with pytest.raises(plotvw.PlfError) as raised:
            plotvw.read(source)
        assert (raised.value.reason, raised.value.offset) == (reason, offset)


def test_strict_refuses_the_first_loss():
    whole, cut = plf.SAMPLES[0].read_bytes(), plf.SAMPLES[0].read_bytes()[:3000]
    assert len(plotvw.read(whole, strict=True).vectors) > 0
    assert len(plotvw.read(cut).vectors) > 0
    with pytest.raises(plotvw.PlfError) as raised:
        plotvw.read(cut, strict=True)
    losses = [damage for damage in plotvw.read(cut).damage if damage.loss]
    assert (raised.value.reason, raised.value.offset) == min(losses, key=lambda loss: loss.offset)[:2]


def test_strict_accepts_unknown_commands():
    tour = next(sample for sample in plf.SAMPLES if sample.stem == "tour")
    assert plotvw.read(tour, strict=True).damage[0].kind == "unknown command"


def test_files_that_cannot_be_read(tmp_path):
    with pytest.raises(FileNotFoundError) as raised:
        plotvw.read(tmp_path / "missing.plf")
    assert raised.value.filename == str(tmp_path / "missing.plf")
    with pytest.raises(IsADirectoryError):
        plotvw.read(tmp_path)
    # Nothing is mapped at the beginning of the memory.
    with pytest.raises(OSError) as raised:
        plotvw.read("/proc/self/mem")
    assert (raised.value.errno, raised.value.filename) == (errno.EIO, "/proc/self/mem")


def test_a_name_with_a_zero_byte(tmp_path):
    path = tmp_path / "graph.plf"
    path.write_bytes(TRIANGLE)
    for name in (f"{path}\0zzz", pathlib.Path(f"{path}\0zzz")):
        with pytest.raises(ValueError, match="embedded null byte"):
            plotvw.read(name)


@pytest.mark.parametrize(
    ("packed", "reason"),
    [
        (gzip.compress(TRIANGLE)[:12], "is cut off, as gzip data"),
        (b"\x1f\x8b\x07" + bytes(20), "is damaged, as gzip data"),
        (gzip.compress(b"something else"), "not a PLF graph"),
    ],
)
def test_what_is_no_packed_graph(packed, reason, tmp_path):
    path = tmp_path / "file.gz"
    path.write_bytes(packed)
    for source in (packed, path, io.BytesIO(packed)):
        with pytest.raises(plotvw.PlfError) as raised:
            plotvw.read(source)
        assert (raised.value.reason, raised.value.offset) == (reason, 0)


@pytest.mark.parametrize("packed", [gzip.compress(TRIANGLE)[:-8], gzip.compress(TRIANGLE)[:-8] + bytes(8)])
def test_packed_graph_that_is_cut(packed):
    cut = plotvw.read(packed)
    assert bytes(cut) == TRIANGLE
    assert [(each.kind, each.offset) for each in cut.damage] == [("cut in the packed data", len(TRIANGLE))]
    with pytest.raises(plotvw.PlfError):
        plotvw.read(packed, strict=True)


def test_packed_graphs_and_pipes(tmp_path):
    packed = gzip.compress(TRIANGLE)
    (tmp_path / "graph.plf.gz").write_bytes(packed)
    for source in (tmp_path / "graph.plf.gz", packed, io.BytesIO(packed), packed[:] + gzip.compress(b"more")):
        assert bytes(plotvw.read(source)).startswith(TRIANGLE)
    assert bytes(plotvw.read(packed)) == TRIANGLE
    with gzip.open(tmp_path / "graph.plf.gz") as file:
        assert bytes(plotvw.read(file)) == TRIANGLE
    os.mkfifo(tmp_path / "pipe")
    writer = threading.Thread(target=(tmp_path / "pipe").write_bytes, args=(TRIANGLE,))
    writer.start()
    assert bytes(plotvw.read(tmp_path / "pipe")) == TRIANGLE
    writer.join()


def test_what_is_no_source(tmp_path):
    with pytest.raises(TypeError):
        plotvw.read(17)
    with pytest.raises(TypeError, match="'rb'"):
        plotvw.read(io.StringIO("text"))
    with pytest.raises(TypeError):
        plotvw.Graph()
    for strict in ("x", None):
        with pytest.raises(TypeError, match="^strict is True or False, not "):
            plotvw.read(TRIANGLE, strict=strict)
    assert len(plotvw.read(TRIANGLE, strict=np.True_).vectors) == 3


def test_graphs_and_errors_travel():
    g = pickle.loads(pickle.dumps(plotvw.read(TRIANGLE)))
    assert bytes(g) == TRIANGLE
    error = pickle.loads(pickle.dumps(plotvw.PlfError("is empty", 3)))
    assert (error.reason, error.offset, str(error)) == ("is empty", 3, "is empty (at byte 3)")
