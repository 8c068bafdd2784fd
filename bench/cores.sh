#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Measure how long one whole conversion takes on one processor and on two.
#
#   bench/cores.sh PLFCONVERT FOLDER RUNS      FOLDER holds walk.plf, surface.plf and long.plf
#
# Prints a line for each graph, size and width: what it is, the seconds on one, and on two. Each is the smallest of the
# runs: what else the machine does can only add to a run, and adds more to one that needs both processors.
set -euo pipefail

readonly plfconvert=$1 folder=$2 runs=$3
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

# seconds COMMAND...: how long it takes.
seconds() {
  local before=$EPOCHREALTIME
  "$@"
  local after=$EPOCHREALTIME
  awk -v a="$before" -v b="$after" 'BEGIN { print b - a }'
}

smallest() {
  sort -g -- "$1" | head -n 1
}

readonly looks=(
  '--size=640x446'
  '--size=640x446 --min-line-width=4'
  '--size=640x446 --min-line-width=16'
  '--size=640x446 --min-line-width=80'
  '--size=1280x892 --min-line-width=16'
)
for graph in walk surface long; do
  for options in "${looks[@]}"; do
    read -ra list <<<"$options"
    : >"$work/one"
    : >"$work/two"
    for ((run = 0; run < runs; run++)); do
      for cores in one two; do
        processors=0
        [[ $cores == one ]] || processors=0,1
        seconds taskset --cpu-list "$processors" "$plfconvert" --quiet "${list[@]}" "$folder/$graph.plf" \
          "$work/$graph.png" >>"$work/$cores"
      done
    done
    echo "$graph ${options//--/} $(smallest "$work/one") $(smallest "$work/two")"
  done
done
