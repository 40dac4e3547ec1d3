"""Long calls let other threads run, sessions belong to their threads, and drawings to any."""

from __future__ import annotations

import concurrent.futures
import gc
import pathlib
import subprocess
import sys
import threading
from typing import Callable

import numpy
import pytest

import vlclientui
from fakes import Server
from vlclientui import RuntimeFailure, Session

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"


def in_thread(act: Callable[[], object]) -> object:
    with concurrent.futures.ThreadPoolExecutor(1) as pool:
        return pool.submit(act).result(60)


def test_other_threads_run_inside_one_call(session: Session, tmp_path: pathlib.Path) -> None:
    """sys.setswitchinterval keeps Python from switching by itself; only a released lock lets the others run."""
    turns = 0
    stop = threading.Event()

    def count() -> None:
        nonlocal turns
        while not stop.wait(0.0002):
            turns += 1

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1_000)
    try:
        counter = threading.Thread(target=count)
        drawing = session.open(GEOID).drawing()
        counter.start()
        before = turns
        drawing.draw(300, 150)
        during = turns - before
    finally:
        stop.set()
        sys.setswitchinterval(interval)
        counter.join(60)
    assert during > 0


def test_drawings_may_be_used_on_any_thread_side_by_side(session: Session) -> None:
    drawing = session.open(GEOID).drawing()
    expected = drawing.draw(90, 45)
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        drawn = list(pool.map(lambda _: drawing.draw(90, 45), range(12)))
    assert all(numpy.array_equal(picture, expected) for picture in drawn)


def test_what_belongs_to_a_session_is_refused_on_other_threads(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    service = session.open(GEOID)
    for use in (dialog.Status, lambda: service.ServiceInfo, lambda: session.services(), lambda: session.messages):
        with pytest.raises(RuntimeFailure, match="thread"):
            in_thread(use)


def test_each_thread_has_a_session_of_its_own(session: Session) -> None:
    def work() -> list[str]:
        with pytest.raises(RuntimeFailure):
            vlclientui.current_session()
        with vlclientui.headless() as own:
            dialog = own.create("ImageServicesDialog").query("IImageServicesDialog")
            rows: list[str] = []
            assert dialog.Init("", Server())
            own.when_window_appears(lambda window: rows.extend(window.pages[0].rows))
            assert dialog.ShowDialog()
            return rows

    with concurrent.futures.ThreadPoolExecutor(3) as pool:
        results = [future.result(60) for future in [pool.submit(work) for _ in range(3)]]
    assert results == [["Roads", "Relief", "Untitled"]] * 3
    assert session.is_current


def test_an_object_dropped_on_another_thread_is_let_go_on_its_own(session: Session) -> None:
    before = vlclientui.live_object_count()
    held = [session.create("ServicePropertiesDialog")]
    in_thread(held.clear)
    gc.collect()
    assert vlclientui.live_object_count() == before + 1
    session.services()
    assert vlclientui.live_object_count() == before


def test_a_session_replaced_on_its_thread_is_used_up(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    with vlclientui.headless() as later:
        assert not session.is_current
        with pytest.raises(RuntimeFailure, match="ended"):
            dialog.ShowDialog()
        assert later.is_current and vlclientui.current_session() is later


@pytest.mark.parametrize(
    "program",
    [
        "import vlclientui as v; s = v.headless(); d = s.create('ServicePropertiesDialog'); "
        "q = d.query('IServicePropertiesDialog'); q.Init('', None, object()); s.when_window_appears(lambda w: d)",
        "import vlclientui as v, threading; t = threading.Thread(target=lambda: v.headless().services(), daemon=True); "
        "t.start()",
        "import vlclientui as v, sys; s = v.headless(); s.when_window_appears(lambda w: sys.exit(0)); "
        "d = s.create('ImageServicesDialog').query('IImageServicesDialog'); d.Init('', None); d.ShowDialog()",
    ],
)
def test_a_program_may_end_while_objects_live(program: str) -> None:
    ended = subprocess.run([sys.executable, "-X", "faulthandler", "-c", program], capture_output=True, text=True, timeout=120)
    assert (ended.returncode, ended.stderr) == (0, "")


def test_importing_needs_no_display() -> None:
    program = "import os; os.environ.pop('QT_QPA_PLATFORM', None); os.environ.pop('DISPLAY', None); import vlclientui as v\n"
    program += "with v.headless() as s: assert s.services()\n"
    program += "try: v.desktop()\nexcept v.RuntimeFailure as failure: print(failure)"
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=120)
    assert (ended.returncode, ended.stderr) == (0, "")
    assert "There is no display" in ended.stdout
