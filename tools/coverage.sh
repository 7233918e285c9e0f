#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Runs the tests of an instrumented build and prints how much of shared/ they reach. Branches that only an
# exception of a called function takes do not count.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset coverage
cmake --build --preset coverage
# Figures of an earlier run would be added up.
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)"
mkdir -p build/coverage/report
gcovr --root . --filter 'shared/' --object-directory build/coverage --exclude-throw-branches \
  --exclude-unreachable-branches --html-details build/coverage/report/index.html --txt --print-summary
echo "$PWD/build/coverage/report/index.html"
