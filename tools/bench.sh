#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Usage: tools/bench.sh [REGEX]
# Builds the benchmarks with optimisation, runs those whose name matches and prints ours beside the fastest peer.
# The table is also written to build/bench/table.tsv, the raw figures to build/bench/json/.
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

cmake --preset bench
cmake --build --preset bench
rm -rf "$json"
mkdir -p "$json"
for program in build/bench/bin/*_bench; do
  "$program" --benchmark_list_tests --benchmark_filter="$rows" 2>/dev/null | grep -q . || continue
  echo "Running $program"
  name=$json/$(basename "$program")
  # Several repetitions in mixed order, of which the table takes the median: what disturbs the machine for a while
  # then hits all contenders alike.
  if ! "$program" --benchmark_filter="$rows" --benchmark_repetitions="${REPETITIONS:-5}" \
      --benchmark_min_time="${MIN_TIME:-0.1}" --benchmark_enable_random_interleaving=true \
      --benchmark_out="$name.json" --benchmark_out_format=json >"$name.log" 2>&1; then
    tail -n 20 "$name.log" >&2
    exit 1
  fi
done
if ! compgen -G "$json/*.json" >/dev/null; then
  echo "No benchmark matches '$rows'." >&2
  exit 1
fi
python3 tools/bench_table.py --cache build/bench/CMakeCache.txt --out build/bench/table.tsv "$json"/*.json
