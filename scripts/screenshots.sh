#!/usr/bin/env bash
# Makes data/screenshots/main-window.png, the README's picture of the main window: the
# demo playing under Xvfb, analyzer, oscilloscope and volume bar shown.
#   tests/shell/ui/screenshot/make-main-window-screenshot.sh [build dir]
set -euo pipefail
root="$(cd "$(dirname "$0")/../../../.." && pwd)"
build="${1:-$root/build}"
cmake --build "$build" --target verdin-main-window-screenshot
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x800x24" \
  "$build/tests/bin/verdin-main-window-screenshot" "$root/data/screenshots/main-window.png"
echo "wrote $root/data/screenshots/main-window.png"
