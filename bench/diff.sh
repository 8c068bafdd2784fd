#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# How long plfdiff computes, and how much memory it takes for each vector of both graphs, as rows of a table: a graph of
# a million vectors beside itself in another order with a thousand vectors moved, and the same with ten million.
#
#   diff.sh PLFDIFF DIRECTORY      the directory holds walk.plf and surface.plf
set -euo pipefail

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
plfdiff=$1 folder=$2
scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT

# usage OPTION...: print the seconds and the kilobytes that a comparison takes; that graphs differ is no failure.
usage() {
  local status=0
  /usr/bin/time -o "$scratch/usage" -f '%U %S %M' -- "$plfdiff" --quiet "$@" >/dev/null || status=$?
  ((status < 2)) || return "$status"
  awk 'END { print $1 + $2, $3 }' "$scratch/usage"
}

for graph in walk surface; do
  for copies in 1 10; do
    cp -- "$folder/$graph.plf" "$scratch/$graph"
    "$here/variant.py" "$scratch/$graph" "$scratch/variant" "$copies" 1000
    for tolerance in 0 5; do
      read -r seconds memory < <(usage --tolerance "$tolerance" "$scratch/$graph.copies" "$scratch/variant")
      awk -v what="comparing $graph, $copies million vectors, tolerance $tolerance" -v s="$seconds" -v kb="$memory" \
        -v n="$copies" 'BEGIN { printf "| %s |  | %.2f s, %d bytes a vector | ≤ %.1f s, ≤ 150 bytes | %s |\n",
          what, s, kb * 1024 / n / 1e6, 1.5 * n, s <= 1.5 * n && kb * 1024 / n / 1e6 <= 150 ? "met" : "missed" }'
    done
  done
done
