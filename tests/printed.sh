#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Does a document of several graphs come out of a print queue as it is: pages, names, texts?     printed.sh TOP PLFCONVERT
#
# Debian packages: cups-client, cups-daemon, poppler-utils.
set -euo pipefail

readonly top=$1 plfconvert=$2
readonly graphs=(energy tour walk)
readonly seconds=60 # longest that the queue may take

folder=$(mktemp -d /tmp/printed.XXXXXX)
trap 'rm -rf -- "$folder"' EXIT
export HOME=$folder

fail() {
  echo "$*" >&2
  exit 1
}

# pictures PDF NAME: paint the pages as pictures.
pictures() {
  pdftoppm -r 40 "$folder/$1" "$folder/$2"
}

# pages_of PDF: the names in the outline, each after its page.
pages_of() {
  pdftohtml -xml -i -stdout "$folder/$1" | sed -n 's|<item page="\([0-9]*\)">\(.*\)</item>|\1 \2|p'
}

# The server ends with its standard input, after which nobody uses the folder any more.
mkfifo "$folder"/{wanted,said,tick}
"$top/tests/e2e/print-server.sh" "$folder/queue" <"$folder/wanted" >"$folder/said" &
server=$!
# shellcheck disable=SC2034 # what is wanted is held until the end
exec {wanted}>"$folder/wanted" {said}<"$folder/said" {tick}<>"$folder/tick"
trap 'exec {wanted}>&-; wait "$server" || true; rm -rf -- "$folder"' EXIT
read -rt "$seconds" -u "$said" answer || true
[[ ${answer-} == ready ]] || fail 'the print server does not start'

files=()
for graph in "${graphs[@]}"; do
  files+=("$top/samples/$graph.plf")
done
"$plfconvert" --quiet --merge "$folder/all.pdf" -- "${files[@]}"
CUPS_SERVER=$folder/queue/socket lp "$folder/all.pdf" >/dev/null
# It is moved into place when it is complete. Nothing writes into the pipe: reading it is a pause.
deadline=$((SECONDS + seconds))
until [[ -f $folder/queue/pages/1.pdf ]]; do
  ((SECONDS < deadline)) || fail 'nothing comes out of the queue'
  read -rt 0.05 -u "$tick" || true
done
mv -- "$folder/queue/pages/1.pdf" "$folder/printed.pdf"

count=$(pdfinfo "$folder/printed.pdf" | sed -n 's/^Pages: *//p')
[[ $count == "${#graphs[@]}" ]] || fail "$count pages are printed"
names=$(pages_of printed.pdf)
[[ $names == $'1 energy\n2 tour\n3 walk' ]] || fail "the outline has: $names"
texts=$(pdftotext -f 2 -l 2 "$folder/printed.pdf" -)
[[ $texts == *'Text at a point'* ]] || fail "the text of the second page is not found: $texts"
pictures printed.pdf printed
for i in "${!graphs[@]}"; do
  "$plfconvert" --quiet "${files[i]}" "$folder/alone.pdf"
  pictures alone.pdf alone
  cmp -- "$folder/alone-1.ppm" "$folder/printed-$((i + 1)).ppm" || fail "${graphs[i]} is printed as something else"
done
