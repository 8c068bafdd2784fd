#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# What do the desktop's own validators say about the files for it?     desktop.sh TOP
#
# Debian packages: appstream, desktop-file-utils, file, libxml2-utils, shared-mime-info.
set -euo pipefail

cd -- "$1/packaging"
status=0
complain() {
  echo "$*" >&2
  status=1
}

# silently COMMAND...: some validators complain and return 0 anyway.
silently() {
  local said
  if ! said=$("$@" 2>&1) || [[ -n $said ]]; then
    complain "$*: $said"
  fi
}

xmllint --noout desktop/*.xml icons/*.svg || status=1

# It only hints at a second main category, with which a menu may show the program twice.
silently desktop-file-validate desktop/plotvw.desktop

appstreamcli validate --no-net --pedantic --explain desktop/org.plotvw.plotvw.metainfo.xml || status=1

folder=$(mktemp -d)
trap 'rm -rf -- "$folder"' EXIT
prefix=$folder/mime
mkdir -p "$prefix/packages"
cp -- desktop/plotvw-mime.xml "$prefix/packages/plotvw.xml"
silently env PKGSYSTEM_ENABLE_FSYNC=0 XDG_DATA_DIRS="$folder" update-mime-database "$prefix"
grep -q 'image/x-korvel-plf:\*\.plf' "$prefix/globs2" || complain 'desktop/plotvw-mime.xml: its pattern got lost'
LC_ALL=C grep -aqF $'\x1bTG140000\x1bTG1410' "$prefix/magic" || complain 'desktop/plotvw-mime.xml: its magic got lost'

# One type and one icon everywhere.
for file in desktop/plotvw.desktop desktop/plotvw.thumbnailer; do
  grep -qx 'MimeType=image/x-korvel-plf;' "$file" || complain "$file: another type"
done
for size in 16 22 24 32 48 64 128 256; do
  [[ $(file --brief -- "icons/plotvw-$size.png") == "PNG image data, $size x $size,"* ]] ||
    complain "icons/plotvw-$size.png: another size"
done
exit "$status"
