"""What a person reads of a service on the metadata page, and the lock that reaches the host, from Python."""

from __future__ import annotations

import pathlib

import pytest

from fakes import Service, image_metadata, text_in
from vlclientui import Page, PropertyPageId, PublicObject, RuntimeFailure, Session, Window


@pytest.fixture
def dialog(session: Session, service: Service) -> PublicObject:
    whole = session.create("ServicePropertiesDialog")
    operations = whole.query("IServicePropertiesDialog")
    assert operations.Init("", None, service), operations.Status()
    assert operations.ShowPropertyPage(PropertyPageId.METADATA, session.add_host_window()), operations.Status()
    return whole


@pytest.fixture
def window(dialog: PublicObject) -> Window:
    return dialog.metadata_page


def page_of(window: Window) -> Page:
    (page,) = window.pages
    return page


def shown(window: Window) -> dict[str, str]:
    return {field.label: field.value for field in page_of(window).fields}


def test_it_opens_on_the_service_beside_a_tree_of_four_nodes(window: Window) -> None:
    assert window["uiTreeView"].entries == ["Service Info", "Image Returned", "Server Process", "Source"]
    assert window["uiTreeView"].selection == [0]
    assert window["TabStrip2"].entries == ["Information", "Properties", "Metadata"]
    assert shown(window) == {
        "Title": "The Alps from above",
        "Geographic region": "Alps",
        "Pixel source": "Aerial",
    }
    assert not any(field.is_editable for field in page_of(window).fields)


def test_the_image_is_told_with_its_size_in_kilobytes(window: Window) -> None:
    window["uiTreeView"].select("Image Returned")
    assert shown(window)["Buffer size"] == "384"
    assert shown(window)["Columns"] == "512"


def test_the_process_of_the_server_is_a_tree(window: Window) -> None:
    window["uiTreeView"].select("Server Process")
    assert [(node.depth, node.name) for node in page_of(window).tree] == [(0, "ServerProcess")]


def test_rasters_are_listed_with_their_marks_and_read_on_tabs(window: Window) -> None:
    window["uiTreeView"].select("Source")
    assert window["RasterList"].entries == ["north - 12.5", "* south - 2"]
    window["TabStrip1"].select("Metadata")
    assert [(node.name, node.value) for node in page_of(window).tree] == [("Metadata", ""), ("Sensor", "frame")]
    window["TabStrip1"].select("Attributes")
    assert window["ListView1"].rows == [["Year", "1998"]]
    window["RasterList"].select("* south - 2")
    assert window["ListView1"].rows == []


def test_a_lock_reaches_the_host_at_once(dialog: PublicObject, window: Window) -> None:
    told: list[str] = []
    dialog.query("IOVLServicePropertiesDialog2").SetCallback(told.append)
    window["uiTreeView"].select("Source")
    window["Command7"].click()
    (document,) = told
    assert text_in(document, "MosaicMethod") == "LockRaster"
    assert text_in(document, "LockImageID") == "12"
    assert text_in(document, "TileOrderField") == "Year"


def test_a_callback_may_be_an_object_with_the_member(dialog: PublicObject, window: Window) -> None:
    class Callback:
        told: list[str] = []

        def OnServicePropertiesChanged(self, xml: str) -> None:
            self.told.append(xml)

    callback = Callback()
    dialog.query("IOVLServicePropertiesDialog2").SetCallback(callback)
    window["uiTreeView"].select("Source")
    window["Command7"].click()
    assert len(callback.told) == 1


@pytest.mark.parametrize("raised", [ValueError("the map is busy"), RuntimeFailure("the map is busy")])
def test_a_callback_that_raises_is_told_to_the_person(
    session: Session, dialog: PublicObject, window: Window, raised: Exception
) -> None:
    def refuse(xml: str) -> None:
        raise raised

    dialog.query("IOVLServicePropertiesDialog2").SetCallback(refuse)
    window["uiTreeView"].select("Source")
    window["Command7"].click()
    assert session.failures == ["the map is busy"]
    assert window["RasterList"].text == "north - 12.5"


def test_a_lock_without_a_listener_is_a_failure_for_the_person(
    session: Session, dialog: PublicObject, window: Window
) -> None:
    dialog.query("IOVLServicePropertiesDialog2").SetCallback(None)
    window["uiTreeView"].select("Source")
    window["Command7"].click()
    (failure,) = session.failures
    assert "SetCallback" in failure


def test_save_writes_the_full_metadata_of_the_image(
    session: Session, service: Service, window: Window, tmp_path: pathlib.Path
) -> None:
    session.choose_file(tmp_path / "image.xml")
    window["Save"].click()
    assert text_in((tmp_path / "image.xml").read_text(), "Sensor") == "frame"


def test_image_metadata_that_fail_leave_the_last_good_ones(service: Service, window: Window) -> None:
    window["uiTreeView"].select("Image Returned")
    service.failing["GetImageMetadata"] = OSError("the line is cut")
    window["uiTreeView"].select("Image Returned")
    assert shown(window)["Columns"] == "512"


def test_a_refresh_shows_the_new_image(dialog: PublicObject, service: Service, window: Window) -> None:
    window["uiTreeView"].select("Image Returned")
    service.image = image_metadata("<BufferSize>2048</BufferSize>")
    dialog.query("IServicePropertiesDialog").Refresh()
    assert shown(window)["Buffer size"] == "2"


def test_a_copied_attribute_is_on_the_clipboard(session: Session, window: Window) -> None:
    window["uiTreeView"].select("Source")
    window["TabStrip1"].select("Attributes")
    window["ListView1"].select("Year")
    window["ListView1"].press(ord("C"), 2)
    assert "1998" in session.clipboard


def test_the_one_window_dialog_reads_the_same(session: Session, service: Service) -> None:
    seen: dict[str, str] = {}

    def read(window: Window) -> None:
        window["myTab"].select("Metadata")
        window["uiTreeView"].select("Image Returned")
        seen.update(shown(window))

    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    assert dialog.Init("", None, service)
    session.when_window_appears(read)
    assert dialog.ShowPropertiesModalDialog() == 0
    assert seen["Buffer size"] == "384"


def test_without_a_service_the_page_lives_on_the_documents_of_the_host(session: Session, service: Service) -> None:
    whole = session.create("ServicePropertiesDialog")
    dialog = whole.query("IOVLServicePropertiesDialog")
    assert dialog.Init("", None, None)
    dialog.ImageMetaDataXml(image_metadata())
    dialog.serviceInfoXml(str(service.ServiceInfo))
    dialog.MetaDataXml(str(service.GetMetaData("")))
    service.calls.clear()
    extension = whole.query("IOVLServicePropertiesDialog2")
    extension.SetProperty("ClientXADef", service.definitions[1])
    extension.SetProperty("ServiceMetadataXADef", service.definitions[3])
    extension.SetProperty("ServiceMetadataXFDef", service.definitions[4])
    assert dialog.ShowPropertyPage(PropertyPageId.METADATA, session.add_host_window())
    assert shown(whole.metadata_page)["Title"] == "The Alps from above"
    whole.metadata_page["TabStrip2"].select("Metadata")
    assert shown(whole.metadata_page)["Title"] == "Metadata of the Alps"
    whole.metadata_page["uiTreeView"].select("Source")
    assert len(whole.metadata_page["RasterList"].entries) == 2
    assert service.calls == []


def test_the_page_tells_of_the_image_that_was_drawn_last(session: Session) -> None:
    geoid = session.open("ImageService://127.0.0.1/World/EGM96_Geoid")
    geoid.draw(72, 36, (0, 0, 36, 18))
    whole = session.create("ServicePropertiesDialog")
    operations = whole.query("IOVLServicePropertiesDialog")
    assert operations.Init("", None, geoid)
    assert operations.ShowPropertyPage(PropertyPageId.METADATA, session.add_host_window())
    whole.metadata_page["uiTreeView"].select("Image Returned")
    assert shown(whole.metadata_page)["Columns"] == "72"
