"""Ctrl+C while the library works: it ends the call that it meant, and nothing else."""

from __future__ import annotations

import http.server
import os
import pathlib
import signal
import subprocess
import sys
import threading
import time
from typing import Callable, Iterator

import pytest

import vlclientui
from vlclientui import Session, Window

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"


class SlowServer:
    """Answers after a while, by a thread of this process: who asks it and keeps the lock would never hear of it."""

    def __init__(self, seconds: float) -> None:
        slow = self
        self.asked = 0

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self) -> None:
                slow.asked += 1
                slow.go_on.wait(seconds)
                try:
                    self.send_error(404)
                except OSError:
                    pass

            def log_message(self, *_: object) -> None:
                pass

        self.go_on = threading.Event()
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        self.address = f"http://127.0.0.1:{self._server.server_address[1]}"
        self._thread = threading.Thread(target=self._server.serve_forever, daemon=True)
        self._thread.start()

    def close(self) -> None:
        self.go_on.set()
        self._server.shutdown()
        self._server.server_close()


@pytest.fixture
def slow() -> Iterator[SlowServer]:
    server = SlowServer(300)
    yield server
    server.close()


def interrupt_when(happens: Callable[[], bool], process: int = 0) -> threading.Thread:
    """Ctrl+C as soon as something has happened, in this process if no other is told."""

    def watch() -> None:
        end = time.monotonic() + 100
        while not happens() and time.monotonic() < end:
            time.sleep(0.01)
        time.sleep(0.3)
        os.kill(process or os.getpid(), signal.SIGINT)

    thread = threading.Thread(target=watch)
    thread.start()
    return thread


@pytest.mark.parametrize("member", ["services", "open", "try_connection"])
def test_ctrl_c_ends_a_call_that_waits_for_a_server(member: str, session: Session, slow: SlowServer) -> None:
    calls: dict[str, Call] = {
        "services": lambda: session.services(f"{slow.address}/wcs"),
        "open": lambda: session.open(f"ImageService://{slow.address}/wcs/One"),
        "try_connection": lambda: session.try_connection(vlclientui.Connection("slow", f"{slow.address}/wcs")),
    }
    watch = interrupt_when(lambda: slow.asked > 0)
    with pytest.raises(KeyboardInterrupt):
        calls[member]()
    watch.join(60)
    assert session.services(), "the session is as good as new"


def test_code_inside_a_call_that_catches_ctrl_c_leaves_the_call_as_it_was(session: Session, slow: SlowServer) -> None:
    told: list[object] = []

    def visit(window: Window) -> None:
        watch = interrupt_when(lambda: slow.asked > 0)
        with pytest.raises(KeyboardInterrupt):
            session.services(f"{slow.address}/wcs")
        watch.join(60)
        slow.go_on.set()
        asked = slow.asked
        told.append(session.try_connection(vlclientui.Connection("slow", f"{slow.address}/wcs"))["words"])
        told.append(slow.asked > asked)

    session.when_window_appears(visit)
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    dialog.Init("", None)
    assert dialog.ShowDialog()
    assert told[1] is True and "given up" not in str(told[0])


def test_each_ctrl_c_ends_the_call_that_it_meant_and_no_other(session: Session) -> None:
    drawing = session.open(GEOID).drawing()
    heard = 0
    is_ready = False

    def interrupt() -> None:
        nonlocal is_ready
        for delay in range(150):
            end = time.monotonic() + 60
            while not is_ready and time.monotonic() < end:
                time.sleep(0.0001)
            time.sleep(delay % 7 * 0.0005)
            is_ready = False
            signal.pthread_kill(threading.get_ident(), signal.SIGINT)

    thread = threading.Thread(target=interrupt)
    thread.start()
    while heard < 150:
        try:
            is_ready = True
            while True:
                drawing.draw(30, 15)
        except KeyboardInterrupt:
            heard += 1
    thread.join(60)


def test_a_handler_of_the_program_runs_while_a_server_is_waited_for(session: Session, slow: SlowServer) -> None:
    def wake(*_: object) -> None:
        raise TimeoutError("too slow")

    former = signal.signal(signal.SIGALRM, wake)
    signal.setitimer(signal.ITIMER_REAL, 0.5)
    try:
        with pytest.raises(TimeoutError, match="too slow"):
            session.services(f"{slow.address}/wcs")
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, former)


# Each takes seconds when nobody interrupts it.
LONG = {
    "run_job": "vlclientui.export_job.run(job)",
    "export": "vlclientui.export(session.open(folder / 'big.Tif'), folder / 'a.Tif', format='TIFF-LZ77')",
    "draw": "service.draw(8000, 4000)",
    "read": "service.drawing().read(12000, 6000)",
    "draw_map": "service.drawing().draw_map(8000, 8000, (-2e7, -2e7, 2e7, 2e7), 'EPSG:3857')",
}
PROGRAM = """
import os, pathlib, signal, sys, threading
import vlclientui
folder = pathlib.Path(sys.argv[1])
session = vlclientui.headless()
service = session.open("ImageService://127.0.0.1/World/EGM96_Geoid")
vlclientui.export(service, folder / "small.Tif", columns=8, rows=4)
job = service.job()
job.columns, job.rows, job.file = 6000, 3000, str(folder / "big.Tif")
if "big" in sys.argv[2]:
    vlclientui.export_job.run(job)
job.columns, job.rows, job.file = 30000, 20000, str(folder / "a.Tif")
threading.Timer(0.3, lambda: os.kill(os.getpid(), signal.SIGINT)).start()
try:
    CALL
    print("went on to its end", end=" ")
except KeyboardInterrupt:
    print("interrupted", end=" ")
print(sorted(file.name for file in folder.iterdir() if file.name.startswith("a")))
"""


@pytest.mark.parametrize("name", LONG)
def test_ctrl_c_ends_a_long_call_and_leaves_nothing_half_written(name: str, tmp_path: pathlib.Path) -> None:
    words = [sys.executable, "-c", PROGRAM.replace("CALL", LONG[name]), str(tmp_path), LONG[name]]
    ended = subprocess.run(words, capture_output=True, text=True, timeout=250)
    assert (ended.stdout.strip(), ended.stderr) == ("interrupted []", "")


# A process of its own: where the library has had threads for its requests, one that is forked lacks them.
FORKING = """
import os, sys
import vlclientui
session = vlclientui.headless()
session.services()
child = os.fork()
if child == 0:
    try:
        session.services(sys.argv[1])
    except KeyboardInterrupt:
        os._exit(7)
    finally:
        os._exit(1)
print(child, flush=True)
print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))
"""


def test_ctrl_c_ends_calls_of_a_process_that_was_forked(slow: SlowServer) -> None:
    words = [sys.executable, "-c", FORKING, f"{slow.address}/wcs"]
    with subprocess.Popen(words, stdout=subprocess.PIPE, text=True) as program:
        assert program.stdout
        child = int(program.stdout.readline())
        interrupting = interrupt_when(lambda: slow.asked > 0, child)
        assert program.communicate(timeout=200)[0].strip() == "7"
        interrupting.join(60)
    assert slow.asked > 0
