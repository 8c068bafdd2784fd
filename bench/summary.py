#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Make one table of what ../bench.sh measured: ratios of two things, each pair from one run.

    summary.py DIR      DIR holds draw.json, fill.json, eps.json, drag.json, process.txt, cores.txt, startup.txt
                    and diff.txt
"""
import json
import sys
from pathlib import Path

PENS = (0, 2, 8)
GRAPHS = ("walk", "surface")
WIDTHS = (4, 16, 80)  # as a file says them; a pen is half as wide
# Largest ratio, or smallest where more is better.
DRAW_TARGETS = {0: 1.05, 2: 1.05, 8: 1.02}
# What a user waits for in a window of a million vectors; no targets.
STEPS = {"begin": "press", "zoom": "zoom by 16", "Escape": "Escape", "resize": "resize"}
MIB = 1024  # kilobytes


def load(path):
    """The benchmarks of a file by name."""
    with open(path, encoding="utf-8") as file:
        return {row["name"].replace("/real_time", ""): row for row in json.load(file)["benchmarks"]}


def median_rows(rows):
    """Medians where a benchmark was repeated, else the runs themselves; by plain name."""
    medians = {name.removesuffix("_median"): row for name, row in rows.items() if name.endswith("_median")}
    return medians or rows


class Table:
    """Rows of a Markdown table."""

    def __init__(self):
        print("| What | Compared with | Ratio | Target | |\n|---|---|---:|---:|---|")

    @staticmethod
    def at_most(what, beside, ratio, target):
        """A row where less is better."""
        Table.row(what, beside, f"{ratio:.2f}", f"≤ {target}", ratio <= target)

    @staticmethod
    def at_least(what, beside, ratio, target):
        """A row where more is better."""
        Table.row(what, beside, f"{ratio:.1f}", f"≥ {target}", ratio >= target)

    @staticmethod
    def row(what, beside, ratio, target, met):
        """Any row; one without a target is neither met nor missed."""
        result = "" if not target else "met" if met else "missed"
        print(f"| {what} | {beside} | {ratio} | {target} | {result} |")


def draw(table, rows):
    """Painting, decoding, parts of pictures and growth: processor time."""
    cpu = {name: row["cpu_time"] for name, row in rows.items()}
    for graph in GRAPHS:
        for pen in PENS:
            table.at_most(f"drawing {graph}, pen {pen}", "its lines by Qt's fastest call",
                          cpu[f"{graph}/draw/pen:{pen}"] / cpu[f"{graph}/lines/pen:{pen}"], DRAW_TARGETS[pen])
    for graph in GRAPHS:
        table.at_most(f"decoding {graph}", "a minimal address reader",
                      cpu[f"{graph}/decode"] / cpu[f"{graph}/bytes"], 1.5)
    table.at_least("decoding walk, million vectors/s", "", rows["walk/decode"]["items_per_second"] / 1e6, 100)
    for graph, kind in (("even", "joined"), ("separate", "separate")):
        full = cpu[f"{graph}/draw/pen:0"]
        table.at_most(f"1 % of the area, {kind} vectors spread evenly", "the whole", cpu[f"{graph}/zoomed"] / full, 0.10)
        table.at_most(f"1 % of the area, {kind} vectors spread evenly", "decoding alone",
                      cpu[f"{graph}/zoomed"] / cpu[f"{graph}/decode"], 1.5)
        table.at_most("a strip 10 pixels high of them", "the whole", cpu[f"{graph}/strip"] / full, 0.15)
    for kind in ("decode", "draw"):
        each = [cpu[f"growth/{kind}/{10**power}"] / 10**power for power in range(4, 8)]
        spread = (max(each) - min(each)) / (max(each) + min(each)) * 100
        table.row(f"{kind}, 10⁴ to 10⁷ vectors", "time per vector", f"±{spread:.0f} %", "±15 %", spread <= 15)


def fill(table, rows):
    """The default window and other shapes: processor time of one core, real time of two."""
    rows = {name.split("/process_time")[0]: row for name, row in rows.items()}
    cpu = {name: row["cpu_time"] for name, row in rows.items()}
    real = {name: row["real_time"] for name, row in rows.items()}
    for size, shape in (("640x446", "default window"), ("1280x892", "large window"), ("1024x780", "graph's shape")):
        for graph in (*GRAPHS, "long"):
            for width in (0, *WIDTHS):
                name = f"{graph}/{size}/width:{width}"
                what = f"{shape}: {graph}, width {width}"
                if width == 0:
                    one = 0.40 if graph == "long" else 0.75
                    two = 0.25 if graph == "long" else 0.45
                    table.at_most(f"{what}, two cores", "one call per line",
                                  real[f"{name}/two"] / real[f"{name}/painter"], two)
                elif shape == "graph's shape":
                    one = 1.05
                else:
                    one = 0.45 if graph == "long" else 0.30
                table.at_most(what, "one call per line", cpu[f"{name}/one"] / cpu[f"{name}/painter"], one)
                if width == 0 or shape != "graph's shape":
                    table.at_most(f"{what}, two cores", "one core", real[f"{name}/two"] / real[f"{name}/one"], 0.60)
    for graph in (*GRAPHS, "long"):
        for width in (0, *WIDTHS):
            zooms(table, rows, f"{graph}/640x446/width:{width}")
    name = "diagonals/pen:56"
    table.at_most("full diagonals, pen of 56 units", "one call per line",
                  cpu[f"{name}/filler"] / cpu[f"{name}/painter"], 0.12)


def zooms(table, rows, name):
    """One graph in the default window: zooms, of which the slowest counts, and the work of bands."""
    cpu = {row: figures["cpu_time"] for row, figures in rows.items()}
    what = name.replace("/640x446/width:", ", width ")
    for times, target in ((10, 1.0), (100, 1.0), (4096, 0.3)):
        slowest = max(cpu[f"{name}/zoom:{times}/{place}"] for place in range(5))
        table.at_most(f"{what}, enlarged {times} times", "the whole", slowest / cpu[f"{name}/one"], target)
    table.at_most(f"{what}, eight bands, all work", "one band",
                  cpu[f"{name}/bands:8"] / cpu[f"{name}/bands:1"], 1.15)


def cores(table, path):
    """Whole conversions: the lines of cores.sh."""
    for line in path.read_text(encoding="utf-8").splitlines():
        what, one, two = line.rsplit(" ", 2)
        if float(one) > 0.2:
            table.at_most(f"plfconvert, {what}, two cores", "one core", float(two) / float(one), 0.65)


def eps(table, rows):
    """The export beside one write: real time, as both wait for the file system."""
    for graph in GRAPHS:
        table.at_most(f"EPS of {graph}", "one write of its bytes",
                      rows[f"{graph}/export"]["real_time"] / rows[f"{graph}/write"]["real_time"], 3)


def process(table, path):
    """Whole processes: the lines of compare-eps.sh."""
    for line in path.read_text(encoding="utf-8").splitlines()[1:]:
        graph, ours, theirs, _ = line.split()
        table.at_least(f"EPS of {graph}, whole process", "`tek2plot -T ps`", float(theirs) / float(ours),
                       {"walk": 3, "surface": 20}[graph])


def startup(table, path):
    """Start and memory: the lines of startup, for the empty program, a small graph and a large one."""
    lines = [line.split() for line in path.read_text(encoding="utf-8").splitlines()]
    (empty_ms, empty_kb), (small_ms, _), (_, large_kb) = [(float(l[0]), int(l[1])) for l in lines]
    size_kb = Path(lines[2][-1]).stat().st_size / 1024
    table.at_most("start to first frame, small file", "an empty window with a menu", small_ms / empty_ms, 1.15)
    above = (large_kb - empty_kb - size_kb) / MIB
    table.row(f"memory with {size_kb / MIB:.0f} MiB open", "that window and the file",
              f"{above:+.1f} MiB", "≤ +6 MiB", above <= 6)


def drag(table, rows):
    """A step of a rubber band over a million vectors."""
    for graph in GRAPHS:
        table.row(f"a step of a drag over {graph}", "", f"{rows[f'{graph}/drag']['real_time']:.0f} ms", "≤ 50 ms",
                  rows[f"{graph}/drag"]["real_time"] <= 50)
    for name, row in rows.items():
        graph, _, rest = name.partition("/press")
        if rest:
            table.row(f"press and first move over {graph}, three places", "", f"{row['real_time']:.1f} ms",
                      "≤ 50 ms", row["real_time"] <= 50)
        for step, what in STEPS.items():
            graph, _, rest = name.partition(f"/{step}")
            if rest:
                table.row(f"{what} of {graph}, slowest of three places", "", f"{row['real_time']:.0f} ms", "", True)


def main():
    """Print the table."""
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = Path(sys.argv[1])
    table = Table()
    draw(table, median_rows(load(folder / "draw.json")))
    fill(table, median_rows(load(folder / "fill.json")))
    cores(table, folder / "cores.txt")
    eps(table, median_rows(load(folder / "eps.json")))
    process(table, folder / "process.txt")
    startup(table, folder / "startup.txt")
    drag(table, load(folder / "drag.json"))
    print((folder / "diff.txt").read_text(encoding="utf-8"), end="")


if __name__ == "__main__":
    main()
