#!/usr/bin/env bash
# Builds and runs the demo. With a display it opens a window; with none it renders
# offscreen for a few seconds and writes PNG files into demo-output/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake --preset release
cmake --build --preset release -j "$(nproc)" --target qv_demo
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  export QT_QPA_PLATFORM=offscreen
  ./build/release/examples/qv_demo --offscreen --out demo-output "$@"
else
  ./build/release/examples/qv_demo "$@"
fi
