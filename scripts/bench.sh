#!/usr/bin/env bash
# Measures the player's speed and memory beside its peers and prints one table:
#   measure | peer | Verdin | ratio | target | met
# It builds a Release tree of its own (build-bench/, only the programs it runs), makes its
# media once (sox and lame, kept in ~/.cache/verdin-bench), then runs every measure and
# its peer alternately, the given number of times, and reports medians. The benchmark
# programs and scripts of bench/ do the measuring; bench/bench-common.sh is what they share.
#
#   scripts/bench.sh [runs]        (default 5)
#
# Peers: mpg123 for decoding and playback, when installed. Another player is measured
# only when VERDIN_BENCH_PEER_PLAYER names a command that plays the file given after it on
# the default sound server and ends when it has played; its peak resident memory is then
# set beside the player's. Rows that cannot run on this machine say why.
# Processor times are steadier than wall times on a busy machine; the decoding rows give both.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
runs=${1:-5}
[[ $runs =~ ^[1-9][0-9]*$ ]] || { echo "usage: scripts/bench.sh [runs]" >&2; exit 2; }
for tool in cmake sox lame /usr/bin/time dbus-run-session; do
  command -v "$tool" >/dev/null || { echo "missing: $tool (scripts/setup-debian.sh installs it)" >&2; exit 2; }
done
work=$(mktemp -d)
bench_server_pid=
trap '[ -z "$bench_server_pid" ] || kill "$bench_server_pid" 2>/dev/null; rm -rf "$work"' EXIT
load=$(cut -d' ' -f1-3 /proc/loadavg)

# --- the Release tree
build=$root/build-bench
configure=(-DCMAKE_BUILD_TYPE=Release -DVERDIN_TESTS=OFF -DVERDIN_BENCH=ON)
[ -f "$build/CMakeCache.txt" ] || ! command -v ninja >/dev/null || configure+=(-G Ninja)
if command -v ccache >/dev/null; then
  export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root}
  configure+=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
targets=(verdin verdin-windows MPEG_Verdin WAV_Verdin FFmpeg_Verdin Radio_Verdin DSP_Verdin Bars_Verdin Notify_Verdin
         verdin-decode verdin-bench-null-device bench_startup bench_sample_space bench_retrieval)
echo "building $build ..." >&2
if ! { cmake -S "$root" -B "$build" "${configure[@]}" &&
       cmake --build "$build" -j"$(nproc)" --target "${targets[@]}"; } >"$work/build.log" 2>&1; then
  tail -n 40 "$work/build.log" >&2
  exit 1
fi
bin=$build/bin
bench_dir=$build/bench/bin
. "$root/bench/bench-common.sh"

# --- media
echo "making the media ..." >&2
cbr=$(bench_tone_mp3 ten-minutes 600)
vbr=$(bench_tone_mp3 ten-minutes-vbr 600 -V 2)
long=$(bench_tone_mp3 twelve-seconds 12)
short=$(bench_tone_mp3 one-second 1)
playSeconds=11  # what the long piece plays beyond the short one

# A saved playlist of 10,000 rows: 100 folders of 100 hard links to the one-second piece.
list=$bench_cache/list-10000.vdp
if [ ! -s "$list" ]; then
  rm -rf "$bench_cache/list-10000" && mkdir -p "$bench_cache/list-10000/album00"
  for ((t = 0; t < 100; t++)); do
    to=$bench_cache/list-10000/album00/track$(printf %02d $t).mp3
    ln "$short" "$to" 2>/dev/null || cp "$short" "$to"
  done
  for ((a = 1; a < 100; a++)); do
    to=$bench_cache/list-10000/album$(printf %02d $a)
    cp -al "$bench_cache/list-10000/album00" "$to" 2>/dev/null || cp -a "$bench_cache/list-10000/album00" "$to"
  done
  { printf '[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\n'
    find "$bench_cache/list-10000" -name '*.mp3' | sort |
      awk '{printf "Entry%d=%s\r\n", NR, $0} END {printf "NumberOfEntries=%d\r\n", NR}'
  } >"$list.part"
  mv "$list.part" "$list"
fi

# --- helpers of the run
mkdir -p "$work/values" "$work/out" "$work/eq"
put() { [ -z "$2" ] || echo "$2" >>"$work/values/$1"; }
med() { if [ -s "$work/values/$1" ]; then bench_median <"$work/values/$1"; fi; }
has() { command -v "$1" >/dev/null; }
# perSecond LONG SHORT: processor ms per audio second from two "user system maxKB wall"
# lines: the long piece less the short one, so that starting and ending drop out. Nothing
# when either did not play through in real time (it failed early).
perSecond() {
  awk -v a="$1" -v b="$2" -v s=$playSeconds 'BEGIN {split(a, l, " "); split(b, o, " ")
    if (l[4] >= s + 0.9 && o[4] >= 0.9) print (l[1] + l[2] - o[1] - o[2]) * 1000 / s}'
}
# A decoding that wrote less than ten minutes of 16-bit stereo WAV failed.
decoded() { [ "$(find "$1" -name '*.wav' -size +100M | wc -l)" -gt 0 ]; }

sound=
if has pulseaudio && has pactl; then
  if bench_start_sound_server "$work/server"; then sound=yes; else sound="the sound server did not start"; fi
else
  sound="no pulseaudio"
fi
noX=; has xvfb-run || noX="no xvfb-run"
peerPlayer=${VERDIN_BENCH_PEER_PLAYER:-}
if [ -n "$peerPlayer" ] && ! has "${peerPlayer%% *}"; then
  echo "VERDIN_BENCH_PEER_PLAYER: ${peerPlayer%% *} not found" >&2
  exit 2
fi
if [ "$sound" = yes ]; then
  bench_private_home "$work/home.headless" "$bin" server
  [ -n "$noX" ] || bench_private_home "$work/home.window" "$bin" server analyzer
fi

# --- decoding and playing, each beside its peer, alternately
for ((i = 1; i <= runs; i++)); do
  echo "run $i of $runs ..." >&2
  for kind in cbr vbr; do
    mp3=$cbr; [ $kind = cbr ] || mp3=$vbr
    if has mpg123; then
      r=$(bench_wall_and_cpu mpg123 -q -w "$work/peer.wav" "$mp3"); put $kind.peer.wall "${r% *}"; put $kind.peer.cpu "${r#* }"
    fi
    rm -rf "$work/out" && mkdir "$work/out"
    r=$(bench_wall_and_cpu "$bin/verdin-decode" -o "$work/out" "$mp3")
    if decoded "$work/out"; then put $kind.wall "${r% *}"; put $kind.cpu "${r#* }"; fi
    # The same PCM as the peer's, or the comparison means nothing (the headers may differ).
    if has mpg123 && [ "$i" = 1 ] && ! cmp -s <(tail -c +45 "$work/peer.wav") <(tail -c +45 "$work/out/"*.wav); then
      touch "$work/values/$kind.differs"
    fi
  done
  rm -rf "$work/eq" && mkdir "$work/eq"
  r=$(bench_cpu "$bin/verdin-decode" -e -g "$bench_equalizer_curve" -o "$work/eq" "$cbr")
  if decoded "$work/eq"; then put eq.cpu "$r"; fi
  [ "$sound" = yes ] || continue
  if has mpg123; then
    put play.peer "$(perSecond "$(bench_usage mpg123 -q -o pulse "$long")" "$(bench_usage mpg123 -q -o pulse "$short")")"
  fi
  player=("$bin/verdin" --headless --quit-after-play /PLAY)
  r=$(bench_in_home "$work/home.headless" "${player[@]}" "$long")
  ms=$(perSecond "$r" "$(bench_in_home "$work/home.headless" "${player[@]}" "$short")")
  if [ -n "$ms" ]; then put play "$ms"; put rss "$(echo "$r" | awk '{print $3 / 1024}')"; fi
  if [ -z "$noX" ]; then
    player=("$bin/verdin" --quit-after-play /PLAY)
    put window "$(perSecond "$(bench_in_home "$work/home.window" --x "${player[@]}" "$long")" \
                            "$(bench_in_home "$work/home.window" --x "${player[@]}" "$short")")"
  fi
  # shellcheck disable=SC2086  # the command's words are split as a shell would
  [ -z "$peerPlayer" ] || put rss.peer "$(bench_usage $peerPlayer "$long" | awk '{print $3 / 1024}')"
done

# --- the programs that repeat themselves: Google Benchmark repetitions and start-up runs
# gbench PROGRAM FILTER COLUMN: the median of one column of its CSV over the repetitions.
gbench() {
  local program=$1 filter=$2 column=$3
  "$bench_dir/$program" --benchmark_filter="$filter" --benchmark_repetitions="$runs" --benchmark_min_time=0.3 \
    --benchmark_out="$work/$program.csv" --benchmark_out_format=csv >/dev/null 2>"$work/$program.err" || return 0
  awk -F, -v c="$column" 'found && $1 !~ /_(mean|median|stddev|cv)"?$/ && $idx != "" {print $idx; next}
    $1 == "name" {for (i = 1; i <= NF; i++) if ($i == c) idx = i; found = 1}' "$work/$program.csv" | bench_median
}
echo "random pick, retrieval, start-up ..." >&2
pick=$(gbench bench_sample_space '^BM_RandomPick$' real_time)
retrieval=$(gbench bench_retrieval '^BM_Retrieval/2/' items_per_second)
startup() {  # NAME [--window [--list file]]: the median of the runs in milliseconds
  local name=$1 wrap=()
  shift
  [ "${1:-}" != --window ] || wrap=(xvfb-run -a)
  { "${wrap[@]}" dbus-run-session -- "$bench_dir/bench_startup" "$bin/verdin" "$runs" "$@" 2>"$work/$name.err" || true; } |
    sed -n 's/.*answers D-Bus after \([0-9.]*\) ms.*/\1/p'
}
headless=$(startup headless)
shown=; listed=
if [ -z "$noX" ]; then shown=$(startup shown --window); listed=$(startup listed --window --list "$list"); fi

# --- the table
rows=$work/rows
fmt() { awk -v v="$2" -v f="$1" 'BEGIN {printf f, v}'; }
# result MEASURE PEER PEER_VALUE VALUE FORMAT TARGET OP LIMIT SUBJECT WHY
#   PEER names the peer (or why there is none); PEER_VALUE is empty when it was not measured.
#   The target holds for the value (SUBJECT "value") or for the value over the peer's
#   ("ratio"). An empty VALUE is a measure that could not be taken, for the reason WHY.
result() {
  local what=$1 peer=$2 peerValue=$3 value=$4 format=$5 target=$6 op=$7 limit=$8 q=- subject
  if [ -z "$value" ]; then
    printf '%s\t%s\tnot measured: %s\t-\t%s\t-\n' "$what" "$peer" "${10}" "$target" >>"$rows"
    return
  fi
  [ -z "$peerValue" ] || { q=$(awk -v a="$value" -v b="$peerValue" 'BEGIN {printf "%.3f", a / b}'); peer="$peer: $(fmt "$format" "$peerValue")"; }
  subject=$value; [ "$9" != ratio ] || subject=$q
  local met=-
  [ "$subject" = - ] || met=$(awk -v v="$subject" -v l="$limit" -v op="$op" 'BEGIN {print (op == "<=" ? v <= l : v >= l) ? "met" : "not met"}')
  printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$what" "$peer" "$(fmt "$format" "$value")" "$q" "$target" "$met" >>"$rows"
}
mpeg=mpg123; has mpg123 || mpeg="no mpg123"
for kind in cbr vbr; do
  for clock in wall cpu; do
    what="decode a 10-min ${kind^^} MP3 to 16-bit WAV, $([ $clock = wall ] && echo wall || echo processor) time"
    [ ! -e "$work/values/$kind.differs" ] || what="$what (PCM NOT the same as mpg123's)"
    result "$what" "$mpeg -w" "$(med $kind.peer.$clock)" "$(med $kind.$clock)" '%.2f s' "<= 1.01 x mpg123" "<=" 1.01 \
      ratio "verdin-decode wrote no WAV"
  done
done
eq=$(awk -v c="$(med eq.cpu)" -v o="$(med cbr.cpu)" 'BEGIN {if (c != "" && o > 0) printf "%.1f", (c - o) * 100 / o}')
result "the same (CBR) with a non-flat preset on, processor time over preset off" \
  "no peer player with an equalizer" "" "$eq" '%+.1f%%' "<= +25%" "<=" 25 value "verdin-decode -e wrote no WAV"
why=$sound; [ "$sound" != yes ] || why="the player did not play the piece through"
result "headless playback through PulseAudio, CPU ms per audio second" "$mpeg -o pulse" "$(med play.peer)" \
  "$(med play)" '%.2f' "<= mpg123" "<=" 1 ratio "$why"
result "the same with the window and the analyzer shown (Xvfb)" - "" "$(med window)" '%.2f' "<= 7" "<=" 7 value \
  "$([ "$sound" != yes ] && echo "$sound" || echo "${noX:-the player did not play the piece through}")"
result "peak RSS while playing, headless" "${peerPlayer:-no peer player (VERDIN_BENCH_PEER_PLAYER)}" "$(med rss.peer)" \
  "$(med rss)" '%.1f MiB' "<= 14 MiB" "<=" 14 value "$why"
result "random pick over 10,000 tracks, compound expression" - "" "$pick" '%.2f ms' "<= 1 ms" "<=" 1 value \
  "bench_sample_space: $(tail -n 1 "$work/bench_sample_space.err" 2>/dev/null)"
result "information retrieval, 2,000 tagged MP3s, files/s on 2 threads" "no peer player" "" "$retrieval" '%.0f' \
  ">= 25000" ">=" 25000 value "bench_retrieval: $(tail -n 1 "$work/bench_retrieval.err" 2>/dev/null)"
failed() { echo "bench_startup: $(tail -n 1 "$work/$1.err" 2>/dev/null)"; }
result "start-up, headless, until it answers D-Bus" "no peer player" "" "$headless" '%.1f ms' "<= 8 ms" "<=" 8 value \
  "$(failed headless)"
result "start-up, window shown" - "" "$shown" '%.1f ms' "<= 100 ms" "<=" 100 value "${noX:-$(failed shown)}"
result "start-up, window with a 10,000-row list" - "" "$listed" '%.1f ms' "<= 150 ms" "<=" 150 value "${noX:-$(failed listed)}"

echo
echo "Verdin beside its peers: medians of $runs runs on $(nproc) cores, load average at the start $load"
awk -F'\t' 'function pad(text, width) {return sprintf("%-" width "s", text)}
  function dashes(n,   s) {s = ""; while (n-- > 0) s = s "-"; return s}
  {for (i = 1; i <= NF; i++) {cell[NR, i] = $i; if (length($i) > w[i]) w[i] = length($i)}}
  END {
    split("measure|peer|Verdin|ratio|target|met", head, "|")
    for (i = 1; i <= 6; i++) if (length(head[i]) > w[i]) w[i] = length(head[i])
    line = "|"; rule = "|"
    for (i = 1; i <= 6; i++) {line = line " " pad(head[i], w[i]) " |"; rule = rule "-" dashes(w[i]) "-|"}
    print line; print rule
    for (r = 1; r <= NR; r++) {
      line = "|"
      for (i = 1; i <= 6; i++) line = line " " pad(cell[r, i], w[i]) " |"
      print line
    }
  }' "$rows"
[ "$runs" -ge 5 ] || echo "(fewer than 5 runs: the medians say little)"
echo "CPU ms per audio second: what a 12 s piece costs over a 1 s one, per second more; start and end drop out."
echo "whole script: $SECONDS s"
