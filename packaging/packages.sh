# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
# shellcheck shell=bash disable=SC2034 # the lists are for the scripts that read this file
#
# The Debian 12 packages that the project needs, by purpose, and functions to install them. Sourced by scripts.

# To build the program, and a font for texts.
build_packages=(cmake fonts-dejavu-core g++ libgl-dev libqpdf-dev ninja-build qt6-base-dev qt6-svg-dev zlib1g-dev)
# Additionally, for the Python package; without them the rest is built.
python_packages=(pybind11-dev python3-dev python3-numpy)
# Additionally, for a desktop without an X server.
wayland_packages=(qt6-wayland)
# To build and run the tests: readers of PostScript, PDF and SVG, a print server, locales, an X server with a window manager
# and simulated input, a Wayland compositor, desktop tools for file types, and what tests Python.
test_packages=(binutils cups-client cups-daemon desktop-file-utils file ghostscript libglib2.0-bin locales openbox
  librsvg2-bin mypy poppler-utils python3-hypothesis python3-jsonschema python3-pil python3-pytest qt6-wayland
  shared-mime-info weston x11-utils xdotool xvfb)
# To try graphs, pictures and the Python package in programs of others.
peers_packages=(chromium inkscape python3-distributed python3-matplotlib python3-pandas python3-pyqt6 python3-venv
  qml-qt6 qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtqml-workerscript)
# To build with sanitizers, with function names in their reports.
sanitizer_packages=(clang libclang-rt-14-dev llvm)
# To measure the program, on a screen, and another one for comparison.
bench_packages=(libbenchmark-dev librsvg2-bin openbox plotutils poppler-utils python3 time xvfb)
# To check the sources, the manual pages, the completions, the files for desktops and the package.
lint_packages=(appstream clang-format-14 clang-tidy-14 desktop-file-utils file fish libxml2-utils man-db
  mandoc python3 shared-mime-info shellcheck zsh)
# To make the Debian packages, and to try them in a bare system.
deb_packages=(debhelper dh-python dpkg-dev fakeroot)
deb_test_packages=(debootstrap lintian)

# missing_packages NAME...: print the names of those that are not installed.
missing_packages() {
  local installed
  installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null) || true
  local name
  for name; do
    grep -qx "installed $name" <<<"$installed" || printf '%s\n' "$name"
  done
}

# apt_install NAME...: as root, or through sudo. The package lists may be missing or outdated, so after a failure they
# are updated for a second try.
apt_install() {
  local as_root=(env)
  ((EUID == 0)) || as_root=(sudo env)
  local apt=("${as_root[@]}" DEBIAN_FRONTEND=noninteractive apt-get --quiet --yes --option DPkg::Lock::Timeout=300)
  local install=("${apt[@]}" install --no-install-recommends "$@")
  "${install[@]}" >/dev/null 2>&1 && return
  "${apt[@]}" update && "${install[@]}"
}

# install_packages NAME...: install those that are missing; does not call apt if none is.
install_packages() {
  if ! command -v dpkg-query >/dev/null; then
    echo "This is not a Debian system. Install what these Debian packages contain: $*" >&2
    return
  fi
  local missing
  mapfile -t missing < <(missing_packages "$@")
  ((${#missing[@]} > 0)) || return 0
  if ((EUID != 0)) && ! command -v sudo >/dev/null; then
    echo "Packages are missing, and only root can install them: apt-get install ${missing[*]}" >&2
    return 1
  fi
  echo "Installing ${missing[*]} ..."
  local log
  log=$(mktemp)
  if ! apt_install "${missing[@]}" >"$log" 2>&1; then
    cat -- "$log" >&2
    rm -f -- "$log"
    echo "The packages could not be installed. Try: apt-get install ${missing[*]}" >&2
    return 1
  fi
  rm -f -- "$log"
}

# quietly COMMAND...: show the output of a command only if it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  ((status == 0)) || cat -- "$log" >&2
  rm -f -- "$log"
  return "$status"
}
