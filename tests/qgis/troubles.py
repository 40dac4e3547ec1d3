"""What holds where something has gone. As in checks.py, each in a function of its own."""

import glob
import os
import shutil

from PyQt5.QtWidgets import QComboBox, QPushButton
from qgis.core import (
    Qgis,
    QgsApplication,
    QgsLayerDefinition,
    QgsProject,
    QgsProviderRegistry,
    QgsRasterLayer,
)
from qgis.utils import iface

from checks import apply, close_panes, file_in_folder, open_pane
from layers import KEY, OVERLAP, SERVER, add, clear, layer_of, picture_of, quoted, same_share, settle
from person import choose, click, expect, find, wait_for


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


def check_a_layer_definition_beside_its_rasters_is_read_from_any_project():
    folder, definition = copy_of_the_sheets("sheets-defined")
    layer = add(definition, "defined")
    drawn = picture_of(layer)
    expect(QgsProject.instance().write(file_in_folder("defining.qgs")), "the project cannot be written")
    os.mkdir(os.path.join(folder, "layers"))
    node = QgsProject.instance().layerTreeRoot().findLayer(layer.id())
    written, problem = QgsLayerDefinition.exportLayerDefinition(os.path.join(folder, "layers", "defined.qlr"), [node])
    expect(written, problem)
    clear()
    after = file_in_folder("sheets-defined-after")
    os.rename(folder, after)
    project = QgsProject.instance()
    read, problem = QgsLayerDefinition.loadLayerDefinition(
        os.path.join(after, "layers", "defined.qlr"), project, project.layerTreeRoot()
    )
    expect(read, problem)
    layer = next(iter(project.mapLayers().values()))
    expect(layer.isValid() and "sheets-defined-after" in layer.source(), f"the layer is {layer.source()[:200]}")
    expect(same_share(picture_of(layer), drawn) == 1, "it looks different")
    clear()


def check_a_layer_embedded_from_another_project_is_found_beside_that():
    folder, definition = copy_of_the_sheets("sheets-embedded")
    layer = add(definition, "embedded")
    identity, file = layer.id(), os.path.join(folder, "inner.qgs")
    expect(QgsProject.instance().write(file), "the project cannot be written")
    clear()
    after = file_in_folder("sheets-embedded-after")
    os.rename(folder, after)
    outer = file_in_folder("outer.qgs")
    with open(os.path.join(after, "inner.qgs"), encoding="utf-8") as kept:
        project = kept.read()
    # As QGIS writes it.
    begin, end = project.index("<projectlayers>"), project.index("</projectlayers>")
    embedded = f'<maplayer embedded="1" project="{os.path.join(after, "inner.qgs")}" id="{identity}"/>'
    with open(outer, "w", encoding="utf-8") as into:
        into.write(project[: begin + len("<projectlayers>")] + embedded + project[end:])
    expect(QgsProject.instance().read(outer), "the outer project cannot be read")
    layer = QgsProject.instance().mapLayer(identity)
    expect(layer is not None and layer.isValid(), "the embedded layer is not there")
    expect("sheets-embedded-after" in layer.source(), f"the layer is {layer.source()[:200]}")
    clear()


def check_a_missing_file_can_be_replaced_by_qgis():
    registry = QgsProviderRegistry.instance()
    parts = registry.decodeUri(KEY, layer_of(OVERLAP, "values", "&content=values").source())
    expect(parts["path"] == OVERLAP and parts["content"] == "values", f"{parts}")
    parts["path"] = "/elsewhere/Sheets 100%.VLDef"
    found = registry.decodeUri(KEY, registry.encodeUri(KEY, parts))
    expect(found["reference"] == parts["path"] and found["content"] == "values", f"{found}")
    told = registry.decodeUri(KEY, registry.encodeUri(KEY, {"reference": SERVER + "World"}))
    expect("path" not in told and told["reference"] == SERVER + "World", f"{told}")


def check_properties_that_cannot_be_applied_leave_the_layer_as_it_was():
    folder, definition = copy_of_the_sheets("sheets-applied")
    layer = add(definition, "kept")
    before = layer.source()
    close_panes()
    pane = open_pane("Properties")
    os.rename(definition, definition + ".away")
    method = find(QComboBox, "MosaicMethod", pane)
    former = method.currentText()
    choose(method, "Closest to Viewpoint")
    apply(pane)
    settle()
    expect(method.currentText() == "Closest to Viewpoint", "the edit is lost")
    click(find(QPushButton, "RevertProperties", pane))
    wait_for("what the layer has", lambda: method.currentText() == former)
    expect(layer.source() == before, f"the layer shows {layer.source()[:200]}")
    texts = [item.text() for item in iface.messageBar().items()]
    expect(any("Overlap_Study" in text for text in texts), f"the bar tells {texts}")
    os.rename(definition + ".away", definition)
    close_panes()
    iface.messageBar().clearWidgets()
    clear()
