#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Build the Debian package in out/, and print its name.
#
#   packaging/make-deb.sh
#
# Missing Debian packages are installed first.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=packages.sh
source "$root/packaging/packages.sh"
cd -- "$root"
umask 022

install_packages "${build_packages[@]}" "${deb_packages[@]}"
echo 'Building in build/release ...' >&2
quietly cmake --preset release
quietly cmake --build --preset release
rm -rf build/deb
quietly cpack -G DEB --config build/release/CPackConfig.cmake -B build/deb
mkdir -p out
packages=(build/deb/*.deb)
mv -- "${packages[@]}" out/
echo "out/${packages[0]##*/}"
