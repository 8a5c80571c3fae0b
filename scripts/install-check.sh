#!/usr/bin/env bash
# Installs a build into a scratch prefix and checks what each consumer gets from it: the
# desktop (entry, file types, software-centre data, icons, bus activation), the manual,
# plug-in authors (headers and pkg-config), the loader (no path of the build tree, the
# plug-ins found from the program's place), and the Debian package (dependencies, contents).
#
#   scripts/install-check.sh [build dir]     (default: build)
set -euo pipefail
build=$(realpath "${1:-build}")
scratch=$(realpath "$(mktemp -d)")
cleanup() {  # a player the bus started and that outlived its bus must not keep running
  for exe in /proc/[0-9]*/exe; do
    [ "$(readlink "$exe" 2>/dev/null)" = "$scratch/usr/bin/verdin" ] && kill "$(basename "$(dirname "$exe")")"
  done
  rm -rf "$scratch"
}
trap cleanup EXIT
P=$scratch/usr
fail() { echo "install-check: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$P" >/dev/null

# The validator exits 0 on errors it calls "fatal in the future": any remark fails here.
remarks=$(desktop-file-validate "$P/share/applications/verdin.desktop" 2>&1) && [ -z "$remarks" ] ||
  fail "desktop entry: $remarks"
appstreamcli validate --no-net "$P/share/metainfo/io.github.brimfell.Verdin.metainfo.xml" >"$scratch/as.log" ||
  { cat "$scratch/as.log" >&2; fail "metainfo is invalid"; }
warnings=$(groff -man -Tutf8 -ww -z "$P/share/man/man1/verdin.1" 2>&1)
[ -z "$warnings" ] || fail "man page warnings: $warnings"

for size in 16 22 24 32 48 64 128 256; do
  file "$P/share/icons/hicolor/${size}x${size}/apps/verdin.png" | grep -q "PNG image data, $size x $size," ||
    fail "no ${size}x${size} icon"
done
file "$P/share/icons/hicolor/scalable/apps/verdin.svg" | grep -q SVG || fail "no scalable icon"

# The desktop's file-type database maps the playlist extension to the type the entry claims.
cp -r "$P/share/mime" "$scratch/mime"
update-mime-database "$scratch/mime" >/dev/null 2>&1
grep -qx '50:audio/x-verdin-playlist:\*\.vdp' "$scratch/mime/globs2" || fail "*.vdp has no file type"
grep -q '^MimeType=.*audio/x-verdin-playlist;' "$P/share/applications/verdin.desktop" ||
  fail "the desktop entry does not claim Verdin playlists"

service=$P/share/dbus-1/services/org.brimfell.Verdin.service
grep -qx "Exec=$P/bin/verdin" "$service" || fail "activation file does not run $P/bin/verdin: $(cat "$service")"

# Nothing installed may point the loader back into the build tree; each binary resolves
# every library it needs, the player's own from the prefix.
while IFS= read -r elf; do
  rpath=$(readelf -d "$elf" | sed -n 's/.*(R\(UN\)\?PATH).*\[\(.*\)\]/\2/p')
  [ -z "$rpath" ] || [[ $rpath == '$ORIGIN'* ]] || fail "$elf has the search path $rpath"
  ! ldd "$elf" | grep -q 'not found' || fail "$elf: $(ldd "$elf" | grep 'not found')"
done < <(find "$P" -type f \( -name '*.so' -o -path '*/bin/*' \))
core=$(ldd "$P/bin/verdin" | sed -n 's/.*libverdin-core.so => \(.*\) (.*/\1/p')
[ "$(realpath "$core")" = "$P/lib/verdin/libverdin-core.so" ] || fail "verdin loads its core from $core"
[[ $("$P/bin/verdin" --version) == "Verdin "* ]] || fail "the installed player does not run"

# The installed player, in a home of its own, plays a WAV through its bundled plug-in into
# ALSA's null device.
export HOME=$scratch/home XDG_CONFIG_HOME=$scratch/home/config XDG_DATA_HOME=$scratch/home/data
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
mkdir -p "$HOME" && printf 'pcm.!default { type null }\n' >"$HOME/.asoundrc"
sox -n -r 44100 -c 2 "$scratch/tone.wav" synth 0.2 sine 440
timeout 60 dbus-run-session -- "$P/bin/verdin" --headless --quit-after-play /PLAY "$scratch/tone.wav" \
  </dev/null >"$scratch/play.log" 2>&1 || fail "the installed player did not play: $(cat "$scratch/play.log")"

# The bus finds the activation file through XDG_DATA_DIRS; the player it starts answers
# the first call and quits on the second.
XDG_DATA_DIRS=$P/share timeout 60 dbus-run-session -- sh -c 'gdbus call --session --timeout 20 \
  -d org.brimfell.Verdin -o /Player -m org.brimfell.Verdin.Player.PlayerStatus && gdbus call --session \
  -d org.brimfell.Verdin -o /Player -m org.brimfell.Verdin.Player.Quit' >"$scratch/bus.out" 2>"$scratch/bus.log" ||
  fail "the bus did not start the player: $(cat "$scratch/bus.log")"
grep -q "^('stopped',)" "$scratch/bus.out" || fail "the activated player answered $(cat "$scratch/bus.out")"

# A plug-in author's build: the installed headers alone, found through pkg-config.
cat >"$scratch/plugin.c" <<'EOF'
#include <verdin/dsp.h>
#include <verdin/gen.h>
#include <verdin/input.h>
#include <verdin/vis.h>
#include <verdin/window.h>
static winampVisModule* NoModule(int which) { (void)which; return NULL; }
static winampVisHeader header = {VIS_HDRVER, "Install check", NoModule};
VERDIN_PLUGIN_EXPORT winampVisHeader* winampVisGetHeader(void) { return &header; }
EOF
cflags=$(PKG_CONFIG_PATH=$P/share/pkgconfig pkg-config --cflags verdin-sdk)
[[ $cflags == *"$P/"* ]] || fail "pkg-config names $cflags, not the prefix"
# shellcheck disable=SC2086  # the flags are words
cc -std=c11 -Wall -Werror $cflags -shared -fPIC -o "$scratch/plugin.so" "$scratch/plugin.c"
nm -D --defined-only "$scratch/plugin.so" | grep -q winampVisGetHeader || fail "the plug-in exports nothing"

# The Debian package.
(cd "$build" && cpack -G DEB -B "$scratch/deb" >"$scratch/cpack.log" 2>&1) ||
  { cat "$scratch/cpack.log" >&2; fail "cpack failed"; }
deb=$(echo "$scratch"/deb/verdin_*_"$(dpkg --print-architecture)".deb)
[ -f "$deb" ] || fail "cpack made no verdin_<version>_<arch>.deb"
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libqt6core6 libqt6dbus6 libqt6widgets6 libmpg123-0 libsndfile1 libtag1v5 libasound2 libx11-6 libdbus-1-3 \
    libavformat59 libavcodec59 libswresample4; do
  [[ $depends == *"$lib "* || $depends == *"$lib,"* || $depends == *"$lib" ]] || fail "Depends lacks $lib: $depends"
done
contents=$(dpkg-deb -c "$deb" | awk '{print $6}')
for path in bin/verdin lib/verdin/libverdin-core.so lib/verdin/libverdin-windows.so \
    lib/verdin/Plug-ins/{FFmpeg,MPEG,Radio,WAV,DSP,Bars,Notify}_Verdin.so share/applications/verdin.desktop \
    lib/verdin/libverdin-{ffmpeg,radio,sndfile}-input.so \
    share/mime/packages/verdin.xml share/metainfo/io.github.brimfell.Verdin.metainfo.xml \
    share/icons/hicolor/{48x48/apps/verdin.png,scalable/apps/verdin.svg} share/man/man1/verdin.1 \
    include/verdin/vis.h share/pkgconfig/verdin-sdk.pc share/dbus-1/services/org.brimfell.Verdin.service; do
  grep -qx "./usr/$path" <<<"$contents" || fail "the package lacks /usr/$path"
done
dpkg-deb --fsys-tarfile "$deb" | tar -xO ./usr/share/dbus-1/services/org.brimfell.Verdin.service |
  grep -qx 'Exec=/usr/bin/verdin' || fail "the package's activation file does not run /usr/bin/verdin"
echo "install-check: $(basename "$deb") and the installed tree are complete"
