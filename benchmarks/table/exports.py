"""How exports are measured beside gdal_translate, which gets 64 MB of cache and waits for the disk as they do."""

from __future__ import annotations

import pathlib
from collections.abc import Callable

from bench import Bench, on_disk
from measure import Cost, Figure, Words, cost, in_turns

# In the order of Export_bench, which knows the options of each.
ENTRIES = ("TIFF-No Compression", "TIFF-JPEG", "TIFF-LZ77", "JPEG", "JP2", "PNG")
MARGIN = 100  # that Export_bench leaves on each side of its raster


def formats(*entries: str) -> Callable[[Bench], list[Figure]]:
    def measure(bench: Bench) -> list[Figure]:
        side = bench.size(8000) + 2 * MARGIN
        raster = bench.inputs.raster(side)

        def step(kind: str, entry: str) -> Cost:
            target = bench.inputs.folder / kind
            for old in bench.inputs.folder.glob(f"{kind}*"):
                old.unlink()
            words: Words = [bench.program("Export_bench"), kind, str(ENTRIES.index(entry)), raster, target, str(side)]
            done = cost(words)
            return on_disk(done, target) if kind == "translate" else done

        return [in_turns(lambda: step("export", entry), lambda: step("translate", entry), bench.rounds)
                for entry in entries]

    return measure


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
    "By Attribute": "<MosaicMethod>ByAttribute</MosaicMethod><TileOrderField>Year</TileOrderField>",
    "Lock Raster": "<MosaicMethod>LockRaster</MosaicMethod><LockImageID>45</LockImageID>",
}


def methods(bench: Bench) -> list[Figure]:
    side = bench.size(1000)
    definition, _ = bench.inputs.mosaic(10, side)
    edges = (side // 2, side // 2, 8 * side + side // 2, 8 * side + side // 2)

    def job(name: str, properties: str) -> pathlib.Path:
        return bench.inputs.job(name, definition, edges, 8 * side, properties)

    plain = job("plain", "<MosaicMethod>None</MosaicMethod>")

    def beside_the_plain(own: pathlib.Path) -> Figure:
        return in_turns(lambda: bench.export(own), lambda: bench.export(plain), bench.rounds)

    return [beside_the_plain(job(f"method{number}", properties)) for number, properties in enumerate(METHODS.values())]
