#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Does plotvw-open give the viewer every file under a name in which it finds no option?     open.sh TOP
set -euo pipefail

folder=$(mktemp -d /tmp/open.XXXXXX)
trap 'rm -rf -- "$folder"' EXIT
mkdir "$folder/bin" "$folder/my-plots"
cp -- "$1/packaging/plotvw-open.sh" "$folder/bin/plotvw-open"
# Stands for the viewer: says what it was given, and what is in the file of that name.
cat >"$folder/bin/plotvw" <<'VIEWER'
#!/bin/sh
[ "$#" -eq 0 ] || { echo "$1"; cat -- "$1"; }
[ ! -e fail ] || exit 7
VIEWER
chmod +x "$folder/bin/plotvw"

fail() {
  echo "$*" >&2
  exit 1
}

# open PLACE NAME PATTERN: open the file from PLACE; what the viewer is given must match.
open() {
  local said given
  said=$(cd -- "$1" && "$folder/bin/plotvw-open" "$2")
  given=${said%%$'\n'*}
  # shellcheck disable=SC2053 # it is a pattern
  [[ $given == $3 ]] || fail "$2: the viewer is given $given"
  [[ ${said#*$'\n'} == "$2" ]] || fail "$2: the viewer finds another file"
  [[ ! -e $given || $given != /tmp/plotvw.* ]] || fail "$2: the link $given stays"
}

# graph NAME: write one that holds its own name.
graph() {
  printf %s "$1" >"$1"
}

cd -- "$folder"
for name in "$folder/plain.plf" "$folder/my plot.plf" "$folder/my-plots/plain.plf" "$folder/my-plot.plf" \
  "$folder/my-plots/a-q-b.plf" "$folder/what-?.plf" "$folder/-wp=1.plf" "$folder/cut-copy.plf" "$folder/[*] \$x 'y'.plf"; do
  graph "$name"
done
open / "$folder/plain.plf" "$folder/plain.plf"
open / "$folder/my plot.plf" "$folder/my plot.plf"
open / "$folder/[*] \$x 'y'.plf" "$folder/\[\*\] \$x 'y'.plf"
open / "$folder/cut-copy.plf" "$folder/cut-copy.plf"
open / "$folder/my-plots/plain.plf" plain.plf
open / "$folder/my-plot.plf" '/tmp/plotvw.*/my_plot.plf'
open / "$folder/my-plots/a-q-b.plf" '/tmp/plotvw.*/a_q_b.plf'
open / "$folder/what-?.plf" '/tmp/plotvw.*/what_\?.plf'
open / "$folder/-wp=1.plf" '/tmp/plotvw.*/_wp=1.plf'
for name in plain2.plf my-plot2.plf -x.plf; do
  printf %s "$name" >"./$name"
done
open "$folder" plain2.plf plain2.plf
open "$folder" my-plot2.plf '/tmp/plotvw.*/my_plot2.plf'
open "$folder" -x.plf '/tmp/plotvw.*/_x.plf'

[[ -z $("$folder/bin/plotvw-open") ]] || fail 'without a file the viewer is given one'
touch "$folder/fail"
for name in plain2.plf my-plot2.plf; do
  status=0
  bin/plotvw-open "$name" >/dev/null || status=$?
  ((status == 7)) || fail "$name: the viewer's exit code gets lost"
done
status=0
bin/plotvw-open a b 2>/dev/null || status=$?
((status == 2)) || fail 'two files are not refused'
