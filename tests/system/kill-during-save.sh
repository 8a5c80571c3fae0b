#!/usr/bin/env bash
# Kills the headless player at random moments while it saves a playlist over D-Bus, the
# settings (each shuffle toggle) and the main playlist at quit; after each kill every file
# must be the version before or after. By hand, about a minute: $0 [build dir] [rounds]
set -euo pipefail
[[ -n ${VERDIN_KILL_BUS:-} ]] || VERDIN_KILL_BUS=1 exec dbus-run-session -- "$0" "$@"
verdin=$(realpath "${1:-build}")/bin/verdin rounds=${2:-200} work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data HOME=$work/home XDG_RUNTIME_DIR=$work/run
export DISPLAY= WAYLAND_DISPLAY= QT_QPA_PLATFORM=
mkdir -p -m 700 "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$HOME" "$XDG_RUNTIME_DIR" "$work/a" "$work/b"
# Two lists of different lengths, long enough that a save takes a while.
for i in $(seq 3000); do : >"$work/b/track$i.wav"; ((i > 2000)) || : >"$work/a/track$i.wav"; done
settings=$XDG_CONFIG_HOME/Brimfell/Verdin.conf mainlist=$XDG_DATA_HOME/Brimfell/Verdin/default.vdp saved=$work/out.m3u

call() { gdbus call --session --dest org.brimfell.Verdin --object-path "/$1" --method "org.brimfell.Verdin.$1.$2" "${@:3}" >/dev/null 2>&1; }
start() {
    "$verdin" --headless "$1" >>"$work/log" 2>&1 &
    pid=$!
    for _ in $(seq 200); do call Player Status && return 0 || sleep 0.05; done
    cat "$work/log" >&2 && exit 1
}
whole() {  # file, versions...: absent, or one of the versions
    [[ -e $1 ]] || return 0
    for version in "${@:2}"; do cmp -s "$1" "$version" && return 0; done
    return 1
}

# The versions a whole file may have, from runs that are not interrupted.
for list in a b; do
    start "$work/$list" && call Player SavePlaylist "$saved" && { call Player Quit || true; }
    wait "$pid" || true
    cp "$saved" "$work/$list.m3u" && cp "$mainlist" "$work/$list.vdp"
done
keys=$(grep -c = "$settings")
broken=0
for round in $(seq "$rounds"); do
    start "$work/$([[ $((round % 2)) == 0 ]] && echo a || echo b)"
    # Saves one after another until the kill; every fourth round a quit, which saves the
    # main playlist and the settings once more.
    if ((round % 4 == 0)); then call Player Quit & sleep "0.0$((RANDOM % 100))"
    else (while call Player SavePlaylist "$saved" && call Player Command 119; do :; done) & sleep "0.$((RANDOM % 300 + 100))"; fi
    kill -KILL "$pid" 2>/dev/null || true
    wait 2>/dev/null || true
    problem=""
    whole "$saved" "$work/a.m3u" "$work/b.m3u" || problem+=" playlist"
    whole "$mainlist" "$work/a.vdp" "$work/b.vdp" || problem+=" main-playlist"
    [[ $(grep -c = "$settings") == "$keys" ]] || problem+=" settings"
    [[ -z $problem ]] || { broken=$((broken + 1)) && echo "round $round: not whole:$problem" >&2 && rm -f "$saved" "$mainlist"; }
done
echo "$rounds kills during saves: $broken left a file that was not whole"
[[ $broken == 0 ]]
