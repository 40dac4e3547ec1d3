"""What is measured beside what, and how far it is to get. Start reading at ROWS."""

from __future__ import annotations

import dataclasses
from collections.abc import Callable

import exports
import programs
from bench import Bench
from measure import Figure
from reasons import REASONS


@dataclasses.dataclass(frozen=True)
class Line:
    """One line of the table."""

    work: str
    due: float  # at most
    unit: str = ""  # none where it is a ratio


@dataclasses.dataclass(frozen=True)
class Row:
    """One measurement, and the lines that come out of it."""

    name: str
    lines: list[Line]
    measure: Callable[[Bench], list[Figure]]
    memory_due: float | None = None  # megabytes

    def reason(self, line: Line) -> str:
        """What holds a line back; empty where nobody knows."""
        return REASONS.get((self.name, self.lines.index(line)), "")


EXPORT_MEMORY = 160
WINDOW = "export of a window of 8,000 x 8,000"
REDUCED_VIEW = "slowest of three views"

ROWS = [
    Row("tiff", [Line(f"{WINDOW}, TIFF uncompressed, beside gdal_translate", 0.8)],
        exports.formats("TIFF-No Compression"), EXPORT_MEMORY),
    Row("lz77", [Line(f"{WINDOW}, TIFF with LZ77", 0.6)], exports.formats("TIFF-LZ77"), EXPORT_MEMORY),
    Row("jpeg", [Line(f"{WINDOW}, TIFF with JPEG", 0.6), Line(f"{WINDOW}, JPEG", 0.6)],
        exports.formats("TIFF-JPEG", "JPEG"), EXPORT_MEMORY),
    Row("jpeg2000", [Line(f"{WINDOW}, JPEG2000", 0.7)], exports.formats("JP2"), EXPORT_MEMORY),
    Row("png", [Line(f"{WINDOW}, PNG at level 1", 0.6)], exports.formats("PNG"), EXPORT_MEMORY),
    Row("reduced", [Line("export of 20,000 x 20,000 reduced to 4,000 by average, beside gdal_translate", 0.6)],
        exports.reduced, EXPORT_MEMORY),
    Row("mosaic", [Line("mosaic of 100, a window, beside gdal_translate of its virtual raster", 0.9),
                   Line("mosaic of 100, reduced, beside gdal_translate of its virtual raster", 0.7)],
        exports.mosaic, EXPORT_MEMORY),
    Row("methods", [Line(f"mosaic of 100, {method}, beside the plain one", 1.1) for method in exports.METHODS],
        exports.methods, EXPORT_MEMORY),
    Row("services", [Line("flat list of 50,000 services, answer to rows, beside one bare parse", 1.5),
                     Line("folder of 50,000 services entered and left", 50, "ms"),
                     Line("flat list of 500,000 services, a service beside one of 50,000", 1.1)], programs.services),
    Row("metadata", [Line("image metadata of 20,000 rasters, node opened, beside one bare parse", 1.3)],
        programs.beside("Metadata_bench", "sourceOpens/20000", "bareParse/20000")),
    Row("catalogue", [Line("catalogue of 2,000 files, first answer, beside opening each and asking for its system", 0.55),
                      Line("catalogue of 100,000 files, first answer", 60, "s"),
                      Line("the same at the next start", 1, "s")], programs.catalogue),
    Row("windows", [Line(f"{name}: call of the host to first paint", 100, "ms") for name in programs.WINDOWS]
        + [Line(f"{name}: logic of the same call", 10, "ms") for name in programs.WINDOWS], programs.windows),
    Row("boxes", [Line(f"{box} of the export window left", 5, "us")
                  for box in ("an edge", "the number of columns", "a pixel size")], programs.boxes),
    Row("library", [Line("libVLClientUI.so, stripped", 2, "MB"), Line("libVLClientUI.so, loaded, and the first Init", 10, "ms")],
        programs.library),
    Row("capabilities", [Line("10,000 coverages as a list, beside one bare parse", 1.5)],
        programs.beside("Capabilities_bench", "list/10000", "parseBarely/10000")),
    Row("owslib", [Line("10,000 coverages as a list, beside OWSLib", 0.1)],
        programs.beside("Capabilities_bench", "list/10000", "owsLibReadsTitlesAndExtents/10000")),
    Row("coverages", [Line("export of 4,000 x 4,000 of a coverage over loopback, beside one request", 0.7),
                      Line("the same 20 ms away, beside one request", 0.8),
                      Line("the same over loopback, beside GDAL's own WCS driver", 0.33)], programs.coverages),
    Row("ranges", [Line("export of 4,000 x 4,000 of a cloud-optimized TIFF 20 ms away, beside gdal_translate", 0.33)],
        programs.ranges),
    Row("items", [Line("mosaic of 100,000 STAC items in 12 zones, memory", 1000, "MB")], programs.items),
    Row("map", [Line(f"map of 30,000 x 30,000 with overviews, beside QGIS's renderer, {REDUCED_VIEW} in three systems", 1)],
        programs.map_views),
    Row("layers", [Line(f"layer in QGIS of 8,000 x 8,000, beside QGIS's own, {REDUCED_VIEW} in two systems", 1.2),
                   Line(f"layer in QGIS of a mosaic of 100, beside its virtual raster, {REDUCED_VIEW} in two systems", 1.2)],
        programs.layers),
    Row("standing", [Line(f"window's thread stands still while it draws {what}", 50, "ms") for what in programs.STANDING],
        programs.standing),
    Row("start", [Line("script/run in a new clone, until the viewer runs, with a warm compiler cache", 2, "min")],
        programs.in_a_clone("script/run", "--version")),
    Row("tests", [Line("script/test in a new clone, with a warm compiler cache", 7, "min")], programs.in_a_clone("script/test")),
]
