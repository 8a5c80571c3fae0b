#!/usr/bin/env bash
# Line coverage of src/ by the tests of CI's plain stage: a Debug build with gcov
# instrumentation in build-coverage, every CTest test, then gcovr's summary.
# Not part of CI; run it before and after reshaping tests to see what they still reach.
#
#   scripts/coverage.sh [build dir]     (default build-coverage)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
build=${1:-build-coverage}

scripts/setup-debian.sh
if ! command -v gcovr >/dev/null; then
  sudo_cmd=()
  [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends gcovr
fi

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVERDIN_BENCH=OFF \
  -DCMAKE_C_FLAGS=--coverage -DCMAKE_CXX_FLAGS=--coverage \
  -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage \
  -DCMAKE_MODULE_LINKER_FLAGS=--coverage >/dev/null
cmake --build "$build" -j"$(nproc)"
find "$build" -name '*.gcda' -delete
ctest --test-dir "$build" -j"$(nproc)" --timeout 600 --output-on-failure || true
gcovr --root "$root" --filter "$root/src/" --object-directory "$build" \
  --gcov-ignore-parse-errors --gcov-exclude '.*CompilerId.*' --print-summary -o "$build/coverage.txt"
echo "details: $build/coverage.txt"
