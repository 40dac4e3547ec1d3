"""What holds where a server is silent: QGIS's window lives on, and a person can give up. As in checks.py, each in a
function of its own."""

import os
import time

from PyQt5.QtCore import QSize, Qt, QTimer
from osgeo import gdal, osr
from PyQt5.QtTest import QTest
from PyQt5.QtWidgets import QApplication, QComboBox, QLabel, QLineEdit, QPushButton, QTreeWidget
from qgis.core import (
    QgsLayoutExporter,
    QgsLayoutItemMap,
    QgsLayoutPoint,
    QgsLayoutSize,
    QgsMapRendererParallelJob,
    QgsMapSettings,
    QgsPrintLayout,
    QgsProject,
    QgsRaster,
    QgsRasterLayer,
)
from qgis.utils import iface

from checks import apply, close_panes, file_in_folder, open_pane
from layers import KEY, LANDSCAPE, OVERLAP, SERVER, add, clear, layer_of, picture_of, quoted, same_share
from person import action, choose, click, expect, find, in_modal_window, modal_window, picture, wait_for, Watch
from silent import FallingSilent
from windows import other_than

OVERLAP_SERVICE = SERVER + "Imagery/Overlap_Study"
LARGE = "Large.tif"  # more than is read to open it
OTHER = "Other.tif"


def server_of_a_large_raster(user=""):
    folder = file_in_folder("served")
    os.makedirs(folder, exist_ok=True)
    for name in (LARGE, OTHER):
        write_raster(os.path.join(folder, name))
    return FallingSilent(folder, user)


def write_raster(file):
    if not os.path.exists(file):
        options = ["TILED=YES"]
        raster = gdal.GetDriverByName("GTiff").Create(file, 3000, 3000, 1, gdal.GDT_UInt16, options)
        system = osr.SpatialReference()
        system.ImportFromEPSG(32632)
        raster.SetProjection(system.ExportToWkt())
        raster.SetGeoTransform([400000, 10, 0, 5200000, 0, -10])
        raster.GetRasterBand(1).Fill(1234)


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


def check_what_was_given_up_is_refused_and_no_other_layer_of_its_server():
    server, seen = server_of_a_large_raster(), []
    server.silence()
    watch = give_up(seen)
    QgsRasterLayer("reference=" + quoted(server.reference(LARGE)), "silent", KEY)
    watch.finish()
    server.speak()
    # Layers that follow at once, as those of a project, are given up with it.
    begin = time.monotonic()
    wait_for("more than the layers of a project take", lambda: time.monotonic() > begin + 1.2)
    expect(layer_of(server.reference(OTHER), "other").isValid(), "another layer of the server is refused")
    again = QgsRasterLayer("reference=" + quoted(server.reference(LARGE)), "again", KEY)
    expect(not again.isValid() and len(seen) == 1, f"it was asked for again, after {len(seen)} waits")
    server.end()


def check_metadata_of_a_silent_server_keep_no_window_waiting():
    server = server_of_a_large_raster()
    add(server.reference(OTHER), "other")
    server.silence()
    begin, took = time.monotonic(), []

    def look(window):
        took.append(time.monotonic() - begin)
        window.close()

    in_modal_window(action("Metadata").trigger, "Metadata", look)
    expect(took and took[0] < 20, f"it came after {took}")
    server.end()
    clear()


def check_a_layout_of_a_silent_server_can_be_given_up():
    server, seen = server_of_a_large_raster(), []
    layer = layer_of(server.reference(LARGE), "large")
    QgsProject.instance().addMapLayer(layer, False)
    server.silence()
    layout = QgsPrintLayout(QgsProject.instance())
    layout.initializeDefaults()
    item = QgsLayoutItemMap(layout)
    item.attemptMove(QgsLayoutPoint(10, 10))
    item.attemptResize(QgsLayoutSize(120, 90))
    layout.addLayoutItem(item)
    item.setLayers([layer])
    item.setCrs(layer.crs())
    item.setExtent(layer.extent())
    settings = QgsLayoutExporter.ImageExportSettings()
    settings.dpi = 60
    watch = give_up(seen)
    outcome = QgsLayoutExporter(layout).exportToImage(file_in_folder("silent.png"), settings)
    watch.finish()
    server.end()
    expect(outcome == QgsLayoutExporter.Success and len(seen) == 1, f"{outcome} after {len(seen)} waits")
    clear()


def check_a_reload_waits_for_no_server():
    server = server_of_a_large_raster()
    layer = add(server.reference(LARGE), "large")
    drawn = picture_of(layer)
    # Answered.
    layer.reload()
    expect(same_share(picture_of(layer), drawn) == 1, "it looks different after a reload")
    # And not answered: the layer goes before its new service comes.
    server.silence()
    begin = time.monotonic()
    layer.reload()
    took = time.monotonic() - begin
    expect(waiting_window() is None and took < 5, f"QGIS waited for {took:.1f} s")
    clear()
    server.end()
    wait_for("a moment", lambda: time.monotonic() > begin + 1)


def check_a_project_of_a_silent_server_waits_once():
    server, seen, unavailable = server_of_a_large_raster(), [], []
    file = file_in_folder("silent.qgs")
    for reference in (LANDSCAPE, OVERLAP_SERVICE):
        QgsProject.instance().addMapLayer(layer_of(reference, "layer"))
    expect(QgsProject.instance().write(file), "the project cannot be written")
    clear()
    with open(file, encoding="utf-8") as kept:
        text = kept.read()
    for reference, name in ((LANDSCAPE, LARGE), (OVERLAP_SERVICE, OTHER)):
        expect(quoted(reference) in text, "the project keeps no reference")
        text = text.replace(quoted(reference), quoted(server.reference(name)))
    write(file, text)
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


def check_a_server_behind_a_password_is_signed_in_at_by_its_connection():
    server = server_of_a_large_raster("ann:pass word")
    stranger = QgsRasterLayer("reference=" + quoted(server.reference(OTHER)), "stranger", KEY)
    expect(not stranger.isValid() and "connection" in stranger.error().message(), f"it tells {stranger.error().message()}")
    sign_in(f"http://127.0.0.1:{server.port}/{OTHER}", "Guarded maps", "ann", "pass word")
    layer = add("ImageService://Guarded maps/Other", "guarded")
    expect(picture_of(layer).pixelColor(200, 150).alpha() == 255, "it is not drawn")
    file = file_in_folder("guarded.qgs")
    expect(QgsProject.instance().write(file), "the project cannot be written")
    with open(file, encoding="utf-8") as kept:
        text = kept.read()
    expect("pass" not in layer.source() and "pass word" not in text and "pass%20word" not in text, "the project has the password")
    clear()
    expect(QgsProject.instance().read(file), "the project cannot be read")
    expect(next(iter(QgsProject.instance().mapLayers().values())).isValid(), "the layer did not come back")
    clear()
    server.end()


def sign_in(address, name, user, password):
    """By the window of connections."""

    def type_into(window, texts):
        for box, text in texts:
            line = find(QLineEdit, box, window)
            line.setFocus()
            line.selectAll()
            QTest.keyClicks(line, text)

    def write(window):
        type_into(window, (("ConnectionName", name), ("ConnectionAddress", address)))
        choose(find(QComboBox, "ConnectionSignIn", window), "User and password")
        type_into(window, (("ConnectionUser", user), ("ConnectionSecret", password)))
        choose(find(QComboBox, "ConnectionKeeping", window), "For this session only")
        picture("sign-in", window)
        click(find(QPushButton, "SaveConnection", window))

    def add_one(window):
        editor = Watch("the editor", lambda: other_than(window), write)
        click(find(QPushButton, "AddConnection", window))
        wait_for("the editor to be closed", lambda: not editor.timer.isActive() and other_than(window) is None)
        editor.finish()
        names = find(QTreeWidget, "Connections", window)
        wait_for("it in the list", lambda: names.findItems(name, Qt.MatchExactly))
        window.close()

    in_modal_window(action("Connections").trigger, "Connections", add_one)
