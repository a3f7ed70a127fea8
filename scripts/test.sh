#!/usr/bin/env bash
# Builds the library, its tests, benchmarks and examples, and runs every test.
# Usage: scripts/test.sh [preset]   (default: release; also debug, asan, tsan)
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-release}"
bash scripts/setup.sh
export QT_QPA_PLATFORM=offscreen
jobs=$(nproc)
# CI builds treat warnings as errors; a user's build does not.
werror=(-DQV_WERROR=OFF)
if [ -n "${CI:-}" ]; then werror=(-DQV_WERROR=ON); fi
cmake --preset "$preset" "${werror[@]}"
cmake --build --preset "$preset" -j "$jobs"
ctest --preset "$preset" -j "$jobs"
