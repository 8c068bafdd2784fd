#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Draw the icon in the sizes that desktops need, in the folder of this script; run it after plotvw.svg has changed.
#
# Debian packages: librsvg2-bin.
set -euo pipefail

cd -- "$(dirname -- "${BASH_SOURCE[0]}")"
for size in 16 22 24 32 48 64 128 256; do
  rsvg-convert --width "$size" --height "$size" plotvw.svg --output "plotvw-$size.png"
done
