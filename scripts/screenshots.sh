#!/usr/bin/env bash
# Makes the pictures in data/screenshots/ under Xvfb, from the real player in a home of its
# own: the main window while the demo plays, the graphic equalizer, the mini window, the
# options dialog and the bundled bars visualization plug-in.
# Not part of CI; installs what it needs (Xvfb, ImageMagick, the X utilities).
#   scripts/screenshots.sh [build dir]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="$(cd "${1:-$root/build}" && pwd)"
out="$root/data/screenshots"

if [ "${VERDIN_SCREENSHOTS_INSIDE:-}" != 1 ]; then
  "$root/scripts/setup-debian.sh"
  missing=()
  for p in xvfb imagemagick x11-apps x11-utils pulseaudio pulseaudio-utils; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    sudo_cmd=()
    [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
  fi
  cmake --build "$build" --target verdin verdin_demo WAV_Verdin Bars_Verdin
  export VERDIN_SCREENSHOTS_INSIDE=1
  exec xvfb-run -a -s "-screen 0 1280x800x24" dbus-run-session -- "$0" "$build"
fi

home=$(mktemp -d)
trap 'kill "$player" "$server" 2>/dev/null || true; wait; rm -rf "$home"' EXIT
export XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" QT_QPA_PLATFORM=xcb
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME"
call() {  # call <method> [args...]: the player's /Player interface
  local method=$1; shift
  gdbus call --session -d org.brimfell.Verdin -o /Player -m "org.brimfell.Verdin.Player.$method" "$@"
}
wait_for() {  # wait_for <command...>: up to 20 s for it to succeed
  for _ in $(seq 200); do "$@" >/dev/null 2>&1 && return 0; sleep 0.1; done
  echo "gave up waiting for: $*" >&2; exit 1
}
snap() {  # snap <window title> <file>
  wait_for xwininfo -name "$1"
  xwd -silent -name "$1" | convert xwd:- "png:$out/$2"
  echo "wrote $out/$2"
}

# A sound server of its own with a silent sink: ALSA's default device plays into it.
mkdir -p "$home/pulse"
XDG_RUNTIME_DIR="$home/pulse" PULSE_RUNTIME_PATH="$home/pulse" HOME="$home" \
  pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no --disable-shm=yes --log-target=stderr \
  --load="module-null-sink sink_name=shots" \
  --load="module-native-protocol-unix auth-anonymous=1 socket=$home/pulse/socket" 2>/dev/null &
server=$!
export PULSE_SERVER="unix:$home/pulse/socket"
wait_for pactl info
# A first run writes the settings; the bars plug-in then goes on the visualization list.
"$build/bin/verdin" --headless &
player=$!
wait_for call Status
call Quit >/dev/null
wait "$player"
sed -i "s|^visualizationPlugins=.*|visualizationPlugins=\"$build/lib/verdin/Plug-ins/Bars_Verdin.so,0;\"|" \
  "$XDG_CONFIG_HOME/Brimfell/Verdin.conf"
"$build/bin/verdin" /PLAY "$build/share/verdin/demo/Verdin Demo.vdp" &
player=$!
wait_for call Status
# The analyzer and the oscilloscope on; row 3, the bells, draws clear bars.
for id in 50054 50075; do call Command "$id" >/dev/null; done
call PlayRow 3 >/dev/null
played_enough() { [ "$(call Position | sed -E 's/^\(uint32 ([0-9]+),\)$/\1/')" -ge 4200 ]; }
wait_for played_enough
caption=$(call Caption | sed -E "s/^\('(.*)',\)$/\1/")
snap "$caption" main-window.png
# Visualization on: the bars plug-in opens its window; a second of sound fills its bars.
call Command 50113 >/dev/null
wait_for xwininfo -name "Verdin Bars"
sleep 1
snap "Verdin Bars" vis-bars.png
call Command 50113 >/dev/null
call Command 50096 >/dev/null
snap "Graphic Equalizer" equalizer.png
# The mini window (keypad minus) while the demo plays on, then the main window again.
call Command 50086 >/dev/null
snap "VerdinMiniWindow" mini-window.png
call Command 50087 >/dev/null
# The options dialog is modal: its command answers only once it closes.
(call Command 50031 >/dev/null 2>&1 &)
snap "Options" options-general.png
