"""What is measured beside what, and how far it is to get. Start reading at ROWS."""

from __future__ import annotations

import dataclasses
import functools
import pathlib
from collections.abc import Callable

from inputs import Inputs
from measure import Cost, Figure, Words, cost, google, in_turns, printed


@dataclasses.dataclass(frozen=True)
class Bench:
    """What a row measures with."""

    build: pathlib.Path
    source: pathlib.Path
    inputs: Inputs
    rounds: int
    large: bool  # sizes that figures are told for; smaller ones try the rows alone

    def program(self, name: str) -> pathlib.Path:
        return self.build / "benchmarks" / name

    def size(self, pixels: int) -> int:
        return pixels if self.large else pixels // 10

    def export(self, job: pathlib.Path) -> Cost:
        (job.parent / f"{job.stem}.Tif").unlink(missing_ok=True)
        return cost([self.build / "apps/vlhost/vlhost", "export", "--job", job],
                    {"VLCLIENTUI_HOME": str(self.source), "QT_QPA_PLATFORM": "offscreen"})

    def translate(self, raster: pathlib.Path, *words: str) -> Cost:
        target = self.inputs.folder / "peer.tif"
        target.unlink(missing_ok=True)
        return cost(["gdal_translate", "-q", "--config", "GDAL_CACHEMAX", "64", *words, raster, target])


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
    why: str = ""  # what holds it back, told where a line misses what is due


FORMATS = [("TIFF-No Compression", 0.8), ("TIFF-LZ77", 0.6), ("TIFF-JPEG", 0.6), ("JPEG", 0.6), ("JP2", 0.7), ("PNG", 0.6)]


def formats(bench: Bench) -> list[Figure]:
    figures = []
    for name, _ in FORMATS:
        words: Words = [bench.program("Export_bench"), str(bench.size(8000)), name]
        figures += printed(words, rf"^{name} .* MB +([\d.]+) +[\d.]+ +[\d.]+$", bench.rounds)
    return figures


def reduced(bench: Bench) -> list[Figure]:
    side, pixels = bench.size(20000), bench.size(4000)
    raster = bench.inputs.raster(side)
    job = bench.inputs.job("reduced", raster, (0, 0, side, side), pixels)
    words = ("-r", "average", "-outsize", str(pixels), str(pixels))
    return [in_turns(lambda: bench.export(job), lambda: bench.translate(raster, *words), bench.rounds)]


def mosaic(bench: Bench) -> list[Figure]:
    side = bench.size(1000)
    definition, virtual = bench.inputs.mosaic(10, side)
    whole, edge, pixels = 10 * side, side // 2, 8 * side
    window = bench.inputs.job("window", definition, (edge, edge, edge + pixels, edge + pixels), pixels)
    reduction = bench.inputs.job("reduction", definition, (0, 0, whole, whole), 2 * side)
    cut = ("-srcwin", str(edge), str(edge), str(pixels), str(pixels))
    shrunk = ("-r", "average", "-outsize", str(2 * side), str(2 * side))
    return [in_turns(lambda: bench.export(window), lambda: bench.translate(virtual, *cut), bench.rounds),
            in_turns(lambda: bench.export(reduction), lambda: bench.translate(virtual, *shrunk), bench.rounds)]


METHODS = {
    "Closest to Viewpoint": "<MosaicMethod>Viewpoint</MosaicMethod>",
    "By Attribute": "<MosaicMethod>ByAttribute</MosaicMethod><OrderField>Name</OrderField>",
}


def methods(bench: Bench) -> list[Figure]:
    side = bench.size(1000)
    definition, _ = bench.inputs.mosaic(10, side)
    edges = (side // 2, side // 2, 8 * side + side // 2, 8 * side + side // 2)
    plain = bench.inputs.job("plain", definition, edges, 8 * side, "<MosaicMethod>None</MosaicMethod>")
    figures = []
    for number, properties in enumerate(METHODS.values()):
        job = bench.inputs.job(f"method{number}", definition, edges, 8 * side, properties)
        figures.append(in_turns(functools.partial(bench.export, job), lambda: bench.export(plain), bench.rounds))
    return figures


def functions(program: str, ours: str, peer: str) -> Callable[[Bench], list[Figure]]:
    return lambda bench: [google(bench.program(program), ours, peer, max(3, bench.rounds))]


def ranges(bench: Bench) -> list[Figure]:
    return printed([bench.program("RangeWindow_bench")], r"export of the service +[\d.]+ +\d+ +([\d.]+)", bench.rounds)


def coverages(bench: Bench) -> list[Figure]:
    line = r"MB +[\d.]+ s +([\d.]+) +[\d.]+ s +([\d.]+)$"
    near, driver, far, _ = printed([bench.program("CoverageExport_bench"), str(bench.size(4000))],
                                   rf"^loopback .*?{line}.*^20 ms .*?{line}", bench.rounds)
    return [near, far, Figure([1 / ratio for ratio in driver.values])]


def map_views(bench: Bench) -> list[Figure]:
    raster = bench.inputs.map_raster(bench.size(30000))
    number = r"([\d.]+)$"
    pattern = r".*?".join([rf"{share:.2f} .*?{number}" for share in (1, 0.3, 0.05)])
    words: Words = ["/usr/bin/python3", bench.source / "benchmarks/map_beside_qgis.py", bench.program("Map_bench"), raster]
    return printed(words, pattern, bench.rounds, {"QT_QPA_PLATFORM": "offscreen"})


def windows(bench: Bench) -> list[Figure]:
    names = [line.work.partition(":")[0] for line in WINDOWS]
    pattern = ".*?".join(rf"^{name} +([\d.]+) ms" for name in names)
    return printed([bench.program("Windows_bench")], pattern, bench.rounds,
                   {"QT_QPA_PLATFORM": "offscreen", "VLCLIENTUI_HOME": str(bench.source)})


def library(bench: Bench) -> list[Figure]:
    return printed([bench.program("Library_bench"), bench.build / "src/library/libVLClientUI.so"],
                   r"([\d.]+) MB stripped.*: ([\d.]+) ms", bench.rounds)


WINDOWS = [Line(f"{name}: call of the host to first paint", 100, "ms")
           for name in ("Services", "Properties", "Metadata", "Viewpoint", "Export")]

ROWS = [
    Row("formats", [Line(f"export of a window of 8,000 x 8,000, {name}, beside gdal_translate", due) for name, due in FORMATS],
        formats),
    Row("reduced", [Line("whole 20,000 x 20,000 reduced to 4,000 by average, beside gdal_translate", 0.6)], reduced, 160),
    Row("mosaic", [Line("mosaic of 100, a window, beside gdal_translate of its virtual raster", 0.9),
                   Line("mosaic of 100, reduced, beside gdal_translate of its virtual raster", 0.7)], mosaic, 160),
    Row("methods", [Line(f"mosaic of 100, {method}, beside the plain one", 1.1) for method in METHODS], methods),
    Row("list", [Line("flat list of 50,000 services, answer to rows, beside one bare parse", 1.5)],
        functions("Selection_bench", "answerToRowsOfAFlatList/50000", "bareParse/50000")),
    Row("folder", [Line("folder of 50,000 services entered and left, beside one bare parse", 0.2)],
        functions("Selection_bench", "oneFolderEnteredAndLeft/50000", "bareParse/50000")),
    Row("metadata", [Line("image metadata of 20,000 rasters, node opened, beside one bare parse", 1.3)],
        functions("Metadata_bench", "sourceOpens/20000", "bareParse/20000")),
    Row("catalogue", [Line("catalogue of 2,000 files, first answer, beside opening each", 0.55)],
        functions("Catalogue_bench", "firstAnswer", "bareOpen/nothing")),
    Row("capabilities", [Line("10,000 coverages as a list, beside one bare parse", 1.5)],
        functions("Capabilities_bench", "list/10000", "parseBarely/10000")),
    Row("owslib", [Line("10,000 coverages as a list, beside OWSLib", 0.1)],
        functions("Capabilities_bench", "list/10000", "owsLibReadsTitlesAndExtents/10000")),
    Row("box", [Line("a box of the export window left, beside its numbers read and formatted", 1.8)],
        functions("ExportRecalculation_bench", "edgeLeft/0", "textsAlone/0")),
    Row("ranges", [Line("a window of 4,000 x 4,000 of a cloud-optimized TIFF, 20 ms away, beside gdal_translate", 0.33)],
        ranges),
    Row("coverages", [Line("4,000 x 4,000 of a coverage over loopback, beside one request", 0.7),
                      Line("the same 20 ms away, beside one request", 0.8),
                      Line("the same over loopback, beside GDAL's own WCS driver", 0.33)], coverages),
    Row("map", [Line(f"a view of {share} of 30,000 x 30,000 with overviews, beside QGIS", 1)
                for share in ("all", "three tenths", "a twentieth")], map_views),
    Row("windows", WINDOWS, windows),
    Row("library", [Line("libVLClientUI.so, stripped", 2, "MB"), Line("libVLClientUI.so, loaded, and the first Init", 10, "ms")],
        library),
]
