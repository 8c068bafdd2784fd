#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Measure the program and print a table of ratios, each of two things measured in one run.
#
#   ./bench.sh           build, make the graphs, measure; about twenty minutes on an idle machine
#   ./bench.sh table     print the table of the last run again
#
# The table, its figures (Google Benchmark's JSON) and the graphs (130 MB) are in out/bench.
# Missing Debian packages are installed first.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=packaging/packages.sh
source "$root/packaging/packages.sh"
cd -- "$root"

readonly out=$root/out/bench build=$root/build/bench
readonly streams=$out/streams
readonly repetitions=3 runs=11

prepare() {
  install_packages "${build_packages[@]}" "${bench_packages[@]}"
  echo 'Building in build/bench ...'
  quietly cmake --preset bench
  quietly cmake --build --preset bench
  mkdir -p -- "$out"
  if [[ ! -f $streams/huge.plf ]]; then
    echo 'Making the graphs ...'
    quietly samples/make-large.sh "$streams"
    bench/make-huge.py "$streams/surface.plf" "$streams/huge.plf"
  fi
  [[ -f $streams/long.plf ]] || bench/make-long.py "$streams/long.plf"
}

# measure TOPIC OPTION...: run bench_TOPIC and keep its figures. "around" is a command to run it with.
around=()
folders=("$streams")
measure() {
  local topic=$1
  echo "Measuring: $topic ..."
  "${around[@]}" "$build/bench/bench_$topic" "${@:2}" --benchmark_out="$out/$topic.json" \
    --benchmark_out_format=json "${folders[@]}" >"$out/$topic.log" 2>&1 || {
    cat -- "$out/$topic.log" >&2
    return 1
  }
}

measure_all() {
  local repeated=("--benchmark_repetitions=$repetitions" --benchmark_enable_random_interleaving=true
    --benchmark_report_aggregates_only=true)
  measure draw "${repeated[@]}"
  measure eps "${repeated[@]}" '--benchmark_filter=export|write'
  measure fill "${repeated[@]}" --benchmark_min_time=0.1 '--benchmark_filter=walk|surface|long/|diagonals'
  around=(tests/e2e/with-xserver.sh) folders+=(samples)
  measure drag
  around=() folders=("$streams")
  echo 'Measuring: whole processes ...'
  bench/compare-eps.sh "$build/tools/plfconvert" "$streams" "$runs" >"$out/process.txt"
  bench/cores.sh "$build/tools/plfconvert" "$streams" "$runs" >"$out/cores.txt"
  echo 'Measuring: comparisons ...'
  bench/diff.sh "$build/tools/plfdiff" "$streams" >"$out/diff.txt"
  echo 'Measuring: start ...'
  tests/e2e/with-xserver.sh "$build/bench/startup" "$runs" "$build/bench/empty" \
    "$build/app/plotvw $root/samples/tour.plf" "$build/app/plotvw $streams/huge.plf" >"$out/startup.txt" 2>"$out/startup.log"
}

case ${1-} in
'')
  prepare
  measure_all
  ;;
table) ;;
*)
  echo 'usage: ./bench.sh [table]' >&2
  exit 2
  ;;
esac
python3 -B bench/summary.py "$out" | tee "$out/table.md"
