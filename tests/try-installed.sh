#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Do the programs work from the folder that they are installed into?     try-installed.sh TOP BUILD
#
# To be run inside an X server, for the viewer.
set -euo pipefail

top=$1 build=$2
root=$(mktemp -d)
trap 'rm -rf -- "$root"' EXIT
prefix=$root/usr
cmake --install "$build" --prefix "$prefix" >/dev/null

"$top/tests/hardening.sh" "$prefix"/bin/{plotvw,plfconvert,plfinfo,plfdiff,krvhost}

# expect WHAT TYPE FILE: the file is there, and of a type.
expect() {
  [[ $(file --brief --mime-type -- "$3") == "$2" ]] || {
    echo "$1: $(file --brief -- "$3")" >&2
    exit 1
  }
}

cd -- "$root"
for format in png jpeg svg pdf eps; do
  "$prefix/bin/plfconvert" --quiet "$top/samples/tour.plf" "tour.$format"
done
expect 'a PNG file' image/png tour.png
expect 'a JPEG file' image/jpeg tour.jpeg
expect 'an SVG file' image/svg+xml tour.svg
expect 'a PDF file' application/pdf tour.pdf
expect 'an EPS file' application/postscript tour.eps
[[ $("$prefix/bin/plfinfo" --json "$top/samples/tour.plf") == *'"vectors"'* ]]

# The host starts the viewer that is installed beside it.
"$prefix/bin/krvhost" --arg "$top/samples/bode.plf" "$top/samples/walk.plf -c=1 -cf=$root/shown" \
  "$top/samples/tour.plf -c=2 -cf=$root/again" >host.log 2>&1 || {
  cat host.log >&2
  exit 1
}
expect 'what the viewer showed' image/jpeg shown.jpg
expect 'what the viewer exported' application/postscript again.eps
