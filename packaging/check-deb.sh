#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Build the Debian packages twice, in two folders: are they equal, and is each a proper one?
#
#   packaging/check-deb.sh
#
# Leaves the packages in out/. Missing Debian packages are installed first.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=packages.sh
source "$root/packaging/packages.sh"
cd -- "$root"

fail() {
  echo "check-deb.sh: $*" >&2
  exit 1
}

# field PACKAGE NAME
field() {
  dpkg-deb --field out/"$1"_*.deb "$2"
}

# contains PACKAGE FILE...
contains() {
  local files
  files=$(dpkg-deb --contents out/"$1"_*.deb)
  local name
  for name in "${@:2}"; do
    grep -q " \./usr/$name\$" <<<"$files" || fail "$1 does not contain usr/$name"
  done
}

install_packages "${deb_packages[@]}" "${deb_test_packages[@]}"
readonly plugin=qt6-image-formats-plugin-plf
rm -f out/{,python3-}plotvw*_* out/"$plugin"*_*
packaging/make-deb.sh
first=$(mktemp -d)
trap 'rm -rf -- "$first"' EXIT
mv out/{,python3-}plotvw*.deb out/"$plugin"*.deb out/plotvw*.tar.* "$first"
# Whoever builds it again has another folder, umask and language.
(umask 077 && PLOTVW_DEB_FOLDER=$root/build/deb-again LC_ALL=C packaging/make-deb.sh)
for file in "$first"/*; do
  cmp -- "$file" "out/${file##*/}" || fail "${file##*/} is another one when it is built again"
done

# Root may run it, as in a container. The packages are for no archive, whose bugs they could close.
LC_ALL=C.UTF-8 lintian --allow-root --display-info --pedantic --fail-on error,warning,info,pedantic \
  --suppress-tags initial-upload-closes-no-bugs -- out/plotvw_*.changes
field plotvw Depends | grep -q 'libqt6widgets6 (>= ' || fail 'the dependencies are not computed'
! field plotvw-tools Depends | grep -q 'qt6widgets\|qt6printsupport' || fail 'the tools need widgets'
field plotvw-tools Recommends | grep -q '^fonts-' || fail 'no font is recommended'
contains plotvw bin/plotvw bin/plotvw-open share/applications/plotvw.desktop share/mime/packages/plotvw.xml
contains plotvw-tools bin/plfconvert bin/plfinfo bin/krvhost share/zsh/vendor-completions/_plfconvert
contains plotvw-doc share/doc/plotvw/COOKBOOK.md share/doc/plotvw/examples/tour.plf
contains "$plugin" 'lib/.*/qt6/plugins/imageformats/libqplf\.so'
! field "$plugin" Depends | grep -q 'qt6widgets\|qt6printsupport' || fail 'the plug-in needs widgets'
contains python3-plotvw lib/python3/dist-packages/plotvw/__init__.py 'lib/python3/dist-packages/plotvw/_core\..*\.so'
field python3-plotvw Depends | grep -q 'python3 (>= .*libqt6gui6' || fail 'the Python package depends on too little'
for package in plotvw plotvw-tools "$plugin" python3-plotvw; do
  [[ -s $(echo out/"$package"-dbgsym_*.deb) ]] || fail "$package has no debugging symbols"
done
echo 'The packages are the same when they are built again, and lintian has nothing to say.'
