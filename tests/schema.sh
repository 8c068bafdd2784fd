#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Is what plfinfo prints as JSON what docs/plfinfo.schema.json says, and does the schema refuse anything else?
#     schema.sh TOP PLFINFO
#
# Debian packages: python3-jsonschema.
set -euo pipefail

top=$1 plfinfo=$2
root=$(mktemp -d)
trap 'rm -rf -- "$root"' EXIT

# Graphs that are whole, damaged in every way, and none at all, and names that nobody should choose.
cp -r -- "$top/samples" "$top/fuzz/corpus/graphs" "$top/fuzz/corpus/json" "$root"
for name in $'line\nend.plf' $'esc\e[2J.plf' $'no text \xe9.plf' 'quote"s\.plf' $'turns \u202e.plf'; do
  head -c 5000 -- "$top/samples/tour.plf" >"$root/$name"
done
cd -- "$root"
mkdir empty
arguments=(-r samples graphs json . empty missing $'missing \xe9\e' - json/*)
"$plfinfo" --json "${arguments[@]}" <samples/bode.plf >document 2>/dev/null || true
"$plfinfo" --json-lines "${arguments[@]}" <samples/bode.plf >lines 2>/dev/null || true
# The Python of Debian, which has the package.
/usr/bin/python3 "$top/tests/schema.py" "$top/docs/plfinfo.schema.json" document lines
