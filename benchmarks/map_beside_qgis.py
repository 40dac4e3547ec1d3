"""Draws the same views of the same rasters in the same systems at the same size by QGIS's own renderer and by the
threads of the map, in turns, and prints both medians in milliseconds and their ratio.

Usage: QT_QPA_PLATFORM=offscreen /usr/bin/python3 map_beside_qgis.py <Map_bench> <raster> [...]
Needs QGIS's Python module.
"""

import statistics
import subprocess
import sys

from qgis.core import QgsApplication, QgsCoordinateReferenceSystem, QgsProject, QgsRasterLayer

from views_in_qgis import COLUMNS, ROWS, SHARES, render, view_of

REPETITIONS = 7


def ours(program, raster, system, view):
    """(until something is everywhere, until it is finished), each a list of milliseconds."""
    words = [program, "--draw", raster, system.authid()]
    words += [repr(edge) for edge in (view.xMinimum(), view.yMinimum(), view.xMaximum(), view.yMaximum())]
    lines = subprocess.run(words + [str(COLUMNS), str(ROWS)], check=True, capture_output=True, text=True).stdout
    pairs = [tuple(map(float, line.split())) for line in lines.splitlines()]
    return [pair[0] for pair in pairs], [pair[1] for pair in pairs]


def compare(program, raster):
    layer = QgsRasterLayer(raster, "raster")
    assert layer.isValid(), raster
    print(raster)
    print("  system      share   QGIS first  median    ours everywhere  final    ratio")
    for code in (layer.crs().authid(), "EPSG:3857", "EPSG:4326"):
        system = QgsCoordinateReferenceSystem(code)
        for share in SHARES:
            view = view_of(layer, system, share)
            theirs = [render(layer, system, view) for _ in range(REPETITIONS)]
            covered, final = ours(program, raster, system, view)
            median = statistics.median(theirs)
            mine = statistics.median(final)
            print(f"  {code:10}  {share:4.2f}  {theirs[0]:10.0f}  {median:6.0f}  {statistics.median(covered):12.0f}"
                  f"  {mine:9.0f}  {mine / median:7.2f}", flush=True)


def main():
    application = QgsApplication([], False)
    application.initQgis()
    for raster in sys.argv[2:]:
        compare(sys.argv[1], raster)
    QgsProject.instance().clear()
    application.exitQgis()


if __name__ == "__main__":
    main()
