"""What a person does to steer a viewpoint and what comes of it, with a service in Python."""

from __future__ import annotations

from typing import Callable, Iterator

import pytest

import vlclientui
from fakes import Service, properties
from vlclientui import PropertyPageId, Session, Window

MOVES = ("Center", "MoveUp", "MoveDown", "MoveLeft", "MoveRight", "MoveNE", "MoveNW", "MoveSE", "MoveSW")


def published() -> str:
    held = vlclientui.handed_over()
    return held["viewpoint_x"] + "|" + held["viewpoint_y"]


def boxes(window: Window) -> str:
    return window["uiTxtBoxX"].text + "|" + window["uiTxtBoxY"].text


def marked(window: Window) -> list[str]:
    return [move for move in MOVES if window[move].marked]


@pytest.fixture
def page(session: Session, service: Service) -> Iterator[Window]:
    """The extent is 100 to 200 by 10 to 30, a step 5 and 2."""
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)
    assert dialog.ShowPropertyPage(PropertyPageId.VIEWPOINT, session.add_host_window())
    # A page goes with its dialog.
    yield whole.viewpoint_page


@pytest.fixture
def in_dialog(session: Session, service: Service) -> Callable[[Callable[[Window], object]], None]:
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)

    def visit(act: Callable[[Window], object]) -> None:
        session.when_window_appears(act)
        assert dialog.ShowViewPointModalDialog()

    return visit


def test_the_page_opens_with_empty_boxes_and_no_mark(page: Window) -> None:
    assert (boxes(page), marked(page), page.caption) == ("|", [], "View Point")


def test_holding_to_a_direction_walks_and_a_new_one_starts_from_the_center(page: Window) -> None:
    page["MoveNE"].click()
    assert boxes(page) == "155|22"
    page["MoveNE"].click()
    assert boxes(page) == "160|24"
    page["MoveDown"].click()
    assert boxes(page) == "150|18"
    assert published() == "150|18"
    assert marked(page) == ["MoveDown"]


def test_a_step_goes_on_from_what_was_typed(page: Window) -> None:
    page["MoveRight"].click()
    page["uiTxtBoxX"].type("1000")
    assert published() == "1000|20"
    page["MoveRight"].click()
    assert boxes(page) == "1005|20"


def test_a_typed_text_that_is_no_number_stops_the_next_step(page: Window) -> None:
    page["MoveUp"].click()
    page["uiTxtBoxY"].type("north")
    assert published() == "150|north"
    page["MoveUp"].click()
    assert (boxes(page), marked(page)) == ("150|north", [])


def test_coming_back_forgets_what_was_published_until_the_page_is_left(page: Window) -> None:
    page["uiTxtBoxX"].type("12")
    page.leave()
    assert published() == "12|"
    page.enter()
    assert published() == "|"
    page.leave()
    assert published() == "12|"


def test_the_dialog_publishes_with_ok(in_dialog: Callable[[Callable[[Window], object]], None]) -> None:
    def act(window: Window) -> None:
        assert window.caption == "ViewPoint"
        window["Center"].click()
        window["uiTxtBoxY"].type("7.5")
        window.press_enter()
        assert not window.is_open

    in_dialog(act)
    assert published() == "150|7.5"


def test_the_page_writes_points_in_a_comma_locale(home: object) -> None:
    from fakes import definitions_of

    with vlclientui.headless(locale="de_DE.UTF-8") as session:
        service = Service(definitions_of(session))
        service.image = service.image.replace("<XMax>200</XMax>", "<XMax>100.5</XMax>")
        service.properties = properties("<AvgImageSpacingX>0.25</AvgImageSpacingX><AvgImageSpacingY>2</AvgImageSpacingY>")
        whole = session.create("ServicePropertiesDialog")
        dialog = whole.query("IServicePropertiesDialog")
        assert dialog.Init("", None, service)
        assert dialog.ShowPropertyPage(PropertyPageId.VIEWPOINT, session.add_host_window())
        whole.viewpoint_page["MoveRight"].click()
        assert boxes(whole.viewpoint_page) == "100,5|20"
        assert published() == "100.5|20"


def test_a_service_that_fails_stops_the_step_and_nothing_else(page: Window, service: Service) -> None:
    page["MoveUp"].click()
    service.failing["ServiceProperties"] = OSError("the line is cut")
    service.failing["GetImageMetadata"] = OSError("the line is cut")
    page["MoveLeft"].click()
    assert page.is_open


def test_a_host_keeps_the_viewpoints_of_its_services_apart(page: Window) -> None:
    page["Center"].click()
    kept = vlclientui.handed_over()
    vlclientui.hand_over()
    assert published() == "|"
    vlclientui.hand_over(**kept)
    assert published() == "150|20"
