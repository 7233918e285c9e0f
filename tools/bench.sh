#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Usage: tools/bench.sh [REGEX]
# Builds the benchmarks with optimisation, runs those whose name matches and prints ours beside the fastest peer and
# beside our time in the Windows build (under Wine). The table is also written to build/bench/table.tsv, the raw figures
# to build/bench/json/. In the environment: REPETITIONS (5), MIN_TIME of each in seconds (0.1), WINDOWS=0 to leave that
# build out.
set -euo pipefail
cd "$(dirname "$0")/.."
rows=${1:-.}
json=build/bench/json

# The headers of CGAL. Installing Debian's package would replace Boost by an older version, so it is only unpacked.
peers=build/peers
if [ ! -d /usr/include/CGAL ] && [ ! -d "$peers/usr/include/CGAL" ]; then
  mkdir -p "$peers"
  (cd "$peers" && apt-get download -q libcgal-dev && dpkg-deb -x libcgal-dev_*.deb .)
fi
# The same holds for GDAL, of which the library alone can be installed beside ours.
if [ ! -d /usr/include/gdal ] && [ ! -d "$peers/usr/include/gdal" ]; then
  mkdir -p "$peers"
  (cd "$peers" && apt-get download -q libgdal-dev && dpkg-deb -x libgdal-dev_*.deb .)
fi
# Peers that work in several threads get one, as our own code does.
export OPENBLAS_NUM_THREADS=1

cmake --preset bench
cmake --build --preset bench
measure() { # FOLDER PROGRAM [OPTION...]
  local folder=$1 program=$2
  shift 2
  python3 tools/bench_run.py --rows "$rows" --out "$folder" --repetitions "${REPETITIONS:-5}" \
    --min-time "${MIN_TIME:-0.1}" "$@" "$program" || [ $? -eq 3 ]
}
windows=${WINDOWS:-1}
if [ "$windows" = 1 ]; then
  cmake --preset bench-windows
  cmake --build --preset bench-windows
fi
rm -rf "$json"
mkdir -p "$json/windows"
for program in build/bench/bin/*_bench; do
  measure "$json" "$program"
  # The same program of the other target comes next, while the machine is in the same state.
  [ "$windows" = 1 ] || continue
  measure "$json/windows" "build/bench-windows/bin/$(basename "$program").exe" --ours-only --runner cmake/wine-run.sh
done
if ! compgen -G "$json/*.json" >/dev/null; then
  echo "No benchmark matches '$rows'." >&2
  exit 1
fi
shopt -s nullglob
python3 tools/bench_table.py --cache build/bench/CMakeCache.txt --out build/bench/table.tsv "$json"/*.json \
  --windows "$json"/windows/*.json
