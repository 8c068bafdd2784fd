#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Is a conflict of a merge left in any file?     merged.sh TOP
set -euo pipefail
# shellcheck source=sources.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/sources.sh"

left=$(source_files "$1" -true | xargs -0 grep -nIE '^(<{7}|[|]{7}|>{7}) ') || exit 0
echo "$left" >&2
exit 1
