#!/usr/bin/env bash
# The checks beyond the test suite, as CI runs them:
#   asan  every test under the address and undefined-behaviour sanitizers
#   tsan  the core tests (the threaded ones among them) under the thread sanitizer
#   fuzz  the fuzz targets for FUZZ_SECONDS seconds in all (default 60)
#   soak  the soak program for SOAK_SECONDS seconds (default 30)
# Usage: scripts/check.sh [asan|tsan|fuzz|soak]...   (no argument: all four, in that order)
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
export QT_QPA_PLATFORM=offscreen
jobs=$(nproc)
steps=("$@"); [ ${#steps[@]} -eq 0 ] && steps=(asan tsan fuzz soak)
werror=(-DQV_WERROR=OFF); [ -n "${CI:-}" ] && werror=(-DQV_WERROR=ON)
for step in "${steps[@]}"; do
  start=$(date +%s)
  case "$step" in
    asan)
      cmake --preset asan "${werror[@]}" > /dev/null
      cmake --build --preset asan -j "$jobs"
      ctest --preset asan -j "$jobs" ;;
    tsan)
      cmake --preset tsan "${werror[@]}" > /dev/null
      cmake --build --preset tsan -j "$jobs" --target qv_core_tests
      TSAN_OPTIONS="halt_on_error=1 suppressions=$PWD/tests/tsan.supp" ./build/tsan/tests/qv_core_tests --gtest_brief=1 ;;
    fuzz)
      bash fuzz/run.sh "${FUZZ_SECONDS:-60}" ;;
    soak)
      cmake --preset release "${werror[@]}" > /dev/null
      cmake --build --preset release -j "$jobs" --target qv_soak
      ./build/release/examples/qv_soak --seconds "${SOAK_SECONDS:-30}" ;;
    *) echo "check.sh: unknown step '$step' (asan, tsan, fuzz, soak)" >&2; exit 2 ;;
  esac
  echo "check.sh: $step passed in $(( $(date +%s) - start )) s"
done
