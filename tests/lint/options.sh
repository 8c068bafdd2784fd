#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Do the help of each tool, its manual page and its three completions name exactly the same options, and those with a
# value alike?     options.sh TOP BUILD_DIRECTORY
#
# Each function in_PLACE PROGRAM prints the options that it finds, one a line and in any order, with a "=" after those
# that take a value.
# shellcheck disable=SC2317 # the functions are called by names that are put together
set -euo pipefail

top=$1 build=$2
status=0

# The table in the code, as the program prints it.
in_help() {
  "$build/tools/$1" --help | sed -nE 's/^  (-.*)/\1/p' | sed -E 's/  .*//' |
    sed -E '/</ s/(-[a-z0-9-]+)/\1=/g; s/ <.*//' | grep -oE -- '-[a-z0-9-]+=?'
}

# The items that begin with an option, such as ".It Fl f , Fl -format Ar format".
in_man() {
  sed -nE 's/^\.It Fl //p' "$top/docs/man/$1.1" | sed -E '/ Ar / s/(^|, Fl )([a-z0-9-]+)/\1\2=/g; s/ Ar .*//; s/ , Fl /\n/g' |
    sed 's/^/-/'
}

# What bash offers after "--", from the function itself, and the options after which it offers a value.
in_bash() {
  bash -s "$top/packaging/completions/bash/$1" "$1" <<'END'
script=$1 program=$2
complete() { :; }
_filedir() { :; }
_init_completion() { cur=$typed prev=$before split=false; }
# Only the list counts, not what fits to the word.
compgen() { [[ $1 != -W ]] || printf '%s\n' $2; }
source "$script"
typed=--before before=$program
COMPREPLY=()
"_$program"
for option in "${COMPREPLY[@]}"; do
  COMPREPLY=(none)
  typed=--before before=$option
  "_$program"
  # After an option without a value the options follow again.
  [[ " ${COMPREPLY[*]} " == *' --help '* ]] && value= || value='='
  printf '%s\n' "$option$value"
done
END
}

# Rows such as '(-f --format)'{-f+,--format=}'[picture format]:...' or '--size=[...]:...'.
in_zsh() {
  grep -E "^  '" "$top/packaging/completions/zsh/_$1" | sed -E "s/\([^)]*\)//g; s/[:[].*//; s/[{}'*]//g; s/\+/=/g" |
    grep -oE -- '-[a-z0-9-]+=?'
}

# -x and -r say that a value follows.
in_fish() {
  grep -E -- ' -[sl] ' "$top/packaging/completions/fish/$1.fish" | while read -r line; do
    value=
    [[ ! $line =~ \ -[xr]\  ]] || value='='
    grep -oE -- ' -[sl] [a-z0-9-]+' <<<"$line" | sed -E "s/ -s /-/; s/ -l /--/; s/\$/$value/"
  done
}

for program in plfconvert plfinfo plfdiff krvhost; do
  expected=$(in_help "$program" | sort)
  if (($(wc -l <<<"$expected") < 5)); then
    echo "$program: no options in its help" >&2
    status=1
  fi
  for place in man bash zsh fish; do
    if ! difference=$(diff <(echo "$expected") <("in_$place" "$program" | sort)); then
      echo "$program: --help (<) and $place (>) differ:" >&2
      echo "$difference" >&2
      status=1
    fi
  done
done
exit "$status"
