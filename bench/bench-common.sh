# shellcheck shell=bash disable=SC2034,SC2154  # variables set for, and by, the sourcing script
# Shared by the benchmark scripts (sourced, not run): the cached media, timing, medians,
# the player's private homes and a private sound server. Nothing here prints a result.
#   bench_dir: where the benchmark programs are (the sourcing script sets it)

bench_cache=${XDG_CACHE_HOME:-$HOME/.cache}/verdin-bench
bench_common=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/$(basename "${BASH_SOURCE[0]}")
# The 16 band values of the equalizer curve the benchmarks play with (50 Hz band first);
# verdin-bench-null-device stores the same one.
bench_equalizer_curve=6,4,2,0,-2,-4,-3,0,1,3,5,4,2,0,-1,-6

# bench_tone_mp3 NAME SECONDS [lame options]: the path of a cached MP3 of a tone sweep over
# a steady tone, made once with sox and lame (192 kbit/s CBR unless options are given).
# Both tools are deterministic here (sox -R), so every machine measures the same bytes.
bench_tone_mp3() {
  local name=$1 seconds=$2
  shift 2
  local options=("$@")
  [ ${#options[@]} -gt 0 ] || options=(-b 192)
  local mp3=$bench_cache/$name.mp3
  if [ ! -s "$mp3" ]; then
    mkdir -p "$bench_cache"
    sox -R -n -r 44100 -c 2 -b 16 "$bench_cache/$name.wav" synth "$seconds" sine 220-880 sine 330 gain -3
    # Written beside and renamed, so an interrupted run leaves no short file in the cache.
    lame --quiet "${options[@]}" "$bench_cache/$name.wav" "$mp3.part"
    mv "$mp3.part" "$mp3"
    rm -f "$bench_cache/$name.wav"
  fi
  echo "$mp3"
}

# "wall processor" seconds of one command (processor time is user + system, children
# included): the processor time is steadier than the wall clock on a busy machine.
bench_wall_and_cpu() {
  local TIMEFORMAT='%R %U %S' t
  t=$( { time "$@" >/dev/null 2>&1; } 2>&1 )
  echo "$t" | awk '{print $1, $2 + $3}'
}
bench_cpu() { bench_wall_and_cpu "$@" | awk '{print $2}'; }

# "user system maxKB wall" of one command, times in seconds: maxKB is its peak resident
# memory (GNU time's, whose own times have only 10 ms steps; the shell's have 1 ms).
bench_usage() {
  local kb TIMEFORMAT='%3U %3S %3R' t
  kb=$(mktemp)
  t=$( { time /usr/bin/time -f %M -o "$kb" "$@" >/dev/null 2>&1; } 2>&1 ) || true
  echo "$t" | awk -v kb="$(tail -n 1 "$kb")" '{print $1, $2, kb, $3}'
  rm -f "$kb"
}

# The median of the numbers on standard input, one a line; nothing when there are none.
bench_median() { sort -g | awk '{a[NR]=$1} END {if (NR) print (NR%2) ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2}'; }

# bench_private_home DIR PLAYER_BIN_DIR [words for verdin-bench-null-device]: a fresh home
# whose settings point the player at the ALSA null device (or as the words say).
bench_private_home() {
  local home=$1 player_bin=$2
  shift 2
  rm -rf "$home"
  mkdir -p "$home/config" "$home/data" "$home/Music"
  env HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
    "$bench_dir/verdin-bench-null-device" "$player_bin" "$@" >/dev/null
}

# bench_in_home HOME [--x] COMMAND...: runs a command in the player's private home on a
# private session bus (--x: on a private X server, xvfb-run); prints its bench_usage (the
# command's alone, not the bus's nor the X server's).
bench_in_home() {
  local home=$1 display=()
  shift
  if [ "$1" = --x ]; then display=(xvfb-run -a); shift; fi
  env HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
    "${display[@]}" dbus-run-session -- bash -c '. "$0"; bench_usage "$@"' "$bench_common" "$@" 2>/dev/null
}

# bench_start_sound_server DIR: a private PulseAudio with a null sink, its socket in DIR;
# exports PULSE_SERVER for the clients started after it and sets bench_server_pid.
# Returns 1 when the server does not answer within 10 s.
bench_start_sound_server() {
  local dir=$1
  mkdir -p "$dir/run" "$dir/home" && chmod 700 "$dir/run"
  XDG_RUNTIME_DIR=$dir/run PULSE_RUNTIME_PATH=$dir/run HOME=$dir/home PULSE_STATE_PATH=$dir/home \
    XDG_CONFIG_HOME=$dir/home pulseaudio -n --daemonize=no --exit-idle-time=-1 --disallow-exit \
    --use-pid-file=no --disable-shm=yes --load="module-null-sink sink_name=bench" \
    --load="module-native-protocol-unix auth-anonymous=1 socket=$dir/run/native" >"$dir/server.log" 2>&1 &
  bench_server_pid=$!
  export PULSE_SERVER=unix:$dir/run/native
  local t
  for ((t = 0; t < 100; t++)); do
    pactl info >/dev/null 2>&1 && return 0
    sleep 0.1
  done
  return 1
}
