#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Does the system know a graph once the program is installed, also one without an extension?     install.sh TOP BUILD
#
# PLOTVW_SANITIZED is set when the programs have sanitizers, which reserve more memory than the thumbnailer may have.
#
# Debian packages: desktop-file-utils, libglib2.0-bin, man-db, shared-mime-info.
set -euo pipefail

top=$1 build=$2
root=$(mktemp -d)
trap 'rm -rf -- "$root"' EXIT
prefix=$root/usr
export HOME=$root/home XDG_DATA_HOME=$root/home/data XDG_CONFIG_HOME=$root/home/config XDG_DATA_DIRS=$prefix/share
export PATH=$prefix/bin:$PATH MANPATH=$prefix/share/man
unset XDG_CURRENT_DESKTOP
mkdir "$root/home" "$root/graphs"

fail() {
  echo "$*" >&2
  exit 1
}

# expect WHAT EXPECTED FOUND
expect() {
  [[ $3 == "$2" ]] || fail "$1: '$3' instead of '$2'"
}

cmake --install "$build" --prefix "$prefix" >/dev/null
PKGSYSTEM_ENABLE_FSYNC=0 update-mime-database "$prefix/share/mime"
update-desktop-database "$prefix/share/applications"

type_of() {
  gio info --attributes=standard::content-type -- "$1" | sed -n 's/^ *standard::content-type: //p'
}

cp -- "$top/samples/bode.plf" "$root/graphs/graph"
cp -- "$top/samples/bode.plf" "$root/graphs/graph.plf"
head -c 15 -- "$top/samples/bode.plf" >"$root/graphs/header cut short"
printf 'ESC TG140000' >"$root/graphs/text"
expect 'a graph without an extension' image/x-korvel-plf "$(type_of "$root/graphs/graph")"
expect 'a graph' image/x-korvel-plf "$(type_of "$root/graphs/graph.plf")"
for name in 'header cut short' text; do
  [[ $(type_of "$root/graphs/$name") != image/x-korvel-plf ]] || fail "$name: it counts as a graph"
done

applications=$(gio mime image/x-korvel-plf)
grep -q 'plotvw\.desktop' <<<"$applications" || fail "no application opens graphs: $applications"

# The thumbnailer's command, with its placeholders filled in as a file manager does. Some of them open the file for the
# picture first, and read what they opened.
command=$(sed -n 's/^Exec=//p' "$prefix/share/thumbnailers/plotvw.thumbnailer")
[[ -z ${PLOTVW_SANITIZED-} ]] || command=${command/ --memory 512/}
command=${command//%s/256}
command=${command//%i/$(printf %q "$root/graphs/graph")}
command=${command//%o/$(printf %q "$root/graphs/thumbnail")}
: >"$root/graphs/thumbnail"
exec 3<"$root/graphs/thumbnail"
env --unset=DISPLAY --unset=WAYLAND_DISPLAY sh -c "$command"
expect 'the thumbnail, opened before' image/png "$(file --brief --mime-type - <&3)"
exec 3<&-
expect 'the thumbnail' image/png "$(file --brief --mime-type -- "$root/graphs/thumbnail")"
[[ $(file --brief -- "$root/graphs/thumbnail") == *'256 x 195'* ]] || fail 'the thumbnail has another size'

for program in plotvw plotvw-open plfconvert plfinfo plfdiff krvhost; do
  [[ -x $prefix/bin/$program ]] || fail "$program is not installed"
  [[ -s $prefix/share/man/man1/$program.1 ]] || fail "$program has no manual page"
  for script in bash-completion/completions/"$program" zsh/site-functions/_"$program" \
    fish/vendor_completions.d/"$program.fish"; do
    [[ -s $prefix/share/$script ]] || fail "$script is not installed"
  done
done
plugins=("$prefix"/lib*/qt6/plugins "$prefix"/lib*/*/qt6/plugins)
[[ -n $(find "${plugins[@]}" -path '*/imageformats/libqplf.so' 2>/dev/null) ]] || fail 'the image plug-in is not installed'
symbols=$(find "$prefix" -name libqplf.so -exec nm --dynamic --defined-only --format=just-symbols {} + | sort | tr '\n' ' ')
expect 'what the image plug-in exports' 'qt_plugin_instance qt_plugin_query_metadata_v2 ' "$symbols"
for file in man/man5/plotvw.cfg.5 metainfo/org.plotvw.plotvw.metainfo.xml icons/hicolor/scalable/apps/plotvw.svg \
  icons/hicolor/48x48/apps/plotvw.png plotvw/plfinfo.schema.json; do
  [[ -s $prefix/share/$file ]] || fail "$file is not installed"
done

# Every program that the desktop's files start is there.
sed -n 's/^\(Try\)\{0,1\}Exec=\([^ ]*\).*/\2/p' "$prefix"/share/applications/*.desktop "$prefix"/share/thumbnailers/* |
  grep -vx sh | while read -r program; do
    [[ -x $prefix/bin/$program ]] || fail "$program is started and is not there"
  done

# The Python package, if it was built, finds its compiled part and nothing of the build.
if [[ -d $build/python/plotvw ]]; then
  packages=$(echo "$prefix"/lib/python3*/site-packages)
  count=$(env --unset=PYTHONHOME PYTHONPATH="$packages" /usr/bin/python3 -B -c '
import sys, plotvw
assert plotvw.__file__.startswith(sys.argv[1]), plotvw.__file__
print(len(plotvw.read(sys.argv[2]).vectors))' "$packages" "$root/graphs/graph.plf")
  expect 'vectors in Python' 3436 "$count"
  [[ -f $packages/plotvw/py.typed ]] || fail 'the Python package has no types'
fi
