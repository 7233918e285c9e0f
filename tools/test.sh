#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Builds and runs both test suites: Linux under the address and undefined-behaviour sanitizers together with the
# checks of the tree, then Windows under Wine. A failure of one does not keep the other from running. The output
# closes with ctest's summaries of both; the exit status is 0 only if everything passed.
set -uo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
summaries=build/test-summaries.txt
mkdir -p build
: >"$summaries"
failed=0

note() {
  echo "$1" >>"$summaries"
  failed=1
}

run_suite() {
  local preset=$1
  local log=build/$preset/test.log
  echo "== $preset" >>"$summaries"
  cmake --preset "$preset" || { note "cmake could not configure $preset"; return; }
  # Whatever builds is tested, also beside something that does not build.
  cmake --build --preset "$preset" -j "$jobs" -- -k 0 || note "$preset did not build completely"
  ctest --preset "$preset" -j "$jobs" --no-tests=error 2>&1 | tee "$log"
  [ "${PIPESTATUS[0]}" -eq 0 ] || failed=1
  sed -n '/% tests passed/,$p' "$log" | grep -v '^$' >>"$summaries"
}

# Setting up a Windows takes as long as many tests; nothing of it is part of a test.
cmake/wine-run.sh || note "Wine could not be made ready"

run_suite linux-asan
run_suite windows

echo
cat "$summaries"
exit "$failed"
