#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Were the programs built with everything of cmake/hardening.cmake?     hardening.sh PROGRAM...
#
# Debian packages: binutils.
set -euo pipefail

readonly start_marks=10
wrong=0

# expect PROGRAM WHAT PATTERN TEXT: the text must have a line that matches.
expect() {
  grep -Eq -- "$3" <<<"$4" || {
    echo "$1: no $2" >&2
    wrong=1
  }
}

for program; do
  dynamic=$(readelf --wide --dynamic "$program")
  expect "$program" 'position-independent program' 'FLAGS_1.* PIE' "$dynamic"
  expect "$program" 'binding of all functions at the start' 'BIND_NOW' "$dynamic"
  expect "$program" 'read-only relocations' 'GNU_RELRO' "$(readelf --wide --segments "$program")"
  symbols=$(readelf --wide --dyn-syms "$program")
  expect "$program" 'stack protector' '__stack_chk_fail' "$symbols"
  expect "$program" 'fortified function of the C library' '__[a-z]+_chk@' "$symbols"
done

# What the compiler wrote into the code of this processor. krvhost has no function with a large frame.
if [[ $(uname -m) == x86_64 ]]; then
  for program; do
    code=$(objdump --disassemble --no-show-raw-insn "$program")
    # The functions with which every program starts have up to $start_marks anyway.
    (($(grep -c '\bendbr64\b' <<<"$code") > start_marks)) || expect "$program" 'marks for indirect calls' . ''
    [[ $program == */krvhost ]] || expect "$program" 'probes of large frames' '\borq? +[$]0x0,.*[(]%rsp' "$code"
  done
fi
exit "$wrong"
