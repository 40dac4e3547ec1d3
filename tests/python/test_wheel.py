"""The wheel, made offline from the build and used from where it was unpacked."""

from __future__ import annotations

import os
import pathlib
import subprocess
import sys

import vlclientui

SOURCE = pathlib.Path(__file__).parents[2] / "apps" / "python"
# The package stands in <build>/apps/python/vlclientui.
BUILD = pathlib.Path(vlclientui.__file__).resolve().parents[3]


def run(*words: object, **variables: str) -> str:
    environment = {**os.environ, "PIP_DISABLE_PIP_VERSION_CHECK": "1", "PIP_NO_CACHE_DIR": "1", **variables}
    ended = subprocess.run([str(word) for word in words], capture_output=True, text=True, env=environment, timeout=280)
    assert ended.returncode == 0, ended.stdout + ended.stderr
    return ended.stdout


def test_a_wheel_holds_all_that_the_module_needs(tmp_path: pathlib.Path) -> None:
    offline = ("--no-index", "--no-deps")
    run(
        sys.executable, "-m", "pip", "wheel", "--no-build-isolation", *offline, "-w", tmp_path, SOURCE,
        VLCLIENTUI_BUILD_DIR=str(BUILD),
    )
    (wheel,) = tmp_path.glob("vlclientui-*.whl")
    assert wheel.name.startswith(f"vlclientui-{vlclientui.__version__}-cp311-cp311-linux_")
    target = tmp_path / "site"
    run(sys.executable, "-m", "pip", "install", *offline, "--target", target, wheel)
    program = "import vlclientui as v; s = v.headless(); print(v.__file__, s.definitions, len(s.services()))"
    told = run(sys.executable, "-c", program, PYTHONPATH=str(target))
    package = target / "vlclientui"
    assert told.split() == [str(package / "__init__.py"), str(package / "share/vlclientui/definitions"), "7"]
    libraries = run("ldd", next(package.glob("_core*.so")))
    assert str(package / "lib") in libraries
    assert not (SOURCE / "build").exists() and not list(SOURCE.glob("*.egg-info"))
