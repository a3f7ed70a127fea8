#!/usr/bin/env bash
# Installs the build tree into a scratch prefix, then builds and runs the consumer against it.
set -euo pipefail
build_dir="$1"; src_dir="$(cd "$(dirname "$0")" && pwd)"
work="$(mktemp -d)"; trap 'rm -rf "$work"' EXIT
cmake --install "$build_dir" --prefix "$work/prefix" > /dev/null
# The build tree's warning settings are not part of the package.
if grep -rq qv_warnings "$work/prefix"; then echo "the installed package names qv_warnings" >&2; exit 1; fi
cmake -S "$src_dir" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" > /dev/null
cmake --build "$work/build" > /dev/null
QT_QPA_PLATFORM=offscreen "$work/build/consumer"
echo "installed package found and used"
