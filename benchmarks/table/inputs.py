"""Rasters, mosaics and jobs that rows need, made once each."""

from __future__ import annotations

import pathlib

from measure import run, warm

EAST, NORTH = 500000, 5000000  # of the upper left corner; a pixel is a meter, EPSG:32632


class Inputs:
    def __init__(self, folder: pathlib.Path, programs: pathlib.Path) -> None:
        self.folder = folder
        self._programs = programs

    def raster(self, side: int) -> pathlib.Path:
        file = self.folder / f"raster_{side}.tif"
        if not file.exists():
            run([self._programs / "benchmarks/Export_bench", "make", "0", file, "-", str(side)])
        warm([file])
        return file

    def map_folder(self, side: int) -> pathlib.Path:
        """What the benchmarks of the map open: rasters in tiles of JPEG with overviews and without, mosaics."""
        folder = self.folder / f"map_{side}"
        if not (folder / "made").exists():
            run([self._programs / "benchmarks/Map_bench", "--make-all", str(side), folder])
            (folder / "made").touch()
        return folder

    def overviewed(self, side: int) -> pathlib.Path:
        """In tiles of JPEG."""
        file = self.folder / f"overviewed_{side}.tif"
        if not file.exists():
            run([self._programs / "benchmarks/Map_bench", "--make", file, str(side)])
        return file

    def mosaic(self, across: int, side: int) -> tuple[pathlib.Path, pathlib.Path]:
        """A definition of across x across rasters with overviews, side pixels each, and a virtual raster of the same."""
        folder = self.folder / f"mosaic_{across}_{side}"
        definition, virtual = folder / "mosaic.VLDef", folder / "mosaic.vrt"
        if not virtual.exists():
            self._make_mosaic(folder, across, side)
        warm(sorted(folder.glob("*.tif")))
        return definition, virtual

    def _make_mosaic(self, folder: pathlib.Path, across: int, side: int) -> None:
        folder.mkdir(parents=True)
        whole = self.raster(across * side)
        parts = []
        for row in range(across):
            for column in range(across):
                part = folder / f"{row}_{column}.tif"
                run(["gdal_translate", "-q", "-co", "TILED=YES", "-srcwin", str(column * side), str(row * side),
                     str(side), str(side), whole, part])
                run(["gdaladdo", "-q", "-r", "average", part, "2", "4", "8"])
                parts.append(part)
        sources = "".join(f"<Source><File>{part.name}</File><Attributes><Year>{2000 + i * 7 % 20}</Year></Attributes></Source>"
                          for i, part in enumerate(parts))
        (folder / "mosaic.VLDef").write_text(
            f"<Vorlane><MosaicDefinition><Sources>{sources}</Sources></MosaicDefinition></Vorlane>")
        run(["gdalbuildvrt", "-q", folder / "mosaic.vrt", *parts])

    def job(self, name: str, reference: pathlib.Path, edges: tuple[int, int, int, int], pixels: int,
            properties: str = "") -> pathlib.Path:
        """An export to a plain TIFF; edges are pixels from the upper left corner: left, top, right, bottom."""
        left, top, right, bottom = edges
        file = self.folder / f"{name}.VLJob"
        file.write_text(
            f'<VLJob Version="1"><Service Reference="{reference}"><ImageServiceProperties>{properties}'
            f'</ImageServiceProperties></Service><Extent Left="{EAST + left}" Bottom="{NORTH - bottom}" '
            f'Right="{EAST + right}" Top="{NORTH - top}"/><Grid Columns="{pixels}" Rows="{pixels}"/>'
            f'<Format Name="Tiff"/><File Path="{name}.Tif"/></VLJob>')
        return file
