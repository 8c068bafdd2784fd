#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What does shellcheck say about the scripts?     shell.sh TOP
set -euo pipefail
# shellcheck source=sources.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/sources.sh"

shell_files "$1" | xargs --null --no-run-if-empty shellcheck --external-sources --source-path=SCRIPTDIR
