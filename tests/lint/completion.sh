#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Are the completions scripts of their shells, and do they and the manual page have every option that a program
# prints in its help? The viewer prints none: see facts.py.     completion.sh TOP BUILD_DIRECTORY
#
# Debian packages: fish, shellcheck, zsh.
set -euo pipefail

top=$1 build=$2
cd -- "$top/packaging/completions"
status=0
complain() {
  echo "$*" >&2
  status=1
}

shellcheck -- bash/* || status=1
for script in bash/*; do
  bash -n "$script" || status=1
done
for script in zsh/*; do
  zsh -n "$script" || status=1
  [[ $(head -n 1 "$script") == "#compdef ${script#zsh/_}" ]] || complain "$script: it is for another program"
done
for script in fish/*; do
  fish --no-execute "$script" || status=1
done

# options PROGRAM: the long ones of its help.
options() {
  "$build/tools/$1" --help | grep -oE '^  (-[a-z?], )*--[a-z-]+' | grep -oE -- '--[a-z-]+'
}

for program in plfconvert plfinfo krvhost; do
  mapfile -t listed < <(options "$program" | grep -vx -- --help-all)
  ((${#listed[@]} > 2)) || complain "$program: no options in its help"
  for option in "${listed[@]}"; do
    grep -qwe "$option" "bash/$program" || complain "bash/$program: $option is missing"
    grep -qwe "$option" "zsh/_$program" || complain "zsh/_$program: $option is missing"
    grep -qwe "-l ${option#--}" "fish/$program.fish" || complain "fish/$program.fish: $option is missing"
    grep -qwE "Fl (. , (Fl )?)?-${option#--}" "$top/docs/man/$program.1" || complain "docs/man/$program.1: $option is missing"
  done
done

exit "$status"
