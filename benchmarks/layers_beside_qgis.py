"""Draws the same views of the same rasters in one process of QGIS: by QGIS's own layer, and by a layer of the plugin's
provider, in turns. Prints both medians in milliseconds and their ratio.

Usage: layers_beside_qgis.sh <build folder> <raster or definition> <QGIS's own raster of the same> [...]
"""

import os
import statistics
import sys
import traceback
from urllib.parse import quote

from qgis.core import QgsCoordinateReferenceSystem, QgsRasterLayer

sys.path.insert(0, os.environ["VLQGIS_SCRIPTS"])

from views_in_qgis import SHARES, render, view_of  # noqa: E402  from beside this file

REPETITIONS = 11


def compare(service, raster, out):
    own = QgsRasterLayer(raster, "own")
    ours = QgsRasterLayer("reference=" + quote(service, safe=""), "ours", "vlclientui")
    assert own.isValid() and ours.isValid(), service
    print(service, file=out)
    print("  system      share     QGIS    ours   ratio", file=out)
    for code in (own.crs().authid(), "EPSG:3857"):
        system = QgsCoordinateReferenceSystem(code)
        for share in SHARES:
            view = view_of(own, system, share)
            theirs, mine = [], []
            for _ in range(REPETITIONS):
                theirs.append(render(own, system, view))
                mine.append(render(ours, system, view))
            one, other = statistics.median(theirs), statistics.median(mine)
            print(f"  {code:10}  {share:4.2f}  {one:7.1f} {other:7.1f}  {other / one:6.2f}", file=out, flush=True)


def main():
    words = os.environ["VLQGIS_RASTERS"].split("\n")
    with open(os.environ["VLQGIS_OUT"], "w", encoding="utf-8") as out:
        for service, raster in zip(words[::2], words[1::2]):
            compare(service, raster, out)


try:
    main()
except BaseException:
    traceback.print_exc()
    os._exit(1)
os._exit(0)
