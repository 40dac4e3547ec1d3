"""Measures rows beside their peers, prints them, keeps them in the build folder, and writes a page of all that are kept."""

from __future__ import annotations

import argparse
import pathlib
import shutil
import sys
import tempfile

import document
from bench import Bench
from inputs import Inputs
from measure import Missing
from results import Outcome, Results
from rows import ROWS

SOURCE = pathlib.Path(__file__).resolve().parents[2]


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("rows", nargs="*", metavar="ROW", help=", ".join(row.name for row in ROWS))
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--small", action="store_true", help="a tenth of the pixels a side, to try the rows; nothing is kept")
    parser.add_argument("--inputs", type=pathlib.Path, help="folder that keeps what is made (6 GB)")
    parser.add_argument("--page", type=pathlib.Path, help="where the page is written to")
    parser.add_argument("--only-page", action="store_true", help="measure nothing")
    given = parser.parse_intermixed_args()
    unknown = set(given.rows) - {row.name for row in ROWS}
    if unknown:
        parser.error(f"unknown row {', '.join(sorted(unknown))}")
    return given


def measure(bench: Bench, wanted: list[str], results: Results | None) -> bool:
    """@returns whether nothing was missing."""
    is_whole = True
    for row in ROWS:
        if wanted and row.name not in wanted:
            continue
        outcome: Outcome
        try:
            outcome = row.measure(bench)
        except Missing as missing:
            outcome, is_whole = missing, False
        if results:
            results.keep(row, outcome, bench.rounds)
        told = [str(outcome)] if isinstance(outcome, Missing) else []
        print(*document.lines_of(row, outcome), *told, sep="\n", flush=True)
    return is_whole


def main() -> int:
    given = arguments()
    results = Results(given.build / "benchmarks/figures.json")
    is_whole = True
    if not given.only_page:
        folder = given.inputs or pathlib.Path(tempfile.mkdtemp(prefix="vl-bench-"))
        folder.mkdir(parents=True, exist_ok=True)
        try:
            inputs = Inputs(folder.resolve(), given.build.resolve())
            bench = Bench(given.build.resolve(), SOURCE, inputs, given.rounds, not given.small)
            is_whole = measure(bench, given.rows, None if given.small else results)
        finally:
            if not given.inputs:
                shutil.rmtree(folder)
    if given.page and not given.small:
        given.page.write_text(document.page(results.all()), encoding="utf-8")
    return 0 if is_whole else 1


if __name__ == "__main__":
    sys.exit(main())
