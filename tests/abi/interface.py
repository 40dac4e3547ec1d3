#!/usr/bin/env python3
"""Compares what hosts are compiled and linked against with what is kept beside this file.

interface.py --headers FILE,... --include FOLDER --libraries FILE,... [--twins FILE,FILE] [--clang PROGRAM] [--accept]

functions.txt has what the public headers declare and the libraries export, classes.txt how the classes lie in memory.
Twins are two libraries for the same hosts, each of which exports what the other does of what is declared.
Exit code 1 where something differs; --accept writes both files anew."""

import argparse
import difflib
import fnmatch
import pathlib
import subprocess
import sys

import declarations
import layout

KEPT = pathlib.Path(__file__).parent
MAP = KEPT.parents[1] / "cmake" / "exports.map"
HOW_TO_ACCEPT = """
Hosts that were built before do not see this change, or crash on it. If it is meant, keep the new interface by
  cmake --build build/dev --target accept_interface
and commit the tables with the change. From version 1.0 on, a line that went or changed asks for a new SOVERSION."""


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser()
    parser.add_argument("--headers", required=True, help="public headers, seen from the include folder")
    parser.add_argument("--include", required=True, type=pathlib.Path)
    parser.add_argument("--libraries", required=True)
    parser.add_argument("--twins", default="")
    parser.add_argument("--clang", default="clang++")
    parser.add_argument("--compiler", default="g++")
    parser.add_argument("--accept", action="store_true")
    return parser.parse_args()


def exported(libraries: list[str]) -> set[str]:
    """Names that a host's linker finds there. Weak ones are left out: those are inline, so hosts bring their own, and
    whether a library has them too is up to the optimizer."""
    told = subprocess.run(["nm", "-D", "--defined-only", *libraries], check=True, capture_output=True, text=True).stdout
    words = [line.split() for line in told.splitlines()]
    return {name.partition("@")[0] for _, kind, name in (three for three in words if len(three) == 3) if kind not in "WwVv"}


def alone(twins: str, declared: set[str]) -> set[str]:
    """What one of two libraries for the same hosts has and the other lacks."""
    ours = [exported([library]) & declared for library in twins.split(",") if library]
    return ours[0] ^ ours[1] if ours else set()


def hidden(version_script: str, names: set[str]) -> set[str]:
    """Those that a library which shows what is public alone would not show: its linker takes them for local."""
    shown = version_script.partition("global:")[2].partition("local:")[0]
    patterns = [pattern.strip() for pattern in shown.split(";") if pattern.strip()]
    return {name for name in names if not any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns)}


def tables(given: argparse.Namespace) -> tuple[dict[str, list[str]], list[str]]:
    """The two tables as they would be kept, and the names that a library fails to bring."""
    source = "".join(f'#include "{header}"\n' for header in sorted(given.headers.split(",")))
    found = declarations.read(given.clang, given.include, source)
    symbols = exported(given.libraries.split(","))
    readable = declarations.demangled(found.functions)
    functions = sorted(f"{readable[name]} -> {kind}" for name, kind in found.functions.items() if name in symbols)
    lacking = (found.wanted - symbols) | alone(given.twins, set(found.functions))
    lacking |= hidden(MAP.read_text(encoding="utf-8"), found.wanted | (set(found.functions) & symbols))
    missing = sorted(readable.get(name, name) for name in lacking)
    classes = layout.read(given.compiler, given.include, source)
    return {"functions.txt": functions, "classes.txt": found.described(classes)}, missing


def differences(name: str, now: list[str]) -> list[str]:
    kept = (KEPT / name).read_text(encoding="utf-8").splitlines()
    found = difflib.unified_diff(kept, now, "kept", "now", n=1, lineterm="")
    return [f"{name}: {line}" for line in found if not line.startswith(("---", "+++"))]


def main() -> int:
    given = arguments()
    now, missing = tables(given)
    if missing:
        print("Declared in public headers, but no library, only one for Qt 5 or 6, or not cmake/exports.map exports it:", *missing, sep="\n  ")
    if given.accept:
        for name, lines in now.items():
            (KEPT / name).write_text("\n".join(lines) + "\n", encoding="utf-8")
        return 1 if missing else 0
    changed = [line for name, lines in now.items() for line in differences(name, lines)]
    if changed:
        print("The interface to hosts has changed (- kept, + now):", *changed, HOW_TO_ACCEPT, sep="\n")
    return 1 if changed or missing else 0


if __name__ == "__main__":
    sys.exit(main())
