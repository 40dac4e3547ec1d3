"""Writes what was measured as a page of docs/."""

from __future__ import annotations

import pathlib
import platform

from measure import Figure, Missing
from results import Outcome, Result
from rows import Line, Row

HEAD = """# Performance

Written by `script/bench` from what it measured: it builds the release, makes its inputs, and runs ours and the peers in turns.
Ratios are ours to the peer's: below 1 ours is faster. Each figure is the middle of its rounds, with the least and the
most. Inputs are in memory on both sides; what is exported lies on disk on both sides before the clock stops.
`gdal_translate` has 64 MB of cache, makes a file of the same kind, and takes as many threads as it does by itself.
Memory is the most that ours had in one piece. [benchmarks](../benchmarks/README.md) tells of each program.

Measured on {machine}, {dates}; {rounds} rounds.
"""


def machine() -> str:
    names = [line.partition(":")[2].strip() for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines()
             if line.startswith("model name")]
    system = platform.freedesktop_os_release().get("PRETTY_NAME", "Linux")
    return f"{len(names)} cores ({names[0] if names else platform.machine()}), {system}"


def number(value: float) -> str:
    return f"{value:.2f}" if value < 10 else f"{value:.0f}"


def reaches(row: Row, line: Line, figure: Figure) -> bool:
    is_light = row.memory_due is None or (figure.megabytes or 0) <= row.memory_due
    return is_light and figure.middle <= line.due


def line_of(row: Row, line: Line, figure: Figure) -> str:
    unit = f" {line.unit}" if line.unit else ""
    reached = "yes" if reaches(row, line, figure) else "no"
    memory = f"{figure.megabytes:.0f} MB" if figure.megabytes is not None else ""
    if row.memory_due is not None and memory:
        memory += f" of {row.memory_due:.0f}"
    return (f"| {line.work} | {number(figure.middle)}{unit} | {number(min(figure.values))} to "
            f"{number(max(figure.values))} | {number(line.due)}{unit} | {reached} | {memory} |")


def lines_of(row: Row, outcome: Outcome) -> list[str]:
    if isinstance(outcome, Missing):
        return [f"| {line.work} | not measured | | {number(line.due)} {line.unit} | | |" for line in row.lines]
    return [line_of(row, line, figure) for line, figure in zip(row.lines, outcome, strict=True)]


def reasons_of(row: Row, outcome: Outcome) -> list[str]:
    if isinstance(outcome, Missing):
        return []
    return [f"- {line.work}: {row.reason(line)}" for line, figure in zip(row.lines, outcome, strict=True)
            if row.reason(line) and not reaches(row, line, figure)]


def span(values: list[str]) -> str:
    least, most = min(values, default="never"), max(values, default="never")
    return least if least == most else f"{least} to {most}"


def page(results: list[Result]) -> str:
    measured = [result for result in results if not isinstance(result.outcome, Missing)]
    text = HEAD.format(machine=machine(), dates=span([result.date for result in measured]),
                       rounds=span([str(result.rounds) for result in measured]))
    table = ["", "| Work | Middle | Spread | Wanted | Reached | Memory |", "|---|---|---|---|---|---|"]
    for result in results:
        table += lines_of(result.row, result.outcome)
    text += "\n".join(table) + "\n"
    reasons = [reason for result in results for reason in reasons_of(result.row, result.outcome)]
    absent = [f"- {result.row.lines[0].work}: {result.outcome}" for result in results if isinstance(result.outcome, Missing)]
    if reasons:
        text += "\n## What is not reached, and why\n\n" + "\n".join(reasons) + "\n"
    if absent:
        text += "\n## Not measured\n\n" + "\n".join(absent) + "\n"
    return text
