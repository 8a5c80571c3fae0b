#!/usr/bin/env bash
# Decodes a 10-minute MP3 into a WAV file with `mpg123 -w` and with verdin-decode (the
# player's whole stream path), alternately, and reports the median times and their ratio;
# then the equalizer's cost over plain decoding, with every band at 0 dB (the equalizer
# on but flat) and with a curve on the bands.
# The MP3 is made once (synthesised with sox, encoded with lame) and kept in the cache dir
# (bench-common.sh).
#   compare_with_mpg123.sh [runs]   (default 5)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
bin=$(cd "$here/../../bin" && pwd)
runs=${1:-5}
bench_dir=$here
. "$here/bench-common.sh"
mp3=$(bench_tone_mp3 ten-minutes 600)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

curve=$bench_equalizer_curve
peer=(); ours=(); oursFlat=(); oursCurve=()
mkdir -p "$work/flat" "$work/curve"
for ((i = 0; i < runs; i++)); do
  peer+=("$(bench_cpu mpg123 -q -w "$work/peer.wav" "$mp3")")
  ours+=("$(bench_cpu "$bin/verdin-decode" -o "$work" "$mp3")")
  oursFlat+=("$(bench_cpu "$bin/verdin-decode" -e -o "$work/flat" "$mp3")")
  oursCurve+=("$(bench_cpu "$bin/verdin-decode" -e -g "$curve" -o "$work/curve" "$mp3")")
done
p=$(printf '%s\n' "${peer[@]}" | bench_median)
o=$(printf '%s\n' "${ours[@]}" | bench_median)
printf 'mpg123 -w:        %.3f s processor time (median of %d)\n' "$p" "$runs"
printf 'verdin-decode:    %.3f s\n' "$o"
f=$(printf '%s\n' "${oursFlat[@]}" | bench_median)
c=$(printf '%s\n' "${oursCurve[@]}" | bench_median)
printf 'ratio:            %.3f (target <= 1.01)\n' "$(echo "$o / $p" | bc -l)"
printf 'equalizer, 0 dB:  %.3f s, %.1f%% over plain decoding (target <= 25%%)\n' "$f" "$(echo "($f - $o) * 100 / $o" | bc -l)"
printf 'equalizer, curve: %.3f s, %.1f%% over plain decoding (target <= 25%%)\n' "$c" "$(echo "($c - $o) * 100 / $o" | bc -l)"
same() { cmp -s <(tail -c +45 "$work/peer.wav") <(tail -c +45 "$1"); }
if same "$work/1. ten-minutes.wav"; then echo "PCM: identical"; else echo "PCM: DIFFERS"; fi
# At 0 dB the equalizer gives every frame back as it came.
if same "$work/flat/1. ten-minutes.wav"; then echo "PCM at 0 dB: identical"; else echo "PCM at 0 dB: DIFFERS"; fi
