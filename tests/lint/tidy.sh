#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What does clang-tidy say about the sources of a build?     tidy.sh TOP BUILD_DIRECTORY
set -euo pipefail

# Sources that the build generated are not looked at.
mapfile -t sources < <(sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$2/compile_commands.json" |
  grep --invert-match --fixed-strings "$2/" | sort -u)
((${#sources[@]} > 0)) || {
  echo "$2 has no sources" >&2
  exit 1
}

# The count of what it found in other people's headers is of no interest.
printf '%s\0' "${sources[@]}" |
  xargs --null --max-args=1 --max-procs="$(nproc)" clang-tidy-14 --quiet -p "$2" 2> >(
    grep --invert-match --extended-regexp '^[0-9]+ warnings? (and [0-9]+ errors? )?generated\.$' >&2
  )
echo "${#sources[@]} files"
