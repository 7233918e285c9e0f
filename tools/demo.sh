#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Builds the map report with optimisation and runs it on the data of the repository. The last line, which the
# program prints, is the path of the report.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset release
cmake --build --preset release --target mapreport
data=examples/data
build/release/bin/mapreport --map "$data/countries-50m.txt" --points "$data/earthquakes.csv" \
  --cities "$data/cities-utf16le.csv" --out "$PWD/build/demo"
