# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""The examples, as a user runs them."""
import importlib.util
import os
import signal
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import plf
import plotvw

FOLDER = plf.TOP / "python" / "examples"
GRAPHS = 10000


def run(name, *arguments):
    """Run an example; return what it prints."""
    result = subprocess.run(
        [sys.executable, FOLDER / name, *arguments],
        env=plf.environment(MPLBACKEND="Agg"), capture_output=True, text=True, check=False,
    )
    assert result.returncode == 0, result.stderr
    return result.stdout


def calls():
    """The calls of examples that the page has."""
    lines = (plf.TOP / "docs" / "PYTHON.md").read_text(encoding="utf-8").splitlines()
    return [line.split("#")[0].split() for line in lines if line.startswith("    python3 python/examples/")]


@pytest.mark.parametrize("call", calls(), ids=lambda call: Path(call[1]).stem)
def test_the_calls_of_the_page(call, tmp_path):
    for name in ("python", "samples"):
        (tmp_path / name).symlink_to(plf.TOP / name)
    environment = plf.environment(MPLBACKEND="Agg", HOME=str(tmp_path))
    subprocess.run([sys.executable, *call[1:]], env=environment, cwd=tmp_path, check=True, capture_output=True)
    made = tmp_path / call[-1]
    assert len(list(made.glob("*.png"))) == len(plf.SAMPLES) if made.is_dir() else made.stat().st_size > 100


def test_every_example_has_a_call():
    assert sorted(Path(call[1]).name for call in calls()) == sorted(path.name for path in FOLDER.glob("*.py"))


@pytest.mark.parametrize("name", ["table.py", "many_machines.py"])
def test_usage(name, tmp_path):
    def said(*arguments):
        command = [sys.executable, FOLDER / name, *arguments]
        result = subprocess.run(command, env=plf.environment(), capture_output=True, text=True, check=False)
        assert result.returncode == 1
        return result.stderr

    assert f"usage: {name} " in said()
    arguments = {"table.py": [tmp_path], "many_machines.py": ["local", tmp_path, tmp_path / "pictures"]}
    assert said(*arguments[name]).startswith("there are no graphs ")


def load(name):
    """An example as a module."""
    spec = importlib.util.spec_from_file_location(name, FOLDER / (name + ".py"))
    module = sys.modules[name] = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def image(path):
    """A picture as an array."""
    return np.asarray(pytest.importorskip("PIL.Image").open(path).convert("RGB"))


def test_a_plot_has_the_colors(tmp_path):
    sample = plf.TOP / "samples" / "energy.plf"
    run("collection.py", sample, tmp_path / "plot.png")
    colors = {tuple(color) for color in image(tmp_path / "plot.png").reshape(-1, 3).tolist()}
    g = plotvw.read(sample)
    assert tuple(g.palette[g.background].tolist()) in colors


def test_a_histogram(tmp_path):
    run("lengths.py", plf.TOP / "samples" / "plate.plf", tmp_path / "plot.png")
    assert len(np.unique(image(tmp_path / "plot.png").reshape(-1, 3), axis=0)) > 2
    lengths = load("lengths").lengths(plotvw.read(plf.triangle()))
    assert lengths.tolist() == pytest.approx([2000, 5**0.5 * 1000, 5**0.5 * 1000])


def test_a_table_of_a_thousand_graphs(tmp_path):
    for number in range(999):
        (tmp_path / f"{number:03}.plf").write_bytes(plf.graph(plf.polyline([(0, 0)] + [(3, 4)] * (number % 7))))
    (tmp_path / "broken.plf").write_bytes(b"nothing")
    table = load("table").table(tmp_path)
    assert len(table) == 1000
    assert table["vectors"].sum() == sum(number % 7 for number in range(999))
    assert table["problem"].dropna().tolist() == ["not a PLF graph (at byte 0)"]
    assert "vectors" in run("table.py", tmp_path, tmp_path / "table.csv")
    assert (tmp_path / "table.csv").read_text().count("\n") == 1001


@pytest.mark.filterwarnings("ignore")
def test_a_worker_is_killed_and_nothing_is_lost(tmp_path):
    distributed = pytest.importorskip("distributed")
    example = load("many_machines")
    graphs, pictures = tmp_path / "graphs", tmp_path / "pictures"
    graphs.mkdir()
    pictures.mkdir()
    for number in range(GRAPHS):
        line = [(number % 4096, number // 4096), (4000, 3000), (number % 4096, 100)]
        (graphs / f"{number:05}.plf").write_bytes(plf.graph(plf.polyline(line[: 2 + number % 2])))
    names = sorted(map(str, graphs.glob("*.plf")))
    settings = {"n_workers": 2, "threads_per_worker": 1, "processes": True, "dashboard_address": None}
    with distributed.LocalCluster(local_directory=str(tmp_path / "dask"), **settings) as cluster:
        with distributed.Client(cluster) as client:
            # The function travels by value: the workers do not know the example's module.
            distributed.protocol.pickle.cloudpickle.register_pickle_by_value(example)
            futures = client.map(example.convert, [names[i : i + 50] for i in range(0, GRAPHS, 50)],
                                 pictures=str(pictures), retries=3, pure=False)
            distributed.wait(futures[:20])
            victim = next(iter(client.run(os.getpid).values()))
            os.kill(victim, signal.SIGKILL)
            assert not all(future.done() for future in futures)
            rows = [row for rows in client.gather(futures) for row in rows]
            assert victim not in client.run(os.getpid).values()
    assert [row[0] for row in rows] == names
    assert [row[1:] for row in rows] == [(1 + number % 2, None) for number in range(GRAPHS)]
    found = sorted(path.name for path in pictures.iterdir() if not path.name.startswith("."))
    assert found == [f"{number:05}.png" for number in range(GRAPHS)]
    for number in (0, 1, 4999, GRAPHS - 1):
        expected = plotvw.read(names[number]).render(width=320)[..., :3]
        assert (image(pictures / f"{number:05}.png") == expected).all()
