#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Take a picture of the viewer's window, frame included, in an X server of its own.
#
#   screenshot.sh FILE PICTURE [STEP...]
#
# The steps are arguments of one xdotool call that is made once the graph shows; the word WINDOW stands for the window:
#
#   screenshot.sh samples/plate.plf plate.png
#   screenshot.sh samples/plate.plf zoomed.png mousemove --window WINDOW 100 100 mousedown 1 \
#     mousemove --window WINDOW 400 330 mouseup 1
#
# PLOTVW_BUILD names the build directory; build/dev, which ./test.sh makes, when it is not set.
set -euo pipefail

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
program=${PLOTVW_BUILD:-$here/../../build/dev}/tests/e2e/screenshot
if [[ ! -x $program ]]; then
  echo "screenshot.sh: $program is not there; ./test.sh builds it" >&2
  exit 1
fi
exec "$here/with-xserver.sh" "$program" "$@"
