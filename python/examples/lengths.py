#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Plot a histogram of the lengths of a graph's vectors.

usage: lengths.py GRAPH PICTURE
"""
import sys

import matplotlib.pyplot as plt
import numpy as np

import plotvw


def lengths(g):
    """The lengths in units. Differences of coordinates fit into their type; hypot() gives fractions."""
    v = g.vectors
    return np.hypot(v["x2"] - v["x1"], v["y2"] - v["y1"])


def main():
    """Plot those of one graph."""
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    figure, axes = plt.subplots()
    axes.hist(lengths(plotvw.read(sys.argv[1])), bins=100, log=True)
    axes.set(xlabel="length in units", ylabel="vectors", title=sys.argv[1])
    figure.savefig(sys.argv[2])


if __name__ == "__main__":
    main()
