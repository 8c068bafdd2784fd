#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Test that the packages can be installed, run and removed in a bare Debian 12.
#
#   packaging/test-deb.sh [MIRROR]
#
# They are those in out/, made by make-deb.sh.
#
# Needs root; takes minutes and downloads several hundred megabytes. The system is created in a temporary folder.
#
# Missing Debian packages are installed first.
set -euo pipefail

if (($# > 1)); then
  echo 'usage: test-deb.sh [MIRROR]' >&2
  exit 2
fi
mirror=${1-http://deb.debian.org/debian}
top=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=packages.sh
source "$top/packaging/packages.sh"

fail() {
  echo "test-deb.sh: $*" >&2
  exit 1
}

packages=("$top"/out/plotvw_*.deb "$top"/out/plotvw-tools_*.deb "$top"/out/plotvw-doc_*.deb
  "$top"/out/qt6-image-formats-plugin-plf_*.deb
  "$top"/out/python3-plotvw_*.deb)
for package in "${packages[@]}"; do
  [[ -f $package ]] || fail "$package is missing: make the packages first, with make-deb.sh"
done

install_packages "${deb_test_packages[@]}"
system=$(mktemp -d)
trap 'umount -- "$system/proc" 2>/dev/null || true; rm -rf --one-file-system -- "$system"' EXIT

# inside COMMAND...: run a command in the system, with an empty environment.
inside() {
  env --ignore-environment PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    chroot "$system" "$@"
}

# files: the files of the system, without package records, caches and logs.
files() {
  (cd -- "$system" && find . -xdev \( -path ./proc -o -path ./var/lib/apt -o -path ./var/lib/dpkg -o -path ./var/cache \
    -o -path ./var/log -o -path ./tmp \) -prune -o -print | sort)
}

step() {
  echo "$* ..."
}

step "A bare system in $system"
quietly debootstrap --variant=minbase bookworm "$system" "$mirror"
mount -t proc proc "$system/proc"
echo force-unsafe-io >"$system/etc/dpkg/dpkg.cfg.d/temporary-system" # nothing of it must survive a power failure
cp -- "${packages[@]}" "$system/tmp/"
cp -r -- "$top/debian/tests" "$system/tmp/tests"
quietly inside apt-get -qq update

# Dependencies are installed first, so that leftovers of the package itself can be recognized.
step 'Dependencies'
mapfile -t depends < <(for package in "${packages[@]}"; do dpkg-deb --field "$package" Depends; done |
  tr ',' '\n' | sed -n 's/^ *\([^ ]*\).*/\1/p' | grep -v 'plotvw' | sort -u)
quietly inside apt-get -qq --yes install --no-install-recommends "${depends[@]}" shared-mime-info desktop-file-utils \
  file fonts-dejavu-core ghostscript poppler-utils python3-pyqt6
files >"$system/tmp/before"

step 'Install'
quietly inside sh -c 'apt-get -qq --yes install --no-install-recommends /tmp/*.deb'

step 'Run'
mapfile -t programs < <(for package in "${packages[@]}"; do dpkg-deb --contents "$package"; done |
  sed -n 's|.* \./usr/bin/\([^ /]\{1,\}\)$|\1|p')
((${#programs[@]} > 0)) || fail 'there are no programs'
for program in "${programs[@]}"; do
  ! inside ldd "/usr/bin/$program" 2>/dev/null | grep 'not found' || fail "$program: libraries are missing"
done
examples=/usr/share/doc/plotvw/examples
inside /tmp/tests/convert-samples "$examples" || fail 'the samples are not converted'
inside /tmp/tests/read-samples "$examples" || fail 'Python does not read the samples'
inside /tmp/tests/open-images "$examples" || fail 'a Qt program does not read the samples as images'
inside /tmp/tests/open-sample "$examples" || fail 'the viewer does not answer'
grep -q 'application=plotvw\|image/x-korvel-plf=plotvw.desktop' "$system/usr/share/applications/mimeinfo.cache" ||
  fail 'the desktop does not know it'
grep -q 'image/x-korvel-plf' "$system/usr/share/mime/globs2" || fail 'the file type is not known'

step 'Remove'
quietly inside apt-get -qq --yes purge plotvw plotvw-tools plotvw-doc qt6-image-formats-plugin-plf python3-plotvw
files >"$system/tmp/after"
! diff -- "$system/tmp/before" "$system/tmp/after" | grep '^[<>]' || fail 'it left something, or took something along'
! grep -q 'x-korvel-plf' "$system/usr/share/mime/globs2" || fail 'the file type stays'
echo 'It installs, runs and goes.'
