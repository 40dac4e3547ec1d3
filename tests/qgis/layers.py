"""Layers of services, and pictures of them."""

import os
import xml.sax.saxutils

from PyQt5.QtCore import QEventLoop, QSize
from qgis.core import (
    QgsCoordinateReferenceSystem,
    QgsMapRendererParallelJob,
    QgsMapSettings,
    QgsProject,
    QgsRasterLayer,
    QgsRectangle,
)
from qgis.utils import iface

from person import expect, wait_for

KEY = "vlclientui"
SERVER = "ImageService://127.0.0.1/"
OVERLAP = os.path.join(os.environ["VLQGIS_CATALOGUE"], "Imagery", "Overlap_Study.VLDef")
LANDSCAPE = SERVER + "Elevation/Terrain_30m"


def layer_of(reference, name="service", content=""):
    """A local file stands in the source as QGIS writes paths."""
    source = f"{reference}|vlclientui" if reference.startswith("/") else f"reference={quoted(reference)}"
    layer = QgsRasterLayer(source + content, name, KEY)
    expect(layer.isValid(), f"{reference} is no layer: {layer.error().message()}")
    return layer


def quoted(text):
    from urllib.parse import quote

    return quote(text, safe="")


def add(reference, name="service"):
    """A layer in the project, picked and open for the windows."""
    from person import action

    layer = layer_of(reference, name)
    QgsProject.instance().addMapLayer(layer)
    iface.setActiveLayer(layer)
    wait_for("the service open", lambda: action("Properties").isEnabled())
    iface.mapCanvas().setExtent(layer.extent())
    settle()
    return layer


def settle():
    """Until the map is drawn."""
    iface.mapCanvas().refresh()
    wait_for("the map at rest", lambda: not iface.mapCanvas().isDrawing())


def clear():
    QgsProject.instance().clear()
    wait_for("an empty project", lambda: not QgsProject.instance().mapLayers())


def picture_of(layer, extent=None, size=(400, 300), system=None, errors=None):
    """@param errors: a list that gets those of the drawing; without it there must be none."""
    settings = QgsMapSettings()
    settings.setLayers([layer])
    settings.setDestinationCrs(system or layer.crs())
    settings.setExtent(extent or layer.extent())
    settings.setOutputSize(QSize(*size))
    settings.setFlag(QgsMapSettings.Antialiasing, False)
    settings.setBackgroundColor(settings.backgroundColor().fromRgba(0))
    job = QgsMapRendererParallelJob(settings)
    loop = QEventLoop()
    job.finished.connect(loop.quit)
    job.start()
    loop.exec_()
    if errors is not None:
        errors.extend(error.message for error in job.errors())
    else:
        expect(not job.errors(), "; ".join(error.message for error in job.errors()))
    return job.renderedImage()


def middle_color(layer):
    image = picture_of(layer)
    return image.pixelColor(image.width() // 2, image.height() // 2).getRgb()[:3]


def same_share(one, other):
    """The share of pixels that are the same."""
    from PyQt5.QtGui import QImage

    expect(one.size() == other.size(), f"sizes differ: {one.size()} {other.size()}")
    one = one.convertToFormat(QImage.Format_ARGB32_Premultiplied)
    other = other.convertToFormat(QImage.Format_ARGB32_Premultiplied)
    same = sum(
        1 for row in range(one.height()) for column in range(one.width()) if one.pixel(column, row) == other.pixel(column, row)
    )
    return same / (one.width() * one.height())
