"""Writes what was measured as a page of docs/."""

from __future__ import annotations

import datetime
import os
import pathlib
import platform

from measure import Figure, Missing
from rows import Line, Row

Outcome = list[Figure] | Missing

HEAD = """# Performance

Written by `script/bench`, which builds the release, makes its inputs, and runs ours and the peers in turns in one run.
Ratios are ours to the peer's: below 1 ours is faster. The middle of {rounds} rounds, and from the least to the most.
[benchmarks](../benchmarks/README.md) tells of each program; older figures stand there.

{machine}, {date}; load {load} before.
"""


def machine() -> str:
    names = [line.partition(":")[2].strip() for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines()
             if line.startswith("model name")]
    system = platform.freedesktop_os_release().get("PRETTY_NAME", "Linux")
    return f"{len(names)} cores ({names[0] if names else platform.machine()}), {system}"


def number(value: float) -> str:
    return f"{value:.2f}" if value < 10 else f"{value:.0f}"


def line_of(line: Line, figure: Figure) -> str:
    unit = f" {line.unit}" if line.unit else ""
    reached = "yes" if figure.middle <= line.due else "no"
    memory = f"{figure.megabytes:.0f} MB" if figure.megabytes is not None else ""
    return (f"| {line.work} | {number(figure.middle)}{unit} | {number(min(figure.values))} to "
            f"{number(max(figure.values))} | {number(line.due)}{unit} | {reached} | {memory} |")


def table(outcomes: list[tuple[Row, Outcome]]) -> list[str]:
    lines = ["| Work | Middle | Spread | Wanted | Reached | Memory |", "|---|---|---|---|---|---|"]
    for row, outcome in outcomes:
        if isinstance(outcome, Missing):
            lines += [f"| {line.work} | not measured | | {number(line.due)} | | |" for line in row.lines]
        else:
            lines += [line_of(line, figure) for line, figure in zip(row.lines, outcome, strict=True)]
    return lines


def misses(row: Row, outcome: Outcome) -> bool:
    if isinstance(outcome, Missing):
        return False
    heavy = any(row.memory_due is not None and (figure.megabytes or 0) > row.memory_due for figure in outcome)
    return heavy or any(figure.middle > line.due for line, figure in zip(row.lines, outcome, strict=True))


def page(outcomes: list[tuple[Row, Outcome]], rounds: int, load: float) -> str:
    text = HEAD.format(rounds=rounds, machine=machine(), date=datetime.date.today().isoformat(), load=f"{load:.1f}")
    text += "\n" + "\n".join(table(outcomes)) + "\n"
    reasons = [f"- {row.lines[0].work}: {row.why}" for row, outcome in outcomes if row.why and misses(row, outcome)]
    absent = [f"- {row.lines[0].work}: {outcome}" for row, outcome in outcomes if isinstance(outcome, Missing)]
    if reasons:
        text += "\n## What is not reached, and why\n\n" + "\n".join(reasons) + "\n"
    if absent:
        text += "\n## Not measured\n\n" + "\n".join(absent) + "\n"
    return text


def load_now() -> float:
    return os.getloadavg()[0]
