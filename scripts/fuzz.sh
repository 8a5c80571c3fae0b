#!/usr/bin/env bash
# Runs every fuzz target of a fuzz build for a bounded time on a scratch copy of its
# seed corpus (the committed corpus stays as it is).  fuzz.sh <build dir> <seconds>
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build-fuzz}
seconds=${2:-20}
shopt -s nullglob
targets=("$build"/fuzz/bin/fuzz_*)
[ ${#targets[@]} -gt 0 ] || { echo "no fuzz targets in $build" >&2; exit 1; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for target in "${targets[@]}"; do
  name=${target##*/fuzz_}
  corpus=$scratch/$name
  mkdir -p "$corpus"
  [ -d "fuzz/$name/corpus" ] && cp -r "fuzz/$name/corpus/." "$corpus/"
  echo "--- fuzz $name for ${seconds}s"
  ASAN_OPTIONS=detect_leaks=1 "$target" -max_total_time="$seconds" -timeout=10 \
    -rss_limit_mb=2048 -print_final_stats=1 "$corpus" 2>"$scratch/$name.log" || {
    tail -n 60 "$scratch/$name.log"; exit 1; }
  grep -E "stat::number_of_executed_units" "$scratch/$name.log" || true
done
