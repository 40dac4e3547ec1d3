"""What a person does on the properties page of a host, and what the host gets of it, with a service in Python."""

from __future__ import annotations

import pathlib
from typing import Callable

import pytest

from fakes import Service, properties, text_in
from vlclientui import Control, Page, PropertyPageId, PublicObject, Session, Window

GENERATIONS = ("IServicePropertiesDialog", "IOVLServicePropertiesDialog")
ORDER_FIELD = "TileOrderField"


class Host:
    """A host that shows the page in a window of its own."""

    def __init__(self, session: Session, service: Service, generation: str) -> None:
        self.session = session
        self.service = service
        self.whole: PublicObject = session.create("ServicePropertiesDialog")
        self.dialog = self.whole.query(generation)
        self.window_handle = session.add_host_window()

    def open(self, configuration: str = "") -> None:
        assert self.dialog.Init(configuration, None, self.service), self.dialog.Status()
        assert self.dialog.ShowPropertyPage(PropertyPageId.PROPERTIES, self.window_handle), self.dialog.Status()

    @property
    def window(self) -> Window:
        return self.whole.properties_page

    @property
    def page(self) -> Page:
        (page,) = self.window.pages
        return page


@pytest.fixture(params=GENERATIONS)
def host(session: Session, service: Service, request: pytest.FixtureRequest) -> Host:
    if request.param.startswith("IOVL"):
        service.type_name = "IOVLImageService"
    return Host(session, service, request.param)


def test_the_page_shows_the_properties_of_the_service(host: Host) -> None:
    host.open()
    shown = {f"{field.group}/{field.label}": field.value for field in host.page.fields}
    assert shown["Mosaic/Mosaic method"] == "By Attribute"
    assert shown["Mosaic/Order by attribute"] == "Year"
    assert shown["Coordinate system/Definition"] == "EPSG:32632"
    (method,) = (field for field in host.page.fields if field.name == "MosaicMethod")
    assert method.choices == ["None", "Closest to Viewpoint", "By Attribute", "Lock Raster"]
    assert method.is_editable
    assert host.window["SaveAs"].tool_tip == "Save as an xml file."
    assert not host.window["ErrorLabel"].visible


def test_an_edit_counts_as_a_change_while_its_field_has_the_focus(host: Host) -> None:
    host.open()
    assert not host.dialog.HasChanged()
    host.page.type(ORDER_FIELD, "Sensor")
    assert host.dialog.HasChanged()
    host.page.type(ORDER_FIELD, "Year")
    assert not host.dialog.HasChanged()


def test_apply_publishes_the_edits_and_leaves_the_rest(host: Host) -> None:
    host.open()
    assert host.page.set(ORDER_FIELD, "Sensor") == ""
    host.page.set("MosaicMethod", "Lock Raster")
    applied = host.dialog.GetUpdatedProperties()
    assert text_in(applied, "TileOrderField") == "Sensor"
    assert text_in(applied, "MosaicMethod") == "LockRaster"
    assert text_in(applied, "AvgImageSpacingX") == "5"


def test_a_refresh_shows_the_properties_of_the_service_in_place_of_the_edits(host: Host) -> None:
    host.open()
    host.page.set(ORDER_FIELD, "Sensor")
    host.service.properties = properties("<MosaicMethod>None</MosaicMethod><TileOrderField>Sun</TileOrderField>")
    host.dialog.Refresh()
    assert host.page.value(ORDER_FIELD) == "Sun"
    assert not host.dialog.HasChanged()


def test_a_text_that_is_no_number_is_told_beside_its_field_and_not_published(host: Host) -> None:
    host.open()
    assert "number" in host.page.set("NoData", "none")
    assert text_in(host.dialog.GetUpdatedProperties(), "NoData") == ""
    assert host.page.set("NoData", "255") == ""
    assert text_in(host.dialog.GetUpdatedProperties(), "NoData") == "255"


def test_the_coordinate_system_can_be_changed_unless_the_host_forbids_it(host: Host) -> None:
    def definition() -> bool:
        return next(field for field in host.page.fields if field.label == "Definition").is_editable

    host.open()
    assert definition()
    assert host.dialog.Close(PropertyPageId.PROPERTIES)
    host.open("<Vorlane><Client><Init><PropertiesSRSReadonly>True</PropertiesSRSReadonly></Init></Client></Vorlane>")
    assert not definition()


def test_the_viewpoint_is_steered_in_a_window_of_its_own_and_published_with_apply(host: Host) -> None:
    host.open()
    host.page.set("MosaicMethod", "Closest to Viewpoint")

    def steer(window: Window) -> None:
        assert window.caption == "ViewPoint"
        window["Center"].click()
        window["MoveUp"].click()
        assert (window["uiTxtBoxX"].text, window["uiTxtBoxY"].text) == ("150", "22")
        window["uibtnok"].click()

    host.session.when_window_appears(steer)
    host.page.press("ViewPointControl")
    applied = host.dialog.GetUpdatedProperties()
    assert text_in(applied, "MosaicMethod") == "Closest to Viewpoint"
    assert (text_in(applied, "ViewPointX"), text_in(applied, "ViewPointY")) == ("150", "22")


def test_save_as_hands_the_chosen_file_to_the_service(host: Host, tmp_path: pathlib.Path) -> None:
    host.open()
    host.session.choose_file(tmp_path / "alps.VLRef")
    host.window["SaveAs"].click()
    assert [host.session.native_path(file) for file in host.service.saved] == [str(tmp_path / "alps.VLRef")]
    assert host.session.messages == []


def test_a_file_that_the_service_refuses_is_told(host: Host, tmp_path: pathlib.Path) -> None:
    host.service.answers["SaveProperties"] = False
    host.open()
    host.session.choose_file(tmp_path / "alps.VLRef")
    host.window["SaveAs"].click()
    (message,) = host.session.messages
    assert (message.title, message.icon, message.buttons) == ("Error saving file", message.icon, 0)
    assert "alps.VLRef'." in message.text


def test_the_one_window_dialog_gives_its_edits_with_ok_and_none_without(session: Session, service: Service) -> None:
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)

    def edit(leave: Callable[[Window], Control]) -> Callable[[Window], None]:
        def act(window: Window) -> None:
            (page,) = window.pages
            page.set(ORDER_FIELD, "Sensor")
            leave(window).click()

        return act

    session.when_window_appears(edit(lambda window: window["uibtncancel"]))
    assert dialog.ShowPropertiesModalDialog() == 0
    session.when_window_appears(edit(lambda window: window["uibtnok"]))
    assert dialog.ShowPropertiesModalDialog() == 1
    assert text_in(dialog.GetUpdatedProperties(), "TileOrderField") == "Sensor"


def test_the_samples_are_changed_by_what_the_page_gives(session: Session) -> None:
    mosaic = session.open("ImageService://127.0.0.1/Imagery/Overlap_Study")
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IOVLServicePropertiesDialog")
    assert dialog.Init("", None, mosaic)
    assert dialog.ShowPropertyPage(PropertyPageId.PROPERTIES, session.add_host_window())
    (page,) = whole.properties_page.pages
    page.set("MosaicMethod", "By Attribute")
    mosaic.ServiceProperties = dialog.GetUpdatedProperties()
    assert text_in(mosaic.ServiceProperties, "MosaicMethod") == "By Attribute"
