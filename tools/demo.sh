#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# Builds the examples with optimisation and runs them on the data of the repository: the data report on earthquakes
# and cities; the map report on Europe from a settings file, with a track, steps taken back and redone, saved, loaded
# again and logged; Mexico alone; a scanned map of Svalbard; the gallery of math text; a voyage across the Pacific;
# names in 15 scripts; the world. Each run prints the path of its report. The last line is that of the world.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset release
cmake --build --preset release --target mapreport georeference datareport mathtext
data=examples/data
out=$PWD/build/demo
mkdir -p "$out"
program=build/release/bin/mapreport

echo "Tables of earthquakes and cities:"
build/release/bin/datareport --input "$data/earthquakes.csv" --x longitude --y latitude --z depth \
  --title "Earthquakes of a week" --out "$out/earthquakes"
build/release/bin/datareport --input "$data/cities-utf16le.csv" --x lon --y lat --title Cities --out "$out/cities"
echo "Europe, with two steps taken back and redone:"
"$program" --config examples/mapreport/europe.ini --undo 2 --save "$out/europe.map" --geojson "$out/europe.json" \
  --log "$out/europe.log" --out "$out/europe"
echo "also $out/europe.map (saved map), europe.json (the continent's outline as GeoJSON), europe.log"
echo "The same from the saved map:"
"$program" --load "$out/europe.map" --out "$out/europe-loaded"
cmp "$out/europe/report.html" "$out/europe-loaded/report.html"
cmp "$out/europe/map.svg" "$out/europe-loaded/map.svg"
echo "Mexico alone:"
"$program" --window=-119,13,-85,34 --clip Mexico --rivers "$data/rivers-50m.txt" --dashes 8,3 --title Mexico \
  --colors "Light Goldenrod Yellow,Tomato" --out "$out/mexico"
echo "A scanned map of Svalbard, by the method that fits best, and points of the image on the map:"
build/release/bin/georeference --points "$data/control-points-svalbard.csv" \
  --warp-points "$data/control-points-svalbard.csv" --title "Svalbard, from 42 control points" --out "$out/georeference"
echo "Every command of math text, and names in many scripts: $out/mathtext/gallery.html"
build/release/bin/mathtext --gallery "$out/mathtext"
echo "A voyage across the Pacific, all text as outlines:"
"$program" --map "$data/countries-50m.txt" --window=120,-50,-110,60 --track "$data/pacific.kml" \
  --title "{\\b Across the Pacific} by \\i sail" --text outlines --csv --out "$out/pacific"
echo "Names in 15 scripts, as outlines:"
"$program" --points "$data/earthquakes.csv" --cities "$data/cities-scripts.csv" --title "Names in {\\i 15} scripts" \
  --text outlines --out "$out/scripts"
echo "The world:"
"$program" --map "$data/countries-50m.txt" --points "$data/earthquakes.csv" --cities "$data/cities-utf16le.csv" \
  --out "$out"
