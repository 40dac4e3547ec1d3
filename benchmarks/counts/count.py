"""Counts the instructions that benchmarks of the logic take, by callgrind, and compares them with what is kept. Unlike a
time, a count is the same on a machine that is busy.

count.py FOLDER OF THE BENCHMARKS COUNTS [--accept]
"""

from __future__ import annotations

import argparse
import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tempfile

TOLERANCE = 1.1
FUNCTION = "vlCounted"  # benchmarks/Counted.h
COUNTED = [
    ("Selection_bench", "answerToRowsOfAFlatList/5000"),
    ("Selection_bench", "answerToRowsAtTheRoot/5000/100"),
    ("Selection_bench", "oneFolderEnteredAndLeft/5000"),
    ("Metadata_bench", "sourceOpens/5000"),
    ("Metadata_bench", "rowClick/5000"),
    ("ExportRecalculation_bench", "edgeLeft/0"),
    ("ExportRecalculation_bench", "columnsLeft/0"),
    ("ExportRecalculation_bench", "pixelSizeXLeft/1"),
    ("Engine_bench", "listRows/5000"),
    ("Engine_bench", "treeShown/10000"),
    ("Engine_bench", "keyInAPage"),
]


def count(folder: pathlib.Path, program: str, name: str) -> int:
    """Of one round of the benchmark, which begins with nothing made yet."""
    with tempfile.TemporaryDirectory() as place:
        out = pathlib.Path(place) / "callgrind.out"
        done = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--toggle-collect={FUNCTION}", f"--callgrind-out-file={out}",
             folder / program, f"--benchmark_filter=^{re.escape(name)}$", "--benchmark_min_time=0"],
            env={**os.environ, "LC_ALL": "C.UTF-8", "TZ": "UTC"}, capture_output=True, text=True)
        totals = re.findall(r"^(?:totals|summary): (\d+)", out.read_text() if out.exists() else "", re.MULTILINE)
    if done.returncode != 0 or not totals or int(totals[-1]) == 0:
        raise RuntimeError(f"{program} {name} could not be counted: {done.stderr[-1000:]}")
    return int(totals[-1])


def count_all(folder: pathlib.Path) -> dict[str, int]:
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return dict(zip((f"{program} {name}" for program, name in COUNTED),
                        pool.map(lambda one: count(folder, *one), COUNTED)))


def read(file: pathlib.Path) -> dict[str, int]:
    kept = {}
    for line in file.read_text(encoding="utf-8").splitlines():
        name, _, number = line.rpartition(" ")
        kept[name] = int(number)
    return kept


def problems(counts: dict[str, int], kept: dict[str, int]) -> list[str]:
    """What takes more than it may, and what is counted on one side alone."""
    found = [f"{name}: {counts[name]} instructions, {counts[name] / kept[name]:.2f} times the {kept[name]} that are kept"
             for name in counts if name in kept and counts[name] > TOLERANCE * kept[name]]
    return found + [f"{name} is kept or counted, but not both" for name in sorted(counts.keys() ^ kept.keys())]


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("counts", type=pathlib.Path)
    parser.add_argument("--accept", action="store_true", help="keep what is counted now")
    given = parser.parse_args()
    counts = count_all(given.folder)
    kept = read(given.counts) if given.counts.exists() else {}
    for name, number in counts.items():
        print(f"{name} {number}" + (f", {number / kept[name]:.2f} times what is kept" if name in kept else ""))
    if given.accept:
        given.counts.write_text("".join(f"{name} {number}\n" for name, number in counts.items()), encoding="utf-8")
        return 0
    found = problems(counts, kept)
    print(*found, sep="\n")
    if found:
        print("If that is due: ninja -C build/dev accept_counts")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
