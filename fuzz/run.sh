#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Run the fuzz targets that ../test.sh has built, and print a summary.
#
#   fuzz/run.sh SECONDS [TARGET...]     each target, or the named ones, for SECONDS; two at a time
#
# The inputs that a target collects are kept in build/fuzz/corpus/TARGET for the next run. Failing inputs go to
# out/fuzz/TARGET, with the log. The exit code is 1 if there are any.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
readonly build=$root/build/fuzz/fuzz corpus=$root/build/fuzz/corpus finds=$root/out/fuzz
readonly jobs=2
# Limits of an input: seconds and megabytes. Inputs of the lengths below take a few milliseconds, but on a busy machine
# fuzz targets, which run at the lowest priority, may have to wait for longer.
readonly longest_input_time=${FUZZ_INPUT_SECONDS:-10} most_memory=1024

# target | folders of inputs | dictionary | longest input | whether to look for leaks after each input or at the end:
# Qt's windows keep so much memory that looking takes most of the time
readonly targets='
painter   | graphs seeds      | plf       | 4096 | end
eps       | graphs seeds      | plf       | 8192 | each
json      | graphs seeds json | plf       | 4096 | end
plugin    | graphs seeds      | plf       | 4096 | end
diff      | graphs seeds      | plf       | 4096 | each
converter | converter         | converter | 4096 | end
config    | config            | config    | 4096 | end
settings  | settings          |           | 128  | end
cmdline   | cmdline           | cmdline   | 4096 | end
frame     | frame             |           | 4096 | each
host      | host              | host      | 1024 | end
'

if (($# < 1)) || [[ ! $1 =~ ^[1-9][0-9]*$ ]]; then
  echo 'usage: fuzz/run.sh SECONDS [TARGET...]' >&2
  exit 2
fi
readonly seconds=$1
shift

# row TARGET: the fields of its line of the table.
row() {
  grep "^$1 " <<<"$targets"
}

# fuzz TARGET: run it; its output goes to its log.
fuzz() {
  local target=$1 folder options=() inputs=()
  local folders dictionary length leaks
  IFS='|' read -r _ folders dictionary length leaks < <(row "$target")
  for folder in $folders; do
    [[ $folder == seeds ]] && inputs+=("$build/seeds") || inputs+=("$root/fuzz/corpus/$folder")
  done
  [[ -z ${dictionary// /} ]] || options+=("-dict=$root/fuzz/${dictionary// /}.dict")
  [[ ${leaks// /} == each ]] || options+=(-detect_leaks=0)
  mkdir -p -- "$corpus/$target" "$finds/$target"
  ASAN_OPTIONS=quarantine_size_mb=16:detect_stack_use_after_return=1:allocator_may_return_null=1 \
    LSAN_OPTIONS=print_suppressions=0 \
    UBSAN_OPTIONS=print_stacktrace=1 \
    nice -n 19 "$build/fuzz_$target" "${options[@]}" "-max_len=${length// /}" "-max_total_time=$seconds" \
    "-timeout=$longest_input_time" -rss_limit_mb=$most_memory -print_final_stats=1 \
    "-artifact_prefix=$finds/$target/" "$corpus/$target" "${inputs[@]}" >"$finds/$target/log" 2>&1
}

# stat TARGET NAME: a number from the statistics at the end of its log.
stat() {
  sed -n "s/^stat::$2: *//p" "$finds/$1/log" | tail -n 1
}

report() {
  local target=$1 result=$2 covered
  covered=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$finds/$target/log" | tail -n 1)
  [[ $result == 0 ]] && result=nothing || result="code $result, see out/fuzz/$target/log"
  printf '%-9s %10s runs  %-22s  slowest %s s  peak %s MB  found: %s\n' "$target" "$(stat "$target" number_of_executed_units)" \
    "$covered" "$(stat "$target" slowest_unit_time_sec)" "$(stat "$target" peak_rss_mb)" "$result"
}

# fuzz_and_report TARGET: the result is that of the target.
fuzz_and_report() {
  local result=0
  fuzz "$1" || result=$?
  report "$1" "$result"
  return "$result"
}

"$build/fuzz_seeds" "$root/samples" "$root/tests/data/decoder" "$build/seeds"
names=("$@")
if ((${#names[@]} == 0)); then
  mapfile -t names < <(sed -n 's/^\([a-z]\+\) .*/\1/p' <<<"$targets")
fi
running=0 failed=0
for name in "${names[@]}"; do
  row "$name" >/dev/null || {
    echo "fuzz/run.sh: no target is called $name" >&2
    exit 2
  }
  ((running < jobs)) || {
    wait -n || failed=1
    running=$((running - 1))
  }
  fuzz_and_report "$name" &
  running=$((running + 1))
done
for ((; running > 0; running--)); do
  wait -n || failed=1
done
exit "$failed"
