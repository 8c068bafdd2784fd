#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Is what cpack makes of a build a proper Debian package?     package.sh TOP BUILD_DIRECTORY
#
# Debian packages: dpkg-dev, file, lintian.
set -euo pipefail

folder=$(mktemp -d)
trap 'rm -rf -- "$folder"' EXIT
# Whoever builds a package may have another umask.
umask 077
if ! said=$(cpack -G DEB --config "$2/CPackConfig.cmake" -B "$folder" 2>&1); then
  echo "$said" >&2
  exit 1
fi
packages=("$folder"/*.deb)
# Root may run it, as in a container. The package is for no archive, whose bugs it could close.
LC_ALL=C.UTF-8 lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs -- "${packages[@]}"
dpkg-deb --field "${packages[0]}" Depends | grep -q 'libqt6gui6 (>= ' || {
  echo 'the dependencies are not computed' >&2
  exit 1
}
dpkg-deb --field "${packages[0]}" Recommends | grep -q '^fonts-' || {
  echo 'no font is recommended' >&2
  exit 1
}
