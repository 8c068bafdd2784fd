#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Measure and draw thousands of graphs on many machines with Dask.

usage: many_machines.py SCHEDULER FOLDER PICTURES

SCHEDULER is the address of a running scheduler, such as tcp://host:8786, or "local" for processes of this machine. The
machines share both folders; PICTURES is made when it is not there. A worker that dies costs nothing but time: what it was at is done by another one, and a
picture is there as a whole or not at all.
"""
import sys
from pathlib import Path

from distributed import Client

import plotvw

#: Graphs in a task: a task costs the scheduler about a millisecond, a small graph not much more.
BATCH = 50


def convert(names, pictures):
    """Draw some graphs, and return for each its name, its number of vectors, and what is wrong with it or None."""
    rows = []
    with plotvw.keep_ready():
        for name in names:
            try:
                g = plotvw.read(name)
                g.save(Path(pictures, Path(name).stem + ".png"), width=320)
                rows.append((name, len(g.vectors), None))
            except (plotvw.PlfError, OSError) as error:
                rows.append((name, 0, str(error)))
    return rows


def convert_all(client, names, pictures, batch=BATCH):
    """The rows of all graphs, in their order."""
    batches = [names[i : i + batch] for i in range(0, len(names), batch)]
    futures = client.map(convert, batches, pictures=str(pictures), retries=3, pure=False)
    return [row for rows in client.gather(futures) for row in rows]


def main():
    """Convert a folder."""
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    names = sorted(map(str, Path(sys.argv[2]).glob("*.plf")))
    if not names:
        sys.exit(f"there are no graphs in {sys.argv[2]}")
    Path(sys.argv[3]).mkdir(parents=True, exist_ok=True)
    with Client(**({} if sys.argv[1] == "local" else {"address": sys.argv[1]})) as client:
        rows = convert_all(client, names, sys.argv[3])
    problems = [row for row in rows if row[2]]
    print(f"{len(rows)} graphs, {sum(row[1] for row in rows)} vectors, {len(problems)} failed")
    for name, _, problem in problems:
        print(f"{name}: {problem}", file=sys.stderr)


if __name__ == "__main__":
    main()
