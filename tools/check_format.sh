#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Fails when a source is not laid out as clang-format would do it; `make format` mends it.
set -euo pipefail
tools=$(dirname "$0")
cd "$tools/.."
tools/list_sources.sh | xargs -0 clang-format --dry-run -Werror
