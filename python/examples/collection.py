#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Plot a graph with matplotlib, in its own colors.

usage: collection.py GRAPH PICTURE
"""
import sys

import matplotlib.pyplot as plt
import numpy as np
from matplotlib.collections import LineCollection

import plotvw


def plot(g, axes):
    """Add the vectors of a graph to axes, in file units."""
    v = g.vectors
    ends = np.column_stack([v["x1"], v["y1"], v["x2"], v["y2"]]).reshape(-1, 2, 2)
    axes.add_collection(LineCollection(ends, colors=g.palette[v["color"]] / 255, linewidths=0.5))
    for text in g.texts:
        axes.annotate(text.text, (text.x, text.y), color=g.palette[text.color] / 255, fontsize=4)
    axes.set(xlim=(0, plotvw.WIDTH), ylim=(0, plotvw.HEIGHT), aspect="equal", facecolor=g.palette[g.background] / 255)


def main():
    """Plot one graph."""
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    figure, axes = plt.subplots()
    plot(plotvw.read(sys.argv[1]), axes)
    figure.savefig(sys.argv[2], dpi=200)


if __name__ == "__main__":
    main()
