"""What holds of an installed plugin that comes and goes. As in checks.py, each in a function of its own; the last one
leaves its layer in the project."""

import os

from PyQt5.QtCore import Qt
from PyQt5.QtWidgets import QAction, QDockWidget, QListView, QToolBar
from qgis.utils import iface

from layers import LANDSCAPE, add, picture_of, same_share
from person import action, expect, find, in_modal_window, wait_for

PREFIX = os.environ["VLQGIS_PREFIX"]


def check_the_installed_plugin_is_loaded_with_its_libraries():
    with open("/proc/self/maps", encoding="utf-8") as maps:
        files = {line.split()[-1] for line in maps if "VLClientUI" in line or "vlclientui" in line}
    libraries = {file for file in files if ".so" in file}
    expect(any("provider_vlclientui" in file for file in libraries), f"the plugin is not there: {libraries}")
    expect(all(file.startswith(PREFIX) for file in libraries), f"others are loaded: {libraries}")
    expect(action("AddServices").isEnabled(), "it has no commands")


def turn(state):
    """By the list of plugins, as a person ticks it there."""

    def tick(window):
        rows = find(QListView, "vwPlugins", window).model()
        names = [rows.index(row, 0).data() for row in range(rows.rowCount())]
        row = next((row for row, name in enumerate(names) if "Image services" in str(name)), None)
        expect(row is not None, f"the list has no such plugin: {names}")
        rows.setData(rows.index(row, 0), state, Qt.CheckStateRole)
        window.close()

    in_modal_window(lambda: iface.pluginManagerInterface().showPluginManager(1), None, tick)


def seen():
    window = iface.mainWindow()
    kinds = [window.findChildren(QAction), window.findChildren(QToolBar), window.findChildren(QDockWidget)]
    return [child.objectName() for children in kinds for child in children if child.objectName().startswith("VLClientUI")]


def check_turned_off_and_on_it_is_there_once_and_layers_stay():
    layer = add(LANDSCAPE, "terrain")
    before, drawn = seen(), picture_of(layer)
    turn(Qt.Unchecked)
    wait_for("its windows gone", lambda: not seen())
    expect(layer.isValid() and same_share(picture_of(layer), drawn) == 1, "the layer is drawn otherwise without it")
    turn(Qt.Checked)
    expect(sorted(seen()) == sorted(before), f"{sorted(seen())} in place of {sorted(before)}")
    wait_for("the service open", lambda: action("Properties").isEnabled())
    expect(same_share(picture_of(layer), drawn) == 1, "the layer is drawn otherwise with it")
