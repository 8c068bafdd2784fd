#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Make a graph of about a hundred megabytes: another one's vectors over and over.

    make-huge.py GRAPH HUGE
"""
import sys
from pathlib import Path

SIZE = 100 * 1024 * 1024

if len(sys.argv) != 3:
    sys.exit(__doc__)
graph = Path(sys.argv[1]).read_bytes().rstrip(b"\x07")
vectors = graph[graph.index(b"\x1d"):]
Path(sys.argv[2]).write_bytes(graph + vectors * ((SIZE - len(graph)) // len(vectors)) + b"\x07")
