"""Ways of measuring a piece of work beside its peer, in turns, in one run."""

from __future__ import annotations

import dataclasses
import itertools
import json
import os
import pathlib
import re
import resource
import statistics
import subprocess
import time
from collections.abc import Callable, Mapping, Sequence

Words = Sequence[str | pathlib.Path]
Environment = Mapping[str, str]
SCALE = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


class Missing(Exception):
    """A program that a row needs is not there, or did not run to its end; the words say which."""


@dataclasses.dataclass(frozen=True)
class Cost:
    seconds: float
    megabytes: float  # at most

    def then(self, other: Cost) -> Cost:
        return Cost(self.seconds + other.seconds, max(self.megabytes, other.megabytes))


@dataclasses.dataclass(frozen=True)
class Figure:
    """What came out of one line: one number each round."""

    values: list[float]
    megabytes: float | None = None  # of ours, at most

    @property
    def middle(self) -> float:
        return statistics.median(self.values)


def run(words: Words, environment: Environment | None = None) -> str:
    """What a program printed. @raises Missing"""
    texts = [str(word) for word in words]
    try:
        done = subprocess.run(texts, env={**os.environ, **(environment or {})}, capture_output=True, text=True)
    except OSError as error:
        raise Missing(f"{pathlib.Path(texts[0]).name} is not there") from error
    if done.returncode != 0:
        told = (done.stderr.strip() or done.stdout.strip()).splitlines()[-1:]
        raise Missing(f"{pathlib.Path(texts[0]).name} ended with code {done.returncode}: {' '.join(told)}")
    return done.stdout


def cost(words: Words, environment: Environment | None = None) -> Cost:
    """Time and memory of a whole program. @raises Missing"""
    texts = [str(word) for word in words]
    begin = time.perf_counter()
    try:
        with open(os.devnull, "wb") as nothing:
            program = subprocess.Popen(
                texts, env={**os.environ, **(environment or {})}, stdout=nothing, stderr=nothing)
    except OSError as error:
        raise Missing(f"{pathlib.Path(texts[0]).name} is not there") from error
    usage: resource.struct_rusage
    _, status, usage = os.wait4(program.pid, 0)
    program.returncode = os.waitstatus_to_exitcode(status)
    if program.returncode != 0:
        raise Missing(f"{pathlib.Path(texts[0]).name} ended with code {program.returncode}")
    return Cost(time.perf_counter() - begin, usage.ru_maxrss / 1024)


def warm(files: Sequence[pathlib.Path]) -> None:
    """Reads files, so that neither side finds them in memory because the other one did."""
    for file in files:
        with open(file, "rb") as opened:
            while opened.read(1 << 24):
                pass


def in_turns(ours: Callable[[], Cost], peer: Callable[[], Cost], rounds: int) -> Figure:
    """Ratios of two programs, one each round."""
    pairs = [(ours(), peer()) for _ in range(rounds)]
    return Figure([one.seconds / other.seconds for one, other in pairs], max(one.megabytes for one, _ in pairs))


Entries = list[dict[str, object]]


def google(program: pathlib.Path, names: Sequence[str], rounds: int) -> Entries:
    """What functions of one program told, whose repetitions the harness mixes. @raises Missing"""
    wanted = "|".join(f"^{re.escape(name)}(/[a-z_]+(:[0-9]+)?)*$" for name in names)
    told = run([program, f"--benchmark_filter={wanted}", f"--benchmark_repetitions={rounds}",
                "--benchmark_enable_random_interleaving=true", "--benchmark_format=json"])
    if not told:
        raise Missing(f"{program.name} does not know {' or '.join(names)}")
    entries: Entries = json.loads(told)["benchmarks"]
    return entries


def repetitions(entries: Entries, name: str) -> Entries:
    """Of one function. Names that the harness tells go on with how the time was taken: /real_time. @raises Missing"""
    found = [entry for entry in entries if entry["run_type"] == "iteration"
             and f"{entry['run_name']}/".startswith(name + "/")]
    for entry in found:
        if entry.get("error_occurred"):
            raise Missing(f"{name}: {entry.get('error_message')}")
    if not found:
        raise Missing(f"the benchmark does not know {name}")
    return found


def seconds(entries: Entries, name: str) -> list[float]:
    """Real time where that is what the harness took, else that of a processor. @raises Missing"""
    return [float(str(entry["real_time" if str(entry["run_name"]).endswith("_time") else "cpu_time"]))
            * SCALE[str(entry["time_unit"])] for entry in repetitions(entries, name)]


def counters(entries: Entries, name: str, counter: str) -> list[float]:
    """What a function counts itself. @raises Missing"""
    return [float(str(entry[counter])) for entry in repetitions(entries, name)]


def ratios(ours: list[float], peer: list[float]) -> Figure:
    return Figure([one / other for one, other in zip(ours, peer, strict=True)])


def printed(words: Words, pattern: str, rounds: int, environment: Environment | None = None) -> list[Figure]:
    """Numbers of a program that compares by itself: one figure for each group of the pattern. @raises Missing"""
    rows = []
    for _ in range(rounds):
        text = run(words, environment)
        found = re.search(pattern, text, re.MULTILINE | re.DOTALL)
        if not found:
            raise Missing(f"{pathlib.Path(str(words[0])).name} tells nothing of it")
        rows.append([float(group) for group in found.groups()])
    return [Figure(list(values)) for values in zip(*rows)]


def largest_in_parts(text: str, heads: Sequence[str], number: str) -> list[float]:
    """Of a text in parts, each begun by a line that is its head: the largest number of each part. @raises Missing"""
    lines = text.splitlines()
    largest = []
    for head in heads:
        if head not in lines:
            raise Missing(f"nothing is told of {head}")
        part = itertools.takewhile(lambda line: line not in heads, lines[lines.index(head) + 1:])
        found = [float(one) for line in part for one in re.findall(number, line)]
        if not found:
            raise Missing(f"no figure is told of {head}")
        largest.append(max(found))
    return largest
