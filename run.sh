#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Build the viewer and open a graph in it.
#
#   ./run.sh [FILE]      FILE is a PLF graph; default: one of the samples
#
# Missing Debian packages are installed first. Without a display the graph is converted to a picture in out/.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=packaging/packages.sh
source "$root/packaging/packages.sh"

readonly build=$root/build/release
readonly picture_width=1280
readonly picture_line_scale=2

if (($# > 1)) || [[ ${1-} == -h || ${1-} == --help ]]; then
  echo 'usage: ./run.sh [FILE]' >&2
  exit 2
fi
graph=${1:-$root/samples/plate.plf}

temporary=$(mktemp -d)
trap 'rm -rf -- "$temporary"' EXIT

has_display() {
  [[ -n ${DISPLAY-} || -n ${WAYLAND_DISPLAY-} ]]
}

install_and_build() {
  local packages=("${build_packages[@]}")
  if [[ -n ${WAYLAND_DISPLAY-} && -z ${DISPLAY-} ]]; then
    packages+=("${wayland_packages[@]}")
  fi
  install_packages "${packages[@]}"
  cd -- "$root"
  [[ -f $build/build.ninja ]] || echo "Building in ${build#"$root/"} ..."
  quietly cmake --preset release
  quietly cmake --build --preset release
}

# open_window FILE: show a graph; returns 3 when there turns out to be no display.
open_window() {
  local name=$1
  # What Qt reports before it gives up is kept for the test below. The rest is shown, without the line that the
  # viewer writes whenever it has finished with a file.
  local statuses
  set +e
  # The shell does not always report how the viewer died, so it is reported below instead, unless there is no display.
  {
    (
      ulimit -c 0
      PATH=$build/app:$PATH exec "$root/packaging/plotvw-open.sh" "$name"
    ) 2>&1 | tee "$temporary/messages" |
      grep --line-buffered --invert-match --extended-regexp \
        '^qt\.qpa\.|no Qt platform plugin could be initialized|^Available platform plugins|^Existing file name: |^$' >&3
    statuses=("${PIPESTATUS[@]}")
  } 3>&2 2>/dev/null
  set -e
  ((statuses[0] != 134)) || ! grep -q 'no Qt platform plugin' "$temporary/messages" || return 3
  ((statuses[0] <= 128)) || echo "The viewer was killed by signal $((statuses[0] - 128))." >&2
  return "${statuses[0]}"
}

# draw_picture FILE
draw_picture() {
  local name
  name=$(basename -- "$1")
  local picture=$root/out/${name%.plf}.png
  mkdir -p -- "$root/out"
  "$build/tools/plfconvert" --width "$picture_width" --line-scale "$picture_line_scale" -- "$1" "$picture"
  echo "Picture: $picture"
}

(install_and_build)
if has_display; then
  status=0
  (open_window "$graph") || status=$?
  ((status == 3)) || exit "$status"
  echo "The display ${DISPLAY:-$WAYLAND_DISPLAY} cannot be used: converting the graph to a picture instead."
else
  echo 'There is no display: converting the graph to a picture instead.'
fi
draw_picture "$graph"
