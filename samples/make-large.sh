#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Make two large graphs for measurements: a walk of joined vectors and a surface of separate ones.
#
#   make-large.sh DIR [VECTORS]      VECTORS: approximate number of vectors in each; default: 1000000
#
# DIR gets walk.plf and surface.plf, and walk.tek and surface.tek, the streams that they were made from.
# Debian packages: plotutils, python3.
set -euo pipefail
export LC_ALL=C

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
out=${1:?usage: make-large.sh DIR [VECTORS]}
vectors=${2:-1000000}

for program in graph python3; do
  if ! command -v "$program" >/dev/null; then
    echo "make-large.sh: $program is missing, see the package list at the top of this script" >&2
    exit 1
  fi
done

mkdir -p -- "$out"

python3 "$here/walk.py" $((vectors + 1)) 1905 0.99 0.0004 |
  graph -T tek -x 0 1 -y 0 1 -g 0 -r 0.04 -w 1.04 -u 0.05 -h 0.86 >"$out/walk.tek"

# The edges of a mesh in both directions, seen aslant, each with a move of its own, for eight phases of a ripple.
awk -v n="$vectors" '
  function height(x, y, k) { return 4*exp(-(x*x + y*y)/45)*cos(1.25*sqrt(x*x + y*y) - k*atan2(1, 1)) }
  function point(x, y, k) { return sprintf("%.4f %.4f\n", x - y, (x + y)/2 + height(x, y, k)) }
  BEGIN {
    side = int(sqrt(n/16) + 0.5)
    step = 18/side
    for (k = 0; k < 8; ++k)
      for (i = 0; i < side; ++i)
        for (j = 0; j < side; ++j) {
          x = i*step - 9
          y = j*step - 9
          here = point(x, y, k)
          printf "%s%s\n%s%s\n", here, point(x + step, y, k), here, point(x, y + step, k)
        }
  }' | graph -T tek -x -18 18 -y -13 13 -g 0 -r 0.04 -w 1.04 -u 0.05 -h 0.86 >"$out/surface.tek"

for name in walk surface; do
  python3 -B "$here/plfwrap.py" "$out/$name.plf" background=navy width=0 color=white "stream=$out/$name.tek"
done
