"""Numbers, lists, references and other documents that go through Python."""

from __future__ import annotations

import pathlib

import pytest

import vlclientui
from fakes import Server, text_in
from vlclientui import RuntimeFailure, Session


@pytest.mark.parametrize(
    ("text", "number"), [("1.5", 1.5), ("1,5", 1.5), (" -3e2 ", -300.0), ("", None), ("one", None), ("1.5.2", None)]
)
def test_decimals_of_documents_are_read_whatever_the_locale(text: str, number: object) -> None:
    assert vlclientui.read_decimal(text) == number


def test_numbers_are_read_and_written_as_windows_do() -> None:
    assert vlclientui.text_to_number("1.234,5", point=",", group=".") == 1234.5
    assert vlclientui.number_to_text(1234.5, point=",") == "1234,5"
    assert vlclientui.format_number(0.5, "###.000") == ".500"
    for text, kind in (("three", "TypeMismatch"), ("1e400", "Overflow")):
        with pytest.raises(RuntimeFailure) as failure:
            vlclientui.text_to_number(text)
        assert failure.value.kind == kind


def test_a_lock_document_locks_to_the_first_part_of_an_id() -> None:
    assert text_in(vlclientui.lock_document("12.5"), "LockImageID") == "12"
    assert text_in(vlclientui.lock_document("12.5"), "MosaicMethod") == "LockRaster"
    assert vlclientui.allows_mosaic_method("None; lock raster", "Lock Raster")
    assert not vlclientui.allows_mosaic_method("None", "Lock Raster")


def test_the_samples_are_listed_with_their_places(session: Session) -> None:
    services = session.services()
    assert len(services) == 7
    (geoid,) = [service for service in services if service.name == "World/EGM96_Geoid"]
    assert geoid.title.startswith("EGM96") and geoid.pixel_type == "Float32" and geoid.bands == "1"
    assert geoid.extent is not None and geoid.extent[1] == -90
    assert repr(geoid) == "<ServiceDescription World/EGM96_Geoid>"


def test_a_folder_is_a_server(session: Session) -> None:
    assert [service.name for service in session.services(session.catalogue)] == [
        service.name for service in session.services()
    ]


def test_the_document_of_a_client_in_python_is_read_the_same_way(session: Session) -> None:
    assert [service.name for service in session.read_services(Server().GetServerInfo(""))] == [
        "Roads/2004/West",
        "Roads/2004/East",
        "Relief",
        "Untitled",
    ]


def test_a_reference_leads_to_the_service_and_a_saved_one_keeps_its_properties(
    session: Session, tmp_path: pathlib.Path
) -> None:
    service = session.open(vlclientui.service_reference("127.0.0.1", "Imagery/Overlap_Study"))
    service.ServiceProperties = (
        "<Vorlane><ImageServiceProperties><MosaicMethod>By Attribute</MosaicMethod></ImageServiceProperties></Vorlane>"
    )
    assert service.SaveProperties(tmp_path / "study.VLRef"), service.status
    opened = session.open(tmp_path / "study.VLRef")
    assert text_in(opened.ServiceProperties, "MosaicMethod") == "By Attribute"
    assert not service.SaveProperties(tmp_path / "no" / "folder" / "a.VLRef")
    assert text_in(service.status, "Message") != ""


def test_both_generations_answer_their_own_members(session: Session) -> None:
    older = session.open("ImageService://127.0.0.1/World/EGM96_Geoid", newer=False)
    newer = session.open("ImageService://127.0.0.1/World/EGM96_Geoid")
    assert (older.type_name, newer.type_name) == ("ImageService", "IOVLImageService")
    assert newer.getProperty("ClientXADef") == newer.GetDefinition(1) == older.GetDefinition(1)
    with pytest.raises(RuntimeFailure):
        older.getProperty("ClientXADef")
    assert session.server_client(newer=False).type_name == "IServerClient"


def test_names_that_are_no_utf8_go_through_and_come_back(session: Session, tmp_path: pathlib.Path) -> None:
    folder = tmp_path / "rot\udce9"
    folder.mkdir()
    assert session.native_path(session.logic_path(folder)) == str(folder)
    with pytest.raises(RuntimeFailure, match="XML does not allow"):
        session.services(str(folder))


def test_the_public_classes_are_told_with_their_interfaces() -> None:
    classes = {name: interfaces for name, _, interfaces in vlclientui.public_classes()}
    assert classes["ImageServicesDialog"] == ("IImageServicesDialog", "IOVLImageServicesDialog")
    assert len(classes) == 7


def test_every_public_member_has_words() -> None:
    for name in vlclientui.__all__:
        member = getattr(vlclientui, name)
        assert isinstance(member, str) or (member.__doc__ or "").strip(), name
        for inner, value in vars(member).items() if isinstance(member, type) else ():
            if not inner.startswith("_") and (callable(value) or isinstance(value, property)):
                assert (value.__doc__ or "").strip(), f"{name}.{inner}"
