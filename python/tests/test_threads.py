# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Threads."""
import io
import os
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import pytest

import plf
import plotvw


def everything(sample):
    """All that can be had of a graph."""
    g = plotvw.read(sample)
    files = []
    for format in ("png", "svg", "pdf", "eps"):
        file = io.BytesIO()
        g.save(file, format=format, background="file")
        files.append(file.getvalue())
    return [g.vectors.tobytes(), g.texts, g.info(), g.render(width=500).tobytes(), *files]


def test_eight_threads_give_the_bytes_of_one(monkeypatch):
    monkeypatch.setenv("SOURCE_DATE_EPOCH", "1000000000")
    assert len(plf.SAMPLES) == 8
    expected = [everything(sample) for sample in plf.SAMPLES]
    with ThreadPoolExecutor(8) as threads:
        for _ in range(3):
            assert list(threads.map(everything, plf.SAMPLES)) == expected


def test_eight_threads_share_a_graph():
    g = plotvw.read(plf.SAMPLES[0])
    expected = g.render().tobytes()
    with ThreadPoolExecutor(8) as threads:
        assert {image.tobytes() for image in threads.map(lambda _: g.render(), range(16))} == {expected}


@pytest.fixture(name="no_switches")
def fixture_no_switches():
    """The interpreter's lock changes hands only where somebody releases it."""
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    yield
    sys.setswitchinterval(interval)


LARGE = plf.graph(*[plf.polyline([(i % 4096, i % 3000), (5, 5), (4000, i % 3000)]) for i in range(20000)])
CALLS = {
    "read bytes": lambda g, folder: plotvw.read(LARGE),
    "read a file": lambda g, folder: plotvw.read(folder / "large.plf"),
    "render": lambda g, folder: g.render(),
    "draw": lambda g, folder: g._repr_png_(),
    "save": lambda g, folder: g.save(folder / "a.eps"),
    "diff": lambda g, folder: plotvw.diff(g, g),
    "info": lambda g, folder: g.info(),
}


@pytest.mark.usefixtures("no_switches")
@pytest.mark.parametrize("call", CALLS.values(), ids=CALLS)
def test_others_go_on(call, tmp_path):
    (tmp_path / "large.plf").write_bytes(LARGE)
    g = plotvw.read(LARGE)
    rounds, seen = [0], threading.Event()

    def work():
        for _ in range(500):
            before = rounds[0]
            call(g, tmp_path)
            if rounds[0] != before:
                seen.set()
                return

    worker = threading.Thread(target=work)
    worker.start()
    while worker.is_alive():
        rounds[0] += 1
        time.sleep(0)  # gives the lock away
    assert seen.is_set()


@pytest.mark.skipif(not hasattr(os, "fork"), reason="no processes by fork")
def test_a_forked_process_draws():
    g = plotvw.read(plf.TOP / "samples" / "energy.plf")
    expected = g.render().tobytes()
    child = os.fork()
    if child == 0:
        os._exit(0 if g.render().tobytes() == expected else 1)
    assert os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 0
