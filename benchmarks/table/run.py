"""Measures the rows beside their peers, prints them, and writes docs/performance.md where all were asked for.

run.py BUILD [--rounds N] [--small] [--inputs FOLDER] [--page FILE] [ROW ...]"""

from __future__ import annotations

import argparse
import pathlib
import shutil
import sys
import tempfile

import document
from inputs import Inputs
from measure import Missing
from rows import ROWS, Bench, Row

SOURCE = pathlib.Path(__file__).resolve().parents[2]


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description="Measures ours beside its peers.")
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("rows", nargs="*", metavar="ROW", help=", ".join(row.name for row in ROWS))
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--small", action="store_true", help="a tenth of the pixels a side, to try the rows")
    parser.add_argument("--inputs", type=pathlib.Path, help="folder that keeps what is made (20 GB)")
    parser.add_argument("--page", type=pathlib.Path, help="where the page is written to")
    given = parser.parse_args()
    unknown = set(given.rows) - {row.name for row in ROWS}
    if unknown:
        parser.error(f"unknown row {', '.join(sorted(unknown))}")
    return given


def measure(bench: Bench, wanted: list[str]) -> list[tuple[Row, document.Outcome]]:
    outcomes: list[tuple[Row, document.Outcome]] = []
    for row in ROWS:
        if wanted and row.name not in wanted:
            continue
        outcome: document.Outcome
        try:
            outcome = row.measure(bench)
        except Missing as missing:
            outcome = missing
        outcomes.append((row, outcome))
        told = document.table(outcomes[-1:])[2:]
        print(*told, *([f"  {outcome}"] if isinstance(outcome, Missing) else []), sep="\n", flush=True)
    return outcomes


def main() -> int:
    given = arguments()
    load = document.load_now()
    folder = given.inputs or pathlib.Path(tempfile.mkdtemp(prefix="vl-bench-"))
    folder.mkdir(parents=True, exist_ok=True)
    try:
        inputs = Inputs(folder.resolve(), given.build.resolve())
        bench = Bench(given.build.resolve(), SOURCE, inputs, given.rounds, not given.small)
        outcomes = measure(bench, given.rows)
    finally:
        if not given.inputs:
            shutil.rmtree(folder)
    if given.page:
        given.page.write_text(document.page(outcomes, given.rounds, load), encoding="utf-8")
    return 1 if any(isinstance(outcome, Missing) for _, outcome in outcomes) else 0


if __name__ == "__main__":
    sys.exit(main())
