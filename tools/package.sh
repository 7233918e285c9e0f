#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Builds the library with optimisation for both targets and packs it: ZIP for Windows, TGZ and two
# Debian packages for Linux.
set -euo pipefail
cd "$(dirname "$0")/.."
out=$PWD/build/package
rm -rf "$out"
for preset in release release-debian release-windows; do
  cmake --preset "$preset"
  cmake --build --preset "$preset" --target Shared
  cpack --config "build/$preset/CPackConfig.cmake" -B "$out"
done
rm -rf "$out/_CPack_Packages"
ls "$out"/*.zip "$out"/*.tar.gz "$out"/*.deb
