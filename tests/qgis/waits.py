"""What holds where a server is silent: QGIS's window lives on, and a person can give up. As in checks.py, each in a
function of its own."""

import os

from PyQt5.QtCore import QSize, QTimer
from osgeo import gdal, osr
from PyQt5.QtWidgets import QApplication, QComboBox, QLabel, QPushButton
from qgis.core import (
    QgsMapRendererParallelJob,
    QgsMapSettings,
    QgsProject,
    QgsRaster,
    QgsRasterLayer,
)
from qgis.utils import iface

from checks import apply, close_panes, file_in_folder, open_pane
from layers import KEY, LANDSCAPE, OVERLAP, add, clear, layer_of, quoted
from person import choose, click, expect, find, picture, wait_for, Watch
from silent import FallingSilent

LARGE = "Large.tif"  # more than is read to open it


def server_of_a_large_raster():
    folder = file_in_folder("served")
    if not os.path.isdir(folder):
        os.mkdir(folder)
        options = ["TILED=YES"]
        raster = gdal.GetDriverByName("GTiff").Create(os.path.join(folder, LARGE), 3000, 3000, 1, gdal.GDT_UInt16, options)
        system = osr.SpatialReference()
        system.ImportFromEPSG(32632)
        raster.SetProjection(system.ExportToWkt())
        raster.SetGeoTransform([400000, 10, 0, 5200000, 0, -10])
        raster.GetRasterBand(1).Fill(1234)
    return FallingSilent(folder)


class Beats:
    """Counts how often QGIS's window lives."""

    def __init__(self):
        self.count = 0
        self.timer = QTimer()
        self.timer.timeout.connect(self.beat)
        self.timer.start(5)

    def beat(self):
        self.count += 1


def waiting_window():
    window = QApplication.activeModalWidget()
    return window if window is not None and window.objectName() == "WaitWindow" else None


def give_up(seen):
    """Clicks Cancel of the window that tells of the wait, once QGIS has lived under it."""
    beats = Beats()

    def cancel(window):
        lived = beats.count
        wait_for("beats under the window", lambda: beats.count > lived + 20)
        seen.append(find(QLabel, "WaitText", window).text())
        picture("waiting", window)
        click(find(QPushButton, "CancelWait", window))

    return Watch("the window that waits", waiting_window, cancel)


def check_adding_from_a_silent_server_can_be_given_up():
    server, seen = server_of_a_large_raster(), []
    server.silence()
    watch = give_up(seen)
    layer = QgsRasterLayer("reference=" + quoted(server.reference(LARGE)), "silent", KEY)
    watch.finish()
    server.end()
    expect(seen and "127.0.0.1" in seen[0], f"the window tells {seen}")
    expect(not layer.isValid() and "given up" in layer.error().message(), f"the layer tells {layer.error().message()}")


def check_a_project_of_a_silent_server_waits_once():
    server, seen, unavailable = server_of_a_large_raster(), [], []
    file = file_in_folder("silent.qgs")
    for name in ("one", "other"):
        QgsProject.instance().addMapLayer(layer_of(LANDSCAPE, name))
    expect(QgsProject.instance().write(file), "the project cannot be written")
    clear()
    with open(file, encoding="utf-8") as kept:
        text = kept.read()
    expect(quoted(LANDSCAPE) in text, "the project keeps no reference")
    write(file, text.replace(quoted(LANDSCAPE), quoted(server.reference(LARGE))))
    server.silence()

    def keep(window):
        unavailable.append(window.windowTitle())
        window.reject()

    watch = give_up(seen)
    asked = Watch("QGIS's own window of layers that are not there", other_modal_window, keep)
    QgsProject.instance().read(file)
    watch.finish()
    asked.finish()
    server.end()
    expect(len(seen) == 1, f"{len(seen)} waits for two layers of one server")
    layers = QgsProject.instance().mapLayers().values()
    expect(len(layers) == 2 and not any(layer.isValid() for layer in layers), f"{layers}")
    clear()


def other_modal_window():
    window = QApplication.activeModalWidget()
    return window if window is not None and window.objectName() != "WaitWindow" else None


def check_apply_at_a_silent_server_can_be_given_up():
    server, reference = server_of_a_large_raster(), file_in_folder("Moved.VLRef")
    write(reference, OVERLAP)
    layer = add(reference, "overlap")
    close_panes()
    pane = open_pane("Properties")
    before, seen = layer.source(), []
    write(reference, server.reference(LARGE))
    server.silence()
    choose(find(QComboBox, "MosaicMethod", pane), "Closest to Viewpoint")
    watch = give_up(seen)
    apply(pane)
    watch.finish()
    expect(seen and layer.isValid() and layer.source() == before, f"the layer shows {layer.source()[:200]}")
    texts = [item.text() for item in iface.messageBar().items()]
    expect(any("given up" in text for text in texts), f"the bar tells {texts}")
    server.end()
    close_panes()
    iface.messageBar().clearWidgets()
    clear()


def write(file, text):
    with open(file, "w", encoding="utf-8") as into:
        into.write(text)


def check_identify_at_a_server_that_fell_silent_can_be_given_up():
    server, seen = server_of_a_large_raster(), []
    layer = layer_of(server.reference(LARGE), "large")
    server.silence()
    watch = give_up(seen)
    result = layer.dataProvider().identify(layer.extent().center(), QgsRaster.IdentifyFormatValue)
    watch.finish()
    server.end()
    expect(not result.isValid() and len(seen) == 1, f"{result.results()} after {len(seen)} waits")


def check_a_drawing_is_given_up_in_its_middle():
    server = server_of_a_large_raster()
    layer = layer_of(server.reference(LARGE), "large")
    server.silence()
    settings = QgsMapSettings()
    settings.setLayers([layer])
    settings.setDestinationCrs(layer.crs())
    settings.setExtent(layer.extent())
    settings.setOutputSize(QSize(600, 400))
    job = QgsMapRendererParallelJob(settings)
    ended = []
    job.finished.connect(lambda: ended.append(True))
    job.start()
    wait_for("its question to the server", lambda: server.asked > 0)
    expect(job.isActive() and not ended, "it ended without its pixels")
    job.cancelWithoutBlocking()
    wait_for("its end", lambda: ended)
    server.end()
