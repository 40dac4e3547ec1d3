"""A hundred thousand calls in both directions without growth, and cycles of dialogs and services that go."""

from __future__ import annotations

import gc
import pathlib
import weakref
from typing import Callable

import pytest

import vlclientui
from fakes import Server, Service, definitions_of
from vlclientui import Session, Window

CALLS = 100_000
# A leak of one reference or text a call would be several times as much.
MOST_GROWTH = 2 << 20


def memory() -> int:
    """Bytes of this process that stand in memory."""
    pages = int(pathlib.Path("/proc/self/statm").read_text().split()[1])
    return pages * 4096


def growth(act: Callable[[], object], calls: int) -> int:
    for _ in range(calls // 10):
        act()
    gc.collect()
    before = memory()
    for _ in range(calls):
        act()
    gc.collect()
    return memory() - before


def test_calls_into_the_library_leave_nothing_behind(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    assert growth(dialog.Status, CALLS) < MOST_GROWTH
    assert growth(lambda: vlclientui.read_decimal("12.5"), CALLS) < MOST_GROWTH


def test_calls_of_a_service_in_python_leave_nothing_behind(session: Session, service: Service) -> None:
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)
    service.calls = NoList()
    asked = 0

    def count() -> None:
        nonlocal asked
        asked += 1

    # HasChanged reads the service properties each time, and nothing else.
    service._told = lambda member, answer: (count(), answer)[1]  # type: ignore[method-assign]
    assert dialog.ShowPropertyPage(2, session.add_host_window())
    asked = 0
    assert growth(dialog.HasChanged, CALLS // 2) < MOST_GROWTH
    assert asked >= CALLS // 2


class NoList(list[str]):
    """Forgets what it is told."""

    def append(self, item: str) -> None:
        pass


def test_failures_of_a_service_in_python_leave_nothing_behind(session: Session) -> None:
    class Failing:
        @property
        def ServiceProperties(self) -> str:
            raise ValueError("sorry")

    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    failing = Failing()

    def refresh() -> None:
        dialog.Refresh()

    dialog.Init("", None, failing)
    assert growth(refresh, CALLS // 2) < MOST_GROWTH
    assert dialog.Status() != ""


def test_objects_that_are_made_and_dropped_leave_nothing_behind(session: Session) -> None:
    server = Server()

    def make() -> None:
        session.create("ImageServicesDialog").query("IOVLImageServicesDialog").Init("", server)

    before = vlclientui.live_object_count()
    assert growth(make, CALLS // 20) < MOST_GROWTH
    assert vlclientui.live_object_count() == before


def test_windows_that_are_shown_leave_nothing_behind(session: Session, service: Service) -> None:
    service.calls = NoList()

    def show() -> None:
        dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
        dialog.Init("", None, service)
        session.when_window_appears(lambda window: window["uibtnok"].click())
        dialog.ShowPropertiesModalDialog()

    assert growth(show, 150) < MOST_GROWTH


def test_arrays_leave_nothing_behind(session: Session) -> None:
    drawing = session.open("ImageService://127.0.0.1/World/EGM96_Geoid").drawing()
    assert growth(lambda: drawing.read(16, 16, (0, 0, 4, 4)), 200) < MOST_GROWTH


class Holder(Service):
    """A service that holds the dialog that it was given to."""

    dialog: object = None


@pytest.mark.parametrize("held", ["whole", "interface"])
def test_a_service_that_holds_its_dialog_goes_with_it(session: Session, held: str) -> None:
    before = vlclientui.live_object_count()
    service = Holder(definitions_of(session))
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IServicePropertiesDialog")
    assert dialog.Init("", service, service)
    whole.query("IOVLServicePropertiesDialog2").SetCallback(lambda xml: service)
    service.dialog = whole if held == "whole" else dialog
    gone = weakref.ref(service)
    del whole, dialog
    gc.collect()
    assert gone() is not None, "it is still in use"
    del service
    gc.collect()
    assert gone() is None
    assert vlclientui.live_object_count() == before


def test_a_progress_function_that_holds_its_service_goes_with_it(session: Session) -> None:
    class Bar:
        service: object = None

        def __call__(self, share: float) -> None:
            pass

    bar = Bar()
    bar.service = session.open("ImageService://127.0.0.1/World/EGM96_Geoid")
    bar.service.set_progress(bar)  # type: ignore[attr-defined]
    gone = weakref.ref(bar)
    del bar
    gc.collect()
    assert gone() is None


def test_what_a_dialog_was_given_lives_as_long_as_the_dialog(session: Session) -> None:
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, Service(definitions_of(session)))
    gc.collect()
    seen: list[Window] = []
    session.when_window_appears(lambda window: (seen.append(window), window["uibtnok"].click()))
    assert dialog.ShowPropertiesModalDialog() == 1
    assert len(seen) == 1


def test_functions_that_nobody_called_go_with_the_session(home: pathlib.Path) -> None:
    class Visit:
        def __call__(self, window: Window) -> None:
            pass

    session = vlclientui.headless()
    visit = Visit()
    gone = weakref.ref(visit)
    session.when_window_appears(visit)
    del visit
    assert gone() is not None
    session.close()
    assert gone() is None
