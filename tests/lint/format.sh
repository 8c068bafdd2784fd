#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Are the C++ sources formatted?     format.sh TOP
set -euo pipefail
# shellcheck source=sources.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/sources.sh"

cpp_files "$1" | xargs --null --no-run-if-empty clang-format-14 --dry-run --Werror
