#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Compare the EPS export, as a whole process from the start to the file, with tek2plot on the same streams.
#
#   compare-eps.sh PLFCONVERT FOLDER [RUNS]
#
# PLFCONVERT is the program of that name in a release build, FOLDER the output of ../samples/make-large.sh; the median
# of RUNS runs (default: 7) counts. Debian package: plotutils.
set -euo pipefail
export LC_ALL=C

convert=${1:?usage: compare-eps.sh PLFCONVERT FOLDER [RUNS]}
folder=${2:?usage: compare-eps.sh PLFCONVERT FOLDER [RUNS]}
runs=${3:-7}

if ! command -v tek2plot >/dev/null; then
  echo "compare-eps.sh: tek2plot is missing, install plotutils" >&2
  exit 1
fi

out=$(mktemp -d)
trap 'rm -rf -- "$out"' EXIT

# median COMMAND...: print its time in microseconds.
median() {
  local run start
  for ((run = 0; run < runs; run++)); do
    start=${EPOCHREALTIME/./}
    "$@"
    echo $((${EPOCHREALTIME/./} - start))
  done | sort -n | sed -n "$((runs / 2 + 1))p"
}

export_eps() {
  "$convert" "$1" "$out/ours.eps" 2>"$out/messages"
}

convert_ps() {
  tek2plot -T ps "$1" >"$out/theirs.ps" 2>"$out/messages"
}

printf '%-8s  %14s  %14s  %s\n' graph 'export, ms' 'tek2plot, ms' ratio
for graph in walk surface; do
  ours=$(median export_eps "$folder/$graph.plf")
  theirs=$(median convert_ps "$folder/$graph.tek")
  awk -v graph="$graph" -v ours="$ours" -v theirs="$theirs" \
    'BEGIN { printf "%-8s  %14.1f  %14.1f  %.1f\n", graph, ours/1000, theirs/1000, theirs/ours }'
done
