#!/usr/bin/env bash
# Plays a 60-second MP3 on the ALSA "null" device with the headless player and with
# `mpg123 -o alsa -a null`, alternately, and reports the processor time per second of
# audio of both (median of the runs), their ratio, and the player's peak resident memory
# (GNU time's %M, the kernel's high-water mark). Then the same with the equalizer on and a
# curve on the bands, and the player with its window (under Xvfb, when xvfb-run is there).
# mpg123 does not pace the null PCM (it decodes the minute at full speed) while the player
# plays it in real time; so, when pulseaudio is installed, both also play in real time on a
# private sound server with a null sink: `mpg123 -o pulse` against the player's sound-server
# output, processor time of both processes (the server's own is left out for both).
# The player runs in a private home (XDG_CONFIG_HOME, XDG_DATA_HOME) on a private D-Bus
# session; its settings are written with the player's settings store.
#   compare_playback_with_mpg123.sh [runs]   (default 3)
# Targets: processor time per audio second no more than mpg123's; peak memory at most
# 14 MiB headless, 45 MiB with the window.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
bin=$(cd "$here/../../bin" && pwd)
runs=${1:-3}
for tool in /usr/bin/time dbus-run-session mpg123 sox lame; do
  command -v "$tool" >/dev/null || { echo "missing: $tool" >&2; exit 2; }
done
bench_dir=$here
. "$here/bench-common.sh"
mp3=$(bench_tone_mp3 sixty-seconds 60)
seconds=60
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A fresh private home whose settings point the player at the null device.
make_home() {
  bench_private_home "$work/home.$1" "$bin" ${2:-}
  echo "$work/home.$1"
}

player() {  # home, then the player and its options
  local home=$1; shift
  bench_in_home "$home" "$@" /PLAY "$mp3"
}

cpu() { awk '{print $1 + $2}'; }
kb() { awk '{print $3}'; }

peer=(); plain=(); curve=(); window=(); plainKb=(); curveKb=(); windowKb=()
plainHome=$(make_home plain)
curveHome=$(make_home curve equalizer)
windowHome=$(make_home window)
for ((i = 0; i < runs; i++)); do
  peer+=("$(bench_usage mpg123 -q -o alsa -a null "$mp3" | cpu)")
  r=$(player "$plainHome" "$bin/verdin" --headless --quit-after-play); plain+=("$(echo "$r" | cpu)"); plainKb+=("$(echo "$r" | kb)")
  r=$(player "$curveHome" "$bin/verdin" --headless --quit-after-play); curve+=("$(echo "$r" | cpu)"); curveKb+=("$(echo "$r" | kb)")
  if command -v xvfb-run >/dev/null; then
    r=$(bench_in_home "$windowHome" --x "$bin/verdin" --quit-after-play /PLAY "$mp3")
    window+=("$(echo "$r" | cpu)"); windowKb+=("$(echo "$r" | kb)")
  fi
done

p=$(printf '%s\n' "${peer[@]}" | bench_median)
o=$(printf '%s\n' "${plain[@]}" | bench_median)
c=$(printf '%s\n' "${curve[@]}" | bench_median)
perSecond() { echo "$1 * 1000 / $seconds" | bc -l; }
printf 'mpg123 -o alsa -a null:   %.2f ms processor time per audio second (median of %d)\n' "$(perSecond "$p")" "$runs"
printf 'verdin --headless:        %.2f ms, %.2fx mpg123 (target <= 1)\n' "$(perSecond "$o")" "$(echo "$o / $p" | bc -l)"
printf '  with the equalizer on:  %.2f ms, %.2fx mpg123\n' "$(perSecond "$c")" "$(echo "$c / $p" | bc -l)"
mib() { printf '%s\n' "$@" | sort -g | tail -n 1 | awk '{printf "%.1f", $1 / 1024}'; }
printf 'peak resident memory, headless: %s MiB (highest of the runs; target <= 14 MiB), with the equalizer: %s MiB\n' \
  "$(mib "${plainKb[@]}")" "$(mib "${curveKb[@]}")"
if [ ${#window[@]} -gt 0 ]; then
  w=$(printf '%s\n' "${window[@]}" | bench_median)
  printf 'with the window (Xvfb):   %.2f ms per audio second, peak resident memory %s MiB (target <= 45 MiB)\n' \
    "$(perSecond "$w")" "$(mib "${windowKb[@]}")"
fi

# Both in real time on a private sound server.
if command -v pulseaudio >/dev/null && command -v pactl >/dev/null; then
  bench_start_sound_server "$work/server" || { echo "the sound server did not start" >&2; exit 1; }
  serverHome=$(make_home server server)
  peerRt=(); playerRt=()
  for ((i = 0; i < runs; i++)); do
    peerRt+=("$(bench_usage mpg123 -q -o pulse "$mp3" | cpu)")
    playerRt+=("$(player "$serverHome" "$bin/verdin" --headless --quit-after-play | cpu)")
  done
  kill "$bench_server_pid" 2>/dev/null || true
  pr=$(printf '%s\n' "${peerRt[@]}" | bench_median)
  vr=$(printf '%s\n' "${playerRt[@]}" | bench_median)
  printf 'real time on a sound server: mpg123 -o pulse %.2f ms, verdin %.2f ms per audio second, %.2fx\n' \
    "$(perSecond "$pr")" "$(perSecond "$vr")" "$(echo "$vr / $pr" | bc -l)"
fi
