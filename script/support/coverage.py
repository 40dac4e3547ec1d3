"""Adds up what gcov tells of the sources of some modules. See script/coverage."""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
REASONS = ROOT / "tests/coverage/reasons.txt"
BRANCHES_DUE = {"engine": 90, "client": 90}  # percent; 95 of other modules


class Source:
    def __init__(self):
        self.lines = collections.Counter()
        self.branches = {}

    def add(self, line, quiet):
        """`quiet` tells for each branch whether only exceptions lead to it and none did."""
        number = line["line_number"]
        self.lines[number] += line["count"]
        # Each instance of a template counts by itself, and is one place to a reader.
        taken = [branch["count"] for branch, dropped in zip(line["branches"], quiet)
                 if not branch["throw"] and not dropped]
        known = self.branches.setdefault(number, [0] * len(taken))
        if len(known) < len(taken):
            known += [0] * (len(taken) - len(known))
        for place, count in enumerate(taken):
            known[place] += count


def gcov(data, build, *options):
    # From the build folder the names of headers lead to them.
    return subprocess.run(["gcov", "--branch-probabilities", "--stdout", *options, data], cwd=build, check=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def told_by_gcov(data, build):
    """The document of gcov, and its text of all blocks, which alone tells where only exceptions lead."""
    document = json.loads(gcov(data, build, "--json-format"))
    return document, quiet_branches(gcov(data, build, "--all-blocks").decode(errors="replace"), build)


def quiet_branches(text, build):
    """By file, instance and line: for each branch whether its block is one that only exceptions reach, and none did."""
    found = collections.defaultdict(list)
    place = (None, "", 0)
    exceptional = False
    for line in text.splitlines():
        if line.startswith(("branch", "call", "function", "unconditional")):
            if line.startswith("branch"):
                found[place].append(exceptional)
        elif line.startswith("---"):
            place = (place[0], "", 0)
        elif match := re.match(r" *(\S+): *(\d+)(-block|:)(Source:)?(.*)", line):
            count, number, kind, source, rest = match.groups()
            if source:
                place = (named(rest, build), "", 0)
            elif kind == "-block":
                exceptional = count == "$$$$$"
            else:
                place, exceptional = (place[0], place[1], int(number)), False
        elif line.endswith(":") and " " not in line:
            place = (place[0], line[:-1], 0)
    return found


def named(path, build):
    """Relative to the project; None for what lies outside of its sources."""
    path = pathlib.Path(build, path).resolve()
    return str(path.relative_to(ROOT)) if path.is_relative_to(ROOT / "src") else None


def read(build):
    sources = collections.defaultdict(Source)
    build = pathlib.Path(build).resolve()
    data = list(build.rglob("*.gcda"))
    if not data:
        sys.exit(f"{build} has no figures of a run")
    with concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
        for document, quiet in pool.map(told_by_gcov, data, [build] * len(data)):
            add_files(document, quiet, sources, build)
    return sources


def add_files(document, quiet, sources, build):
    for file in document["files"]:
        name = named(file["file"], build)
        if name is None:
            continue
        for line in file["lines"]:
            number, branches = line["line_number"], len(line["branches"])
            told = quiet.get((name, line.get("function_name"), number)) or quiet.get((name, "", number)) or []
            sources[name].add(line, told if len(told) == branches else [False] * branches)
            if len(told) != branches:
                sources[name].unlike = getattr(sources[name], "unlike", 0) + 1


def reasons():
    """Lines that no test can take, as "file: code"; behind a tab stands why."""
    lines = REASONS.read_text().splitlines() if REASONS.exists() else []
    return {line.split("\t")[0] for line in lines if line and not line.startswith("#")}


def count(sources, module, excused, missing):
    total = collections.Counter()
    for name in sorted(name for name in sources if name.startswith(f"src/{module}/")):
        code = (ROOT / name).read_text().splitlines()
        for number, hits in sorted(sources[name].lines.items()):
            text = code[number - 1].strip() if number <= len(code) else ""
            if not hits and text.rstrip(";)") == "}":
                continue  # the way of exceptions through the end of a routine that all others leave before
            branches = sources[name].branches[number]
            listed = f"{name}: {text}" in excused
            total["lines"] += 1
            total["lines taken"] += bool(hits or listed)
            total["branches"] += len(branches)
            total["branches taken"] += len(branches) if listed else sum(map(bool, branches))
            total["listed"] += listed
            if not listed and (not hits or not all(branches)):
                what = "line" if not hits else f"{branches.count(0)} of {len(branches)} branches"
                missing.append(f"{name}:{number}: {what}: {text}")
    return total


def reached(total, what):
    return 100 * total[what + " taken"] / max(1, total[what])


def share(total, what, due):
    figures = f"{total[what + ' taken']:>6} of {total[what]:<6} {reached(total, what):6.2f} / {due}"
    return f"{figures:<29}"


def stale(excused):
    """Entries of the file of reasons whose code is not there any more."""
    for entry in sorted(excused):
        name, code = entry.split(": ", 1)
        path = ROOT / name
        if not path.exists() or code not in {line.strip() for line in path.read_text().splitlines()}:
            yield entry


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--missing")
    parser.add_argument("modules", nargs="+")
    options = parser.parse_args()
    sources, excused, missing, short = read(options.build), reasons(), [], []
    all_modules = collections.Counter()
    print(f"{'module':<12}{'lines: reached / due':<29}{'branches: reached / due':<29}listed")
    for module in options.modules:
        total = count(sources, module, excused, missing)
        all_modules += total
        due = BRANCHES_DUE.get(module, 95)
        print(f"{module:<12}{share(total, 'lines', 100)}{share(total, 'branches', due)}{total['listed']}")
        if reached(total, "lines") < 100 or reached(total, "branches") < due:
            short.append(module)
    print(f"{'all':<12}{share(all_modules, 'lines', 100)}{share(all_modules, 'branches', 95)}{all_modules['listed']}")
    if options.missing:
        pathlib.Path(options.missing).write_text("\n".join(missing) + "\n")
    gone = [f"not in the source any more: {entry}" for entry in stale(excused)]
    if short:
        gone.append("short of what is due: " + ", ".join(short))
    sys.exit("\n".join(gone) or 0)


if __name__ == "__main__":
    main()
