#!/bin/sh
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Open a graph of any name in the viewer; for the desktop, where users choose files.
#
#   plotvw-open [FILE]
#
# The viewer recognizes an option anywhere in an argument: the name my-plot.plf requests a print. Such a file is passed
# to it from inside the file's folder or, if the file's own name contains the option, through a link that is removed
# when the viewer exits.
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

# Start in the graph's folder, where exports should go by default.
case $viewer in
/* | plotvw) ;;
*) viewer=$PWD/$viewer ;;
esac
name=$(basename -- "$1")
cd -- "$(dirname -- "$1")"
holds_option "$name" || exec "$viewer" "$name"

folder=$(mktemp -d /tmp/plotvw.XXXXXX)
link=$folder/$(printf %s "$name" | tr - _)
# Other files in the folder are kept.
trap 'rm -f -- "$link"; rmdir -- "$folder" 2>/dev/null || true' EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
ln -s -- "$PWD/$name" "$link"
"$viewer" "$link"
