#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Make a table of all graphs below a folder with pandas, and print the largest.

usage: table.py FOLDER [TABLE.csv]

Files are read by threads; what is no graph has a row that says so.
"""
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import pandas as pd

import plotvw


def row(path):
    """What the table says of a file."""
    try:
        g = plotvw.read(path)
    except (plotvw.PlfError, OSError) as error:
        return {"file": str(path), "problem": str(error)}
    v = g.vectors
    return {
        "file": str(path),
        "vectors": len(v),
        "paths": len(np.unique(v["path"])),
        "texts": len(g.texts),
        "colors": len(np.unique(v["color"])),
        "ink": float(np.hypot(v["x2"] - v["x1"], v["y2"] - v["y1"]).sum(dtype=float)),
        "damage": ", ".join(damage.kind for damage in g.damage if damage.loss),
    }


def table(folder):
    """A row for each file below a folder whose name ends in ".plf"."""
    with ThreadPoolExecutor() as threads:
        return pd.DataFrame(threads.map(row, sorted(Path(folder).rglob("*.plf"))))


def main():
    """Make one table."""
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    graphs = table(sys.argv[1])
    if graphs.empty:
        sys.exit(f"there are no graphs below {sys.argv[1]}")
    print(graphs.nlargest(10, "vectors").to_string(index=False))
    if len(sys.argv) == 3:
        Path(sys.argv[2]).parent.mkdir(parents=True, exist_ok=True)
        graphs.to_csv(sys.argv[2], index=False)


if __name__ == "__main__":
    main()
