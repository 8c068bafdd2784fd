#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What does mandoc say about the manual pages, and do they refer to one another?     man.sh TOP
#
# Debian packages: mandoc.
set -euo pipefail

cd -- "$1/docs/man"
status=0
for page in *.[1-9]; do
  # It looks for other pages among those of the system.
  said=$(mandoc -T lint -W style "$page" 2>&1) || true
  if said=$(grep --invert-match --extended-regexp '^$|referenced manual not found' <<<"$said"); then
    echo "$said" >&2
    status=1
  fi
  while read -r name section; do
    [[ -f $name.$section ]] || {
      echo "$page refers to $name($section), which is not there" >&2
      status=1
    }
  done < <(sed -n 's/^\.Xr \([^ ]*\) \([0-9]\).*/\1 \2/p' "$page")
done
exit "$status"
