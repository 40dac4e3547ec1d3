#!/usr/bin/env bash
# Runs the checks in one QGIS of their own, on a display that nobody sees. Leaves results.txt in the folder.
# Usage: run_checks.sh <root of the sources> <build folder> <new folder> [<folder for pictures>]
set -eu
source=$1 build=$2 folder=$3 pictures=${4:-}
rm -rf "$folder"
mkdir -p "$folder/home"
export HOME=$folder/home
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME VLCLIENTUI_CATALOGUE
export VLCLIENTUI_HOME=${VLCLIENTUI_HOME-$source} VLQGIS_FOLDER=$folder VLQGIS_PICTURES=$pictures
export VLQGIS_SCRIPTS=$source/tests/qgis VLQGIS_CATALOGUE=$build/samples/catalogue
export VLQGIS_VIEWER=$build/tests/qgis/vl_viewer_picture VLQGIS_VLHOST=$build/apps/vlhost/vlhost PYTHONDONTWRITEBYTECODE=1
timeout ${VLQGIS_LIMIT:-400} "$source/script/support/start_qgis.sh" "$build/apps/qgis" "$folder/profile" --hidden \
  --code "$source/tests/qgis/run_checks.py" >"$folder/qgis.log" 2>&1 || echo "QGIS ended with $?" >>"$folder/qgis.log"
grep -qx ended "$folder/results.txt" || {
  tail -40 "$folder/qgis.log" >&2
  cat "$folder/results.txt" >&2 || true
  echo "QGIS ended before its checks did" >&2
  exit 1
}
