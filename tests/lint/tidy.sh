#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What does clang-tidy say about the sources of a build?     tidy.sh TOP BUILD_DIRECTORY
#
# With PLOTVW_LINT=changed it looks at those alone that have changed since the last release, and at those that include a
# header that has. A release is a tag, or else an entry of CHANGELOG.md.
set -euo pipefail

# The files that have changed, one a line.
changed_files() {
  local release
  release=$(git -C "$1" describe --tags --abbrev=0 2>/dev/null ||
    git -C "$1" log -1 -G'^## [0-9]' --format=%H -- CHANGELOG.md)
  git -C "$1" diff --name-only "$release" -- '*.cpp' '*.h'
}

# keep_changed TOP: of the sources on standard input, those to look at.
keep_changed() {
  local changed source headers
  changed=$(changed_files "$1")
  while read -r source; do
    if grep -qxF -- "${source#"$1/"}" <<<"$changed"; then
      echo "$source"
      continue
    fi
    headers=$(sed -n 's/^#include "\(.*\)"$/\1/p' "$source")
    if [[ -n $headers ]] && grep -qxF -- "$headers" <<<"$changed"; then
      echo "$source"
    fi
  done
}

select_sources() {
  if [[ ${PLOTVW_LINT-} == changed ]] && git -C "$1" rev-parse --git-dir >/dev/null 2>&1; then
    keep_changed "$1"
  else
    cat
  fi
}

# Sources that the build generated are not looked at.
mapfile -t sources < <(sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$2/compile_commands.json" |
  grep --invert-match --fixed-strings "$2/" | sort -u)
((${#sources[@]} > 0)) || {
  echo "$2 has no sources" >&2
  exit 1
}
mapfile -t sources < <(printf '%s\n' "${sources[@]}" | select_sources "$1")
if ((${#sources[@]} == 0)); then
  echo 'nothing has changed'
  exit
fi

# The count of what it found in other people's headers is of no interest.
printf '%s\0' "${sources[@]}" |
  xargs --null --max-args=1 --max-procs="$(nproc)" clang-tidy-14 --quiet -p "$2" 2> >(
    grep --invert-match --extended-regexp '^[0-9]+ warnings? (and [0-9]+ errors? )?generated\.$' >&2
  )
echo "${#sources[@]} files"
