#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Run a command inside an X server of its own, with a window manager and an empty home directory.
#
#   with-xserver.sh COMMAND [ARGUMENT...]
#
# SCREEN gives the screen's size and bits of color, WIDTHxHEIGHTxBITS.
# The server takes a free display number, so that several may run at once. Everything is gone when the command ends, and
# its exit code is the script's.
#
# Debian packages: openbox, xvfb.
set -euo pipefail

readonly start_seconds=30 # longest that a part may take to start, also with sanitizers around it
readonly stop_seconds=5   # longest that a part may take to stop before it is killed

if (($# == 0)); then
  echo 'usage: with-xserver.sh COMMAND [ARGUMENT...]' >&2
  exit 2
fi

state=$(mktemp -d "${TMPDIR:-/tmp}/plotvw-x.XXXXXX")
server='' manager='' client='' # process ids

# stop PID: end a process that this script started.
stop() {
  local deadline=$((SECONDS + stop_seconds))
  kill -TERM "$1" 2>/dev/null || return 0
  while kill -0 "$1" 2>/dev/null; do
    if ((SECONDS >= deadline)); then
      kill -KILL "$1" 2>/dev/null || true
    fi
    read -rt 0.05 -u "$tick" || true
  done
}

cleanup() {
  local status=$?
  trap - EXIT
  trap '' HUP INT TERM
  local pid
  for pid in $client $manager $server; do
    stop "$pid"
  done
  rm -rf -- "$state"
  exit "$status"
}

# report WHAT LOG: a part did not start.
report() {
  echo "with-xserver.sh: $1 does not start" >&2
  cat -- "$2" >&2
  exit 1
}

# await PID: print the line that a part writes into the pipe once it is ready; fail when it ends or takes too long.
await() {
  local line deadline=$((SECONDS + start_seconds))
  until read -rt 0.2 -u "$ready" line; do
    kill -0 "$1" 2>/dev/null && ((SECONDS < deadline)) || return 1
  done
  printf '%s\n' "$line"
}

# Both pipes are open for reading and writing at once, so that no open waits for its other end. Nothing writes into the
# second: reading it is a pause that needs no process.
mkfifo "$state/ready" "$state/tick"
exec {ready}<>"$state/ready" {tick}<>"$state/tick"
trap cleanup EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

mkdir -m 700 "$state/home" "$state/runtime"
export HOME=$state/home XDG_RUNTIME_DIR=$state/runtime
# What the caller's desktop has set must not reach the programs in here, and a session bus is never started for them.
unset WAYLAND_DISPLAY XAUTHORITY SESSION_MANAGER DESKTOP_STARTUP_ID XDG_CURRENT_DESKTOP XDG_SESSION_TYPE \
  XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME QT_SCALE_FACTOR \
  QT_SCREEN_SCALE_FACTORS QT_AUTO_SCREEN_SCALE_FACTOR QT_FONT_DPI
export QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled: NO_AT_BRIDGE=1

Xvfb -displayfd "$ready" -screen 0 "${SCREEN:-1280x1024x24}" -dpi 96 -nolisten tcp -noreset \
  >"$state/server.log" 2>&1 </dev/null {tick}<&- &
server=$!
number=$(await "$server") || report Xvfb "$state/server.log"
export DISPLAY=:$number

start_manager() {
  openbox --sm-disable --startup "sh -c 'echo ready >$state/ready'" >"$state/manager.log" 2>&1 </dev/null \
    {ready}<&- {tick}<&- &
  manager=$!
  await "$manager" >/dev/null
}

# On a busy machine a server that has told its number may still refuse the first connection.
deadline=$((SECONDS + start_seconds))
until start_manager; do
  if ! kill -0 "$server" || ((SECONDS >= deadline)); then
    report openbox "$state/manager.log"
  fi
  read -rt 0.2 -u "$tick" || true
done

# In the background, so that a signal ends the wait and with it everything.
"$@" <&0 {ready}<&- {tick}<&- &
client=$!
status=0
wait "$client" || status=$?
client=''
(exit "$status") # what the last command returns is the script's exit code
