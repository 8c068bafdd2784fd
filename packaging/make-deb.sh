#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Build the Debian packages, their debugging symbols and the source package in out/, and print their names.
#
#   packaging/make-deb.sh
#
# What is done is told on standard error. Missing Debian packages are installed first.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=packages.sh
source "$root/packaging/packages.sh"
cd -- "$root"
umask 022

readonly folder=${PLOTVW_DEB_FOLDER:-$root/build/deb}
version=$(sed -n '1s/^plotvw (\(.*\)) .*/\1/p' debian/changelog)
readonly source=$folder/plotvw-$version

step() {
  echo "$* ..." >&2
}

# copy_sources: only what belongs to the project.
copy_sources() {
  rm -rf -- "$folder"
  mkdir -p -- "$source"
  if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    git ls-files -z --cached --others --exclude-standard -- ':!.ci'
  else
    find . -path ./build -prune -o -path ./out -prune -o -type f -printf '%P\0'
  fi | tar --create --null --files-from=- --ignore-failed-read --warning=no-failed-read | tar --extract --directory="$source"
}

# tell_progress: the steps that a log on standard input goes through, and every tenth of the compilation.
tell_progress() {
  local line tenth=0
  while IFS= read -r line; do
    case $line in
    *dh_auto_configure*) step 'Configuring' ;;
    *dh_auto_build*) step 'Compiling' ;;
    *dh_auto_install*) step 'Installing into a folder' ;;
    *dh_strip*) step 'Separating debugging symbols' ;;
    'dpkg-deb: building package'*) step "Packing ${line##*../}" ;;
    esac
    if [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] && ((BASH_REMATCH[1] * 10 / BASH_REMATCH[2] > tenth)); then
      tenth=$((BASH_REMATCH[1] * 10 / BASH_REMATCH[2]))
      step "  ${tenth}0 %"
    fi
  done
}

install_packages "${build_packages[@]}" "${python_packages[@]}" "${deb_packages[@]}"
step 'Copying the sources'
copy_sources
cd -- "$source"
if ! dpkg-buildpackage --no-sign 2>&1 | tee "$folder/log" | tell_progress; then
  tail -n 40 -- "$folder/log" >&2
  echo "make-deb.sh: the packages could not be built, see $folder/log" >&2
  exit 1
fi
cd -- "$root"
mkdir -p out
for file in "$folder"/{plotvw,python3-plotvw,qt6-image-formats-plugin-plf}*_*; do
  mv -- "$file" out/
  echo "out/${file##*/}"
done
