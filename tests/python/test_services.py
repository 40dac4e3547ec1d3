"""Services and clients in Python under all failures: each member raising, missing, and giving the wrong type."""

from __future__ import annotations

import gc
import pathlib
from typing import Callable

import pytest

import vlclientui
from fakes import INFO, Server, Service, definitions_of
from vlclientui import PropertyPageId, RuntimeFailure, Session, Silence, Window

READ = ("ServiceProperties", "ServiceInfo", "GetImageMetadata", "GetMetaData", "GetDefinition", "getProperty")
WRONG = (None, 7, b"<Vorlane/>", ["<Vorlane/>"], "\ud800", object())


class Tour:
    """Everything that a host can do with a service: all pages, all windows, an export."""

    def __init__(self, session: Session, service: object, folder: pathlib.Path) -> None:
        self.session = session
        self.service = service
        self.folder = folder
        self.raised: list[RuntimeFailure] = []
        self.statuses: list[str] = []

    def __call__(self) -> None:
        for step in (self.pages, self.one_window, self.viewpoint, self.export):
            try:
                step()
            except RuntimeFailure as failure:
                self.raised.append(failure)

    def pages(self) -> None:
        whole = self.session.create("ServicePropertiesDialog")
        dialog = whole.query("IOVLServicePropertiesDialog")
        dialog.Init("", None, self.service)
        self.statuses.append(dialog.Status())
        handle = self.session.add_host_window()
        for page in PropertyPageId:
            dialog.ShowPropertyPage(page, handle)
        self.read(whole.metadata_page)
        self.session.choose_file(self.folder / "a.VLRef")
        if whole.properties_page.is_open:
            whole.properties_page["SaveAs"].click()
        dialog.GetUpdatedProperties()
        dialog.HasChanged()
        dialog.Refresh()

    def read(self, window: Window) -> None:
        if not window.is_open:
            return
        for node in window["uiTreeView"].entries:
            window["uiTreeView"].select(node)
        window["Save"].click()
        if window["Command7"].visible:
            window["Command7"].click()

    def one_window(self) -> None:
        dialog = self.session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
        dialog.Init("", None, self.service)
        self.statuses.append(dialog.Status())
        self.session.when_window_appears(lambda window: window["uibtnok"].click())
        dialog.ShowPropertiesModalDialog()
        self.session.forget_visits()

    def viewpoint(self) -> None:
        dialog = self.session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
        dialog.Init("", None, self.service)
        self.statuses.append(dialog.Status())
        self.session.when_window_appears(lambda window: window["MoveNE"].click())
        dialog.ShowViewPointModalDialog()
        self.session.forget_visits()

    def export(self) -> None:
        dialog = self.session.create("ExportDialog").query("IExportImageDialog")
        dialog.IExportImageDialog_Init("", None, self.service)
        self.session.when_window_appears(lambda window: window["Command1"].click())
        try:
            dialog.iExportImageDialog_ShowModalDialogEx("")
        finally:
            self.session.forget_visits()


@pytest.fixture(params=["IImageService", "iovlimageservice"])
def service_of_each_generation(session: Session, request: pytest.FixtureRequest) -> Service:
    service = Service(definitions_of(session))
    service.type_name = request.param
    return service


MEMBERS = READ + ("SaveProperties", "ExportProperties", "ExportImage", "status")


RAISED = (ValueError("sorry"), RuntimeFailure("sorry", "Overflow"), StopIteration(), KeyError("k"))


@pytest.mark.parametrize("member", MEMBERS)
def test_a_member_that_raises_is_a_failure_and_never_a_crash(
    session: Session, service_of_each_generation: Service, tmp_path: pathlib.Path, member: str
) -> None:
    for raised in RAISED:
        service_of_each_generation.failing[member] = raised
        tour = Tour(session, service_of_each_generation, tmp_path)
        tour()
        # Only the export lets failures of a show through to the host.
        assert len(tour.raised) == (1 if member in ("ServiceInfo", "GetImageMetadata") else 0)
        assert all((str(raised) or type(raised).__name__) == failure.description for failure in tour.raised)


@pytest.mark.parametrize("member", MEMBERS)
def test_an_answer_of_the_wrong_type_is_a_failure_and_never_a_crash(
    session: Session, service_of_each_generation: Service, tmp_path: pathlib.Path, member: str
) -> None:
    for answer in WRONG:
        service_of_each_generation.answers[member] = answer
        tour = Tour(session, service_of_each_generation, tmp_path)
        tour()
        for failure in tour.raised:
            assert failure.kind == "TypeMismatch"
            assert failure.description.startswith(f"{member} of {service_of_each_generation.type_name} gives")


@pytest.mark.parametrize("member", MEMBERS)
def test_a_member_that_is_missing_is_a_failure_that_names_it(
    session: Session, tmp_path: pathlib.Path, member: str
) -> None:
    members = {name: value for name, value in vars(Service).items() if name != member}
    lacking = type("Lacking", (), members)
    tour = Tour(session, lacking(definitions_of(session)), tmp_path)
    with Silence() as silence:
        tour()
    told = [reason for _, reason in silence.ends] + [str(failure) for failure in tour.raised]
    told += session.failures + tour.statuses
    asked = member != "status"  # which is asked once an export failed
    assert any(f"has no member {member}" in text for text in told) == asked, told


@pytest.mark.parametrize("service", [object(), 3, "text", Service, lambda: None], ids=str)
def test_anything_may_be_given_as_a_service(session: Session, tmp_path: pathlib.Path, service: object) -> None:
    Tour(session, service, tmp_path)()


def test_the_generation_is_told_by_the_name_of_the_class(session: Session, service: Service) -> None:
    class IOVLImageService(Service):
        type_name = None  # type: ignore[assignment]

    newer = IOVLImageService(service.definitions)
    for given in (newer, service):
        dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
        assert dialog.Init("", None, given)
        assert dialog.ShowPropertyPage(PropertyPageId.PROPERTIES, session.add_host_window())
    assert "getProperty" in newer.calls and "getProperty" not in service.calls


def test_the_description_of_a_failure_reaches_the_status(session: Session, service: Service) -> None:
    service.failing["ServiceProperties"] = OSError(5, "the line is cut")
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    dialog.Init("", None, service)
    assert dialog.Status() == "[Errno 5] the line is cut"


def test_a_failure_without_words_is_told_by_its_class(session: Session, service: Service) -> None:
    service.failing["ServiceProperties"] = ZeroDivisionError()
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    dialog.Init("", None, service)
    assert dialog.Status() == "ZeroDivisionError"


def test_the_kind_of_a_failure_goes_through(session: Session, service: Service) -> None:
    service.failing["GetImageMetadata"] = RuntimeFailure("too many", "Overflow")
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    dialog.IExportImageDialog_Init("", None, service)
    with pytest.raises(RuntimeFailure) as failure:
        dialog.iExportImageDialog_ShowModalDialog()
    assert (failure.value.description, failure.value.kind) == ("too many", "Overflow")


def test_members_may_be_methods_where_properties_are_due(session: Session, service: Service) -> None:
    class WithMethods(Service):
        def ServiceInfo(self) -> str:  # type: ignore[override]
            return f"<Vorlane><ImageServiceInfo>{INFO}</ImageServiceInfo></Vorlane>"

        def ExportProperties(self, request: str) -> None:  # type: ignore[override]
            self.request = request

    with_methods = WithMethods(service.definitions)
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    dialog.IExportImageDialog_Init("", None, with_methods)
    session.when_window_appears(lambda window: (window["uiTxtCols"].type("77"), window["Command1"].click()))
    dialog.iExportImageDialog_ShowModalDialogEx("")
    assert "<Cols>77</Cols>" in with_methods.request


@pytest.mark.parametrize("failing", [ValueError("sorry"), None])
def test_a_server_that_fails_or_answers_nonsense_shows_a_message_row(session: Session, failing: Exception) -> None:
    class Failing:
        def GetServerInfo(self, request: str) -> object:
            if failing:
                raise failing
            return 3

    rows: list[str] = []
    for generation in ("IImageServicesDialog", "IOVLImageServicesDialog"):
        dialog = session.create("ImageServicesDialog").query(generation)
        assert dialog.Init("", Failing())
        session.when_window_appears(lambda window: rows.extend(page.rows[0] if page.rows else "" for page in window.pages))
        dialog.ShowDialog()
    assert "Relief" not in rows


def test_what_a_visit_raises_is_raised_by_the_call_that_showed_the_window(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    assert dialog.Init("", Server())
    seen: list[Window] = []

    def fail(window: Window) -> None:
        seen.append(window)
        raise LookupError("no such row")

    session.when_window_appears(fail)
    with pytest.raises(LookupError, match="no such row"):
        dialog.ShowDialog()
    assert not seen[0].is_open
    session.when_window_appears(lambda window: seen.append(window))
    assert dialog.ShowDialog()
    assert len(seen) == 2


def test_an_interrupt_inside_a_service_stops_the_program(session: Session, service: Service) -> None:
    service.failing["ServiceProperties"] = KeyboardInterrupt()
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    with pytest.raises(KeyboardInterrupt):
        dialog.Init("", None, service)
    service.failing.clear()
    assert dialog.Init("", None, service)


def test_an_interrupt_wins_over_the_failure_that_it_makes(session: Session, service: Service) -> None:
    service.failing["GetImageMetadata"] = KeyboardInterrupt()
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    dialog.IExportImageDialog_Init("", None, service)
    with pytest.raises(KeyboardInterrupt):
        dialog.iExportImageDialog_ShowModalDialogEx("")
    assert dialog.iExportImageDialog_GetUpdatedProperties() == ""


def test_a_service_may_use_the_library_while_it_is_asked(session: Session, service: Service) -> None:
    counted: list[int] = []

    def list_samples() -> None:
        counted.append(len(session.services()))

    service.during_export = list_samples
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    dialog.IExportImageDialog_Init("", None, service)
    session.when_window_appears(lambda window: window["Command1"].click())
    dialog.iExportImageDialog_ShowModalDialogEx("")
    assert counted == [7]


def test_a_window_closed_while_its_service_is_asked_is_no_crash(session: Session, service: Service) -> None:
    windows: list[Window] = []
    service.during_export = lambda: windows[0].close()
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    dialog.IExportImageDialog_Init("", None, service)
    session.when_window_appears(lambda window: (windows.append(window), window["Command1"].click()))
    dialog.iExportImageDialog_ShowModalDialogEx("")
    assert not windows[0].is_open


def test_a_session_that_ends_while_a_service_is_asked_is_no_crash(session: Session, service: Service) -> None:
    service.during_export = session.close
    dialog = session.create("ExportDialog").query("IExportImageDialog")
    dialog.IExportImageDialog_Init("", None, service)
    session.when_window_appears(lambda window: window["Command1"].click())
    try:
        dialog.iExportImageDialog_ShowModalDialogEx("")
    except RuntimeFailure:
        pass
    with pytest.raises(RuntimeFailure):
        dialog.iExportImageDialog_Status()


def test_objects_live_as_long_as_they_are_needed(session: Session, service: Service) -> None:
    gc.collect()
    before = vlclientui.live_object_count()
    dialog = session.create("ServicePropertiesDialog").query("IServicePropertiesDialog")
    gc.collect()
    assert vlclientui.live_object_count() == before + 1
    assert dialog.Init("", Server(), service)
    gc.collect()
    session.when_window_appears(lambda window: window["uibtnok"].click())
    assert dialog.ShowPropertiesModalDialog() == 1
    del dialog
    assert vlclientui.live_object_count() == before


def test_calls_before_and_without_what_they_need_are_failures(session: Session) -> None:
    uses: list[Callable[[], object]] = [
        lambda: session.create("NoSuchClass"),
        lambda: session.create("Envelope"),
        lambda: session.create("ExportDialog").query("IImageServicesDialog"),
        lambda: session.create("ExportDialog").properties_page,
        lambda: session.create("ServicePropertiesDialog").metadata_page.caption,
        lambda: session.open("ImageService://127.0.0.1/No/Such"),
        lambda: session.open("/no/such/file.tif"),
        lambda: session.services("/no/such/folder"),
        lambda: session.read_services("<Vorlane/>"),
        lambda: session.open("ImageService://127.0.0.1/World/EGM96_Geoid").draw(0, 5),
        lambda: session.open("ImageService://127.0.0.1/World/EGM96_Geoid").draw(5, 5, (3, 0, 1, 1)),
        lambda: session.run(),
        lambda: vlclientui.text_to_number("three"),
        lambda: vlclientui.headless(catalogue="/no/such/folder"),
    ]
    for use in uses:
        with pytest.raises(RuntimeFailure):
            use()


def test_arguments_of_the_wrong_type_are_told_by_python_itself(session: Session) -> None:
    dialog = session.create("ImageServicesDialog").query("IImageServicesDialog")
    for use in (lambda: dialog.Init(3, None), lambda: dialog.ShowDialogEx(None), lambda: session.create(b"x")):
        with pytest.raises(TypeError):
            use()
