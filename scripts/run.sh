#!/usr/bin/env bash
# Builds Verdin and opens the player on the demo playlist (short pieces synthesised at
# build time). Installs missing Debian packages first.
#
# The player keeps its settings and main playlist in build/run-home, so trying it leaves
# your own Verdin set-up alone. Without a display it plays without windows (Ctrl+C ends
# it). Arguments are passed on: scripts/run.sh /PLAY ~/Music plays your music instead.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-debian.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)"
home="$PWD/build/run-home"
mkdir -p "$home/config" "$home/data"
export XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data"
demo="$PWD/build/share/verdin/demo/Verdin Demo.vdp"
if [ $# -eq 0 ] && ! pactl info >/dev/null 2>&1 && ! aplay -l 2>/dev/null | grep -q '^card '; then
  # Nothing to play on: the demo goes through the player's WAV-file output instead, with
  # settings of its own so that the user's stay as they are.
  out="$PWD/build/demo-out"
  cat >&2 <<EOF
Verdin: no sound output was found: no sound server answers and ALSA lists no sound card.
  To hear Verdin, start a sound server ("pulseaudio --start", or PipeWire with
  pipewire-pulse) or connect a sound card, then run scripts/run.sh again.
  Meanwhile the demo is written as WAV files into $out/.
EOF
  demo_home="$PWD/build/demo-home"
  mkdir -p "$out" "$demo_home/config/Brimfell" "$demo_home/data"
  # The output type is stored as its 4 bytes (1: decode to WAV files).
  printf '[General]\noutputType=@ByteArray(\\x1\\0\\0\\0)\ndecodeDirectory=%s\n' "$out" \
    >"$demo_home/config/Brimfell/Verdin.conf"
  XDG_CONFIG_HOME="$demo_home/config" XDG_DATA_HOME="$demo_home/data" \
    build/bin/verdin --headless --quit-after-play /PLAY "$demo"
  echo "Verdin: the demo is in $out:" >&2
  ls -1 "$out" >&2
  exit 0
fi
if [ $# -eq 0 ]; then
  set -- /PLAY "$demo"
fi
exec build/bin/verdin "$@"
