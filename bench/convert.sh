#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Convert many small graphs and a hundred large ones, each folder in one call, and compare with tek2plot on the same
# streams. Then the vector files of a large graph of each kind: how large they are, and how long others take to read
# them.
#
#   convert.sh PLFCONVERT DIR [SMALL [VECTORS]]
#
# PLFCONVERT is the program of that name in a release build. DIR is for the graphs, unless they exist already, and
# temporarily for the pictures. SMALL is the number of small graphs (default: 10000), VECTORS the approximate number of
# vectors in each large one (default: 1000000). The large ones are two graphs, under fifty names each. tek2plot reads
# one stream in a call, so that its measured share of the time includes its start; it gets 200 of the small streams and
# both large ones. Files and megabytes are counted per second of processor time, which depends least on the machine's
# other work.
# Debian packages: librsvg2-bin, plotutils, poppler-utils, python3, time.
set -euo pipefail
export LC_ALL=C

usage='usage: convert.sh PLFCONVERT DIR [SMALL [VECTORS]]'
convert=${1:?$usage}
folder=${2:?$usage}
small=${3:-10000}
vectors=${4:-1000000}
readonly large=100 sample=200

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
for program in tek2plot python3 pdftocairo rsvg-convert /usr/bin/time; do
  if ! command -v "$program" >/dev/null; then
    echo "convert.sh: $program is missing, see the package list at the top of this script" >&2
    exit 1
  fi
done

make_graphs() {
  [[ -d $folder/small ]] || "$here/many-graphs.py" "$folder/small" "$small"
  [[ -d $folder/large ]] && return
  "$here/../samples/make-large.sh" "$folder/streams" "$vectors" >/dev/null
  mkdir -- "$folder/large"
  local i
  for ((i = 0; i < large / 2; i++)); do
    ln -- "$folder/streams/walk.plf" "$folder/large/walk$i.plf"
    ln -- "$folder/streams/surface.plf" "$folder/large/surface$i.plf"
  done
}

# report NAME FILES BYTES TIMES: one line of the table; TIMES is a file with wall, user and system seconds, and the
# memory of the largest process in kilobytes.
report() {
  awk -v name="$1" -v files="$2" -v bytes="$3" '{
    cpu = $2 + $3
    printf "%-28s %7d %8.1f %8.1f %10.1f %8.2f %8.1f\n", name, files, $1, cpu, files/cpu, bytes/cpu/1e6, $4/1024
  }' "$4"
}

timed() {
  /usr/bin/time --quiet --format '%e %U %S %M' --output "$folder/times" "$@"
}

# convert_folder NAME FORMAT
convert_folder() {
  rm -rf -- "$folder/pictures"
  timed "$convert" --quiet --format "$2" --output-dir "$folder/pictures" "$folder/$1"
  local files bytes made
  files=$(find "$folder/$1" -name '*.plf' | wc -l)
  bytes=$(find "$folder/$1" -name '*.plf' -printf '%s\n' | awk '{ n += $1 } END { print n }')
  made=$(find "$folder/pictures" -type f | wc -l)
  report "plfconvert $1 $2" "$files" "$bytes" "$folder/times"
  ((made == files)) || echo "convert.sh: $made pictures of $files graphs" >&2
  rm -rf -- "$folder/pictures"
}

# tek2plot_streams NAME FORMAT STREAM...
tek2plot_streams() {
  local name=$1 format=$2
  shift 2
  # shellcheck disable=SC2016 # the inner shell expands it
  timed bash -c 'format=$1; shift; for stream; do tek2plot -T "$format" --bitmap-size 640x640 "$stream"; done' \
    bash "$format" "$@" >"$folder/picture"
  report "tek2plot $name $format" "$#" "$(cat -- "$@" | wc -c)" "$folder/times"
  rm -f -- "$folder/picture"
}

# Render the vector file of a format.
read_svg() { timed rsvg-convert --output "$folder/rendered.png" "$1"; }
read_pdf() { timed pdftocairo -png -singlefile "$1" "$folder/rendered"; }

# vector_file NAME FORMAT: one line of the second table.
vector_file() {
  local picture=$folder/picture.$2 making
  timed "$convert" --quiet "$folder/streams/$1.plf" "$picture"
  making=$(<"$folder/times")
  "read_$2" "$picture"
  printf '%s %s\n' "$making" "$(<"$folder/times")" |
    awk -v name="$1 $2" -v bytes="$(stat --format %s "$picture")" '{
      printf "%-28s %8.1f %8.2f %8.1f %8.2f %8.1f\n", name, bytes/1e6, $2 + $3, $4/1024, $6 + $7, $8/1024
    }'
  rm -f -- "$picture" "$folder/rendered.png"
}

mkdir -p -- "$folder"
make_graphs
printf '%-28s %7s %8s %8s %10s %8s %8s\n' '' files 'wall, s' 'cpu, s' 'files/cpu' 'MB/cpu' 'peak, MB'
mapfile -t streams < <(find "$folder/small" -name '*.tek' | sort | head -n "$sample")
for format in png svg pdf eps; do
  convert_folder small "$format"
done
for format in png svg ps; do
  tek2plot_streams small "$format" "${streams[@]}"
done
for format in png eps; do
  convert_folder large "$format"
done
for format in png ps; do
  tek2plot_streams large "$format" "$folder/streams/walk.tek" "$folder/streams/surface.tek"
done
printf '\n%-28s %8s %8s %8s %8s %8s\n' 'vector files' 'MB' 'made, s' 'peak, MB' 'read, s' 'peak, MB'
for name in walk surface; do
  for format in svg pdf; do
    vector_file "$name" "$format"
  done
done
