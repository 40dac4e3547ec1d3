#!/usr/bin/env bash
# Installs the plugin, runs QGIS with it until its window is closed, and takes it away again. Leaves results.txt in the folder.
# Usage: run_leaving.sh <root of the sources> <build folder> <new folder>
set -eu
source=$1 build=$2 folder=$3
rm -rf "$folder"
mkdir -p "$folder/home" "$folder/prefix"
folder=$(realpath "$folder") prefix=$folder/prefix
for component in libraries qgis data; do
  cmake --install "$build" --prefix "$prefix" --component "$component" >>"$folder/install.log"
  cat "$build/install_manifest_$component.txt" >>"$folder/installed.txt"
  echo >>"$folder/installed.txt"
done
export HOME=$folder/home PYTHONDONTWRITEBYTECODE=1
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME VLCLIENTUI_CATALOGUE VLCLIENTUI_HOME
export VLQGIS_FOLDER=$folder VLQGIS_SCRIPTS=$source/tests/qgis VLQGIS_PREFIX=$prefix
export VLQGIS_CATALOGUE=$prefix/share/vlclientui/samples/catalogue
code=0
timeout "${VLQGIS_LIMIT:-300}" "$source/script/support/start_qgis.sh" "$prefix/lib/qgis/plugins" "$folder/profile" --hidden \
  --code "$source/tests/qgis/run_leaving.py" >"$folder/qgis.log" 2>&1 || code=$?
if [ "$code" != 0 ] || ! grep -qx ended "$folder/results.txt" || grep -qE 'Fatal|Segmentation|Aborted' "$folder/qgis.log"; then
  tail -40 "$folder/qgis.log" >&2
  cat "$folder/results.txt" >&2 || true
  echo "QGIS did not end well: $code" >&2
  exit 1
fi
grep -q . "$folder/at-the-end.vlrun" || {
  echo "the recording went with QGIS" >&2
  exit 1
}
# Nothing but what was installed stands there, QGIS wrote nothing beside it.
while IFS= read -r file; do [ -z "$file" ] || rm "$file"; done <"$folder/installed.txt"
left=$(find "$prefix" -type f -o -type l)
[ -z "$left" ] || {
  echo "left behind: $left" >&2
  exit 1
}
