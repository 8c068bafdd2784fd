# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
# shellcheck shell=bash
#
# The files that the checks look at. Scripts read this file.

# source_files TOP FIND-TEST...: print the files of the tree that pass the tests of find, without what is built, each
# followed by a zero byte.
source_files() {
  find "$1" \( -name .git -o -path "$1/build" -o -path "$1/out" -o -name __pycache__ \) -prune -o -type f \( "${@:2}" \) -print0 |
    sort -z
}

# cpp_files TOP: the C++ sources and headers.
cpp_files() {
  source_files "$1" -name '*.cpp' -o -name '*.h'
}

# shell_files TOP: the shell scripts, with or without an extension.
shell_files() {
  source_files "$1" -name '*.sh' -o -path "$1/.ci/run"
}
