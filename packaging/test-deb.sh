#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Test that a package can be installed, run and removed in a bare Debian 12.
#
#   packaging/test-deb.sh PACKAGE [MIRROR]
#
# Needs root; takes minutes and downloads several hundred megabytes. The system is created in a temporary folder.
#
# Missing Debian packages are installed first.
set -euo pipefail

if (($# < 1 || $# > 2)); then
  echo 'usage: test-deb.sh PACKAGE [MIRROR]' >&2
  exit 2
fi
package=$1
mirror=${2-http://deb.debian.org/debian}
top=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=packages.sh
source "$top/packaging/packages.sh"

fail() {
  echo "test-deb.sh: $*" >&2
  exit 1
}

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

step "lintian $package"
lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs -- "$package"

step "A bare system in $system"
quietly debootstrap --variant=minbase bookworm "$system" "$mirror"
mount -t proc proc "$system/proc"
cp -- "$package" "$system/tmp/plotvw.deb"
cp -- "$top"/samples/*.plf "$system/tmp/"
quietly inside apt-get -qq update

# Dependencies are installed first, so that leftovers of the package itself can be recognized.
step 'Dependencies'
depends=$(dpkg-deb --field "$package" Depends | sed 's/ *([^)]*)//g; s/ *|[^,]*//g; s/,/ /g')
# shellcheck disable=SC2086 # a list of names
quietly inside apt-get -qq --yes install --no-install-recommends $depends shared-mime-info desktop-file-utils
files >"$system/tmp/before"

step 'Install'
quietly inside apt-get -qq --yes install --no-install-recommends /tmp/plotvw.deb

step 'Run'
mapfile -t programs < <(dpkg-deb --contents "$package" | sed -n 's|.* \./usr/bin/\([^ /]\{1,\}\)$|\1|p')
((${#programs[@]} == 5)) || fail "it has other programs: ${programs[*]}"
for program in plfconvert plfinfo krvhost; do
  inside "$program" --version
  ! inside ldd "/usr/bin/$program" | grep 'not found' || fail "$program: libraries are missing"
done
! inside ldd /usr/bin/plotvw | grep 'not found' || fail 'plotvw: libraries are missing'
inside sh -c 'mkdir /tmp/pictures && plfconvert --quiet -d /tmp/pictures /tmp/*.plf && plfinfo /tmp/*.plf >/tmp/info'
for format in jpg svg pdf eps; do
  inside plfconvert --quiet /tmp/tour.plf "/tmp/pictures/tour.$format"
done
pictures=("$system"/tmp/pictures/*)
graphs=("$top"/samples/*.plf)
((${#pictures[@]} == ${#graphs[@]} + 4)) || fail "there are ${#pictures[@]} pictures"
# The viewer, with a host that closes it, on Qt's platform without a display.
inside env QT_QPA_PLATFORM=offscreen krvhost --viewer plotvw --arg /tmp/tour.plf \
  '/tmp/bode.plf -c=2 -cf=/tmp/pictures/viewer' || fail 'the viewer does not answer'
[[ -s $system/tmp/pictures/viewer.eps ]] || fail 'the viewer exports nothing'
grep -q 'application=plotvw\|image/x-korvel-plf=plotvw.desktop' "$system/usr/share/applications/mimeinfo.cache" ||
  fail 'the desktop does not know it'
grep -q 'image/x-korvel-plf' "$system/usr/share/mime/globs2" || fail 'the file type is not known'

step 'Remove'
quietly inside apt-get -qq --yes purge plotvw
files >"$system/tmp/after"
! diff -- "$system/tmp/before" "$system/tmp/after" | grep '^[<>]' || fail 'it left something, or took something along'
! grep -q 'x-korvel-plf' "$system/usr/share/mime/globs2" || fail 'the file type stays'
echo 'It installs, runs and goes.'
