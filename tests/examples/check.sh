#!/usr/bin/env bash
# Runs an example as a user would, offscreen, and checks what it leaves behind.
# Usage: check.sh report EXE      the report's four files are written and readable
#        check.sh snapshot EXE    the example writes its picture with --snapshot
#        check.sh runs EXE        the example is still running after three seconds
set -euo pipefail
mode="$1"; exe="$2"
work="$(mktemp -d)"; trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen
is_png() { [ -s "$1" ] && [ "$(head -c 4 "$1" | tail -c 3)" = "PNG" ]; }
case "$mode" in
  report)
    "$exe" "$work/out"
    is_png "$work/out/report.png" || { echo "report.png missing or not a PNG" >&2; exit 1; }
    is_png "$work/out/report@2x.png" || { echo "report@2x.png missing or not a PNG" >&2; exit 1; }
    grep -q "<svg" "$work/out/report.svg" || { echo "report.svg missing or not SVG" >&2; exit 1; }
    [ "$(head -c 5 "$work/out/report.pdf")" = "%PDF-" ] || { echo "report.pdf missing or not PDF" >&2; exit 1; }
    ;;
  snapshot)
    "$exe" --snapshot "$work/picture.png"
    is_png "$work/picture.png" || { echo "no picture written" >&2; exit 1; }
    ;;
  runs)
    rc=0; timeout 3 "$exe" || rc=$?
    [ "$rc" -eq 124 ] || { echo "the example ended early with status $rc" >&2; exit 1; }
    ;;
  *) echo "unknown mode $mode" >&2; exit 2 ;;
esac
echo "$(basename "$exe"): $mode checked"
