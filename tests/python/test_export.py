"""What a person enters in the export window and what follows, and exports of the samples, from Python."""

from __future__ import annotations

import pathlib
from typing import Callable
from xml.etree import ElementTree

import numpy
import pytest

import vlclientui
from fakes import Service, text_in
from vlclientui import IExportImageDialog, MessageAnswer, RuntimeFailure, Session, Window

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"


class Visit:
    def __init__(self, session: Session, service: Service) -> None:
        self.session = session
        self.service = service
        self.dialog: IExportImageDialog = session.create("ExportDialog").query("IExportImageDialog")

    def __call__(self, act: Callable[[Window], object], extents: str = "") -> str:
        assert self.dialog.IExportImageDialog_Init("", None, self.service)
        self.session.when_window_appears(act)
        assert not self.dialog.iExportImageDialog_ShowModalDialogEx(extents)
        return self.dialog.iExportImageDialog_GetUpdatedProperties()


@pytest.fixture
def visit(session: Session, service: Service) -> Visit:
    return Visit(session, service)


def edit(window: Window, box: str, text: str) -> None:
    window[box].type(text)
    window["ExportMD"].focus()


def test_the_window_opens_on_the_image(visit: Visit) -> None:
    def act(window: Window) -> None:
        assert window.caption == "Export Image Properties"
        assert window["MainCombo"].entries == ["Current View Extent", "Default Extent of Image Service", "Custom Extent"]
        assert window["uiTxtLeft"].text == "100.000000000"
        assert window["uiTxtCols"].text == "512"
        assert window["FormatCombo"].text == "TIFF-No Compression"
        assert not window["uiTxtMB"].enabled
        assert window.focused is not None and window.focused.name == "MainCombo"

    assert visit(act) == ""


def test_each_edit_moves_what_follows_it(visit: Visit) -> None:
    def act(window: Window) -> None:
        edit(window, "uiTxtWidth", "50")
        assert window["uiTxtRight"].text == "150.000000000"
        edit(window, "uiTxtCols", "100")
        assert float(window["uiTxtGSDX"].text) == 0.5
        assert window["MainCombo"].text == "Custom Extent"

    visit(act)


def test_a_refusal_is_told_once_and_puts_the_text_back(visit: Visit) -> None:
    def act(window: Window) -> None:
        edit(window, "uiTxtWidth", "wide")
        assert window["uiTxtWidth"].text == "100.000000000"
        assert not window["uiTxtWidth"].is_red

    visit(act)
    (message,) = visit.session.messages
    assert (message.title, message.text) == ("Export Properties", "Cannot enter characters")


def test_a_number_out_of_range_is_complained_of_beside_its_box_and_by_ok(visit: Visit) -> None:
    def act(window: Window) -> None:
        edit(window, "uiTxtCols", "3001")
        assert window["uiTxtCols"].is_red
        assert "3000" in window["uiTxtCols"].complaint
        window["Command1"].click()
        assert window.is_open and visit.service.request == ""
        edit(window, "uiTxtCols", "3000")
        window["Command1"].click()
        assert not window.is_open

    assert text_in(visit(act), "Cols") == "3000"
    assert text_in(visit.service.request, "Cols") == "3000"


def test_format_and_quality_go_into_the_request(visit: Visit) -> None:
    def act(window: Window) -> None:
        window["FormatCombo"].select("TIFF-JPEG")
        assert window["uiTxtCompression"].text == "75"
        edit(window, "uiTxtCompression", "60")
        window["ExportMD"].click()
        window["Command1"].click()

    request = visit(act)
    assert text_in(request, "CompressionMethod") == "JPEG"
    assert text_in(request, "CompressionQuality") == "60"
    assert text_in(request, "ExportMetadataXml") == "True"


def test_an_extent_of_the_host_is_picked_from_the_list(visit: Visit) -> None:
    def act(window: Window) -> None:
        assert window["MainCombo"].text == "Drawn"
        assert window["uiTxtLeft"].text.startswith("110")

    visit(
        act,
        "<Vorlane><Client><ExportImageDialog><CustomEnvelope><Description>Drawn</Description><XMin>110</XMin>"
        "<YMin>12</YMin><XMax>150</XMax><YMax>20</YMax></CustomEnvelope></ExportImageDialog></Client></Vorlane>",
    )


def test_a_file_that_is_there_is_written_over_only_after_an_ok(visit: Visit, tmp_path: pathlib.Path) -> None:
    (tmp_path / "there.Tif").write_text("former")

    def act(window: Window) -> None:
        edit(window, "uiTxtFileName", visit.session.logic_path(tmp_path / "there.Tif"))
        window["Command1"].click()
        assert window.is_open and "ExportImage" not in visit.service.calls
        window["Command1"].click()

    visit.session.answer_message(MessageAnswer.CANCEL)
    visit.session.answer_message(MessageAnswer.OK)
    visit(act)
    assert visit.service.calls.count("ExportImage") == 1
    assert len(visit.session.messages) == 2


def test_what_the_service_says_of_its_failure_is_shown(visit: Visit) -> None:
    visit.service.answers["ExportImage"] = False
    visit(lambda window: window["Command1"].click())
    assert "the disk is full" in visit.session.messages[-1].text


def test_a_sample_is_exported_with_the_values_that_are_read(session: Session, tmp_path: pathlib.Path) -> None:
    geoid = session.open(GEOID)
    shares: list[float] = []
    written = vlclientui.export(
        geoid, tmp_path / "geoid.tif", extent=(-10, 20, 30, 40), columns=80, rows=40, progress=shares.append
    )
    assert written == tmp_path / "geoid.Tif" and written.stat().st_size > 80 * 40 * 4
    assert shares and shares == sorted(shares) and 0 <= shares[0] and shares[-1] <= 1
    exported = session.open(written).drawing().read(80, 40)
    assert numpy.array_equal(exported, geoid.drawing().read(80, 40, (-10, 20, 30, 40)))


def test_an_export_that_is_canceled_leaves_no_file(session: Session, tmp_path: pathlib.Path) -> None:
    with pytest.raises(RuntimeFailure, match="cancel"):
        vlclientui.export(session.open(GEOID), tmp_path / "geoid.tif", progress=lambda share: False)
    assert list(tmp_path.glob("*.[Tt]*")) == []


def test_what_a_progress_function_raises_is_the_failure_of_the_export(session: Session, tmp_path: pathlib.Path) -> None:
    def fail(share: float) -> None:
        raise ValueError("the bar is broken")

    geoid = session.open(GEOID)
    geoid.set_progress(fail)
    geoid.ExportProperties = (
        "<Vorlane><Client><GetImage><Top>10</Top><Left>0</Left><Right>10</Right><Bottom>0</Bottom><Cols>10</Cols>"
        f"<Rows>10</Rows><Format>Tiff</Format><FileName>{session.logic_path(tmp_path / 'a.Tif')}</FileName>"
        "</GetImage></Client></Vorlane>"
    )
    assert not geoid.ExportImage()
    assert "the bar is broken" in text_in(geoid.status, "Message")
    assert not (tmp_path / "a.Tif").exists()
    geoid.set_progress(None)
    assert geoid.ExportImage(), geoid.status
    assert (tmp_path / "a.Tif").exists()


def test_what_the_window_refuses_is_the_failure_of_the_export(session: Session, tmp_path: pathlib.Path) -> None:
    with pytest.raises(RuntimeFailure, match="no format has the ending"):
        vlclientui.export(session.open(GEOID), tmp_path / "geoid.xyz")
    with pytest.raises(RuntimeFailure):
        vlclientui.export(session.open(GEOID), tmp_path / "geoid.tif", columns=0)
    assert list(tmp_path.glob("geoid*")) == []


@pytest.mark.parametrize("ending", ["Tif", "JP2", "PNG"])
def test_the_ending_of_the_file_chooses_the_format(session: Session, tmp_path: pathlib.Path, ending: str) -> None:
    mosaic = session.open("ImageService://127.0.0.1/Imagery/Overlap_Study")
    written = vlclientui.export(mosaic, tmp_path / f"study.{ending.lower()}", columns=60, rows=40)
    assert written.name == f"study.{ending}"
    assert session.open(written).facts.columns == 60


def test_every_format_of_the_window_is_told(session: Session) -> None:
    entries = [told["entry"] for told in vlclientui.export_formats()]
    assert entries[0] == "TIFF-No Compression" and "PNG" in entries
    assert vlclientui.export_format_of("a/b.jp2") == "JP2"
    assert vlclientui.export_format_of("a/b") is None


def test_places_of_a_map_are_offered_in_the_coordinates_of_the_service(session: Session) -> None:
    scene = session.open("ImageService://127.0.0.1/Imagery/Valley/Ortho_Mosaic")
    (listed,) = [s for s in session.services() if s.name == "Imagery/Valley/Ortho_Mosaic"]
    assert listed.extent is not None
    document = ElementTree.fromstring(scene.offered_extents([("View", listed.extent)]))
    assert document.findtext(".//Description") == "View"
    assert float(document.findtext(".//XMin") or "nan") > 180
