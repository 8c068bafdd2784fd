#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Measure how long one whole conversion takes on one processor and on two.
#
#   bench/cores.sh PLFCONVERT FOLDER RUNS      FOLDER holds walk.plf and surface.plf
#
# Prints a line for each graph and size: what it is, the seconds on one, and on two; medians.
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

median() {
  sort -g -- "$1" | sed -n "$(((runs + 1) / 2))p"
}

for graph in walk surface; do
  for options in '--size=640x446' '--size=640x446 --min-line-width=16' '--size=1280x892 --min-line-width=16'; do
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
    echo "$graph ${options//--/} $(median "$work/one") $(median "$work/two")"
  done
done
