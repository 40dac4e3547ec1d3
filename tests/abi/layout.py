"""How the classes of the public headers lie in memory: sizes, bases, and who answers their virtual functions, in order."""

import pathlib
import re
import subprocess
import tempfile

CLASS = re.compile(r"Class (vlclientui::\S+)$")
TABLE = re.compile(r"Vtable for (vlclientui::\S+)$")
SIZES = re.compile(r"\s+(?:base )?size=\d+ (?:base )?align=\d+$")
ENTRY = re.compile(r"\d+\s+(?:\(int \(\*\)\(\.\.\.\)\))?([_a-z].*)$")


def read(compiler: str, include: pathlib.Path, source: str) -> dict[str, list[str]]:
    """For each class what to compare, line by line."""
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "all.cpp"
        dump = pathlib.Path(folder) / "dump"
        file.write_text(source, encoding="utf-8")
        words = [compiler, "-std=c++20", f"-I{include}", "-fsyntax-only", f"-fdump-lang-class={dump}", str(file)]
        subprocess.run(words, check=True, capture_output=True)
        blocks = dump.read_text(encoding="utf-8").split("\n\n")
    found: dict[str, list[str]] = {}
    for block in blocks:
        head, *lines = block.strip("\n").splitlines() or [""]
        if match := CLASS.match(head):
            found.setdefault(match[1], [])[:0] = sizes_and_bases(lines)
        elif match := TABLE.match(head):
            found.setdefault(match[1], []).extend(virtual_functions(lines))
    return found


def sizes_and_bases(lines: list[str]) -> list[str]:
    sizes = " ".join(line.strip() for line in lines if SIZES.match(line))
    bases = [re.sub(r" \(0x0x[0-9a-f]+\)", " at", line.strip()) for line in lines if "(0x0x" in line]
    return [sizes, *(f"base {base}" for base in bases[1:] if not base.startswith("primary-for"))]


def virtual_functions(lines: list[str]) -> list[str]:
    """In the order of the table; offsets, which follow from the bases, are left out."""
    entries = (ENTRY.match(line) for line in lines)
    return ["answers " + entry[1] for entry in entries if entry]
