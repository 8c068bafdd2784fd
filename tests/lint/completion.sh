#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Are the completions scripts of their shells? What they offer is compared by facts.py and options.sh.
#     completion.sh TOP
#
# Debian packages: fish, shellcheck, zsh.
set -euo pipefail

cd -- "$1/packaging/completions"
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

exit "$status"
