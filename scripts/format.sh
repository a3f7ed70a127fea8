#!/usr/bin/env bash
# Formats every C++ source of the project with clang-format and the style in .clang-format.
# Usage: scripts/format.sh          rewrite the files in place
#        scripts/format.sh --check  change nothing; list the files that differ and fail if any
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v clang-format >/dev/null; then
  SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends clang-format
fi
mapfile -t files < <(git ls-files '*.h' '*.cpp' | grep -v '^tests/layers/planted/')
if [ "${1:-}" = "--check" ]; then
  bad=0
  for f in "${files[@]}"; do
    if ! clang-format "$f" | cmp -s - "$f"; then echo "not formatted: $f"; bad=1; fi
  done
  [ $bad = 0 ] && echo "format: ${#files[@]} files follow .clang-format"
  exit $bad
fi
clang-format -i "${files[@]}"
