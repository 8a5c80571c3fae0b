#!/usr/bin/env bash
# Builds Verdin and plays the demo material. Installs missing Debian packages first.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-debian.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)"
exec build/bin/verdin-decode build/share/verdin/demo/*.wav
