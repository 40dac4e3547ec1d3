"""What holds where something has gone. As in checks.py, each in a function of its own."""

import glob
import os
import shutil

from PyQt5.QtWidgets import QComboBox
from qgis.core import Qgis, QgsApplication, QgsProject, QgsRasterLayer
from qgis.utils import iface

from checks import apply, close_panes, file_in_folder, open_pane
from layers import KEY, OVERLAP, SERVER, add, clear, layer_of, picture_of, quoted, same_share, settle
from person import choose, expect, find, wait_for


def check_a_service_that_is_gone_is_an_invalid_layer_with_its_reason():
    layer = QgsRasterLayer("reference=" + quoted(SERVER + "No/Such_Service"), "gone", KEY)
    expect(not layer.isValid(), "it is valid")
    expect("No/Such_Service" in layer.error().message(), f"the reason is told as {layer.error().message()}")


def copy_of_the_sheets(name):
    folder = file_in_folder(name)
    shutil.copytree(os.path.dirname(OVERLAP), folder)
    return folder, os.path.join(folder, os.path.basename(OVERLAP))


def check_a_raster_that_has_gone_is_told_by_map_and_log():
    folder, definition = copy_of_the_sheets("sheets-gone")
    layer = layer_of(definition)
    gone = glob.glob(os.path.join(folder, "**", "sheet_blue*"), recursive=True)
    expect(gone, "there is no such sheet")
    for file in gone:
        os.remove(file)
    logged, errors = [], []
    keep = lambda text, tag, level: logged.append((tag, text))  # noqa: E731  to be parted from the log again
    QgsApplication.messageLog().messageReceived[str, str, Qgis.MessageLevel].connect(keep)
    try:
        picture = picture_of(layer, errors=errors)
        picture_of(layer, errors=[])
        wait_for("a line of the log", lambda: any(tag == "Image services" for tag, _ in logged))
    finally:
        QgsApplication.messageLog().messageReceived[str, str, Qgis.MessageLevel].disconnect(keep)
    expect(picture.pixelColor(200, 150).alpha() == 255, "the other sheets are not drawn")
    expect(len(set(errors)) == 1 and "sheet_blue" in errors[0], f"the map tells {errors}")
    told = [text for tag, text in logged if tag == "Image services"]
    expect(len(told) == 1 and "sheet_blue" in told[0], f"the log tells {told}")


def check_a_project_that_moves_with_its_rasters_finds_them():
    folder, definition = copy_of_the_sheets("sheets-before")
    layer = add(definition, "moved")
    drawn = picture_of(layer)
    expect(QgsProject.instance().write(os.path.join(folder, "project.qgs")), "the project cannot be written")
    clear()
    after = file_in_folder("sheets-after")
    os.rename(folder, after)
    expect(QgsProject.instance().read(os.path.join(after, "project.qgs")), "the project cannot be read")
    layer = next(iter(QgsProject.instance().mapLayers().values()))
    expect(layer.isValid() and "sheets-after" in layer.source(), f"the layer is {layer.source()}")
    expect(same_share(picture_of(layer), drawn) == 1, "it looks different")
    clear()


def check_properties_that_cannot_be_applied_leave_the_layer_as_it_was():
    folder, definition = copy_of_the_sheets("sheets-applied")
    layer = add(definition, "kept")
    before = layer.source()
    close_panes()
    pane = open_pane("Properties")
    os.rename(definition, definition + ".away")
    choose(find(QComboBox, "MosaicMethod", pane), "Closest to Viewpoint")
    apply(pane)
    settle()
    expect(layer.source() == before, f"the layer shows {layer.source()[:200]}")
    texts = [item.text() for item in iface.messageBar().items()]
    expect(any("Overlap_Study" in text for text in texts), f"the bar tells {texts}")
    os.rename(definition + ".away", definition)
    close_panes()
    iface.messageBar().clearWidgets()
    clear()
