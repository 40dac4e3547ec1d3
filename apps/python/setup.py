"""Makes a wheel by CMake: the package, the two libraries, and the data that they need.

VLCLIENTUI_BUILD_DIR names a build folder that has everything built already, such as build/dev; without it the project is
configured and built in build/wheel/cmake. Qt, GDAL and the other libraries of the system stay outside.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
WORK = ROOT / "build" / "wheel"
PACKAGE = "vlclientui"


def version() -> str:
    found = re.search(r"project\(VLClientUI VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text())
    assert found, "CMakeLists.txt tells no version"
    return found.group(1)


def built() -> pathlib.Path:
    """The build folder, with everything built."""
    given = os.environ.get("VLCLIENTUI_BUILD_DIR")
    if given:
        return ROOT / given
    folder = WORK / "cmake"
    off = [f"-DVLCLIENTUI_BUILD_{part}=OFF" for part in ("TESTS", "BENCHMARKS", "FUZZERS")]
    python = ["-DVLCLIENTUI_BUILD_PYTHON=ON", f"-DPython_EXECUTABLE={sys.executable}"]
    subprocess.check_call(
        ["cmake", "-S", ROOT, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", *off, *python]
    )
    subprocess.check_call(["cmake", "--build", folder])
    return folder


class BuildByCMake(build_ext):
    """Lays the installed tree out as a package that finds its libraries and data in itself."""

    def run(self) -> None:
        prefix = WORK / "prefix"
        shutil.rmtree(prefix, ignore_errors=True)
        folder = built()
        for component in ("libraries", "data", "python"):
            # Symbols for a debugger are most of a library's size, and nobody debugs out of a wheel.
            words = ["cmake", "--install", folder, "--prefix", prefix, "--strip", "--component", component]
            subprocess.check_call(words)
        package = pathlib.Path(self.build_lib) / PACKAGE
        shutil.rmtree(package, ignore_errors=True)
        (installed,) = prefix.glob(f"**/{PACKAGE}/__init__.py")
        shutil.copytree(installed.parent, package)
        # By the names that the loader asks for: a wheel has no links.
        for library in prefix.glob("lib*/**/libVLClientUI*.so.[0-9]"):
            if "Qt5" in library.name:
                continue
            target = package / library.relative_to(prefix)
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(library, target)
        shutil.copytree(prefix / "share" / "vlclientui", package / "share" / "vlclientui")


WORK.mkdir(parents=True, exist_ok=True)
setup(
    version=version(),
    packages=[],
    ext_modules=[Extension(f"{PACKAGE}._core", sources=[])],
    cmdclass={"build_ext": BuildByCMake},
)
