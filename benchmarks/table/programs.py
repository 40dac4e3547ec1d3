"""How rows are measured that benchmarks compare by themselves, and whole scripts."""

from __future__ import annotations

import pathlib
import shutil
import tempfile
from collections.abc import Callable

from bench import OFFSCREEN, Bench
from measure import (Cost, Figure, Words, cost, counters, google, in_turns, largest_in_parts, printed, ratios, run,
                     seconds)


def beside(program: str, ours: str, peer: str) -> Callable[[Bench], list[Figure]]:
    """Two functions of one program."""
    def measure(bench: Bench) -> list[Figure]:
        entries = google(bench.program(program), [ours, peer], bench.rounds)
        return [ratios(seconds(entries, ours), seconds(entries, peer))]

    return measure


def services(bench: Bench) -> list[Figure]:
    flat, folder, parse = "answerToRowsOfAFlatList", "oneFolderEnteredAndLeft/50000", "bareParse/50000"
    entries = google(bench.program("Selection_bench"), [f"{flat}/50000", folder, parse], bench.rounds)
    list_of_some = seconds(entries, f"{flat}/50000")
    many = google(bench.program("Selection_bench"), [f"{flat}/500000"], bench.rounds)
    return [ratios(list_of_some, seconds(entries, parse)),
            Figure([1e3 * one for one in seconds(entries, folder)]),
            ratios([one / 10 for one in seconds(many, f"{flat}/500000")], list_of_some)]


def boxes(bench: Bench) -> list[Figure]:
    names = ["edgeLeft/0", "columnsLeft/0", "pixelSizeXLeft/0"]
    entries = google(bench.program("ExportRecalculation_bench"), names, bench.rounds)
    return [Figure([1e6 * one for one in seconds(entries, name)]) for name in names]


def catalogue(bench: Bench) -> list[Figure]:
    names = ["firstAnswer", "bareOpen/system"]
    entries = google(bench.program("Catalogue_bench"), names, bench.rounds)
    many = google(bench.program("Catalogue_bench"), ["answerOfManyFiles"], bench.rounds)
    return [ratios(*(seconds(entries, name) for name in names)), Figure(seconds(many, "answerOfManyFiles")),
            Figure(seconds(many, "answerOfManyFiles"))]


def items(bench: Bench) -> list[Figure]:
    """Each round is a process of its own, since a peak stays."""
    name = "makeMosaic/100000/12"
    return [Figure([counters(google(bench.program("StacItems_bench"), [name], 1), name, "peak_MB")[0]
                    for _ in range(bench.rounds)])]


def ranges(bench: Bench) -> list[Figure]:
    return printed([bench.program("RangeWindow_bench"), "3"], r"export of the service +[\d.]+ +\d+ +([\d.]+)", bench.rounds)


def coverages(bench: Bench) -> list[Figure]:
    line = r"MB +[\d.]+ s +([\d.]+) +[\d.]+ s +([\d.]+)$"
    near, driver, far, _ = printed([bench.program("CoverageExport_bench"), str(bench.size(4000)), "3"],
                                   rf"^loopback .*?{line}.*^20 ms .*?{line}", bench.rounds)
    return [near, far, Figure([1 / ratio for ratio in driver.values])]


def slowest_of_views(texts: list[str], heads: list[str]) -> list[Figure]:
    """Of programs that print a part for each raster and a line for each system and view, its ratio at the end."""
    rows = [largest_in_parts(text, heads, r"([\d.]+)$") for text in texts]
    return [Figure(list(values)) for values in zip(*rows)]


def map_views(bench: Bench) -> list[Figure]:
    side = bench.size(30000)
    raster = bench.inputs.map_folder(side) / f"with_{side}.tif"
    words: Words = ["/usr/bin/python3", bench.source / "benchmarks/map_beside_qgis.py", bench.program("Map_bench"), raster]
    return slowest_of_views([run(words, OFFSCREEN) for _ in range(bench.rounds)], [str(raster)])


def layers(bench: Bench) -> list[Figure]:
    side = bench.size(8000)
    raster = bench.inputs.overviewed(side)
    definition, virtual = bench.inputs.mosaic(10, bench.size(1000))
    words: Words = [bench.source / "benchmarks/layers_beside_qgis.sh", bench.build, raster, raster, definition, virtual]
    return slowest_of_views([run(words) for _ in range(bench.rounds)], [str(raster), str(definition)])


STANDING = ("a large raster with overviews", "a large raster without", "a mosaic of 1,000 sources", "ten services")


def standing(bench: Bench) -> list[Figure]:
    side = bench.size(30000)
    words: Words = [bench.program("MapWindow_bench"), bench.inputs.map_folder(side), str(side)]
    rows = [largest_in_parts(run(words, bench.home), STANDING, r"stands still for +([\d.]+) ms") for _ in range(bench.rounds)]
    return [Figure(list(values)) for values in zip(*rows)]


WINDOWS = ("Services", "Properties", "Metadata", "Viewpoint", "Export")


def windows(bench: Bench) -> list[Figure]:
    pattern = ".*?".join(rf"^{name} +([\d.]+) ms" for name in WINDOWS)
    return [figure for kind in ((), ("--logic",))
            for figure in printed([bench.program("Windows_bench"), *kind], pattern, bench.rounds, bench.home)]


def library(bench: Bench) -> list[Figure]:
    return printed([bench.program("Library_bench"), bench.build / "src/library/libVLClientUI.so"],
                   r"([\d.]+) MB stripped.*: ([\d.]+) ms", bench.rounds, bench.home)


def in_a_clone(*words: str) -> Callable[[Bench], list[Figure]]:
    """A script in a new clone, once: what lies in a compiler cache stays there."""
    def measure(bench: Bench) -> list[Figure]:
        folder = pathlib.Path(tempfile.mkdtemp(prefix="vl-bench-clone-"))
        try:
            run(["git", "clone", "-q", bench.source, folder / "clone"])
            done = cost([folder / "clone" / words[0], *words[1:]], OFFSCREEN)
        finally:
            shutil.rmtree(folder)
        return [Figure([done.seconds / 60])]

    return measure
