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
if [ $# -eq 0 ]; then
  set -- /PLAY "$PWD/build/share/verdin/demo/Verdin Demo.vdp"
fi
exec build/bin/verdin "$@"
