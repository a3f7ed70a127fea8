#!/usr/bin/env bash
# Builds the fuzz targets and runs each for its share of a time budget, from the seed corpus.
# Usage: fuzz/run.sh [seconds, in all; default 60] [extra libFuzzer options...]
#   fuzz/run.sh 60                          the short run CI makes
#   fuzz/run.sh 0 -runs=10000000 -entropic=0   ten million executions of each target (the
#                                              plain scheduler runs about twice as many a second)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"; shift || true
for p in clang libfuzzer-14-dev libclang-rt-14-dev; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO=sudo
    $SUDO apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends clang libfuzzer-14-dev libclang-rt-14-dev
    break
  fi
done
export QT_QPA_PLATFORM=offscreen
cmake --preset fuzz > /dev/null
cmake --build --preset fuzz -j "$(nproc)"
work="$(mktemp -d)"; trap 'rm -rf "$work"' EXIT
targets=(intake json)
for t in "${targets[@]}"; do
  mkdir -p "$work/$t"
  opts=(-max_len=4096 -print_final_stats=1 "$@")
  [ "$seconds" -gt 0 ] && opts+=(-max_total_time=$(( seconds / ${#targets[@]} )))
  ASAN_OPTIONS=detect_leaks=1 ./build/fuzz/fuzz/qv_fuzz_$t "${opts[@]}" "$work/$t" "fuzz/corpus/$t" 2>&1 |
    grep -E '^(#|Done|INFO: seed|stat::number_of_executed_units|==|SUMMARY)' | tail -n 4
  echo "fuzz: qv_fuzz_$t found nothing"
done
