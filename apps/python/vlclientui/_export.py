"""Exports through the export window, without a screen."""

from __future__ import annotations

import os
import pathlib
from typing import Callable, Literal, Optional, Tuple, Union
from xml.etree import ElementTree

from ._core import CatalogueImageService, Control, Session, Window, current_session, export_format_of
from ._failures import RuntimeFailure

Extent = Tuple[float, float, float, float]
Progress = Callable[[float], Optional[bool]]
Keeping = Literal["nothing", "partial", "resume", "restart"]


class _Person:
    """Types into the window what was asked for, and stops at the first refusal."""

    def __init__(self, edits: list[tuple[str, str]], metadata: bool, file: str, told: int) -> None:
        self._edits = [*edits, ("uiTxtFileName", file)]
        self._metadata = metadata
        self._told = told
        self.refusal = ""

    def __call__(self, window: Window) -> None:
        session = current_session()
        for name, text in self._edits:
            control = window[name]
            if not control.enabled:
                self.refusal = f"the format leaves no choice for {name}"
                return
            self._enter(control, text)
        if self._metadata and not window["ExportMD"].marked:
            window["ExportMD"].click()
        window["Command1"].focus()
        if len(session.messages) == self._told:
            window["Command1"].click()

    @staticmethod
    def _enter(control: Control, text: str) -> None:
        if control.kind == "DropDown":
            control.select(text)
        else:
            control.type(text)


def _edits(
    extent: Optional[Extent], columns: Optional[int], rows: Optional[int], format: str, quality: Optional[int],
    tile_size: Optional[int], number: Callable[[float], str],
) -> list[tuple[str, str]]:
    edits = []
    if extent is not None:
        boxes = ("uiTxtLeft", "uiTxtBottom", "uiTxtRight", "uiTxtTop")
        edits += [(box, number(value)) for box, value in zip(boxes, extent)]
    for box, count in (("uiTxtCols", columns), ("uiTxtRows", rows)):
        if count is not None:
            edits.append((box, str(count)))
    edits.append(("FormatCombo", format))
    if quality is not None:
        edits.append(("uiTxtCompression", str(quality)))
    if tile_size is not None:
        edits.append(("TileSizeCombo", str(tile_size)))
    return edits


def _reason(service: CatalogueImageService, refusal: str, complaints: list[str]) -> str:
    if refusal or complaints:
        return refusal or current_session().shown_text(complaints[-1])
    message = ElementTree.fromstring(service.status).find(".//Message")
    return (message.text if message is not None else None) or "nothing was exported"


def _visit(
    session: Session, service: CatalogueImageService, person: _Person, progress: Optional[Progress], keep: Keeping
) -> str:
    """The request that was carried out; empty when the window was left."""
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    if not dialog.IExportImageDialog_Init("", None, service):
        raise RuntimeFailure("the export cannot be prepared")
    former = service.keeping
    service.set_progress(progress)
    try:
        service.keeping = keep
        session.when_window_appears(person)
        dialog.iExportImageDialog_ShowModalDialogEx("")
    except BaseException:
        session.forget_visits()
        raise
    finally:
        service.set_progress(None)
        service.keeping = former
    return dialog.iExportImageDialog_GetUpdatedProperties()


def export(
    service: CatalogueImageService,
    file: Union[str, "os.PathLike[str]"],
    *,
    extent: Optional[Extent] = None,
    columns: Optional[int] = None,
    rows: Optional[int] = None,
    format: str = "",
    quality: Optional[int] = None,
    tile_size: Optional[int] = None,
    metadata: bool = False,
    progress: Optional[Progress] = None,
    keep: Keeping = "nothing",
) -> pathlib.Path:
    """Exports an area of a service through the export window, with its checks and its words.

    Args:
        service: of a session without windows.
        file: is replaced when the new one is whole. It gets the ending of its format.
        extent: (xmin, ymin, xmax, ymax) in the coordinates of the service; None for all of it.
        columns, rows: of the image; None for what the window proposes.
        format: an entry of export_formats; empty for what the ending of the file asks for.
        quality: 0 to 100, where the format has one.
        tile_size: pixels a side, where the format has tiles.
        metadata: whether a document with metadata is written beside the image.
        progress: called with the share done, 0 to 1; False cancels.
        keep: what becomes of pixels that were read where it breaks off, as of CatalogueImageService.keeping.

    Returns:
        The file that was written.

    Raises:
        RuntimeFailure: for what the window refuses, and what the export fails for.
    """
    session = current_session()
    path = pathlib.Path(file).absolute()
    entry = format or export_format_of(path)
    if entry is None:
        raise RuntimeFailure(f"no format has the ending of {path.name}")
    told = len(session.messages)
    edits = _edits(extent, columns, rows, entry, quality, tile_size, session.number_to_text)
    person = _Person(edits, metadata, session.logic_path(path), told)
    request = _visit(session, service, person, progress, keep)
    complaints = [message.text for message in session.messages[told:] if message.buttons == 0]
    written = ElementTree.fromstring(request).findtext(".//FileName") if request else None
    if written is None or complaints:
        raise RuntimeFailure(_reason(service, person.refusal, complaints))
    return pathlib.Path(session.native_path(written))
