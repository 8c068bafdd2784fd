#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Run a print server of its own until the standard input ends.
#
#   print-server.sh FOLDER
#
# Everything that the server keeps is in FOLDER, which must be new or empty. The line "ready" on the standard output
# tells that it takes jobs; a program prints there when CUPS_SERVER names FOLDER/socket. The queues:
#
#   fileq      the default: a job arrives, as it was sent, as FOLDER/pages/NUMBER.pdf, its name as NUMBER.name
#   stopped    takes jobs and keeps them
#   refusing   takes no job
#
# All have the papers A4, Letter and Legal, A4 when nobody says otherwise, each with margins of its own. Those of A4 are
# the narrowest: programs tend to keep the margins that they start with where another paper's are narrower.
#
# Any user may run it: the server is not the system's, and listens to nothing but the socket.
#
# Debian packages: cups-client, cups-daemon.
set -euo pipefail

readonly start_seconds=30   # longest that the server may take to start
readonly stop_seconds=5     # longest that it may take to stop before it is killed
readonly longest_socket=107 # bytes that the system takes as the name of a socket
readonly helpers=/usr/lib/cups/daemon
# Name, width and height, and the corners of the area that can be printed on (lower left, upper right), in points.
readonly papers=('A4 595 842 12 12 583 824' 'Letter 612 792 30 18 592 756' 'Legal 612 1008 18 40 598 984')

if (($# != 1)) || [[ $1 != /* ]]; then
  echo 'usage: print-server.sh FOLDER, with the whole path' >&2
  exit 2
fi
readonly folder=$1 socket=$1/socket
if ((${#socket} > longest_socket)); then
  echo "print-server.sh: the name of $folder is too long for a socket in it" >&2
  exit 2
fi
PATH=$PATH:/usr/sbin
for tool in cupsd lpstat lpadmin; do
  if ! command -v "$tool" >/dev/null; then
    echo "print-server.sh: $tool is missing: are the packages cups-daemon and cups-client installed?" >&2
    exit 1
  fi
done

# write_settings: the server runs only what it finds in its own folder, so that the sole way out is the one below.
write_settings() {
  cat >"$folder/files.conf" <<END
ServerRoot $folder/settings
ServerBin $folder/programs
DataDir /usr/share/cups
CacheDir $folder/cache
StateDir $folder/state
RequestRoot $folder/spool
TempDir $folder/spool/temporary
AccessLog $folder/log/access
ErrorLog $folder/log/error
PageLog $folder/log/page
Printcap
END
  cat >"$folder/server.conf" <<END
Listen $socket
Browsing No
WebInterface No
DefaultAuthType None
LogLevel info
MaxLogSize 0
IdleExitTimeout 0
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
    Allow all
  </Limit>
</Policy>
END
}

# The way out: a job's file is moved into place when it is complete, so that nobody reads half a page. Because only its
# owner may run it, the server gives it its own rights instead of those of the printing user.
write_backend() {
  cat >"$folder/programs/backend/pages" <<END
#!/bin/sh
[ \$# -ge 5 ] || exit 0
printf '%s' "\$3" >'$folder/pages/'"\$1.name"
cat -- "\${6:-/dev/stdin}" >'$folder/pages/part' && mv -- '$folder/pages/part' '$folder/pages/'"\$1.pdf"
END
  chmod 700 "$folder/programs/backend/pages"
}

# each_paper KEY code|size|area: print a line for every paper, with that in quotes.
each_paper() {
  local paper name width height area
  for paper in "${papers[@]}"; do
    read -r name width height area <<<"$paper"
    case $2 in
    code) printf '*%s %s: "<</PageSize[%d %d]>>setpagedevice"\n' "$1" "$name" "$width" "$height" ;;
    size) printf '*%s %s: "%d %d"\n' "$1" "$name" "$width" "$height" ;;
    area) printf '*%s %s: "%s"\n' "$1" "$name" "$area" ;;
    esac
  done
}

# size_option NAME: describe what a program asks for to get a paper.
size_option() {
  printf '*OpenUI *%s: PickOne\n*Default%s: A4\n' "$1" "$1"
  each_paper "$1" code
  printf '*CloseUI: *%s\n' "$1"
}

write_printer() {
  cat <<END
*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "PAGES.PPD"
*Manufacturer: "None"
*ModelName: "Pages"
*ShortNickName: "Pages"
*NickName: "Pages into files"
*Product: "(Pages)"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*cupsFilter: "application/pdf 0 -"
END
  size_option PageSize
  size_option PageRegion
  echo '*DefaultPaperDimension: A4'
  each_paper PaperDimension size
  echo '*DefaultImageableArea: A4'
  each_paper ImageableArea area
}

server=''

stop_server() {
  local status=$?
  trap - EXIT
  trap '' HUP INT TERM
  if [[ -n $server ]] && kill -TERM "$server" 2>/dev/null; then
    local deadline=$((SECONDS + stop_seconds))
    while kill -0 "$server" 2>/dev/null; do
      ((SECONDS < deadline)) || kill -KILL "$server" 2>/dev/null || true
      pause
    done
  fi
  exit "$status"
}

# Nothing writes into the pipe: reading it is a pause that needs no process.
pause() {
  read -rt 0.05 -u "$tick" || true
}

fail() {
  echo "print-server.sh: $1" >&2
  cat -- "$folder"/log/* >&2 || true
  exit 1
}

if [[ -e $folder && -n $(ls -A -- "$folder") ]]; then
  echo "print-server.sh: $folder is not empty" >&2
  exit 1
fi
mkdir -p -- "$folder"/{cache,log,pages,programs/{backend,filter},settings/ppd,spool/temporary,state}
# The helpers are what the server needs to start anything. The server itself is a copy because systems may confine the
# program of that name to the system's own folders.
ln -s "$helpers" "$folder/programs/daemon"
cp -- "$(command -v cupsd)" "$folder/programs/server"
write_settings
write_backend
write_printer >"$folder/printer.ppd"
mkfifo "$folder/tick"
exec {tick}<>"$folder/tick"
trap stop_server EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

"$folder/programs/server" -f -c "$folder/server.conf" -s "$folder/files.conf" \
  >"$folder/log/output" 2>&1 </dev/null {tick}<&- &
server=$!
export CUPS_SERVER=$socket
deadline=$((SECONDS + start_seconds))
until lpstat -r 2>/dev/null | grep -q 'is running'; do
  kill -0 "$server" 2>/dev/null || fail 'the server ends at once'
  ((SECONDS < deadline)) || fail 'the server does not answer'
  pause
done

for queue in fileq stopped refusing; do
  lpadmin -p "$queue" -E -v pages:/ -P "$folder/printer.ppd" 2>"$folder/log/queue" || fail "there is no queue $queue"
done
lpadmin -d fileq
cupsdisable stopped
cupsreject refusing

echo ready
# Until nobody wants it any more.
while read -r _; do :; done
