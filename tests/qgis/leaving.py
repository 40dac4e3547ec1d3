"""What holds of an installed plugin that comes and goes. As in checks.py, each in a function of its own; the last one
leaves its layer in the project."""

import os
import shutil

from PyQt5.QtCore import Qt
from PyQt5.QtTest import QTest
from PyQt5.QtWidgets import QAction, QApplication, QDockWidget, QLineEdit, QListView, QToolBar
from qgis.core import QgsProject
from qgis.utils import iface

from layers import LANDSCAPE, OVERLAP, add, clear, picture_of, same_share
from person import action, expect, find, in_modal_window, wait_for, Watch

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


def check_relative_paths_need_no_plugin_that_is_turned_on():
    before, after = (os.path.join(os.environ["VLQGIS_FOLDER"], name) for name in ("sheets", "moved"))
    shutil.copytree(os.path.dirname(OVERLAP), before)
    layer = add(os.path.join(before, os.path.basename(OVERLAP)), "sheets")
    drawn = picture_of(layer)
    turn(Qt.Unchecked)
    expect(QgsProject.instance().write(os.path.join(before, "project.qgs")), "the project cannot be written")
    clear()
    os.rename(before, after)
    expect(QgsProject.instance().read(os.path.join(after, "project.qgs")), "the project cannot be read")
    layer = next(iter(QgsProject.instance().mapLayers().values()))
    expect(layer.isValid() and after in layer.source(), f"the layer is {layer.source()[:200]}")
    expect(same_share(picture_of(layer), drawn) == 1, "it looks different")
    turn(Qt.Checked)
    clear()


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


def record():
    return find(QAction, "RecordRun")


def dialog_named(name):
    window = QApplication.activeModalWidget()
    return window if window is not None and window.objectName() == name and window.isVisible() else None


def check_a_window_that_closes_asks_for_the_recording():
    add(LANDSCAPE, "terrain")
    record().trigger()
    in_modal_window(action("Properties").trigger, None, lambda window: window.close())
    saving = Watch("where to save it", lambda: dialog_named("SaveRunDialog"), lambda window: window.reject())
    asked = Watch("whether to drop it", lambda: dialog_named("DropRunQuestion"), lambda window: window.reject())
    iface.mainWindow().close()
    saving.finish()
    asked.finish()
    expect(iface.mainWindow().isVisible() and "End" in record().text(), "the recording has ended")


def save_recording_at_the_end():
    """QGIS's menu has no way back: the recording is asked for all the same."""

    def save(window):
        name = find(QLineEdit, "fileNameEdit", window)
        name.setText(os.path.join(os.environ["VLQGIS_FOLDER"], "at-the-end.vlrun"))
        QTest.keyClick(name, Qt.Key_Return)

    return Watch("where to save it", lambda: dialog_named("SaveRunDialog"), save)
