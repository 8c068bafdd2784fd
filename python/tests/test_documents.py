# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""The examples in docstrings and pages, and the types."""
import doctest
import shutil

import numpy as np
import pytest

import plf
import plotvw


@pytest.fixture(autouse=True)
def folder(tmp_path, monkeypatch):
    """A folder with the samples, as after getting the sources."""
    (tmp_path / "samples").symlink_to(plf.TOP / "samples")
    monkeypatch.chdir(tmp_path)


def names():
    """What the examples have."""
    return {"plotvw": plotvw, "np": np, "g": plotvw.read("samples/bode.plf")}


def test_docstrings():
    failed, tried = doctest.testmod(plotvw, extraglobs=names())
    assert (failed, tried > 10) == (0, True)


def test_the_page():
    page = plf.TOP / "docs" / "PYTHON.md"
    examples = page.read_text(encoding="utf-8").replace("```", "\n")  # the end of a block is no output
    failed, tried = doctest.DocTestRunner().run(doctest.DocTestParser().get_doctest(examples, names(), page.name, str(page), 0))
    assert (failed, tried > 10) == (0, True)


def test_everything_has_a_docstring():
    for name in plotvw.__all__:
        assert getattr(plotvw, name).__doc__
    methods = [value for name, value in vars(plotvw.Graph).items() if not name.startswith("__") and name != "_held"]
    assert methods and all(method.__doc__ for method in methods)


@pytest.mark.skipif(shutil.which("mypy") is None, reason="there is no mypy")
def test_types():
    mypy = pytest.importorskip("mypy.api")
    output, errors, status = mypy.run(["--strict", "--cache-dir=/dev/null", str(plf.TOP / "python" / "plotvw")])
    assert (status, errors) == (0, ""), output
