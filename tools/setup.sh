#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Usage: tools/setup.sh GOAL...
# Sees to it that the Debian packages which a goal needs are installed. GOAL is one of demo, test, bench, builds, fuzz,
# tsan, coverage, docs, package, format or all. With nothing missing the network is not touched. Where packages
# may not be installed, their names are printed in one line and the exit status is 1.
set -euo pipefail

build=(g++ cmake ninja-build libicu-dev libboost1.81-dev libfreetype-dev libfontconfig-dev libharfbuzz-dev
       libfribidi-dev)
examples=(libcli11-dev)
# Letters of the scripts that tests lay out: Latin, Arabic, Hebrew; Devanagari; Chinese, Japanese; Korean; emoji.
fonts=(fonts-dejavu-core fonts-liberation fonts-lohit-deva fonts-droid-fallback fonts-alee fonts-symbola)
windows=(g++-mingw-w64-x86-64-posix)
clang=(clang libclang-rt-14-dev)

packages_of() {
  case $1 in
    demo) echo "${build[@]}" "${examples[@]}" ;;
    test) echo "${build[@]}" "${examples[@]}" "${windows[@]}" wine wine64 googletest clang-format tidy \
               "${fonts[@]}" \
               libeigen3-dev \
               libmpfr-dev \
               python3 pkg-config ;;
    bench) echo "${build[@]}" libbenchmark-dev libcereal-dev libfast-float-dev libfmt-dev \
                libeigen3-dev libexpat1-dev libgdal32 libgeos++-dev libgeos-dev libgmp-dev libgsl-dev libmpfr-dev \
                libnanoflann-dev libopenblas-dev libpango1.0-dev libpolyclipping-dev libpugixml-dev libqd-dev libxml2-dev \
                pkg-config python3 \
                "${windows[@]}" wine wine64 ;;
    fuzz) echo "${build[@]}" "${examples[@]}" "${clang[@]}" libmpfr-dev ;;
    builds) echo "${build[@]}" "${examples[@]}" "${clang[@]}" googletest "${fonts[@]}" python3 ;;
    tsan) echo "${build[@]}" "${examples[@]}" "${clang[@]}" googletest "${fonts[@]}" tidy ;;
    coverage) echo "${build[@]}" "${examples[@]}" googletest "${fonts[@]}" gcovr tidy ;;
    docs) echo doxygen ;;
    package) echo "${build[@]}" "${windows[@]}" dpkg-dev file ;;
    format) echo clang-format ;;
    *) echo "tools/setup.sh: unknown goal '$1'" >&2; return 2 ;;
  esac
}

goals=("$@")
if [ "${goals[*]-}" = all ]; then
  goals=(demo test bench builds fuzz tsan coverage docs package format)
fi
wanted=()
for goal in "${goals[@]}"; do
  names=$(packages_of "$goal")
  read -ra list <<<"$names"
  wanted+=("${list[@]}")
done

if ! command -v dpkg-query >/dev/null; then
  echo "This is not a Debian system. What is needed here is what these packages hold: ${wanted[*]}" >&2
  exit 0
fi

is_installed() { dpkg-query -W -f='${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed; }

missing=()
for package in $(printf '%s\n' "${wanted[@]}" | sort -u); do
  is_installed "$package" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! sudo -n true 2>/dev/null; then
    echo "Missing Debian packages: ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo -n)
fi
echo "Installing: ${missing[*]}"
install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends)
refresh=("${as_root[@]}" apt-get update -q)
# The package lists of a fresh machine are empty; old ones may name versions that are gone.
if ! apt-cache show "${missing[@]}" >/dev/null 2>&1; then
  "${refresh[@]}" </dev/null || true
fi
if ! "${install[@]}" "${missing[@]}" </dev/null && {
     ! "${refresh[@]}" </dev/null || ! "${install[@]}" "${missing[@]}" </dev/null; }; then
  echo "Missing Debian packages: ${missing[*]}" >&2
  exit 1
fi
