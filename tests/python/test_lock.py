"""Every call that may read a file or ask a server runs without the interpreter's lock, and can be interrupted."""

from __future__ import annotations

import pathlib
import sys
import threading
import time
from typing import Any, Callable

import pytest

import vlclientui
import vlclientui._core as core
from vlclientui import ExportJob, Session, Window

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"
MOST_SECONDS = 20

# What is in memory already, or only sets something: the lock stays.
KEEPS: dict[str, set[str]] = {
    "": {
        "allows_mosaic_method", "current_session", "export_format_of", "export_formats", "format_number", "hand_over",
        "handed_over", "live_object_count", "lock_document", "number_to_text", "public_classes", "read_decimal",
        "service_reference", "text_to_number",
    },
    "Session": {
        "add_host_window", "answer_message", "catalogue", "choose_file", "clipboard", "definitions", "failures",
        "forget_visits", "is_current", "is_headless", "logic_path", "messages", "native_path", "number_to_text",
        "server_client", "when_information_appears", "when_window_appears",
    },
    "CatalogueImageService": {"type_name", "set_progress", "keeping"},
    "CatalogueServerClient": {"type_name"},
    "PublicObject": {"type_name", "query", "properties_page", "metadata_page", "viewpoint_page"},
    "Silence": {"ends"},
    "Window": {"name", "caption", "notice", "is_open", "controls", "focused", "pages", "control"},
    "Control": {
        "name", "kind", "text", "enabled", "visible", "focused", "tool_tip", "complaint", "is_red", "entries", "rows",
        "selection", "marked",
    },
    "Page": {"is_open", "fields", "tree", "rows", "columns", "cells", "value"},
}
# Plain values.
VALUES = {"Connection", "ExportJob", "Field", "MessageBox", "Node", "RasterFacts", "ServiceDescription"}


class Beside:
    """A thread that wants the lock all the time. Python never takes it away from a thread that has it here, so that
    the other one has a turn only where a call gives the lock away."""

    def __enter__(self) -> Beside:
        self.turns = 0
        self._stop = False
        self._interval = sys.getswitchinterval()
        sys.setswitchinterval(1_000)
        self._thread = threading.Thread(target=self._count)
        self._thread.start()
        return self

    def __exit__(self, *_: object) -> None:
        self._stop = True
        sys.setswitchinterval(self._interval)
        self._thread.join(60)

    def _count(self) -> None:
        while not self._stop:
            self.turns += 1
            time.sleep(0)

    def has_turn_during(self, call: Callable[[], object], seconds: float) -> bool:
        """A call may be over before the other thread wakes up: there are many."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            before = self.turns
            call()
            if self.turns != before:
                return True
        return False


def known(session: Session) -> str:
    return next((each.name for each in session.connections()), "")


def removed(session: Session, connection: vlclientui.Connection) -> str:
    if not known(session):
        session.save_connection(connection)
    return session.remove_connection("none")


Call = Callable[[], object]


def of_session(session: Session, folder: pathlib.Path) -> dict[str, Call]:
    job = ExportJob()
    job.reference, job.extent, job.columns, job.rows = GEOID, (-10, 35, 30, 60), 8, 5
    job.file = str(folder / "a.Tif")
    file = folder / "a.VLJob"
    document = session.job_document(job)
    info = session.server_info()
    connection = vlclientui.Connection("none", "http://127.0.0.1:9/wcs")
    session.save_job(job, file)
    return {
        "open": lambda: session.open(GEOID),
        "services": lambda: session.services(),
        "server_info": lambda: session.server_info(),
        "read_services": lambda: session.read_services(info),
        "shown_text": lambda: session.shown_text("C:\\a"),
        "create": lambda: session.create("ExportDialog"),
        "open_job": lambda: session.open_job(file),
        "read_job": lambda: session.read_job(document),
        "job_document": lambda: session.job_document(job),
        "save_job": lambda: session.save_job(job, file),
        "run_job": lambda: session.run_job(job),
        "connections": lambda: session.connections(),
        "save_connection": lambda: session.save_connection(connection, replaces=known(session)),
        "remove_connection": lambda: removed(session, connection),
        "try_connection": lambda: session.try_connection(connection),
        "ask_for_secrets": lambda: session.ask_for_secrets(None),
        "without_secrets": lambda: session.without_secrets("http://a:b@127.0.0.1/"),
        "process_events": lambda: session.process_events(),
        "run": lambda: session.run(),
    }


def of_service(session: Session, folder: pathlib.Path) -> dict[str, Call]:
    service = session.open(GEOID)
    vlclientui.export(service, folder / "b.Tif", columns=8, rows=5)
    request = "<Vorlane><GetImage/></Vorlane>"

    def read(name: str) -> Call:
        return lambda: getattr(service, name)

    read_only = ("facts", "source_extents", "viewpoint", "ServiceInfo", "status", "kept_bytes", "ServiceProperties")
    return {
        **{name: read(name) for name in read_only},
        "getProperty": lambda: service.getProperty("ClientXADef"),
        "GetDefinition": lambda: service.GetDefinition(1),
        "GetImageMetadata": lambda: service.GetImageMetadata("Basic"),
        "GetMetaData": lambda: service.GetMetaData(),
        "SaveProperties": lambda: service.SaveProperties(folder / "a.VLRef"),
        "ExportImage": lambda: service.ExportImage(),
        "offered_extents": lambda: service.offered_extents([("map", (0, 0, 1, 1))]),
        "job": lambda: service.job(),
        "drawing": lambda: service.drawing(),
        "draw": lambda: service.draw(8, 4),
        "forecast": lambda: service.forecast(),
        "discard_kept": lambda: service.discard_kept(),
        "ExportProperties": lambda: setattr(service, "ExportProperties", request),
    }


def of_drawing(session: Session, _: pathlib.Path) -> dict[str, Call]:
    drawing = session.open(GEOID).drawing()
    return {
        "facts": lambda: drawing.facts,
        "draw": lambda: drawing.draw(8, 4),
        "read": lambda: drawing.read(8, 4),
        "draw_map": lambda: drawing.draw_map(8, 8, (0, 0, 1, 1)),
        "values_at": lambda: drawing.values_at(8, 46),
    }


def of_client(session: Session, _: pathlib.Path) -> dict[str, Call]:
    client = session.server_client()
    return {"GetServerInfo": lambda: client.GetServerInfo("<Vorlane><Server><Info/></Server></Vorlane>")}


def of_dialog(kind: str, interface: str) -> Callable[[Session, pathlib.Path], dict[str, Call]]:
    """All operations of a dialog, called with an argument of a sort that each takes."""

    def calls(session: Session, _: pathlib.Path) -> dict[str, Call]:
        whole = session.create(kind)
        dialog = whole.query(interface)
        given: dict[str, tuple[Any, ...]] = {
            "Init": ("", None) if kind == "ImageServicesDialog" else ("", None, None),
            "IExportImageDialog_Init": ("", None, None),
            "SetProperty": ("ClientXADef", ""),
            "SetCallback": (None,),
            **{name: (7, 0) for name in ("ShowPropertyPage",)},
            **{name: (7,) for name in ("IsPropertyPageAvailable", "GetPropertyPageHandle", "Close")},
            "iExportImageDialog_ShowEmbeddedForm": (0,),
        }
        texts = ("DialogProperties", "serviceInfoXml", "MetaDataXml", "ImageMetaDataXml", "ServicePropertiesXml",
                 "ShowDialogEx", "iExportImageDialog_ShowModalDialogEx")
        given.update({name: ("",) for name in texts})

        def one(name: str) -> Call:
            return lambda: getattr(dialog, name)(*given.get(name, ()))

        return {name: one(name) for name in vars(getattr(core, interface)) if not name.startswith("_")}

    return calls


def of_window(window: Window) -> dict[str, Call]:
    return {
        "enter": lambda: window.enter(),
        "leave": lambda: window.leave(),
        "save_picture": lambda: window.save_picture("a.png"),
        "press_enter": lambda: window.press_enter(),
        "press_escape": lambda: window.press_escape(),
        "close": lambda: window.close(),
    }


def of_control(window: Window) -> dict[str, Call]:
    box, button = window["uiTxtBoxServerName"], window["uiBtnBrowseServer"]
    return {
        "focus": lambda: box.focus(),
        "click": lambda: button.click(),
        "type": lambda: box.type("127.0.0.1"),
        "select": lambda: box.select(0),
        "press": lambda: box.press(65),
    }


def of_page(window: Window) -> dict[str, Call]:
    page = window.pages[0]
    return {
        "set": lambda: page.set("Name", "a"),
        "type": lambda: page.type("Name", "a"),
        "press": lambda: page.press("Name"),
        "click_row": lambda: page.click_row(0),
        "double_click_row": lambda: page.double_click_row(0),
        "press_enter": lambda: page.press_enter(),
        "press_backspace": lambda: page.press_backspace(),
    }


OBJECTS: dict[str, Callable[[Session, pathlib.Path], dict[str, Call]]] = {
    "Session": of_session,
    "CatalogueImageService": of_service,
    "CatalogueServerClient": of_client,
    "Drawing": of_drawing,
    "IImageServicesDialog": of_dialog("ImageServicesDialog", "IImageServicesDialog"),
    "IOVLImageServicesDialog": of_dialog("ImageServicesDialog", "IOVLImageServicesDialog"),
    "IServicePropertiesDialog": of_dialog("ServicePropertiesDialog", "IServicePropertiesDialog"),
    "IOVLServicePropertiesDialog": of_dialog("ServicePropertiesDialog", "IOVLServicePropertiesDialog"),
    "IOVLServicePropertiesDialog2": of_dialog("ServicePropertiesDialog", "IOVLServicePropertiesDialog2"),
    "IExportImageDialog": of_dialog("ExportDialog", "IExportImageDialog"),
}
IN_WINDOWS: dict[str, Callable[[Window], dict[str, Call]]] = {
    "Window": of_window, "Control": of_control, "Page": of_page}
STARTS = {"headless", "desktop"}


def without_failure(call: Call) -> Call:
    def calls() -> None:
        try:
            call()
        except vlclientui.RuntimeFailure:
            pass

    return calls


def that_keep_it(calls: dict[str, Call], seconds: float = MOST_SECONDS) -> list[str]:
    with Beside() as beside:
        return [name for name, call in calls.items() if not beside.has_turn_during(without_failure(call), seconds)]


@pytest.mark.parametrize("name", OBJECTS)
def test_calls_let_another_thread_run(name: str, session: Session, tmp_path: pathlib.Path) -> None:
    calls = OBJECTS[name](session, tmp_path)
    assert that_keep_it(calls) == []
    assert {inner for inner in vars(getattr(core, name)) if not inner.startswith("_")} - {"close"} == (
        calls.keys() | KEEPS.get(name, set())
    )


@pytest.mark.parametrize("name", IN_WINDOWS)
def test_acts_in_windows_let_another_thread_run(name: str, session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    dialog.Init("", session.server_client())
    kept: list[str] = []

    def act(window: Window) -> None:
        calls = IN_WINDOWS[name](window)
        assert {inner for inner in vars(getattr(core, name)) if not inner.startswith("_")} == (
            calls.keys() | KEEPS[name]
        )
        kept.extend(that_keep_it(calls))

    session.when_window_appears(act)
    dialog.ShowDialog()
    assert kept == []


def test_starting_and_ending_a_session_let_another_thread_run(home: pathlib.Path) -> None:
    calls: dict[str, Call] = {"headless": lambda: vlclientui.headless(), "desktop": lambda: vlclientui.desktop()}
    assert that_keep_it(calls) == []
    session = vlclientui.headless()
    assert that_keep_it({"close": session.close}) == []


def test_whatever_is_bound_is_looked_at_here() -> None:
    classes = {name for name, value in vars(core).items() if isinstance(value, type)}
    assert classes == OBJECTS.keys() | IN_WINDOWS.keys() | KEEPS.keys() - {""} | VALUES
    functions = {name for name, value in vars(core).items() if not name.startswith("_")} - classes
    assert functions == KEEPS[""] | STARTS


def test_a_call_that_keeps_the_lock_is_seen(session: Session) -> None:
    assert that_keep_it({"number_to_text": lambda: session.number_to_text(1.5)}, 0.5) == ["number_to_text"]
