#!/usr/bin/env bash
# The steps of package_cycle.sh, inside the minimal system. Each prints one line; the first that fails ends all.
set -euo pipefail

ours="vlclientui|vlviewer|vlhost"
export DEBIAN_FRONTEND=noninteractive

# step <words> <command>...: what the command says is shown where it fails.
step() {
  local what=$1 begin=$SECONDS outcome
  shift
  # Not behind "||": there, bash goes on after a command of the step that fails.
  set +e
  (
    set -e
    "$@"
  ) >/tmp/step.log 2>&1
  outcome=$?
  set -e
  if [ "$outcome" != 0 ]; then
    tail -n 40 /tmp/step.log
    echo "failed  $what"
    exit 1
  fi
  echo "ok  $what ($((SECONDS - begin)) s)"
}

as_person() { su --login person --command "export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen; set -e; $*"; }

# Files of ours that are there, outside of what this cycle brought along.
files_of_ours() {
  find / -xdev \( -path /proc -o -path /tree -o -path /packages -o -path /home -o -path /tmp \) -prune -o -print |
    grep -Ei "/[^/]*($ours)[^/]*$" | sort || true
}

nothing_of_ours() {
  local left
  left=$(files_of_ours; dpkg-query -W -f '${Package} ${db:Status-Abbrev}\n' | grep -Ei "$ours" || true)
  [ -z "$left" ] || { echo "left: $left" && return 1; }
}

install_all() { apt-get update && apt-get install -y --no-install-recommends /packages/*.deb; }
install_for_trials() {
  apt-get install -y --no-install-recommends xvfb xauth g++ cmake make pkg-config qt6-base-dev python3-gdal desktop-file-utils \
    shared-mime-info libglib2.0-bin
}

tour() {
  as_person "vlviewer --tour ~/tour && ls ~/tour"
  [ "$(find /home/person/tour -name '*.png' | wc -l)" -ge 10 ]
}

command_line() {
  as_person "vlhost --version && vlhost services | grep EGM96_Geoid &&
    vlhost export ImageService://127.0.0.1/World/EGM96_Geoid -o ~/geoid.tif"
  find /home/person -maxdepth 1 -iname 'geoid.tif' -size +1k | grep -q .
}

# The first recipe of the page, as it stands there.
recipe() {
  sed -n '/^```python$/,/^```$/p' /tree/docs/python.md | sed '1d;/^```$/,$d' >/tmp/recipe.py
  as_person "python3 /tmp/recipe.py | grep EGM96_Geoid"
}

python() { as_person "python3 /usr/share/doc/libvlclientui-dev/examples/python/host.py ~ && test -s ~/alps.Tif"; }

# By CMake as the examples say, and one by pkg-config.
examples() {
  local from=/usr/share/doc/libvlclientui-dev/examples
  as_person "cmake -S $from -B ~/examples && cmake --build ~/examples &&
    ~/examples/example_host ImageService://127.0.0.1/Imagery/Overlap_Study ~/host.png | grep MosaicMethod &&
    ~/examples/example_client ~/client.png && test -s ~/host.png && test -s ~/client.png &&
    g++ -std=c++20 -fPIC $from/client/main.cpp -o ~/by-hand \$(pkg-config --cflags --libs vlclientui-host Qt6Widgets) &&
    ~/by-hand ~/by-hand.png && test -s ~/by-hand.png"
}

# The checks of the plugin that want nothing but the plugin, against what the packages brought.
in_qgis() {
  local build=/home/person/installed
  mkdir -p "$build/apps/vlhost" /home/person/pictures
  ln -sfn /usr/lib/qgis/plugins "$build/apps/qgis"
  ln -sfn /usr/share/vlclientui/samples "$build/samples"
  ln -sf /usr/bin/vlhost "$build/apps/vlhost/vlhost"
  chown -R person: /home/person
  as_person "VLCLIENTUI_HOME= VLQGIS_ONLY='$qgis_checks' bash /tree/tests/qgis/run_checks.sh /tree $build ~/qgis ~/pictures"
  cat /home/person/qgis/results.txt
  if grep "^failed " /home/person/qgis/results.txt; then return 1; fi
  [ "$(grep -c '^passed ' /home/person/qgis/results.txt)" -eq "$(wc -w <<<"$qgis_checks")" ]
}
qgis_checks="the_plugin_adds_a_menu_a_tool_bar_and_the_provider picked_services_become_layers
  applied_properties_are_drawn_and_kept a_step_of_the_viewpoint_is_drawn
  the_metadata_are_those_of_the_image_on_the_map a_lock_of_the_metadata_page_is_drawn
  the_windows_of_properties_and_viewpoint_open_over_qgis identify_tells_values_and_source_rasters
  metadata_open_as_a_window_that_locks_the_mosaic the_export_pane_writes_an_image_of_the_picked_layer"

desktop_knows_it() {
  desktop-file-validate /usr/share/applications/org.vlclientui.Viewer.desktop
  test -s /usr/share/icons/hicolor/256x256/apps/vlviewer.png
  # By the desktop's own database: what a file is, and which program opens it.
  as_person "echo '<x/>' > ~/one.VLRef
    gio info --attributes=standard::content-type ~/one.VLRef | grep application/x-vlclientui-reference+xml
    gio mime application/x-vlclientui-reference+xml | grep org.vlclientui.Viewer.desktop"
}

purge() {
  apt-get purge -y libvlclientui0 libvlclientui-dev vlclientui vlclientui-data python3-vlclientui vlclientui-qgis
}

useradd --create-home person
step "nothing of it is there" nothing_of_ours
step "the packages are installed by apt" install_all
step "the desktop's files are in their places" test -e /usr/share/applications/org.vlclientui.Viewer.desktop
step "what the trials want is installed" install_for_trials
step "the desktop reads them" desktop_knows_it
step "the viewer takes its tour" tour
step "vlhost lists and exports" command_line
step "the example in Python runs" python
step "a recipe of the page about Python runs" recipe
step "the examples in C++ are built and run" examples
step "QGIS takes its tour of the plugin" in_qgis
step "the packages are purged" purge
step "nothing is left" nothing_of_ours
