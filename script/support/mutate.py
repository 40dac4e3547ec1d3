"""Builds the mutants of some modules, lets the tests of each look for them, and tells who survived. See script/mutate."""

import argparse
import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import time

import mutants

ROOT = pathlib.Path(__file__).resolve().parents[2]
LISTED = ROOT / "tests/mutants/survivors.txt"
BLOCK = 10000  # numbers of one source
LOGIC = ["documents", "frame", "selection", "export", "viewpoint", "metadata", "properties", "engine"]
PROGRAMS = ["scenarios/scenarios_headless_test"]  # looks at every module, after the module's own tests
APART = "-*Sweep*"  # minutes of calls that are struck; what they find is a crash


def arguments():
    parser = argparse.ArgumentParser(prog="script/mutate")
    parser.add_argument("--count", type=int, default=1000, help="mutants to try, drawn at random (1000)")
    parser.add_argument("--seed", type=int, default=1, help="of the drawing (1)")
    parser.add_argument("--files", help="only sources whose path holds this text")
    parser.add_argument("--folder", default=str(ROOT / "build/mutants"), help="where they are built (build/mutants)")
    parser.add_argument("--least", type=float, default=95, help="share that must be caught, in percent (95)")
    parser.add_argument("--minutes", type=float, default=1e6, help="stop trying after these")
    parser.add_argument("--own", action="store_true", help="by each module's own tests alone, without the scenarios")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="at a time")
    parser.add_argument("modules", nargs="*", help="folders of src; the logic and the engine unless told")
    return parser.parse_args()


class Tree:
    """A copy of the project whose sources hold their mutants."""

    def __init__(self, options):
        self.modules = options.modules or LOGIC
        self.tree = pathlib.Path(options.folder) / "tree"
        self.build = pathlib.Path(options.folder) / "build"
        self.without, self.untouched, self.all = {}, set(), {}
        self.files = options.files or ""
        self.jobs = options.jobs
        self.scenarios = [] if options.own else PROGRAMS

    def make(self):
        self.copy()
        names = [str(path.relative_to(self.tree)) for module in self.modules
                 for path in sorted((self.tree / "src" / module).rglob("*.cpp")) if "mutant_switch" not in path.name]
        self.names = [name for name in names if self.files in name]
        self.rewrite(self.names)
        self.configure()
        self.compile()

    def copy(self):
        listed = subprocess.run(["git", "-C", ROOT, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                                check=True, stdout=subprocess.PIPE, text=True).stdout
        for name in filter(None, listed.split("\0")):
            target = self.tree / name
            if (ROOT / name).is_file():
                target.parent.mkdir(parents=True, exist_ok=True)
                write(target, (ROOT / name).read_bytes())
        for end in ("h", "cpp"):
            place = self.tree / "src" / ("" if end == "h" else "contracts") / f"mutant_switch.{end}"
            write(place, (ROOT / f"script/support/mutant_switch.{end}").read_bytes())
        lists = self.tree / "src/contracts/CMakeLists.txt"
        lists.write_text(lists.read_text().replace("SOURCES\n", "SOURCES\n    mutant_switch.cpp\n", 1))

    def rewrite(self, names):
        include = ["-std=c++20", f"-I{self.tree}/src", "-I/usr/include/libxml2", "-I/usr/include/gdal"]
        with concurrent.futures.ProcessPoolExecutor(self.jobs) as pool:
            # Read from the original: the copy may hold mutants already.
            made = {name: pool.submit(mutants.rewrite, ROOT / name, name, include, self.names.index(name) * BLOCK,
                                      self.without.setdefault(name, set()))
                    for name in names if name not in self.untouched}
            for name in names:
                found, text = made[name].result() if name in made else ([], (ROOT / name).read_text())
                self.all[name] = found
                write(self.tree / name, text.encode())

    def configure(self):
        # Only the logic is built without adapters.
        adapters = "ON" if set(self.modules) - set(LOGIC) else "OFF"
        run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0 -w",
             f"-DVLCLIENTUI_BUILD_ADAPTERS={adapters}", "-DVLCLIENTUI_BUILD_BENCHMARKS=OFF",
             "-DVLCLIENTUI_BUILD_FUZZERS=OFF", "-DVLCLIENTUI_UNITY=ON",
             *(["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else [])])

    def compile(self):
        """Mutants that do not compile are left out; a source that still does not stays as it was."""
        for turn in range(8):
            result = subprocess.run(["ninja", "-C", self.build, "-k0", f"-j{self.jobs}"] + self.targets(),
                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
            if result.returncode == 0:
                return
            broken = set(re.findall(r"^(\S+\.cpp):(\d+):\d+: error", result.stdout, re.M))
            names = {}
            for path, line in broken:
                for name in self.names:
                    if path.endswith(name):
                        names.setdefault(name, set()).add(int(line))
            if not names:
                sys.exit(result.stdout[-4000:])
            for name, lines in names.items():
                kinds = ("comparison", "arithmetic", "condition", "constant", "message", "statement", "order")
                self.without[name] |= {(kind, line) for line in lines for kind in kinds}
                if turn >= 4:
                    self.untouched.add(name)
            self.rewrite(names)
        sys.exit("The mutants do not compile:\n" + result.stdout[-4000:])

    def targets(self):
        return [program.split("/")[-1] for program in self.programs()]

    def programs(self):
        rooms = [f"{module}/{module.split('/')[-1]}_test" for module in self.modules]
        return rooms + self.scenarios

    def mutants(self):
        return {place * BLOCK + at: mutant for place, name in enumerate(self.names)
                for at, mutant in enumerate(self.all[name])}


class Tests:
    """The suites of the test programs, and which mutants each comes by."""

    def __init__(self, tree):
        self.tree, self.suites = tree, []
        self.marks = tree.build / "reached"
        self.until = 0

    def learn(self):
        for program in self.tree.programs():
            path = self.tree.build / "tests" / program
            listing = run([path, "--gtest_list_tests", f"--gtest_filter={APART}"])
            for suite in re.findall(r"^(\S+)\.(?=\s|$)", listing, re.M):
                self.learn_suite(path, suite)
        self.suites.sort(key=lambda suite: suite[2])

    def learn_suite(self, path, suite):
        self.marks.write_bytes(bytes(BLOCK * len(self.tree.names)))
        begin = time.monotonic()
        outcome = self.run_suite(path, suite, 600, {"VLCLIENTUI_MUTANTS_REACHED": str(self.marks)})
        if outcome != "passed":
            sys.exit(f"{path.name} {suite} fails without any mutant")
        reached = {number for number, mark in enumerate(self.marks.read_bytes()) if mark}
        self.suites.append((path, suite, time.monotonic() - begin, reached))

    @staticmethod
    def run_suite(path, suite, seconds, more):
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8", "TZ": "UTC"} | more
        try:
            result = subprocess.run([path, f"--gtest_filter={suite}.*", "--gtest_brief=1", "--gtest_fail_fast"],
                                    cwd=path.parent, env=environment, timeout=seconds, stdout=subprocess.DEVNULL,
                                    stderr=subprocess.DEVNULL, check=False)
        except subprocess.TimeoutExpired:
            return "hung"
        return "passed" if result.returncode == 0 else "failed"

    def catches(self, number):
        """The suite that fails with this mutant; nothing when it survives, False when there was no time."""
        if time.monotonic() > self.until:
            return False
        for path, suite, seconds, reached in self.suites:
            if number in reached:
                outcome = self.run_suite(path, suite, 10 + 20 * seconds, {"VLCLIENTUI_MUTANT": str(number)})
                if outcome != "passed":
                    return suite
        return None


def write(path, content):
    """Leaves the time of an equal file as it is, so that nothing is compiled for it."""
    if not path.exists() or path.read_bytes() != content:
        path.write_bytes(content)


def run(command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def listed_reasons():
    lines = LISTED.read_text().splitlines() if LISTED.exists() else []
    return {line.split()[0]: line for line in lines if line and not line.startswith("#")}


def report(tried, survivors, tests):
    kinds = sorted({mutant.kind for _, mutant in tried})
    print(f"{'kind':<12}{'mutants':>8}{'caught':>8}")
    for kind in kinds:
        of_kind = [number for number, mutant in tried if mutant.kind == kind]
        print(f"{kind:<12}{len(of_kind):>8}{sum(number not in survivors for number in of_kind):>8}")
    reasons = listed_reasons()
    share = 100 * (1 - len(survivors) / max(1, len(tried)))
    equal = sum(survivors[number].key() in reasons for number in survivors)
    print(f"{'all':<12}{len(tried):>8}{len(tried) - len(survivors):>8}  {share:.1f} percent; "
          f"{equal} of {len(survivors)} survivors have a reason")
    reached = set().union(*(suite[3] for suite in tests.suites)) if tests.suites else set()
    for number, mutant in sorted(survivors.items()):
        if mutant.key() not in reasons:
            seen = "" if number in reached else " [no test comes by]"
            print(f"{mutant.key()} {mutant.kind} {mutant.file}:{mutant.line}: {mutant.code} -> {mutant.change}{seen}")
    return share


def main():
    options = arguments()
    tree = Tree(options)
    tree.make()
    tests = Tests(tree)
    tests.learn()
    everything = sorted(tree.mutants().items())
    tried = random.Random(options.seed).sample(everything, min(options.count, len(everything)))
    print(f"{len(everything)} mutants in {len(tree.names)} sources, {len(tried)} tried by {len(tests.suites)} suites", flush=True)
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        tests.until = time.monotonic() + 60 * options.minutes
        # Asked to end, it tells of those that were tried.
        signal.signal(signal.SIGTERM, lambda *_: setattr(tests, "until", 0))
        caught = list(pool.map(lambda of: tests.catches(of[0]), tried))
    tried, caught = zip(*[(mutant, by) for mutant, by in zip(tried, caught) if by is not False])
    survivors = {number: mutant for (number, mutant), by in zip(tried, caught) if by is None}
    tests.marks.unlink()
    sys.exit(0 if report(tried, survivors, tests) >= options.least else 1)


if __name__ == "__main__":
    main()
