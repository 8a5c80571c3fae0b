#!/usr/bin/env bash
# Installs every Debian 12 package that building, testing and running Verdin needs.
# Idempotent: packages already present are skipped, and nothing runs when all are there.
set -euo pipefail

packages=(
  # build
  build-essential cmake ninja-build pkg-config git
  clang libclang-rt-14-dev            # libFuzzer targets
  qt6-base-dev                        # windows, D-Bus, settings file
  libasound2-dev libasound2-plugins   # ALSA output; ALSA's pulse device
  libpulse-dev                        # PulseAudio output
  libmpg123-dev                       # MP3 input plug-in
  libsndfile1-dev                     # WAV/AIFF/FLAC/Ogg input plug-in
  libavformat-dev libavcodec-dev libswresample-dev libavutil-dev  # FFmpeg input plug-in
  libtag1-dev zlib1g-dev              # tags
  libdbus-1-dev                       # the notification plug-in's session bus client
  libx11-dev                          # the bars plug-in's window
  libgtest-dev libbenchmark-dev       # tests and benchmarks
  libfftw3-dev                        # the transform benchmark's reference only
  librsvg2-bin                        # rsvg-convert: renders the icon's fixed sizes at build time
  # packaging and its check (scripts/install-check.sh)
  desktop-file-utils                  # desktop-file-validate: the desktop entry
  appstream                           # appstreamcli: the software-centre metainfo
  groff-base                          # renders the man page, warnings as failures
  shared-mime-info                    # update-mime-database: the playlist file type
  dpkg-dev                            # dpkg-shlibdeps: the package's Depends, for cpack
  file                                # tells the rendered icons' sizes
  libglib2.0-bin                      # gdbus: calls the player's bus name to start it
  # test environment: real servers and clients started by the tests
  xvfb xauth dbus dbus-x11 pulseaudio pulseaudio-utils alsa-utils
  xdg-utils playerctl
  sox libsox-fmt-all lame flac mpg123 vorbis-tools opus-tools ffmpeg python3
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Run as root (or install sudo) to install: ${missing[*]}" >&2; exit 1; }
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
