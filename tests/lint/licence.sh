#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Does every source file name its licence and its holders?     licence.sh TOP
set -euo pipefail
# shellcheck source=sources.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/sources.sh"

status=0
for line in SPDX-License-Identifier SPDX-FileCopyrightText; do
  # Only the head of a file counts.
  while IFS= read -rd '' file; do
    if ! head -n 10 -- "$file" | grep -q "$line: "; then
      echo "${file#"$1/"}: $line is missing" >&2
      status=1
    fi
  done < <(source_files "$1" -name '*.cpp' -o -name '*.h' -o -name '*.sh' -o -name '*.py' -o -name '*.cmake' \
    -o -name CMakeLists.txt -o -path "$1/.ci/run")
done
exit "$status"
