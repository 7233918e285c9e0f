#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Usage: tools/fuzz.sh SECONDS [NAME]
# Builds the fuzz targets and runs each (or the one named) for that many seconds, as many at a time as there are
# processors. What was learned stays in build/fuzz/corpus and is the start of the next run, together with the
# seeds of fuzz/corpus. Inputs that break a target are kept in build/fuzz/findings; the exit status is then 1.
set -euo pipefail
cd "$(dirname "$0")/.."
export seconds=$1
only=${2-}

mapfile -t targets < <(sed -nE 's/^ *shared_fuzz\((\w+)\).*/\1/p' fuzz/CMakeLists.txt)
if [ -n "$only" ]; then
  if ! printf '%s\n' "${targets[@]}" | grep -qx "$only"; then
    echo "There is no fuzz target '$only'. There are: ${targets[*]}" >&2
    exit 2
  fi
  targets=("$only")
fi

cmake --preset fuzz
cmake --build --preset fuzz --target "${targets[@]}"

fuzz_one() {
  local name=$1 log=build/fuzz/logs/$1.log findings=build/fuzz/findings/$1 dictionary=()
  mkdir -p build/fuzz/logs "build/fuzz/corpus/$name" "$findings"
  [ ! -f "fuzz/$name.dict" ] || dictionary=("-dict=fuzz/$name.dict")
  local status=0
  "build/fuzz/bin/$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$findings/" "${dictionary[@]}" \
    "build/fuzz/corpus/$name" "fuzz/corpus/$name" >"$log" 2>&1 || status=$?
  local runs
  runs=$(sed -nE 's/^stat::number_of_executed_units: *//p' "$log")
  if [ "$status" -eq 0 ]; then
    printf '%-32s %12s executions, no finding\n' "$name" "${runs:-?}"
  else
    printf '%-32s %12s executions, FINDING: see %s and %s\n' "$name" "${runs:-?}" "$log" "$findings/"
    return 1
  fi
}
export -f fuzz_one

status=0
printf '%s\0' "${targets[@]}" |
  xargs -0 -n 1 -P "$(nproc)" bash -c 'fuzz_one "$1"' fuzz_one | tee build/fuzz/summary.txt || status=1
awk '{ sum += $2 } END { printf "%-32s %12d executions in all\n", NR " targets", sum }' build/fuzz/summary.txt
exit "$status"
