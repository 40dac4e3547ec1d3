"""Runs script/harden, script/coverage and script/mutate in a small form. Usage: check_proof_scripts.py ROOT BUILD FOLDER CXX"""

import os
import pathlib
import re
import subprocess
import sys

root, build, folder = map(pathlib.Path, sys.argv[1:4])
compiler = sys.argv[4]
folder.mkdir(parents=True, exist_ok=True)
sys.path.insert(0, str(root / "script/support"))

PROGRAM = """#include <cstdio>
bool small(int number) { return number < 7; }
int main() {
  std::puts("hello");
  return small(7) ? 1 : 0;
}
"""


def run(*command, outcome=0, **more):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False,
                            env=os.environ | more.pop("env", {}), **more)
    if outcome is not None and result.returncode != outcome:
        sys.exit(f"{command} ended with {result.returncode}\n{result.stdout}")
    return result


def expect(condition, text):
    if not condition:
        sys.exit(text)


def check_help():
    for name in ("harden", "coverage", "mutate"):
        told = run(root / "script" / name, "--help").stdout
        expect("Usage: script/" + name in told, f"script/{name} --help tells\n{told}")


def check_harden():
    told = run(root / "script/harden", "--quick", "soak", env={
        "VLCLIENTUI_HARDEN_BUILD": str(build), "VLCLIENTUI_HARDEN_LOGS": str(folder)}).stdout
    expect(re.search(r"^soak +8 +0$", told, re.M), f"script/harden tells\n{told}")
    run(root / "script/harden", "nothing", outcome=1)


def check_coverage():
    sources = [root / "src/documents/TextCase.cpp", root / "src/contracts/Utf8.cpp"]
    (folder / "main.cpp").write_text('#include "documents/TextCase.h"\nint main() {}\n')
    run(compiler, "--coverage", "-std=c++20", f"-I{root}/src", *sources, "main.cpp", "-o", "covered", cwd=folder)
    run(folder / "covered", cwd=folder)
    told = run(sys.executable, root / "script/support/coverage.py", "--build", folder, "--missing", folder / "missing",
               "documents", outcome=1).stdout
    expect(re.search(r"^documents +0 of \d+ +0\.00 / 100 ", told, re.M), f"script/coverage tells\n{told}")
    expect("short of what is due: documents" in told, f"script/coverage does not tell what is short\n{told}")
    expect("src/documents/TextCase.cpp" in (folder / "missing").read_text(), "no line is missing")


def check_mutants():
    import mutants

    path = folder / "program.cpp"
    path.write_text(PROGRAM)
    found, text = mutants.rewrite(path, "program.cpp", ["-std=c++20"], 0, set())
    kinds = {mutant.kind for mutant in found}
    expect({"comparison", "constant", "message", "statement"} <= kinds, f"there are mutants of {kinds}")
    (folder / "mutated.cpp").write_text(text)
    support = root / "script/support"
    run(compiler, "-std=c++20", f"-I{support}", "mutated.cpp", support / "mutant_switch.cpp", "-o", "mutated", cwd=folder)
    expect(run(folder / "mutated").stdout == "hello\n", "without a mutant the program is another one")
    changed = [run(folder / "mutated", outcome=None, env={"VLCLIENTUI_MUTANT": str(number)}) for number in range(len(found))]
    noticed = {mutant.kind for mutant, result in zip(found, changed) if (result.returncode, result.stdout) != (0, "hello\n")}
    expect({"comparison", "message", "statement"} <= noticed, f"only {noticed} change anything")


check_help()
check_harden()
check_coverage()
check_mutants()
