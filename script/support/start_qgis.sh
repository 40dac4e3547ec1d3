#!/usr/bin/env bash
# Starts QGIS with the plugin of a build, in a profile of its own. Without a display it gets one that nobody sees.
# Usage: start_qgis.sh <folder of the plugin> <folder of the profile> [--hidden] [word of QGIS...]
#   --hidden     never on the display of a person
set -eu
plugin=$1 profile=$2
shift 2
hidden=no
if [ "${1:-}" = --hidden ]; then hidden=yes && shift; fi

# QGIS rewrites its settings at its end. What a person chose stays; where to find the plugin is written anew.
settings=$profile/profiles/default/QGIS/QGIS3.ini
mkdir -p "$(dirname "$settings")"
if [ ! -e "$settings" ]; then
  printf '%s\n' '[plugins]' "searchPathsForPlugins=$plugin" '' '[Plugins]' 'libprovider_vlclientui=true' '' \
    '[PythonPlugins]' 'processing=true' '' '[app]' 'checkVersion=false' '' '[qgis]' 'checkVersion=false' \
    'showTips=false' 'newProjectDefault=false' >"$settings"
fi
told="searchPathsForPlugins=$plugin"
if grep -q '^searchPathsForPlugins=' "$settings"; then
  # As it stands, whatever letters are in it.
  told=$told awk '/^searchPathsForPlugins=/ { $0 = ENVIRON["told"] } { print }' "$settings" >"$settings.new"
else
  { printf '[plugins]\n%s\n\n' "$told" && cat "$settings"; } >"$settings.new"
fi
mv "$settings.new" "$settings"

# The module of QGIS is that of the system's Python.
export PATH=/usr/bin:$PATH
words=(--nologo --noversioncheck --profiles-path "$profile" "$@")
if [ "$hidden" = no ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then exec qgis "${words[@]}"; fi

# Offscreen, QGIS ends itself at its clipboard; a display in memory has none of that.
command -v Xvfb >/dev/null || {
  echo "error: there is no display, and Xvfb (package xvfb) is missing" >&2
  exit 1
}
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
exec 3< <(exec Xvfb -displayfd 1 -screen 0 1600x1000x24 -nolisten tcp 2>/dev/null)
server=$!
trap 'kill "$server" 2>/dev/null || true' EXIT
trap 'exit 1' TERM INT
read -r -u 3 number || {
  echo "error: Xvfb did not start" >&2
  exit 1
}
DISPLAY=:$number qgis "${words[@]}" 3<&-
