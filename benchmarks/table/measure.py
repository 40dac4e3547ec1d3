"""Ways of measuring a piece of work beside its peer, in turns, in one run."""

from __future__ import annotations

import dataclasses
import json
import os
import pathlib
import re
import resource
import statistics
import subprocess
import time
from collections.abc import Callable, Sequence

Words = Sequence[str | pathlib.Path]


class Missing(Exception):
    """A program that a row needs is not there, or did not run to its end; the words say which."""


@dataclasses.dataclass(frozen=True)
class Cost:
    seconds: float
    megabytes: float  # at most


@dataclasses.dataclass(frozen=True)
class Figure:
    """What came out of one row: one number each round."""

    values: list[float]
    megabytes: float | None = None  # of ours, at most

    @property
    def middle(self) -> float:
        return statistics.median(self.values)


def run(words: Words, environment: dict[str, str] | None = None) -> str:
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


def cost(words: Words, environment: dict[str, str] | None = None) -> Cost:
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


def in_turns(ours: Callable[[], Cost], peer: Callable[[], Cost], rounds: int) -> Figure:
    """Ratios of two programs, one each round; the first round only warms the caches of files up."""
    pairs = [(ours(), peer()) for _ in range(rounds + 1)][1:]
    return Figure([one.seconds / other.seconds for one, other in pairs], max(one.megabytes for one, _ in pairs))


def google(program: pathlib.Path, ours: str, peer: str, rounds: int) -> Figure:
    """Ratios of two functions of one program, whose repetitions the harness mixes. @raises Missing"""
    names = "|".join(f"^{re.escape(name)}(/[a-z_]+(:[0-9]+)?)*$" for name in (ours, peer))
    told = run([program, f"--benchmark_filter={names}", f"--benchmark_repetitions={rounds}",
                "--benchmark_enable_random_interleaving=true", "--benchmark_format=json"])
    return ratios(json.loads(told)["benchmarks"], ours, peer)


def ratios(entries: list[dict[str, object]], ours: str, peer: str) -> Figure:
    """Of what the harness told. Its names go on with how the time was taken, such as /real_time. @raises Missing"""
    times: dict[str, list[float]] = {ours: [], peer: []}
    for entry in entries:
        name = str(entry["run_name"])
        of = next((one for one in (ours, peer) if name == one or name.startswith(one + "/")), None)
        if of is None or entry["run_type"] != "iteration":
            continue
        if entry.get("error_occurred"):
            raise Missing(f"{name}: {entry.get('error_message')}")
        is_real = name.endswith("_time")
        times[of].append(float(str(entry["real_time" if is_real else "cpu_time"])))
    if not times[ours] or not times[peer]:
        raise Missing(f"the benchmark does not know {ours} or {peer}")
    return Figure([one / other for one, other in zip(times[ours], times[peer])])


def printed(words: Words, pattern: str, rounds: int, environment: dict[str, str] | None = None) -> list[Figure]:
    """Numbers of a program that compares by itself: one figure for each group of the pattern. @raises Missing"""
    rows = []
    for _ in range(rounds):
        text = run(words, environment)
        found = re.search(pattern, text, re.MULTILINE | re.DOTALL)
        if not found:
            raise Missing(f"{pathlib.Path(str(words[0])).name} tells nothing of it")
        rows.append([float(group) for group in found.groups()])
    return [Figure(list(values)) for values in zip(*rows)]
