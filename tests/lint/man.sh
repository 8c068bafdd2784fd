#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What do mandoc and man say about the manual pages, and does each refer to all others?     man.sh TOP
#
# Debian packages: man-db, mandoc.
set -euo pipefail

cd -- "$1/docs/man"
status=0
complain() {
  echo "$*" >&2
  status=1
}

for page in *.[1-9]; do
  # It looks for other pages among those of the system.
  said=$(mandoc -T lint -W style "$page" 2>&1) || true
  if said=$(grep --invert-match --extended-regexp '^$|referenced manual not found' <<<"$said"); then
    complain "$said"
  fi
  # It returns 0 in any case.
  said=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null) || true
  [[ -z $said ]] || complain "$page: $said"
  while read -r name section; do
    [[ -f $name.$section ]] || complain "$page refers to $name($section), which is not there"
  done < <(sed -n 's/^\.Xr \([^ ]*\) \([0-9]\).*/\1 \2/p' "$page")
  sisters=$(sed '1,/^\.Sh SEE ALSO/d' "$page")
  for other in *.[1-9]; do
    [[ $other == "$page" ]] || grep -q "^\.Xr ${other%.*} ${other##*.}" <<<"$sisters" ||
      complain "$page does not name $other under SEE ALSO"
  done
done
exit "$status"
