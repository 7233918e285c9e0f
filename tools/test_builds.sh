#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Usage: tools/test_builds.sh [REGEX]
# Builds the tree as others do, without a preset, in each cell of a matrix: compiler, language, build type, kind of
# library. A cell configures, builds the library and the examples, runs two of them, installs, and compiles a program
# against the installed library. The cell "everything" is the plain release with all of its tests. REGEX chooses cells
# by name, such as clang++-23-Release-static; --list prints the names. Prints a line a cell; exits with 1 if one fails.
set -uo pipefail
cd "$(dirname "$0")/.." || exit
out=$PWD/build/builds
mkdir -p "$out"

cells() {
  echo everything
  for compiler in g++ clang++; do
    for language in 20 23; do
      for type in Release Debug RelWithDebInfo; do
        for kind in shared static; do
          echo "$compiler-$language-$type-$kind"
        done
      done
    done
  done
}

# build_cell NAME: runs in a shell of its own, with its output in a file.
build_cell() {
  local folder=$out/$1 compiler language type kind
  rm -rf "$folder"
  if [ "$1" = everything ]; then
    cmake -G Ninja -B "$folder" -DCMAKE_BUILD_TYPE=Release && ninja -C "$folder" && ctest --test-dir "$folder" -R 'text\.'
    return
  fi
  IFS=- read -r compiler language type kind <<<"$1"
  local options=(-G Ninja "-DCMAKE_CXX_COMPILER=$compiler" "-DCMAKE_BUILD_TYPE=$type" "-DCMAKE_CXX_STANDARD=$language")
  local shared=OFF
  [ "$kind" = shared ] && shared=ON
  cmake -B "$folder" "${options[@]}" "-DBUILD_SHARED_LIBS=$shared" -DSHARED_BUILD_TESTS=OFF || return
  ninja -C "$folder" || return
  "$folder/bin/hello" || return
  "$folder/bin/mapreport" --version || return
  cmake --install "$folder" --prefix "$folder/prefix" || return
  cmake -S tests/consumers/find_package -B "$folder/consumer" "${options[@]}" "-DCMAKE_PREFIX_PATH=$folder/prefix" || return
  cmake --build "$folder/consumer" && "$folder/consumer/consumer"
}

if [ "${1-}" = --list ]; then
  cells
  exit
fi
failed=0
pattern=${1:-.}
chosen=$(cells | grep -E -- "${pattern//+/\\+}") || { # the + of a compiler's name is no operator
  echo "no cell is named like '$pattern'; --list prints the names" >&2
  exit 1
}
for cell in $chosen; do
  start=$SECONDS
  if build_cell "$cell" >"$out/$cell.log" 2>&1; then
    result=good
    rm -rf "${out:?}/$cell"
  else
    result="FAILED, see $out/$cell.log"
    failed=1
  fi
  warnings=$(grep -c 'warning:' "$out/$cell.log")
  echo "$cell: $result, $warnings warnings, $((SECONDS - start)) s"
done
exit $failed
