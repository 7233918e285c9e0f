#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Prints the paths of all C++ sources of the project, each ended by a zero byte. Data folders hold no code.
set -euo pipefail
cd "$(dirname "$0")/.."
find shared tests bench fuzz examples tools \
  \( -path tests/data -o -path examples/data -o -path fuzz/corpus \) -prune -o \
  -type f \( -name '*.h' -o -name '*.cpp' \) -print0 | sort -z
