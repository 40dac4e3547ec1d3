#!/usr/bin/env bash
# Runs layers_beside_qgis.py in a QGIS of its own, on a display that nobody sees.
# Usage: layers_beside_qgis.sh <build folder> <raster or definition> <QGIS's own raster of the same> [...]
set -eu
build=$(realpath "$1")
shift
source=$(realpath "$(dirname "$0")/..")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export VLCLIENTUI_HOME=$source VLQGIS_SCRIPTS=$source/benchmarks VLQGIS_OUT=$folder/figures.txt VLQGIS_RASTERS
VLQGIS_RASTERS=$(realpath "$@")
"$source/script/support/start_qgis.sh" "$build/apps/qgis" "$folder/profile" --hidden \
  --code "$source/benchmarks/layers_beside_qgis.py" >"$folder/log" 2>&1 || true
cat "$folder/figures.txt"
[ -s "$folder/figures.txt" ] || cat "$folder/log" >&2
