#!/usr/bin/env bash
# Kills the headless player at random moments while it saves: a playlist saved over D-Bus,
# the settings (each shuffle toggle saves them) and the main playlist at quit. After each
# kill every file on disk must be whole: the version before or the version after, never a
# truncation or a mixture. Run by hand (a few minutes); not part of CI.
#
#   tests/system/kill-during-save.sh [build directory] [rounds]
set -euo pipefail
if [[ -z ${VERDIN_KILL_BUS:-} ]]; then
    VERDIN_KILL_BUS=1 exec dbus-run-session -- "$0" "$@"
fi
build=$(realpath "${1:-build}")
rounds=${2:-200}
verdin=$build/bin/verdin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data HOME=$work/home XDG_RUNTIME_DIR=$work/run
export DISPLAY= WAYLAND_DISPLAY= QT_QPA_PLATFORM=
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$HOME" "$XDG_RUNTIME_DIR" -m 700
# Two lists of different lengths: big enough that a save takes a while.
mkdir -p "$work/a" "$work/b"
for i in $(seq 2000); do : >"$work/a/track$i.wav"; done
for i in $(seq 3000); do : >"$work/b/track$i.wav"; done
settings=$XDG_CONFIG_HOME/Brimfell/Verdin.conf
mainlist=$XDG_DATA_HOME/Brimfell/Verdin/default.vdp
saved=$work/out.m3u

call() {
    gdbus call --session --dest org.brimfell.Verdin --object-path "/$1" --method "org.brimfell.Verdin.$1.$2" "${@:3}" \
        >/dev/null 2>&1
}

start() {
    "$verdin" --headless "$1" >>"$work/log" 2>&1 &
    pid=$!
    for _ in $(seq 200); do
        call Player Status && return 0
        sleep 0.05
    done
    echo "the player did not answer; its output:" >&2
    cat "$work/log" >&2
    exit 1
}

# The versions a whole file may have: made by runs that are not interrupted.
for list in a b; do
    start "$work/$list"
    call Player SavePlaylist "$saved"
    call Player Quit || true
    wait "$pid" || true
    cp "$saved" "$work/$list.m3u"
    cp "$mainlist" "$work/$list.vdp"
done
keys=$(grep -c = "$settings")
echo "versions: $(wc -l <"$work/a.m3u") and $(wc -l <"$work/b.m3u") lines; settings of $keys keys"

whole() {  # file, versions...
    local file=$1
    shift
    [[ -e $file ]] || return 0
    for version in "$@"; do cmp -s "$file" "$version" && return 0; done
    return 1
}

broken=0
for round in $(seq "$rounds"); do
    list=$([[ $((round % 2)) == 0 ]] && echo a || echo b)
    start "$work/$list"
    # Saves one after another until the kill; every fourth round a quit, which saves
    # the main playlist and the settings once more.
    if ((round % 4 == 0)); then
        call Player Quit &
        sleep "0.0$((RANDOM % 100))"
    else
        (while call Player SavePlaylist "$saved" && call Player Command 119; do :; done) &
        sleep "0.$((RANDOM % 300 + 100))"
    fi
    kill -KILL "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    wait 2>/dev/null || true
    problem=""
    whole "$saved" "$work/a.m3u" "$work/b.m3u" || problem+=" playlist"
    whole "$mainlist" "$work/a.vdp" "$work/b.vdp" || problem+=" main-playlist"
    [[ $(grep -c = "$settings") == "$keys" ]] || problem+=" settings"
    if [[ -n $problem ]]; then
        broken=$((broken + 1))
        echo "round $round: not whole:$problem" >&2
        rm -f "$saved" "$mainlist"  # a broken file would fail every later round too
    fi
done
echo "$rounds kills during saves: $broken left a file that was not whole"
[[ $broken == 0 ]]
