#!/bin/sh
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Open a graph in the viewer, whatever its name is; for the desktop, where people choose files and not command lines.
#
#   plotvw-open [FILE]
#
# The viewer takes an option wherever it stands in an argument: the name my-plot.plf asks it for a print. Such a file is
# named to it from inside its folder or, when the file's own name holds the option, through a link that goes with the
# viewer.
set -eu

if [ "$#" -gt 1 ]; then
  echo 'usage: plotvw-open [FILE]' >&2
  exit 2
fi
viewer=$(dirname -- "$0")/plotvw
[ -x "$viewer" ] || viewer=plotvw
[ "$#" -eq 1 ] || exec "$viewer"

holds_option() {
  case $1 in
  *-wp=* | *-po=* | *-p* | *-c=* | *-cf=* | *-svrname=* | *-q* | *-tmp* | *-cwd=* | *-\?* | -*) return 0 ;;
  *) return 1 ;;
  esac
}

holds_option "$1" || exec "$viewer" "$1"

# Exported files are offered a place beside the graph.
case $viewer in
/* | plotvw) ;;
*) viewer=$PWD/$viewer ;;
esac
name=$(basename -- "$1")
cd -- "$(dirname -- "$1")"
holds_option "$name" || exec "$viewer" "$name"

folder=$(mktemp -d /tmp/plotvw.XXXXXX)
link=$folder/$(printf %s "$name" | tr - _)
# Whatever else came into the folder stays.
trap 'rm -f -- "$link"; rmdir -- "$folder" 2>/dev/null || true' EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
ln -s -- "$PWD/$name" "$link"
"$viewer" "$link"
