#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Make the sample graphs, byte for byte.
#
#   make-samples.sh [DIR]      DIR: output folder; default: the folder of this script
#
# Debian packages: gnuplot-nox (or another gnuplot), plotutils, python3.
set -euo pipefail
export LC_ALL=C

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
out=${1:-$here}

for program in gnuplot graph ode plot python3; do
  if ! command -v "$program" >/dev/null; then
    echo "make-samples.sh: $program is missing, see the package list at the top of this script" >&2
    exit 1
  fi
done

mkdir -p -- "$out"
tmp=$(mktemp -d)
trap 'rm -rf -- "$tmp"' EXIT

# The drawing area is 4096 by 3120. Each graph has its plot between these lines, and labels around them.
left=420 right=3900 bottom=460 top=2700

# wrap NAME WORD=VALUE...: write one sample.
wrap() {
  python3 -B "$here/plfwrap.py" "$out/$1.plf" "${@:2}"
}

# draw STREAM TERMINAL: run the gnuplot commands on standard input in the common frame. Labels are switched off, because
# alpha text in a stream would be taken for addresses.
draw() {
  { cat <<EOF
set terminal $2
set output "$tmp/$1.tek"
set lmargin at screen $left/4096.0
set rmargin at screen $right/4096.0
set bmargin at screen $bottom/3120.0
set tmargin at screen $top/3120.0
set format ""
unset key
set samples 400
EOF
    cat; } | gnuplot -d
}

# Without frame and tics: one more curve for the frame of another stream.
bare='unset border; unset tics'

# frame TERMINAL: only the border.
frame() {
  draw border "$1" <<<'unset tics; set xrange [0:1]; set yrange [0:1]; plot -1'
}

# Labels are strokes of a Hershey font, because texts of a graph are drawn small on a screen.
# label PLACE X Y HEIGHT STRING: note one, with its left end (l), center (c) or right end (r) at X and its middle at Y.
labels=''
label() {
  labels+="S $4"$'\n'"m $2 $3"$'\n'"T$1c$5"$'\n'
}

# strokes STREAM: make the stream of the labels noted so far.
strokes() {
  # The terminal is a square for the plotting program, 3120 points wide in the middle of the drawing area.
  printf '#PLOT 2\no\ns 488 0 3608 3120\nFHersheySans\n%sx\n' "$labels" | plot -T tek >"$tmp/$1.tek"
  labels=''
}

# xlabels STRING... and ylabels STRING...: tick labels at even distances along the axes.
xlabels() {
  local i=0 string
  for string in "$@"; do
    label c $((left + (right - left) * i / ($# - 1))) $((bottom - 100)) 100 "$string"
    i=$((i + 1))
  done
}
ylabels() {
  local i=0 string
  for string in "$@"; do
    label r $((left - 60)) $((bottom + (top - bottom) * i / ($# - 1))) 100 "$string"
    i=$((i + 1))
  done
}

# Curves: response of a damped oscillator for eight damping ratios, and the line through the peaks.
resonance() {
  local right=3240
  local ratios=(0.10 0.14 0.20 0.28 0.40 0.56 0.71 1.00)
  local colors=(red magenta yellow green cyan olive teal gray)
  local ranges='set xrange [0:2.5]; set yrange [0:6]'
  local curves=() i=0 y
  frame tek40xx
  draw grid tek40xx <<EOF
$ranges
unset border; set grid; set xtics 0.25 scale 0; set ytics 1 scale 0
plot -1
EOF
  draw peaks tek40xx <<EOF
$bare
$ranges
set parametric; set trange [0.097:0.705]; set samples 801
shown(z) = int(z*130)%2 ? 1 : NaN
plot shown(t)*sqrt(1 - 2*t*t), shown(t)/(2*t*sqrt(1 - t*t))
EOF
  for ratio in "${ratios[@]}"; do
    y=$((2500 - 130 * i))
    draw "curve$i" tek40xx <<EOF
$bare
$ranges
plot 1/sqrt((1 - x*x)**2 + (2*$ratio*x)**2)
EOF
    curves+=("color=${colors[i]}" "stream=$tmp/curve$i.tek" "path=3400,$y 3660,$y")
    label l 3720 $y 100 "$ratio"
    i=$((i + 1))
  done
  xlabels 0 0.5 1.0 1.5 2.0 2.5
  ylabels 0 1 2 3 4 5 6
  label l $left 2930 140 'Resonance of a damped oscillator'
  label l 3400 2640 90 'Damping ratio'
  label c $(((left + right) / 2)) 200 110 'Frequency / natural frequency'
  label l $left 2790 90 'Amplitude / static deflection'
  strokes labels
  wrap resonance background=black \
    width=0 color=gray "stream=$tmp/grid.tek" \
    color=white "stream=$tmp/border.tek" "stream=$tmp/peaks.tek" "stream=$tmp/labels.tek" \
    width=12 "${curves[@]}"
}

# Contours: stress in a wide plate with a round hole, pulled from the left and the right.
plate() {
  local left=560
  local colors=(teal cyan green yellow red magenta white)
  local levels=('0.1,0.2,0.3,0.4' '0.5,0.6,0.7' '0.8,0.85,0.9' '0.95,1' '1.05,1.1,1.2,1.3' '1.4,1.6,1.8' '2,2.25,2.5,2.75')
  local names=('0.1 to 0.4' '0.5 to 0.7' '0.8 to 0.9' '0.95 to 1' '1.05 to 1.3' '1.4 to 1.8' '2 to 2.75')
  local legend=() i=0 x y
  local field='
set parametric; set urange [0:2*pi]; set vrange [0:1]
set xrange [-4.474:4.474]; set yrange [-3:3]; set zrange [-2:4]; set view map
edge(u) = 3/abs(sin(u)) < 4.474/abs(cos(u)) ? 3/abs(sin(u)) : 4.474/abs(cos(u))
radius(u,v) = 1 + v**1.6*(edge(u + 1e-9) - 1)
radial(u,r) = (1 - 1/r**2)/2 + (1 - 4/r**2 + 3/r**4)/2*cos(2*u)
hoop(u,r) = (1 + 1/r**2)/2 - (1 + 3/r**4)/2*cos(2*u)
shear(u,r) = -(1 + 2/r**2 - 3/r**4)/2*sin(2*u)
stress(u,r) = sqrt(radial(u,r)**2 - radial(u,r)*hoop(u,r) + hoop(u,r)**2 + 3*shear(u,r)**2)'
  local surface='splot radius(u,v)*cos(u), radius(u,v)*sin(u), stress(u,radius(u,v)) with lines'
  draw mesh tek410x <<EOF
$bare
$field
set isosamples 49,11; set samples 49,11
$surface
EOF
  draw outline tek410x <<EOF
$field
unset tics; set border 15
set isosamples 181,2; set samples 181,2
splot cos(u), sin(u), 0 with lines
EOF
  for level in "${levels[@]}"; do
    draw "level$i" tek410x <<EOF
$bare
$field
unset surface; set contour base; set isosamples 361,121
set cntrparam levels discrete $level
$surface
EOF
    x=$((left + i % 4 * 860)) y=$((330 - (i > 3) * 130))
    legend+=("color=${colors[i]}" "stream=$tmp/level$i.tek")
    legend+=("path=$x,$y $((x + 160)),$y")
    label l $((x + 210)) $y 90 "${names[i]}"
    i=$((i + 1))
  done
  label l $left 2940 140 'Plate with a round hole under tension'
  label l $left 2800 90 'Equivalent stress / mean stress'
  strokes labels
  local pull=() y
  for y in 700 1140 1580 2020 2460; do
    pull+=("path=540,$y 300,$y" "path=350,$((y + 30)) 300,$y 350,$((y - 30))")
    pull+=("path=3920,$y 4060,$y" "path=4010,$((y + 30)) 4060,$y 4010,$((y - 30))")
  done
  wrap plate background=black \
    width=0 color=gray "stream=$tmp/mesh.tek" \
    "${legend[@]}" \
    color=white "stream=$tmp/labels.tek" width=12 "stream=$tmp/outline.tek" "${pull[@]}"
}

# A surface with hidden lines over its own contours.
membrane() {
  local field='
unset lmargin; unset rmargin; unset bmargin; unset tmargin; set origin 0,0.12
set xrange [-9:9]; set yrange [-9:9]; set zrange [-1.2:1.2]; set xyplane at -3; set view 55,32,1.2,0.6
height(x,y) = 1.2*exp(-(x*x + y*y)/45.0)*cos(1.25*sqrt(x*x + y*y))'
  draw surface tek410x <<EOF
$bare
$field
set hidden3d; set isosamples 64; set samples 64
splot height(x,y) with lines
EOF
  local rings=() i=0
  local colors=(magenta cyan green yellow red)
  for level in -0.8,-0.6,-0.4 -0.25,-0.15,-0.08 0.08,0.15,0.25 0.35,0.45 0.6,0.8,1; do
    draw "ring$i" tek410x <<EOF
$bare
$field
unset surface; set contour base; set isosamples 120; set samples 120
set cntrparam levels discrete $level
splot height(x,y) with lines
EOF
    rings+=("color=${colors[i]}" "stream=$tmp/ring$i.tek")
    i=$((i + 1))
  done
  label l 200 2980 140 'Membrane'
  label l 200 2850 90 'Damped ripple above its contours'
  strokes labels
  wrap membrane background=navy \
    width=0 "${rings[@]}" \
    color=white "stream=$tmp/surface.tek" "stream=$tmp/labels.tek"
}

# A dense walk, joined vectors, six colors along the way.
walk() {
  local colors=(teal cyan green yellow red magenta)
  local words=() i=0 steps=4200
  python3 "$here/walk.py" $((6 * steps + 1)) 1905 0.99 0.0004 >"$tmp/walk.dat"
  for color in "${colors[@]}"; do
    sed -n "$((i * steps + 1)),$(((i + 1) * steps + 1))p" "$tmp/walk.dat" |
      graph -T tek -x 0 1 -y 0 1 -g 0 -r 0.04 -w 1.04 -u 0.05 -h 0.86 >"$tmp/walk.tek"
    mv "$tmp/walk.tek" "$tmp/walk$i.tek"
    words+=("color=$color" "stream=$tmp/walk$i.tek")
    i=$((i + 1))
  done
  label l 180 2890 140 'Persistent random walk'
  label l 180 2750 90 "$((6 * steps)) steps, six colours along the way"
  strokes labels
  wrap walk background=black \
    width=0 "${words[@]}" \
    color=white "stream=$tmp/labels.tek" width=12 "rect=100,60,4000,3000"
}

# A chart with a legend: twelve months of three power sources as stacked bars, and the demand.
energy() {
  local bottom=460 top=2580
  local colors=(cyan green red) sources=(Hydro Wind Solar)
  local months=(Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
  local ranges='set xrange [0.25:12.75]; set yrange [0:12]'
  # Month, hydro, wind, solar, demand in GW.
  cat >"$tmp/energy.dat" <<'EOF'
1 2.6 5.1 0.4 9.6
2 2.5 4.8 0.8 9.3
3 2.9 4.2 1.5 8.6
4 3.6 3.4 2.2 7.7
5 4.1 2.6 2.9 7.2
6 3.9 2.1 3.3 7.1
7 3.3 1.9 3.4 7.5
8 2.8 2.2 3.0 7.4
9 2.5 2.9 2.2 7.3
10 2.6 3.9 1.3 8.0
11 2.8 4.7 0.6 8.9
12 2.7 5.4 0.3 9.8
EOF
  frame tek410x
  draw grid tek410x <<EOF
$ranges
unset border; set grid y; unset xtics; set ytics 2 scale 0
plot -1
EOF
  draw demand tek410x <<EOF
$bare
$ranges
plot "$tmp/energy.dat" using 1:5 smooth csplines with lines
EOF
  local words=() i x y
  for i in 0 1 2; do
    # Each bar part is shaded with strokes and framed by its box.
    awk -v n="$i" '{ low = 0; for (k = 0; k < n; ++k) low += $(2 + k)
      for (s = 0; s < 12; ++s) printf "%.4f %.4f %.4f\n", $1 - 0.33 + s*0.06, low, $(2 + n) }' \
      "$tmp/energy.dat" >"$tmp/hatch.dat"
    draw "hatch$i" tek410x <<EOF
$bare
$ranges
plot "$tmp/hatch.dat" using 1:2:(0):3 with vectors nohead
EOF
    draw "boxes$i" tek410x <<EOF
$bare
$ranges
set boxwidth 0.72
low(n) = n == 0 ? 0 : n == 1 ? column(2) : column(2) + column(3)
plot "$tmp/energy.dat" using 1:(low($i)):(\$1-0.36):(\$1+0.36):(low($i)):(low($i)+column($i+2)) with boxxyerror
EOF
    x=$((left + 820 * i)) y=2690
    words+=("color=${colors[i]}" width=0 "stream=$tmp/hatch$i.tek" "hatch=$x,$y,$((x + 160)),$((y + 100)),6")
    words+=(width=12 "stream=$tmp/boxes$i.tek" "rect=$x,$y,$((x + 160)),$((y + 100))")
    label l $((x + 220)) $((y + 50)) 90 "${sources[i]}"
  done
  label l $((left + 2680)) $((y + 50)) 100 Demand
  label l $left 2940 140 'Power sources and demand through the year'
  ylabels 0 2 4 6 8 10 12
  # Under each month the sum of its sources, as a text.
  local texts=("text=60,$((top + 60)),GW" "text=60,$((bottom - 300)),Sum in GW") hydro wind solar
  i=0
  while read -r _ hydro wind solar _; do
    x=$((left + (right - left) * (3 + 4 * i) / 50))
    label c "$x" $((bottom - 100)) 100 "${months[i]}"
    texts+=("text=$((x - 60)),$((bottom - 300)),$(awk -v a="$hydro" -v b="$wind" -v c="$solar" 'BEGIN { print a + b + c }')")
    i=$((i + 1))
  done <"$tmp/energy.dat"
  strokes labels
  wrap energy background=black \
    width=0 color=gray "stream=$tmp/grid.tek" \
    "${words[@]}" \
    width=24 color=white "stream=$tmp/demand.tek" "path=$((left + 2460)),$((y + 50)) $((left + 2620)),$((y + 50))" \
    width=0 "stream=$tmp/border.tek" "stream=$tmp/labels.tek" \
    font=Helvetica size=10 ink=white "${texts[@]}"
}

# A Bode plot; its labels are strokes of the plotting program, not texts.
bode() {
  local grid='BEGIN {
    for (decade = 0.1; decade < 1000; decade *= 10)
      for (i = 1; i <= 9; ++i) printf "%g %d\n%g %d\n\n", i*decade, low, i*decade, high
    for (y = low; y <= high; y += step) printf "0.1 %d\n1000 %d\n\n", y, y
  }'
  # Integrator, lag at 4 rad/s and a weakly damped resonance at 30 rad/s, in awk.
  local loop='
function gain(w) {
  r = w/30
  return 20*log(12/w/sqrt(1 + (w/4)^2)/sqrt((1 - r^2)^2 + (0.1*r)^2))/log(10)
}
function phase(w) {
  r = w/30
  return -90 - (atan2(w, 4) + atan2(0.1*r, 1 - r^2))*45/atan2(1, 1)
}
function frequency(i) { return exp(log(10)*(-1 + i/100)) }
'
  local common=(-T tek -l x -x 0.1 1000 -r 0.045 -w 1.03 -F HersheySans -f 0.055)
  local upper=(-y -80 60 20 -u 0.53 -h 0.35) lower=(-y -360 -90 45 -u 0.12 -h 0.35)
  awk "$loop"'BEGIN { for (i = 0; i <= 400; ++i) printf "%.5g %.4f\n", frequency(i), gain(frequency(i)) }' >"$tmp/gain.dat"
  awk "$loop"'BEGIN { for (i = 0; i <= 400; ++i) printf "%.5g %.4f\n", frequency(i), phase(frequency(i)) }' >"$tmp/phase.dat"
  graph "${common[@]}" "${upper[@]}" -g 2 -L 'Open loop: integrator, lag and resonance' -Y 'gain [dB]' "$tmp/gain.dat" >"$tmp/gainframe.tek"
  graph "${common[@]}" "${lower[@]}" -g 2 -X 'frequency [rad/s]' -Y 'phase [deg]' "$tmp/phase.dat" >"$tmp/phaseframe.tek"
  graph "${common[@]}" "${upper[@]}" -g 0 "$tmp/gain.dat" >"$tmp/gain.tek"
  graph "${common[@]}" "${lower[@]}" -g 0 "$tmp/phase.dat" >"$tmp/phase.tek"
  # Grid: nine lines per decade, and the height of each tick.
  awk -v low=-80 -v high=60 -v step=20 "$grid" >"$tmp/grid.dat"
  graph "${common[@]}" "${upper[@]}" -g 0 "$tmp/grid.dat" >"$tmp/gaingrid.tek"
  awk -v low=-360 -v high=-90 -v step=45 "$grid" >"$tmp/grid.dat"
  graph "${common[@]}" "${lower[@]}" -g 0 "$tmp/grid.dat" >"$tmp/phasegrid.tek"
  # From the point where the gain is 1 down to the phase at that frequency.
  awk "$loop"'BEGIN { for (w = 1; gain(w) > 0; w += 0.001); printf "%.3f 0\n%.3f -80\n", w, w }' >"$tmp/margin.dat"
  graph "${common[@]}" "${upper[@]}" -g 0 "$tmp/margin.dat" >"$tmp/gainmargin.tek"
  awk "$loop"'BEGIN { for (w = 1; gain(w) > 0; w += 0.001); printf "%.3f %.3f\n%.3f -180\n", w, phase(w), w }' >"$tmp/margin.dat"
  graph "${common[@]}" "${lower[@]}" -g 0 "$tmp/margin.dat" >"$tmp/phasemargin.tek"
  label l 2140 1015 65 'phase margin'
  strokes labels
  wrap bode background=darkgray \
    width=0 color=gray "stream=$tmp/gaingrid.tek" "stream=$tmp/phasegrid.tek" \
    color=white "stream=$tmp/gainframe.tek" "stream=$tmp/phaseframe.tek" "stream=$tmp/labels.tek" \
    width=12 color=magenta "stream=$tmp/gain.tek" color=green "stream=$tmp/phase.tek" \
    width=24 color=red "stream=$tmp/gainmargin.tek" "stream=$tmp/phasemargin.tek"
}

# A phase portrait: solutions of an oscillator that approach one closed curve, over the field of its directions.
portrait() {
  local box=(-T tek -x -4 4 -y -5 5 -r 0.04 -w 1.04 -u 0.12 -h 0.77
    -F HersheySans -f 0.045 --title-font-size 0.05)
  local runs=() i=0 start x y
  # solve X Y FROM TO: the solution that starts at X,Y, from one time to another.
  solve() {
    printf '%s\n' "x' = y" "y' = 1.2*(1 - x*x)*y - x" "x = $1" "y = $2" "print x, y every 4 from $3" "step 0, $4" |
      ode -R 0.01
  }
  for start in '-3.8 5' '-2.6 5' '-1.4 5' '0.2 5' '-3.95 2' '-3.95 -1' '0.05 0'; do
    # The system is symmetric about the origin.
    read -r x y <<<"$start"
    solve "$x" "$y" 0 20 >"$tmp/run.dat"
    graph "${box[@]}" -g 0 "$tmp/run.dat" >"$tmp/run$i.tek"
    awk 'NF { print -$1, -$2 }' "$tmp/run.dat" | graph "${box[@]}" -g 0 >"$tmp/mirror$i.tek"
    runs+=("stream=$tmp/run$i.tek" "stream=$tmp/mirror$i.tek")
    i=$((i + 1))
  done
  solve 2 0 30 38 | graph "${box[@]}" -g 0 >"$tmp/cycle.tek"
  # Short strokes along the direction of motion, of one length in the picture.
  awk 'BEGIN {
    for (i = -15; i <= 15; ++i)
      for (j = -11; j <= 11; ++j) {
        x = i/4; y = j/2.4
        dx = y/8; dy = (1.2*(1 - x*x)*y - x)/10
        norm = sqrt(dx*dx + dy*dy)
        if (norm == 0) continue
        dx *= 0.065/norm; dy *= 0.085/norm
        printf "%.4f %.4f\n%.4f %.4f\n\n", x - dx, y - dy, x + dx, y + dy
      }
  }' | graph "${box[@]}" -g 0 >"$tmp/field.tek"
  echo 0 0 | graph "${box[@]}" -g 2 -L 'Phase portrait of a self-excited oscillator' -X x -Y "x'" >"$tmp/frame.tek"
  wrap portrait background=darkgreen \
    width=0 color=green "stream=$tmp/field.tek" \
    color=white "stream=$tmp/frame.tek" "${runs[@]}" \
    width=28 color=yellow "stream=$tmp/cycle.tek"
}

# A tour of the commands: one row each, and two pictures made by plotting programs.
tour() {
  local words=() y=2640 x i first=1230 last=2230
  # row LABEL: the next row, its height in y.
  row() {
    label l 120 $y 85 "$1"
    y=$((y - 200))
  }
  # zigzag BYTES: a line in the current row, with these bytes before each of its vectors. It is not interrupted.
  zigzag() {
    local bytes="\\g{$first,$((y + 160))}" up=1
    for ((x = first + 100; x <= last; x += 100)); do
      bytes+="$1{$x,$((y + 160 + 80 * up))}"
      up=$((1 - up))
    done
    words+=("raw=$bytes")
  }
  # swatch N WORD...: the Nth small shaded field in the current row.
  swatch() {
    x=$((first + 63 * $1))
    words+=("${@:2}" "hatch=$x,$((y + 150)),$((x + 50)),$((y + 250)),7")
  }

  words+=(width=20)
  row 'ML  line colour'
  for ((i = 0; i < 16; ++i)); do swatch "$i" "color=$i"; done
  row 'TG  colour map'
  for ((i = 0; i < 12; ++i)); do swatch "$i" "raw=\\eTG{1}{4}{2}{$((30 * i))}{50}{100}" color=darkred; done
  # A comma leaves the component after it unread.
  for i in 13 15; do swatch "$i" "raw=\\eTG{1}{4}{2},{$((i * 5))}" color=darkred; done
  words+=('raw=\eTG{1}{4}{2}{120}{25}{100}' color=white)
  row 'GT  line width'
  i=0
  for width in 0 10 20 40 60 90 120; do
    x=$((first + 30 + 155 * i))
    words+=("width=$width" "path=$x,$((y + 150)) $x,$((y + 250))")
    i=$((i + 1))
  done
  row 'G   back to a hairline'
  x=$(((first + last) / 2))
  words+=(width=60 "path=$first,$((y + 200)) $x,$((y + 200))" "raw=\\eGX{$last,$((y + 200))}" width=12)
  row 'LG  other L'
  zigzag '\eLG'
  row 'LT  string, not drawn'
  zigzag '\eLT{15}never displayed'
  row 'MR MC MV  ignored'
  zigzag '\eMR{120}{-7}\eMC{39}{59}{12}\eMV{1}'
  row 'RA  ignored here'
  zigzag '\eRA{1}{9}'
  row 'RK  other R'
  zigzag '\eRK'
  row 'ZK  other Z'
  zigzag '\eZK'
  row 'TX  other T'
  zigzag '\eTX{1}anything\eLG'
  row 'KA  other letters'
  zigzag '\eKA{1}\eQ9 up to here\eLG'
  row 'ESC ESC, ESC FF'
  zigzag '\e\eLG\e\f'

  draw rose tek40xx <<EOF
set lmargin at screen 2420/4096.0; set rmargin at screen 3960/4096.0
set bmargin at screen 1300/3120.0; set tmargin at screen 2840/3120.0
$bare
set parametric; set trange [0:14*pi]; set samples 1400; set xrange [-1:1]; set yrange [-1:1]
r(t) = 0.95*cos(12.0/7.0*t)
plot r(t)*cos(t), r(t)*sin(t)
EOF
  for i in 1 2 3 4 5 6; do
    awk -v n="$i" 'BEGIN { for (t = 0; t <= 6.2832; t += 0.02) printf "%.4f %.4f\n", t, sin(t)*cos(n*0.5)*exp(-t/9) }' |
      graph -T tek -x 0 6.2832 -y -1 1 -g 0 -r 0.62 -w 0.48 -u 0.05 -h 0.19 >"$tmp/wave$i.tek"
    words+=("color=$((8 + i))" "stream=$tmp/wave$i.tek")
  done
  words+=(color=magenta "stream=$tmp/rose.tek" width=0 color=white)
  label l 120 2910 140 'A tour of the commands'
  label l 2420 1170 85 'ZP ZD  texts, zoom in'
  strokes labels
  # The size and the style of a text are read; the viewer's font does not change.
  words+=("stream=$tmp/labels.tek" "path=2380,1000 2460,1000" "path=2420,960 2420,1040" "text=2420,1000,Text at a point"
    font=Courier size=24 style=3 ink=red 'raw=\eZO{30}'
    "text=2420,860,After ZF ZS ZA ZC ZO" "text=2420,720,20 °C, 5 µm, ½ Ω")
  wrap tour background=teal width=12 "${words[@]}"
}

resonance
plate
membrane
walk
energy
bode
portrait
tour
