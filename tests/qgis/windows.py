"""What holds of the windows and panes that tell and export. As in checks.py, each in a function of its own."""

import os
import subprocess

from PyQt5.QtCore import Qt
from PyQt5.QtTest import QTest
from PyQt5.QtWidgets import (
    QAbstractButton,
    QAction,
    QApplication,
    QComboBox,
    QDialog,
    QFileDialog,
    QLabel,
    QLineEdit,
    QPushButton,
    QTreeWidget,
    QWidget,
)
from qgis.core import QgsProject, QgsRasterLayer
from qgis.utils import iface

from checks import NORTHERN, apply, close_panes, dock, file_in_folder, items_of, named_line, open_pane, result_window
from layers import LANDSCAPE, OVERLAP, add, clear, middle_color, picture_of, quoted, same_share, settle
from person import action, choose, click, expect, find, in_modal_window, picture, wait_for, Watch

ANOTHER_METHOD = "Closest to Viewpoint"


def check_metadata_open_as_a_window_that_locks_the_mosaic():
    layer = add(OVERLAP, "overlap")
    close_panes()
    seen = []

    def look(window):
        tree = find(QTreeWidget, "uiTreeView", window)
        items = wait_for("its tree", lambda: items_of(tree))
        tree.setCurrentItem(items[-1])
        tree.setFocus()
        QTest.keyClick(tree, Qt.Key_Return)
        rasters = wait_for("the three sheets", lambda: find_three(window))
        seen.append(rasters.currentText())
        picture("metadata-window", window)
        click(find(QAbstractButton, "Command7", window))
        wait_for("a lock in the source of the layer", lambda: "LockRaster" in layer.source())
        window.close()

    in_modal_window(action("Metadata").trigger, "Metadata", look)
    expect(seen and seen[0].startswith("sheet_"), f"the window shows {seen}")
    clear()


def find_three(window):
    rasters = window.findChild(QComboBox, "RasterList")
    return rasters if rasters is not None and rasters.count() == 3 else None


def check_a_step_of_the_viewpoint_leaves_edits_to_apply():
    layer = add(OVERLAP, "overlap")
    close_panes()
    properties = open_pane("Properties")
    steering = open_pane("ViewPoint")
    method = find(QComboBox, "MosaicMethod", properties)
    before = method.currentText()
    expect(before != ANOTHER_METHOD, "it has that method already")
    choose(method, ANOTHER_METHOD)
    click(find(QAbstractButton, "MoveLeft", steering))
    wait_for("the step in the source of the layer", lambda: "ViewPointX" in layer.source())
    expect(ANOTHER_METHOD.replace(" ", "%20") not in layer.source(), "the step applied the method as well")
    expect(method.currentText() == ANOTHER_METHOD, "the step took the edit away")
    click(find(QPushButton, "ApplyProperties", properties))
    wait_for("the method in the source of the layer", lambda: ANOTHER_METHOD.replace(" ", "%20") in layer.source())
    close_panes()
    clear()


def check_a_step_is_drawn_though_the_keys_are_elsewhere_meanwhile():
    layer = add(OVERLAP, "overlap")
    close_panes()
    pane = open_pane("ViewPoint")
    place = find(QLineEdit, "uiTxtBoxX", pane)
    click(find(QAbstractButton, "MoveLeft", pane))
    # The page, which they come back to, begins anew.
    iface.mapCanvas().setFocus()
    place.setFocus()
    expect(place.text(), "the page shows no place")
    wait_for("the step in the source of the layer", lambda: "ViewPointX" in layer.source())
    expect(quoted(place.text().split(".")[0]) in layer.source(), f"another place than {place.text()}: {layer.source()[-600:]}")
    close_panes()
    clear()


def check_the_export_pane_keeps_what_was_typed_and_follows_the_properties():
    layer = add(OVERLAP, "overlap")
    close_panes()
    exports = open_export_pane()
    line = wait_for("its file", lambda: named_line(exports))
    file = file_in_folder("followed.Tif")
    type_file(line, file)
    properties = open_pane("Properties")
    properties.raise_()
    choose(find(QComboBox, "MosaicMethod", properties), ANOTHER_METHOD)
    apply(properties)
    wait_for("the middle sheet on top", lambda: middle_color(layer) == NORTHERN)
    exports.raise_()
    settle()
    kept = named_line(exports)
    expect(kept is line and kept.text() == file, "the page was made anew")
    result = Watch("the result", result_window, lambda window: window.close())
    click(find(QPushButton, "Command1", exports))
    wait_for("the result to be seen", lambda: not result.timer.isActive())
    result.finish()
    expect(middle_color(QgsRasterLayer(file, "exported")) == NORTHERN, "the image has other properties")
    close_panes()
    clear()


def check_the_export_pane_writes_an_image_of_the_picked_layer():
    close_panes()
    pane = open_export_pane()
    hint = find(QLabel, "ExportDockHint", pane)
    expect("Pick a layer" in hint.text(), f"the pane tells {hint.text()}")
    add(OVERLAP, "overlap")
    line = wait_for("its file", lambda: named_line(pane))
    extents = find(QComboBox, "MainCombo", pane)
    offered = [extents.itemText(row) for row in range(extents.count())]
    expect("Current map view" in offered, f"{offered}")
    settle()
    picture("export-pane")
    anew = find(QPushButton, "ExportDockAnew", exports_page(pane))
    expect(anew.isVisible() and anew.parentWidget().isAncestorOf(extents), "the map's extent is not offered in the page")
    click(anew)
    line = wait_for("a page with the map's extent", lambda: (named_line(pane) or line) is not line and named_line(pane))
    file = file_in_folder("from-pane.Tif")
    type_file(line, file)
    result = Watch("the result", result_window, lambda window: window.close())
    click(find(QPushButton, "Command1", pane))
    wait_for("the file", lambda: os.path.exists(file))
    wait_for("the result to be seen", lambda: not result.timer.isActive())
    result.finish()
    expect(QgsRasterLayer(file, "exported").isValid(), "nothing was exported")
    # Ready for the next one, and gone with its layer.
    wait_for("a page anew", lambda: (named_line(pane) or line) is not line)
    clear()
    wait_for("the hint", lambda: hint.isVisible() and "Pick a layer" in hint.text())
    close_panes()


def exports_page(pane):
    return find(QWidget, "ExportDialogForm", pane)


def open_export_pane():
    pane = dock("Export")
    pane.toggleViewAction().trigger()
    wait_for("the pane", pane.isVisible)
    return pane


def type_file(line, file):
    line.setFocus()
    line.selectAll()
    QTest.keyClicks(line, file)
    QTest.keyClick(line, Qt.Key_Tab)


def check_a_recording_of_the_plugin_is_done_again_by_vlhost():
    add(OVERLAP, "overlap")
    close_panes()
    file, run = file_in_folder("recorded.Tif"), file_in_folder("recorded.vlrun")
    record = find(QAction, "RecordRun")
    record.trigger()

    def export(window):
        type_file(wait_for("its file", lambda: named_line(window)), file)
        click(find(QPushButton, "Command1", window))

    result = Watch("the result", result_window, lambda window: window.close())
    in_modal_window(action("Export").trigger, "Export Image Properties", export)
    wait_for("the result to be seen", lambda: not result.timer.isActive())
    result.finish()

    def save(window):
        expect(isinstance(window, QFileDialog), f"another window: {window.windowTitle()}")
        name = find(QLineEdit, "fileNameEdit", window)
        name.setText(run)
        QTest.keyClick(name, Qt.Key_Return)

    in_modal_window(record.trigger, "Save the recording", save)
    with open(file, "rb") as written:
        first = written.read()
    os.remove(file)
    played = subprocess.run([os.environ["VLQGIS_VLHOST"], "run", run], capture_output=True, text=True, timeout=120)
    expect(played.returncode == 0, f"{played.stderr} of {open(run, encoding='utf-8').read()}")
    with open(file, "rb") as written:
        expect(written.read() == first, "the run wrote another image")
    clear()


def check_a_connection_is_made_over_qgis():
    def write(window):
        for name, text in (("ConnectionName", "Home maps"), ("ConnectionAddress", "http://127.0.0.1:9/wcs")):
            box = find(QLineEdit, name, window)
            box.setFocus()
            box.selectAll()
            QTest.keyClicks(box, text)
        click(find(QPushButton, "SaveConnection", window))

    def add_one(window):
        editor = Watch("the editor", lambda: other_than(window), write)
        click(find(QPushButton, "AddConnection", window))
        wait_for("the editor to be closed", lambda: not editor.timer.isActive() and other_than(window) is None)
        editor.finish()
        names = find(QTreeWidget, "Connections", window)
        wait_for("it in the list", lambda: names.topLevelItemCount() == 1)
        picture("connections", window)
        window.close()

    in_modal_window(action("Connections").trigger, "Connections", add_one)


def other_than(window):
    found = QApplication.activeModalWidget()
    return found if found is not None and found is not window else None


def check_chosen_colors_are_drawn_and_kept_by_the_project():
    layer = add(LANDSCAPE, "terrain")
    close_panes()
    before, untouched = picture_of(layer), layer.source()
    action("Colors").trigger()
    window = find(QDialog, "ColorsWindow")
    coloring = find(QComboBox, "Coloring", window)
    wait_for("its choices", lambda: coloring.isEnabled() and coloring.count() > 1)
    row = next(row for row in range(coloring.count()) if row != coloring.currentIndex())
    choose(coloring, coloring.itemText(row))
    wait_for("the colors in the source of the layer", lambda: "stretch=" in layer.source())
    settle()
    picture("colors", window)
    picture("colors-map")
    drawn, source = picture_of(layer), layer.source()
    expect(same_share(drawn, before) < 0.5, "the layer looks as before")
    file = file_in_folder("colored.qgs")
    expect(QgsProject.instance().write(file), "the project cannot be written")
    clear()
    expect(QgsProject.instance().read(file), "the project cannot be read")
    layer = next(iter(QgsProject.instance().mapLayers().values()))
    expect(layer.source() == source and same_share(picture_of(layer), drawn) == 1, "it came back in other colors")
    iface.setActiveLayer(layer)
    wait_for("the window following", lambda: coloring.isEnabled() and coloring.currentIndex() == row)
    click(find(QPushButton, "ResetColors", window))
    wait_for("its own colors", lambda: layer.source() == untouched)
    expect(same_share(picture_of(layer), before) == 1, "its own colors are others now")
    window.close()
    clear()
