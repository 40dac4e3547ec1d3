"""What a person does at the add-service window and what comes of it, with a server written in Python."""

from __future__ import annotations

import pathlib
from typing import Callable

import pytest

import vlclientui
from fakes import EXTENT_OF_ALPS, Server
from vlclientui import Page, Session, Window

GENERATIONS = ("IImageServicesDialog", "IOVLImageServicesDialog")


class Visit:
    """The dialog shown as a host does, with a function in the open window."""

    def __init__(self, session: Session, generation: str = "IImageServicesDialog") -> None:
        self.session = session
        self.server = Server()
        self.dialog = session.create("ImageServicesDialog").query(generation)

    def __call__(self, act: Callable[[Window], object], extent: str = "") -> str:
        visited = []
        assert self.dialog.Init("", self.server), self.dialog.Status()
        self.session.when_window_appears(lambda window: (visited.append(window), act(window)))
        assert self.dialog.ShowDialogEx(extent)
        assert len(visited) == 1 and not visited[0].is_open
        return str(self.dialog.GetSelectedServices())


@pytest.fixture(params=GENERATIONS)
def visit(session: Session, request: pytest.FixtureRequest) -> Visit:
    return Visit(session, request.param)


def rows(window: Window) -> Page:
    (page,) = window.pages
    return page


def test_the_window_opens_on_the_services_of_the_local_server(visit: Visit) -> None:
    def act(window: Window) -> None:
        assert window.caption == "Add Vor Lane Connection"
        assert window["uiTxtBoxServerName"].text == "127.0.0.1"
        assert rows(window).rows == ["Roads", "Relief", "Untitled"]
        assert rows(window).columns[:2] == ["Name", "Geographic Region"]
        assert rows(window).cells("Relief") == ["Relief", "Alps", "Radar", "m", "RGB", "Byte", "8", "3"]
        assert not window["uibtnok"].enabled
        assert not window["Check1"].visible

    assert visit(act) == ""


def test_ok_gives_the_references_of_the_selected_services_and_saves_the_server(
    visit: Visit, home: pathlib.Path
) -> None:
    def act(window: Window) -> None:
        rows(window).double_click_row("Relief")
        rows(window).double_click_row("Roads")
        rows(window).double_click_row("2004")
        assert rows(window).rows == ["East", "West"]
        rows(window).click_row("West")
        window["SelectButton"].click()
        assert window["ListBox"].entries == [
            "ImageService://127.0.0.1/Relief",
            "ImageService://127.0.0.1/Roads/2004/West",
        ]
        window["uibtnok"].click()
        assert not window.is_open

    assert visit(act) == (
        "<SelectedImageServices><Name>ImageService://127.0.0.1/Relief</Name>"
        "<Name>ImageService://127.0.0.1/Roads/2004/West</Name></SelectedImageServices>"
    )
    (settings,) = home.rglob("VLClientUI.VLConfig.Xml")
    assert "<ServerName>127.0.0.1</ServerName></MruServers>" in settings.read_text()


def test_backspace_and_enter_walk_through_folders(visit: Visit) -> None:
    def act(window: Window) -> None:
        rows(window).click_row("Roads")
        rows(window).press_enter()
        assert rows(window).rows == ["2004"]
        rows(window).press_backspace()
        assert rows(window).rows == ["Roads", "Relief", "Untitled"]

    visit(act)


def test_a_silent_server_shows_its_message_row(visit: Visit) -> None:
    def act(window: Window) -> None:
        window["uiTxtBoxServerName"].type("silent")
        window["uiTxtBoxServerName"].press(13)
        assert rows(window).rows == ["(Server not found)"]
        assert window["uiTxtBoxServerName"].entries == ["127.0.0.1"]
        assert not window["SelectButton"].enabled

    visit(act)
    assert len(visit.server.requests) == 2


def test_the_extent_of_a_view_filters_the_list(visit: Visit) -> None:
    def act(window: Window) -> None:
        assert window["Check1"].visible
        window["Check1"].click()
        assert "Relief" in rows(window).rows
        rows(window).double_click_row("Roads")
        rows(window).double_click_row("2004")
        assert rows(window).rows == ["West"]

    visit(act, EXTENT_OF_ALPS)


def test_the_information_of_a_service_is_read_in_its_window(visit: Visit) -> None:
    seen = {}

    def read(caption: str, page: Page) -> None:
        seen.update({field.label: field.value for field in page.fields})

    def act(window: Window) -> None:
        visit.session.when_information_appears(read)
        rows(window).click_row("Relief")
        window["Info"].click()

    visit(act)
    assert "Relief of the Alps" in seen.values()


def test_cancel_gives_nothing(visit: Visit) -> None:
    def act(window: Window) -> None:
        rows(window).double_click_row("Relief")
        window.press_escape()

    assert visit(act) == ""


def test_a_window_that_nobody_awaits_closes_by_itself(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    assert dialog.Init("", Server())
    assert dialog.ShowDialog()
    assert dialog.GetSelectedServices() == ""


def test_a_window_shown_before_init_tells_why_not(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IOVLImageServicesDialog")
    assert not dialog.ShowDialog()
    assert dialog.Status() == "Cannot show without initializing the object"


def test_the_dialog_lists_the_samples_by_the_librarys_own_client(session: Session) -> None:
    listed = []
    dialog = session.create("ImageServicesDialog").query("IOVLImageServicesDialog")
    assert dialog.Init("", session.server_client())
    session.when_window_appears(lambda window: listed.extend(rows(window).rows))
    assert dialog.ShowDialog()
    assert "World" in listed


def test_a_closed_window_can_be_held_but_not_used(visit: Visit) -> None:
    kept = []
    visit(lambda window: kept.extend([window, window["uibtnok"], rows(window)]))
    window, button, page = kept
    assert not window.is_open
    for use in (lambda: window.caption, lambda: button.click(), lambda: page.rows, lambda: window["uibtnok"]):
        with pytest.raises(vlclientui.RuntimeFailure) as failure:
            use()
        assert failure.value.kind == "MissingObject"
