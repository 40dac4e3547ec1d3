"""Adds up what gcov tells of the sources of some modules. See script/coverage."""

import argparse
import collections
import concurrent.futures
import gzip
import json
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
REASONS = ROOT / "tests/coverage/reasons.txt"


class Source:
    def __init__(self):
        self.lines = collections.Counter()
        self.branches = {}

    def add(self, line):
        number = line["line_number"]
        self.lines[number] += line["count"]
        # Each instance of a template counts by itself, and is one place to a reader.
        taken = [branch["count"] for branch in line["branches"] if not branch["throw"]]
        known = self.branches.setdefault(number, [0] * len(taken))
        if len(known) < len(taken):
            known += [0] * (len(taken) - len(known))
        for place, count in enumerate(taken):
            known[place] += count


def told_by_gcov(data):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["gcov", "--json-format", "--branch-probabilities", data], cwd=folder, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return [json.loads(gzip.decompress(path.read_bytes())) for path in pathlib.Path(folder).glob("*.json.gz")]


def read(build):
    sources = collections.defaultdict(Source)
    data = [path.resolve() for path in pathlib.Path(build).rglob("*.gcda")]
    if not data:
        sys.exit(f"{build} has no figures of a run")
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for documents in pool.map(told_by_gcov, data):
            for document in documents:
                add_files(document, sources)
    return sources


def add_files(document, sources):
    for file in document["files"]:
        path = pathlib.Path(document["current_working_directory"], file["file"]).resolve()
        if not path.is_relative_to(ROOT / "src"):
            continue
        name = str(path.relative_to(ROOT))
        for line in file["lines"]:
            sources[name].add(line)


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


def share(total, what):
    return f"{total[what + ' taken']:>7} of {total[what]:<6} {100 * total[what + ' taken'] / max(1, total[what]):6.2f} %"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--missing")
    parser.add_argument("modules", nargs="+")
    options = parser.parse_args()
    sources, excused, missing, all_modules = read(options.build), reasons(), [], collections.Counter()
    print(f"{'module':<12}{'lines':^27}{'branches':^27}listed")
    for module in options.modules:
        total = count(sources, module, excused, missing)
        all_modules += total
        print(f"{module:<12}{share(total, 'lines')}  {share(total, 'branches')}  {total['listed']}")
    print(f"{'all':<12}{share(all_modules, 'lines')}  {share(all_modules, 'branches')}  {all_modules['listed']}")
    if options.missing:
        pathlib.Path(options.missing).write_text("\n".join(missing) + "\n")


if __name__ == "__main__":
    main()
