"""The stubs by mypy, and beside the module that they describe; and when it is not loaded."""

from __future__ import annotations

import _ctypes
import ast
import pathlib
import shutil
import subprocess
import sys

import vlclientui
import vlclientui._core as core

FOLDER = pathlib.Path(vlclientui.__file__).parent
TESTS = pathlib.Path(__file__).parent


def mypy(*arguments: object, cache: pathlib.Path) -> str:
    words = [sys.executable, "-m", "mypy", "--strict", "--cache-dir", cache, *arguments]
    ended = subprocess.run([str(word) for word in words], capture_output=True, text=True, timeout=280)
    return ended.stdout.strip() + ended.stderr


def test_package_stubs_and_a_users_program_pass_strict_checks(tmp_path: pathlib.Path) -> None:
    good = tmp_path / "good.py"
    good.write_text(
        "import vlclientui\n"
        "class Server:\n"
        "    def GetServerInfo(self, request: str) -> str:\n"
        "        return ''\n"
        "with vlclientui.headless() as session:\n"
        "    dialog = session.create('ImageServicesDialog').query('IImageServicesDialog')\n"
        "    done: bool = dialog.Init('', Server())\n"
        "    shape = session.open('a').draw(3, 4).shape\n"
    )
    bad = tmp_path / "bad.py"
    bad.write_text(
        "import vlclientui\n"
        "session = vlclientui.headless()\n"
        "dialog = session.create('ImageServicesDialog').query('IImageServicesDialog')\n"
        "dialog.Init('', 3)\n"
        "session.open('a').draw('3')\n"
        "session.no_such_member\n"
    )
    errors = [line for line in mypy(FOLDER, good, bad, cache=tmp_path / "cache").splitlines() if " error: " in line]
    of_bad = {line.split(":")[1] for line in errors if "bad.py" in line}
    assert of_bad == {"4", "5", "6"}, errors
    assert [line for line in errors if "bad.py" not in line] == []


def members(tree: ast.AST) -> dict[str, set[str]]:
    told: dict[str, set[str]] = {"": set()}
    for node in ast.iter_child_nodes(tree):
        if isinstance(node, ast.FunctionDef):
            told[""].add(node.name)
        if isinstance(node, ast.ClassDef) and not any(ast.unparse(base) == "TypedDict" for base in node.bases):
            inner = {child.name for child in node.body if isinstance(child, ast.FunctionDef)}
            inner |= {child.target.id for child in node.body if isinstance(child, ast.AnnAssign)}  # type: ignore[union-attr]
            told[node.name] = {name for name in inner if not name.startswith("__")}
    return told


def test_stubs_tell_of_exactly_what_is_there() -> None:
    told = members(ast.parse((FOLDER / "_core.pyi").read_text()))
    there: dict[str, set[str]] = {"": set()}
    for name, value in vars(core).items():
        if isinstance(value, type):
            there[name] = {inner for inner in vars(value) if not inner.startswith("_")}
        elif not name.startswith("_"):
            there[""].add(name)
    assert told == there


def test_beside_the_library_for_the_other_qt_the_import_fails(tmp_path: pathlib.Path) -> None:
    other = tmp_path / "libVLClientUIHostQt5.so.0"
    shutil.copy(_ctypes.__file__, other)
    program = f"import ctypes; ctypes.CDLL({str(other)!r}); import vlclientui"
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=60)
    assert ended.returncode == 1 and "ImportError: VLClientUI for Qt 5" in ended.stderr, ended.stderr
