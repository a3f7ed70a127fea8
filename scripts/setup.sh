#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the demo need, if any is missing
# (FFTW is the demo's alone: it computes the spectrum its waterfall shows).
set -euo pipefail
# qt6-svg-dev gives SVG output, qt6-tools-dev the Designer plugin, libfftw3-dev the spectrum
# example; each is skipped by the build when missing.
packages=(cmake ninja-build g++ pkg-config qt6-base-dev qt6-svg-dev qt6-tools-dev libfftw3-dev libgl-dev
          libgtest-dev libgmock-dev libbenchmark-dev fonts-liberation2 fontconfig)
if [ "${QV_WITH_PEER:-0}" = 1 ]; then packages+=(libqcustomplot-dev); fi
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}"
  SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
