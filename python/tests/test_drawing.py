# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Pictures: arrays, files, settings."""
import io
import os
import pathlib
import subprocess

import numpy as np
import pytest

import plf
import plotvw

TRIANGLE = plotvw.read(plf.triangle())
SAMPLE = plf.TOP / "samples" / "energy.plf"  # it has texts


def pixels(png):
    """A PNG file as an array of RGBA, by another reader."""
    image = pytest.importorskip("PIL.Image").open(io.BytesIO(png))
    return np.asarray(image.convert("RGBA"))


def convert(tmp_path, name, *options):
    """What the converter writes for the sample."""
    picture = tmp_path / ("converted-" + name)
    subprocess.run([os.environ["PLFCONVERT_PROGRAM"], "--quiet", *options, SAMPLE, picture], check=True)
    return picture.read_bytes()


def test_an_array_has_the_pixels_of_the_png(tmp_path):
    g = plotvw.read(SAMPLE)
    assert (g.render() == pixels(convert(tmp_path, "a.png"))).all()
    options = "--width=333", "--background=transparent", "--area=100,200,3000,2500", "--line-scale=2"
    expected = pixels(convert(tmp_path, "b.png", *options))
    found = g.render(width=333, background="transparent", area=(100, 200, 3000, 2500), line_scale=2)
    assert (found == expected).all()


@pytest.mark.parametrize("name", ["a.png", "a.jpg", "a.svg", "a.pdf", "a.eps"])
def test_files_are_the_converters(name, tmp_path, monkeypatch):
    monkeypatch.setenv("SOURCE_DATE_EPOCH", "1000000000")
    g = plotvw.read(SAMPLE)
    expected = convert(tmp_path, name, "--width=500", "--background=file", "--min-line-width=9", "--black", "--dpi=200")
    settings = {"width": 500, "background": "file", "min_line_width": 9, "black": True, "dpi": 200}
    g.save(tmp_path / name, **settings)
    assert (tmp_path / name).read_bytes() == expected
    with open(tmp_path / "open", "wb") as file:
        g.save(file, format=name[2:], **settings)
    assert (tmp_path / "open").read_bytes() == expected


def test_a_pdf(tmp_path):
    TRIANGLE.save(tmp_path / "a.pdf", page="a4", margin="15mm")
    assert (tmp_path / "a.pdf").read_bytes().startswith(b"%PDF-")
    words = subprocess.run(["pdfinfo", tmp_path / "a.pdf"], check=True, capture_output=True, text=True).stdout
    assert "A4" in words


def test_sizes():
    assert TRIANGLE.render().shape == (487, 640, 4)
    assert TRIANGLE.render(width=100).shape == (76, 100, 4)
    assert TRIANGLE.render(height=78).shape == (78, 102, 4)
    assert TRIANGLE.render(width=30, height=70).shape == (70, 30, 4)
    assert TRIANGLE.render(height=50, area=(0, 0, 400, 100)).shape == (50, 200, 4)
    assert TRIANGLE.render(width=np.int64(64)).shape == (48, 64, 4)


def test_numbers_of_numpy(tmp_path):
    plain = {"area": (100, 200, 3000, 2500), "line_scale": 1.5, "min_line_width": 9, "black": True}
    numpy = {"area": np.array(plain["area"], np.int16), "line_scale": np.float32(1.5), "min_line_width": np.uint8(9), "black": np.True_}
    for size in ({"width": 90}, {"height": 70}, {"width": 90, "height": 70}):
        small = {name: np.uint8(value) for name, value in size.items()}
        assert (TRIANGLE.render(**numpy, **small) == TRIANGLE.render(**plain, **size)).all()
    assert (TRIANGLE.render(black=np.False_) == TRIANGLE.render(black=False)).all()
    TRIANGLE.save(tmp_path / "a.eps", dots=np.True_, dpi=np.int32(300), **numpy)
    TRIANGLE.save(tmp_path / "b.eps", dots=True, dpi=300, **plain)
    assert (tmp_path / "a.eps").read_bytes() == (tmp_path / "b.eps").read_bytes().replace(b"b.eps", b"a.eps")


def test_an_array_is_the_callers():
    image = TRIANGLE.render(width=20)
    assert (image.dtype, image.flags.writeable, image.flags.c_contiguous) == (np.uint8, True, True)
    image[:] = 7
    assert not (TRIANGLE.render(width=20) == 7).any()


def test_the_area_has_y_downward():
    left_bottom = plotvw.read(plf.graph(plf.polyline([(10, 10), (200, 200)])))
    assert (left_bottom.render(width=64, area=(0, 0, 400, 400))[..., :3] == 255).all()
    assert not (left_bottom.render(width=64, area=(0, 2720, 400, 3120))[..., :3] == 255).all()


def test_a_notebooks_picture():
    assert (pixels(TRIANGLE._repr_png_()) == TRIANGLE.render()).all()


@pytest.mark.parametrize(
    ("settings", "words"),
    [
        ({"width": 0}, "width '0'"),
        ({"width": -3}, "width '-3'"),
        ({"width": 40000}, "too large"),
        ({"width": 32767, "height": 32767}, "too large"),
        ({"height": 0}, "size"),
        ({"area": (0, 0, 0, 5)}, "area"),
        ({"area": (0, 0, 5000, 5)}, "area"),
        ({"area": (1, 2, 3)}, "area"),
        ({"background": "green"}, "background 'green'"),
        ({"line_scale": 0}, "line_scale '0.0'"),
        ({"line_scale": float("nan")}, "line_scale 'nan'"),
        ({"line_scale": float("inf")}, "line_scale 'inf'"),
        ({"min_line_width": -1}, "min_line_width '-1'"),
    ],
)
def test_settings_without_a_meaning(settings, words, tmp_path):
    with pytest.raises(ValueError) as raised:
        TRIANGLE.render(**settings)
    assert words in str(raised.value)
    with pytest.raises(ValueError):
        TRIANGLE.save(tmp_path / "a.png", **settings)
    assert not any(tmp_path.iterdir())


def test_numbers_are_numbers():
    for settings in ({"width": "64"}, {"width": 1.5}, {"area": "0,0,9,9"}, {"height": 2.0}):
        with pytest.raises(TypeError):
            TRIANGLE.render(**settings)


@pytest.mark.parametrize("setting", ["black", "dots"])
def test_switches_are_true_or_false(setting):
    for value in ("no", 1, None):
        with pytest.raises(TypeError, match=f"^{setting} is True or False, not "):
            TRIANGLE.save(io.BytesIO(), format="eps", **{setting: value})


@pytest.mark.parametrize("setting", ["format", "background", "page", "margin"])
def test_texts_are_texts(setting):
    for value, error in ((5, TypeError), ("\ud800", ValueError)):
        for other in ({}, {"height": 5}):
            with pytest.raises(error) as raised:
                TRIANGLE.save(io.BytesIO(), **{"format": "eps", setting: value, **other})
            assert setting in str(raised.value) and "_core" not in str(raised.value)


def test_a_source_date_that_is_wrong(tmp_path, monkeypatch):
    monkeypatch.setenv("SOURCE_DATE_EPOCH", "abc")
    for target in (tmp_path / "a.pdf", io.BytesIO()):
        with pytest.raises(ValueError, match="^SOURCE_DATE_EPOCH 'abc': expected"):
            TRIANGLE.save(target, format="pdf")
    assert not any(tmp_path.iterdir())


def test_formats(tmp_path):
    with pytest.raises(ValueError, match="unknown extension"):
        TRIANGLE.save(tmp_path / "picture")
    with pytest.raises(ValueError, match="format is needed"):
        TRIANGLE.save(io.BytesIO())
    with pytest.raises(ValueError, match="transparent"):
        TRIANGLE.save(tmp_path / "a.jpg", background="transparent")
    with pytest.raises(ValueError, match="quality"):
        TRIANGLE.save(tmp_path / "a.png", quality=5)
    TRIANGLE.save(tmp_path / "picture", format="png")
    assert (tmp_path / "picture").read_bytes() == TRIANGLE._repr_png_()
    TRIANGLE.save(tmp_path / "a.eps", height=100)
    assert b"%%BoundingBox" in (tmp_path / "a.eps").read_bytes()


def test_names_with_a_meaning_elsewhere(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    for name in ("-", "--width=5", "-q"):
        TRIANGLE.save(name, format="png")
        assert (tmp_path / name).read_bytes() == TRIANGLE._repr_png_()


def test_a_name_with_a_zero_byte(tmp_path):
    name = str(tmp_path / "a.png\0.svg")
    for target in (name, os.fsencode(name), pathlib.Path(name)):
        with pytest.raises(ValueError, match="embedded null byte"):
            TRIANGLE.save(target)
    assert not any(tmp_path.iterdir())


def test_a_graph_is_never_replaced(tmp_path):
    path = tmp_path / "graph.png"
    path.write_bytes(plf.triangle())
    with pytest.raises(FileExistsError) as raised:
        TRIANGLE.save(path)
    assert raised.value.filename == str(path)
    assert path.read_bytes() == plf.triangle()


def test_files_that_cannot_be_written(tmp_path):
    with pytest.raises(FileNotFoundError) as raised:
        TRIANGLE.save(tmp_path / "missing" / "a.png")
    assert raised.value.filename == str(tmp_path / "missing" / "a.png")
    (tmp_path / "folder.png").mkdir()
    with pytest.raises(OSError):
        TRIANGLE.save(tmp_path / "folder.png")
    assert [path.name for path in tmp_path.iterdir()] == ["folder.png"]


def test_a_text_that_is_too_long_is_a_warning(capfd):
    g = plotvw.read(plf.graph(plf.text(b"x" * 1200, 5, 5)))
    with pytest.warns(UserWarning, match="longer than") as warned:
        g.render(width=50)
    assert warned[0].filename == __file__
    assert g.damage[0].kind == "text too long"
    assert capfd.readouterr() == ("", "")
