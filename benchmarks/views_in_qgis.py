"""Views of rasters as QGIS renders them, for the benchmarks beside it."""

import time

from qgis.core import QgsCoordinateTransform, QgsMapRendererParallelJob, QgsMapSettings, QgsProject, QgsRectangle
from qgis.PyQt.QtCore import QEventLoop, QSize

COLUMNS, ROWS = 1000, 800
SHARES = (1.0, 0.3, 0.05)  # of the raster's width and height that a view shows


def view_of(layer, system, share):
    """The middle of the layer, in the proportions of the picture."""
    way = QgsCoordinateTransform(layer.crs(), system, QgsProject.instance())
    whole = way.transformBoundingBox(layer.extent())
    pixel = share * max(whole.width() / COLUMNS, whole.height() / ROWS)
    center = whole.center()
    across, down = pixel * COLUMNS / 2, pixel * ROWS / 2
    return QgsRectangle(center.x() - across, center.y() - down, center.x() + across, center.y() + down)


def render(layer, system, view):
    """Milliseconds of one picture."""
    settings = QgsMapSettings()
    settings.setLayers([layer])
    settings.setDestinationCrs(system)
    settings.setExtent(view)
    settings.setOutputSize(QSize(COLUMNS, ROWS))
    begin = time.perf_counter()
    job = QgsMapRendererParallelJob(settings)
    loop = QEventLoop()
    job.finished.connect(loop.quit)
    job.start()
    loop.exec_()
    took = (time.perf_counter() - begin) * 1000
    assert not job.errors(), [error.message for error in job.errors()]
    assert job.renderedImage().width() == COLUMNS
    return took
