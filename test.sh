#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Build the program with a preset and run its tests.
#
#   ./test.sh            g++, warnings are errors: all tests, finally those that start an X server
#   ./test.sh asan       clang++ with the address and undefined-behavior sanitizers: the same tests
#   ./test.sh tsan       clang++ with the thread sanitizer: the tests with threads
#   ./test.sh lint [changed|quick]
#                        formatters, validators and analyzers; clang-tidy checks all sources,
#                        those that have changed since the last release, or none
#   ./test.sh peers      graphs, pictures and the Python package in programs of others, which are large to install
#   ./test.sh release    a release and the benchmarks, with warnings as errors, installed into a folder and tried
#   ./test.sh all        these six
#   ./test.sh fuzz SECONDS [TARGET...]
#                        each fuzz target, or the named ones, for SECONDS; two at a time
#
# Missing Debian packages are installed first.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=packaging/packages.sh
source "$root/packaging/packages.sh"
cd -- "$root"

# build_and_test PRESET TEST_PRESET PACKAGE...     with the options of ctest in "selection".
selection=()
build_and_test() {
  local preset=$1 tests=$2
  install_packages "${build_packages[@]}" "${python_packages[@]}" "${test_packages[@]}" "${@:3}"
  echo "Building in build/$preset ..."
  quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset"
  ctest --preset "$tests" "${selection[@]}"
}

# Separate from build/release, which is the user's.
build_and_install() {
  install_packages "${build_packages[@]}" "${python_packages[@]}" "${test_packages[@]}" "${bench_packages[@]}"
  echo 'Building in build/installed ...'
  quietly cmake --preset bench -B build/installed -D PLOTVW_WERROR=ON
  quietly cmake --build build/installed
  tests/install.sh "$root" "$root/build/installed"
  tests/e2e/with-xserver.sh tests/try-installed.sh "$root" "$root/build/installed"
  echo 'The installed programs work.'
}

# build_and_fuzz SECONDS [TARGET...]
build_and_fuzz() {
  install_packages "${build_packages[@]}" "${python_packages[@]}" "${test_packages[@]}" "${sanitizer_packages[@]}"
  echo 'Building in build/fuzz ...'
  quietly cmake --preset fuzz
  quietly cmake --build --preset fuzz --target fuzzers
  fuzz/run.sh "$@"
}

case ${1-} in
'') build_and_test dev dev ;;
asan) build_and_test asan asan "${sanitizer_packages[@]}" ;;
tsan) build_and_test tsan tsan "${sanitizer_packages[@]}" ;;
lint)
  export PLOTVW_LINT=${2:-all}
  [[ $PLOTVW_LINT != quick ]] || selection=(--label-exclude tidy)
  build_and_test dev lint "${lint_packages[@]}"
  ;;
peers) build_and_test dev peers "${peers_packages[@]}" ;;
release) build_and_install ;;
fuzz) build_and_fuzz "${@:2}" ;;
all)
  "$0"
  "$0" asan
  "$0" tsan
  "$0" lint
  "$0" peers
  "$0" release
  ;;
*)
  echo 'usage: ./test.sh [asan|tsan|lint [changed|quick]|peers|release|all|fuzz SECONDS [TARGET...]]' >&2
  exit 2
  ;;
esac
