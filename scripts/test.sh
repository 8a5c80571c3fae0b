#!/usr/bin/env bash
# Builds Verdin and runs every test: the plain build and a check of what it installs and
# packages, then AddressSanitizer with UndefinedBehaviorSanitizer, the engine tests under
# ThreadSanitizer, and each fuzz target for a bounded time. Installs missing Debian
# packages first.
#
#   VERDIN_TEST_STAGES   which stages to run (default "plain asan tsan fuzz")
#   VERDIN_FUZZ_SECONDS  seconds per fuzz target (default 20)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)

scripts/setup-debian.sh

stages=${VERDIN_TEST_STAGES:-plain asan tsan fuzz}
jobs=$(nproc)
export CTEST_OUTPUT_ON_FAILURE=1

configure() {  # configure <dir> [cmake args...]
  local dir=$1; shift
  cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
}

for stage in $stages; do
  echo "=== $stage ==="
  case $stage in
    plain)
      configure build
      cmake --build build -j"$jobs"
      ctest --test-dir build -j"$jobs" --timeout 600
      scripts/install-check.sh build
      ;;
    asan)
      configure build-asan -DVERDIN_SANITIZE=address -DVERDIN_BENCH=OFF
      cmake --build build-asan -j"$jobs"
      ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
      LSAN_OPTIONS=suppressions=$root/scripts/lsan.supp:print_suppressions=0 \
      UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
        ctest --test-dir build-asan -j"$jobs" --timeout 900
      ;;
    tsan)
      configure build-tsan -DVERDIN_SANITIZE=thread -DVERDIN_BENCH=OFF
      cmake --build build-tsan -j"$jobs" --target verdin_engine_tests
      TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=$root/scripts/tsan.supp \
        ctest --test-dir build-tsan -L engine -j"$jobs" --timeout 900
      ;;
    fuzz)
      CC=clang CXX=clang++ configure build-fuzz -DVERDIN_FUZZ=ON
      cmake --build build-fuzz -j"$jobs"
      scripts/fuzz.sh build-fuzz "${VERDIN_FUZZ_SECONDS:-20}"
      ;;
    *) echo "unknown stage $stage" >&2; exit 2 ;;
  esac
done
echo "=== all tests passed ==="
