#!/usr/bin/env bash
# Decodes a 10-minute MP3 into a WAV file with `mpg123 -w` and with verdin-decode (the
# player's whole stream path), alternately, and reports the median times and their ratio;
# then the equalizer's cost over plain decoding, with every band at 0 dB (the equalizer
# on but flat) and with a curve on the bands.
# The MP3 is made once (synthesised with sox, encoded with lame) and kept in the cache dir.
#   compare_with_mpg123.sh [runs]   (default 5)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
bin=$(cd "$here/../../bin" && pwd)
runs=${1:-5}
cache=${XDG_CACHE_HOME:-$HOME/.cache}/verdin-bench
mkdir -p "$cache"
mp3=$cache/ten-minutes.mp3
if [ ! -s "$mp3" ]; then
  sox -n -r 44100 -c 2 -b 16 "$cache/ten.wav" synth 600 sine 220-880 sine 330 gain -3
  lame --quiet -b 192 "$cache/ten.wav" "$mp3"
  rm -f "$cache/ten.wav"
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The processor time (user + system) a command takes: steadier than the wall clock on a
# busy machine, and what decoding costs.
time_of() {
  local TIMEFORMAT='%U %S' t
  t=$( { time "$@" >/dev/null 2>&1; } 2>&1 )
  echo "$t" | awk '{print $1 + $2}'
}
median() { sort -g | awk '{a[NR]=$1} END {print (NR%2) ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2}'; }

curve=6,4,2,0,-2,-4,-3,0,1,3,5,4,2,0,-1,-6
peer=(); ours=(); oursFlat=(); oursCurve=()
mkdir -p "$work/flat" "$work/curve"
for ((i = 0; i < runs; i++)); do
  peer+=("$(time_of mpg123 -q -w "$work/peer.wav" "$mp3")")
  ours+=("$(time_of "$bin/verdin-decode" -o "$work" "$mp3")")
  oursFlat+=("$(time_of "$bin/verdin-decode" -e -o "$work/flat" "$mp3")")
  oursCurve+=("$(time_of "$bin/verdin-decode" -e -g "$curve" -o "$work/curve" "$mp3")")
done
p=$(printf '%s\n' "${peer[@]}" | median)
o=$(printf '%s\n' "${ours[@]}" | median)
printf 'mpg123 -w:        %.3f s processor time (median of %d)\n' "$p" "$runs"
printf 'verdin-decode:    %.3f s\n' "$o"
f=$(printf '%s\n' "${oursFlat[@]}" | median)
c=$(printf '%s\n' "${oursCurve[@]}" | median)
printf 'ratio:            %.3f (target <= 1.02)\n' "$(echo "$o / $p" | bc -l)"
printf 'equalizer, 0 dB:  %.3f s, %.1f%% over plain decoding (target <= 25%%)\n' "$f" "$(echo "($f - $o) * 100 / $o" | bc -l)"
printf 'equalizer, curve: %.3f s, %.1f%% over plain decoding (target <= 25%%)\n' "$c" "$(echo "($c - $o) * 100 / $o" | bc -l)"
same() { cmp -s <(tail -c +45 "$work/peer.wav") <(tail -c +45 "$1"); }
if same "$work/1. ten-minutes.wav"; then echo "PCM: identical"; else echo "PCM: DIFFERS"; fi
# At 0 dB the equalizer gives every frame back as it came.
if same "$work/flat/1. ten-minutes.wav"; then echo "PCM at 0 dB: identical"; else echo "PCM at 0 dB: DIFFERS"; fi
