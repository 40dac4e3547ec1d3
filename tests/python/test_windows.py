"""The same on real windows, without PyQt: a function acts on them, or a host of its own holds the pages."""

from __future__ import annotations

import pathlib
import struct
import subprocess
import sys
import threading
from typing import Iterator

import pytest

import vlclientui
from fakes import Server, Service, text_in
from vlclientui import MessageAnswer, Page, PropertyPageId, RuntimeFailure, Session, Window


@pytest.fixture
def session(home: pathlib.Path) -> Iterator[Session]:
    with vlclientui.desktop(locale="C.UTF-8") as opened:
        yield opened


def size_of_png(file: pathlib.Path) -> tuple[int, int]:
    head = file.read_bytes()[:24]
    assert head[:8] == b"\x89PNG\r\n\x1a\n"
    width, height = struct.unpack(">II", head[16:24])
    return width, height


def test_a_function_picks_services_in_a_real_window(session: Session, tmp_path: pathlib.Path) -> None:
    dialog = session.create("ImageServicesDialog").query("IOVLImageServicesDialog")
    assert dialog.Init("", Server())
    seen: list[str] = []

    def act(window: Window) -> None:
        seen.append(window.caption)
        window["uiTxtBoxServerName"].type("maps.example")
        window["uiTxtBoxServerName"].press(13)
        seen.extend(window["uiTxtBoxServerName"].entries)
        window.save_picture(tmp_path / "window.png")
        window["uibtncancel"].click()
        assert not window.is_open

    session.when_window_appears(act)
    assert dialog.ShowDialog()
    assert seen == ["Add Vor Lane Connection", "maps.example", "127.0.0.1"]
    width, height = size_of_png(tmp_path / "window.png")
    assert width > 300 and height > 200


def test_a_window_that_its_function_leaves_open_is_closed(session: Session, service: Service) -> None:
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)
    windows: list[Window] = []
    session.when_window_appears(windows.append)
    assert dialog.ShowViewPointModalDialog()
    assert not windows[0].is_open


def test_what_the_function_raises_is_raised_by_the_show(session: Session, service: Service) -> None:
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)

    def fail(window: Window) -> None:
        raise LookupError("no such button")

    session.when_window_appears(fail)
    with pytest.raises(LookupError, match="no such button"):
        dialog.ShowViewPointModalDialog()


def test_a_viewpoint_is_steered_and_handed_over(session: Session, service: Service) -> None:
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)

    def steer(window: Window) -> None:
        window["MoveNE"].click()
        window["MoveNE"].click()
        window["uibtnok"].click()

    session.when_window_appears(steer)
    assert dialog.ShowViewPointModalDialog()
    assert vlclientui.handed_over()["viewpoint_x"] == "160"


def test_an_export_answers_its_question(session: Session, service: Service, tmp_path: pathlib.Path) -> None:
    (tmp_path / "there.Tif").write_text("former")
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    assert dialog.IExportImageDialog_Init("", None, service)

    def act(window: Window) -> None:
        window["uiTxtFileName"].type(session.logic_path(tmp_path / "there.Tif"))
        window["ExportMD"].focus()
        session.answer_message(MessageAnswer.CANCEL)
        window["Command1"].click()
        assert window.is_open and "ExportImage" not in service.calls
        session.answer_message(MessageAnswer.OK)
        window["Command1"].click()

    session.when_window_appears(act)
    dialog.iExportImageDialog_ShowModalDialogEx("")
    assert service.calls.count("ExportImage") == 1


def test_pages_stand_in_a_window_of_the_host(session: Session, service: Service, tmp_path: pathlib.Path) -> None:
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IOVLServicePropertiesDialog")
    assert dialog.Init("", None, service)
    handle = session.add_host_window("Properties of the Alps")
    assert dialog.ShowPropertyPage(PropertyPageId.METADATA, handle)
    session.process_events()
    window = whole.metadata_page
    window["uiTreeView"].select("Source")
    assert window["RasterList"].entries == ["north - 12.5", "* south - 2"]
    window.save_picture(tmp_path / "page.png")
    assert size_of_png(tmp_path / "page.png")[0] > 100
    assert dialog.Close(PropertyPageId.METADATA)


def test_a_chosen_file_is_handed_to_the_service(session: Session, service: Service, tmp_path: pathlib.Path) -> None:
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IOVLServicePropertiesDialog")
    assert dialog.Init("", None, service)
    assert dialog.ShowPropertyPage(PropertyPageId.PROPERTIES, session.add_host_window())
    session.process_events()
    session.choose_file(tmp_path / "alps.VLRef")
    whole.properties_page["SaveAs"].click()
    assert [session.native_path(file) for file in service.saved] == [str(tmp_path / "alps.VLRef")]


def test_fields_of_a_page_are_read_and_set(session: Session, service: Service, tmp_path: pathlib.Path) -> None:
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IOVLServicePropertiesDialog")
    assert dialog.Init("", None, service)
    assert dialog.ShowPropertyPage(PropertyPageId.PROPERTIES, session.add_host_window())
    session.process_events()
    whole.properties_page.save_picture(tmp_path / "before.png")
    (page,) = whole.properties_page.pages
    assert {field.name: field.value for field in page.fields}["TileOrderField"] == "Year"
    assert page.set("TileOrderField", "Month") == ""
    session.process_events()
    assert page.value("TileOrderField") == "Month"
    assert text_in(dialog.GetUpdatedProperties(), "TileOrderField") == "Month"
    whole.properties_page.save_picture(tmp_path / "after.png")
    assert (tmp_path / "before.png").read_bytes() != (tmp_path / "after.png").read_bytes(), "a person sees it"
    with pytest.raises(RuntimeFailure):
        page.set("NoSuchField", "1")


def test_a_function_walks_the_list_of_a_real_window(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IOVLImageServicesDialog")
    assert dialog.Init("", session.server_client())
    seen: list[list[str]] = []

    def act(window: Window) -> None:
        (page,) = window.pages
        seen.append(page.rows)
        assert page.columns and page.cells(page.rows[0])[0] == page.rows[0]
        page.double_click_row("World")
        seen.append(page.rows)
        page.press_backspace()
        page.click_row("Imagery")

    session.when_window_appears(act)
    assert dialog.ShowDialog()
    assert "World" in seen[0] and "Imagery" in seen[0]
    assert "EGM96_Geoid" in seen[1]


def test_the_information_of_a_service_is_read_in_its_window(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IOVLImageServicesDialog")
    assert dialog.Init("", session.server_client())
    told: list[str] = []

    def read(caption: str, page: Page) -> None:
        told.append(caption)
        told.extend(field.value for field in page.fields)

    def act(window: Window) -> None:
        (page,) = window.pages
        page.double_click_row("World")
        page.click_row("EGM96_Geoid")
        window["Info"].click()

    session.when_information_appears(read)
    session.when_window_appears(act)
    assert dialog.ShowDialog()
    assert any("EGM96" in text for text in told), told


def test_a_tree_is_read(session: Session, service: Service) -> None:
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IOVLServicePropertiesDialog")
    assert dialog.Init("", None, service)
    assert dialog.ShowPropertyPage(PropertyPageId.METADATA, session.add_host_window())
    session.process_events()
    window = whole.metadata_page
    seen = 0
    for node in window["uiTreeView"].entries:
        window["uiTreeView"].select(node)
        session.process_events()
        seen += sum(len(page.tree) + len(page.fields) for page in window.pages)
    assert seen > 0


def test_run_returns_at_once_without_windows(home: pathlib.Path) -> None:
    program = "import vlclientui as v\nv.desktop().run()\nprint('back')"
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=120)
    assert (ended.returncode, ended.stdout) == (0, "back\n"), ended.stderr


def test_a_dead_display_is_a_failure(home: pathlib.Path) -> None:
    program = (
        "import os\n"
        "os.environ.pop('QT_QPA_PLATFORM', None); os.environ.pop('WAYLAND_DISPLAY', None)\n"
        "os.environ['DISPLAY'] = ':9753'\n"
        "import vlclientui as v\n"
        "try: v.desktop()\n"
        "except v.RuntimeFailure as failure: print(failure)\n"
    )
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=120)
    assert (ended.returncode, ended.stderr) == (0, "")
    assert ended.stdout.startswith("The display ':9753' cannot be reached; ")


def test_other_threads_run_while_a_window_stands_and_cannot_open_their_own(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    assert dialog.Init("", Server())
    refused: list[str] = []

    def work() -> None:
        try:
            vlclientui.desktop()
        except RuntimeFailure as failure:
            refused.append(failure.description)

    def act(window: Window) -> None:
        worker = threading.Thread(target=work)
        worker.start()
        worker.join(60)

    session.when_window_appears(act)
    assert dialog.ShowDialog()
    assert refused == ["Windows belong to the thread that made the first of them"]


def test_ctrl_c_ends_a_window_that_waits_for_a_person(home: pathlib.Path) -> None:
    program = (
        "import vlclientui as v, threading, os, signal, sys\n"
        "session = v.desktop()\n"
        "dialog = session.create('ImageServicesDialog').query('IImageServicesDialog')\n"
        "dialog.Init('', None)\n"
        "threading.Timer(1, lambda: os.kill(os.getpid(), signal.SIGINT)).start()\n"
        "try:\n"
        "    dialog.ShowDialog()\n"
        "except KeyboardInterrupt:\n"
        "    print('interrupted')\n"
    )
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=120)
    assert (ended.returncode, ended.stdout.strip()) == (0, "interrupted"), ended.stderr


def test_a_program_with_windows_may_end_while_they_live(home: pathlib.Path) -> None:
    program = (
        "import vlclientui as v\n"
        "session = v.desktop()\n"
        "whole = session.create('ServicePropertiesDialog')\n"
        "dialog = whole.query('IOVLServicePropertiesDialog')\n"
        "dialog.Init('', None, None)\n"
        "dialog.ShowPropertyPage(3, session.add_host_window())\n"
        "session.process_events()\n"
    )
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=120)
    assert ended.returncode == 0 and "Traceback" not in ended.stderr, ended.stderr
