"""What a row measures with: programs, inputs, and how often."""

from __future__ import annotations

import dataclasses
import pathlib

from inputs import Inputs
from measure import Cost, cost

OFFSCREEN = {"QT_QPA_PLATFORM": "offscreen"}


@dataclasses.dataclass(frozen=True)
class Bench:
    build: pathlib.Path
    source: pathlib.Path
    inputs: Inputs
    rounds: int
    large: bool  # sizes that figures are told for; smaller ones try the rows alone

    def program(self, name: str) -> pathlib.Path:
        return self.build / "benchmarks" / name

    def size(self, pixels: int) -> int:
        return pixels if self.large else pixels // 10

    @property
    def home(self) -> dict[str, str]:
        """Where our programs find definitions and help."""
        return {"VLCLIENTUI_HOME": str(self.source), **OFFSCREEN}

    def export(self, job: pathlib.Path) -> Cost:
        (job.parent / f"{job.stem}.Tif").unlink(missing_ok=True)
        return cost([self.build / "apps/vlhost/vlhost", "export", "--job", job], self.home)

    def translate(self, raster: pathlib.Path, *words: str) -> Cost:
        target = self.inputs.folder / "peer.tif"
        target.unlink(missing_ok=True)
        return on_disk(cost(["gdal_translate", "-q", "--config", "GDAL_CACHEMAX", "64", *words, raster, target]), target)


def on_disk(peer: Cost, target: pathlib.Path) -> Cost:
    """An export ends when the disk has all of its file; a peer that does not is to wait as long."""
    return peer.then(cost(["sync", target]))
