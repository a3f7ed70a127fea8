#!/usr/bin/env bash
# Installs the build tree into a scratch prefix, then builds and runs a consumer project
# against it: this folder's by default, or the one named second (e.g. examples/consumer).
# The consumer's executable is called "consumer"; any further arguments go to it.
set -euo pipefail
build_dir="$1"; src_dir="${2:-$(cd "$(dirname "$0")" && pwd)}"; shift $(( $# < 2 ? $# : 2 ))
work="$(mktemp -d)"; trap 'rm -rf "$work"' EXIT
cmake --install "$build_dir" --prefix "$work/prefix" > /dev/null
# The build tree's warning settings are not part of the package.
if grep -rq qv_warnings "$work/prefix"; then echo "the installed package names qv_warnings" >&2; exit 1; fi
cmake -S "$src_dir" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" > /dev/null
cmake --build "$work/build" > /dev/null
QT_QPA_PLATFORM=offscreen "$work/build/consumer" "${@//@WORK@/$work}"
echo "installed package found and used by $src_dir"
