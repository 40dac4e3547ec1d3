"""Jobs of exports: the same image by the window, by a job from Python and by the command line."""

from __future__ import annotations

import collections
import functools
import os
import pathlib
import signal
import subprocess
from typing import Any, Callable

import numpy
import pytest

import vlclientui
from vlclientui import ExportJob, RuntimeFailure, Session, export_job

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"
STUDY = "ImageService://127.0.0.1/Imagery/Overlap_Study"
FORMATS = ["TIFF-No Compression", "TIFF-JPEG", "TIFF-LZ77", "JPEG", "JP2", "PNG"]


@pytest.fixture
def job(session: Session, tmp_path: pathlib.Path) -> ExportJob:
    made = ExportJob()
    made.reference = GEOID
    made.extent = (-10, 35, 30, 60)
    made.columns, made.rows = 80, 50
    made.compression = "LZ77"
    made.file = str(tmp_path / "job" / "europe.Tif")
    return made


def test_a_job_is_made_run_and_read_again(session: Session, job: ExportJob, tmp_path: pathlib.Path) -> None:
    shares: list[float] = []
    assert export_job.run(job, shares.append) == tmp_path / "job" / "europe.Tif"
    assert session.open(job.file).facts.columns == 80
    assert shares and shares[-1] <= 1
    saved = export_job.write(job, tmp_path / "europe.VLJob")
    read = export_job.read(saved)
    assert read == job and repr(read) == f"<ExportJob {GEOID} to {job.file}>"
    assert (read.format, read.compression, read.extent) == ("Tiff", "LZ77", (-10, 35, 30, 60))
    assert session.read_job(session.job_document(job)) == job


def vlhost(*words: object) -> None:
    told = [os.environ["VLHOST"], *(str(word) for word in words)]
    ended = subprocess.run(told, capture_output=True, text=True, timeout=120)
    assert ended.returncode == 0, ended.stderr


def quoted(word: object) -> str:
    text = str(word).replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")
    return f'"{text}"'


def test_every_format_is_tried() -> None:
    assert [each["entry"] for each in vlclientui.export_formats()] == FORMATS


@pytest.mark.parametrize("format", FORMATS)
def test_window_python_run_file_and_command_line_write_the_same_bytes(
    format: str, session: Session, tmp_path: pathlib.Path
) -> None:
    service = session.open(STUDY)
    service.ServiceProperties = (
        "<Vorlane><ImageServiceProperties><MosaicMethod>By Attribute</MosaicMethod></ImageServiceProperties></Vorlane>"
    )
    by_window = vlclientui.export(service, tmp_path / "window.x", columns=120, rows=80, format=format)
    job = export_job.of(service)
    assert job.file == str(by_window) and "By Attribute" in job.properties
    job.file = str(by_window.with_stem("python"))
    by_python = export_job.run(job)
    job.file = str(by_window.with_stem("shell"))
    vlhost("export", "--job", export_job.write(job, tmp_path / "shell.VLJob"))
    by_run = by_window.with_stem("run")
    run_file = tmp_path / "a.vlrun"
    run_file.write_text(
        f"vlrun 1\nopen export {STUDY} properties {quoted(job.properties)}\n"
        f"set uiTxtCols 120\nset uiTxtRows 80\nchoose FormatCombo {quoted(format)}\n"
        f"path uiTxtFileName {quoted(by_run)}\npress Command1\n"
    )
    vlhost("run", run_file)
    whole = by_window.read_bytes()
    assert whole and whole == by_python.read_bytes()
    assert whole == pathlib.Path(job.file).read_bytes(), "by the command line"
    assert whole == by_run.read_bytes(), "by the run file"


def test_a_job_in_a_file_is_run_as_it_is(session: Session, job: ExportJob, tmp_path: pathlib.Path) -> None:
    assert export_job.run(export_job.write(job, tmp_path / "a.VLJob")).exists()


def test_what_makes_no_sense_is_a_failure(session: Session, job: ExportJob, tmp_path: pathlib.Path) -> None:
    (tmp_path / "none.VLJob").write_text("<VLJob/>")
    for wrong in (
        lambda: export_job.read(tmp_path / "none.VLJob"),
        lambda: export_job.read(tmp_path / "missing.VLJob"),
        lambda: session.read_job("nonsense"),
        lambda: setattr(job, "format", "Bitmap"),
        lambda: setattr(job, "compression", "LZ99"),
        lambda: setattr(job, "extent", (1, 0, 0, 1)),
        lambda: setattr(job, "file", ""),
        lambda: session.open_job(""),
        lambda: session.save_job(job, ""),
        lambda: session.read_job(session.job_document(job), ""),
    ):
        with pytest.raises(RuntimeFailure):
            wrong()
    job.reference = "ImageService://127.0.0.1/No/Such"
    with pytest.raises(RuntimeFailure):
        export_job.run(job)


def test_a_job_that_is_canceled_or_whose_progress_raises_leaves_no_file(
    session: Session, job: ExportJob
) -> None:
    def fail(share: float) -> None:
        raise ValueError("the bar is broken")

    answers: tuple[tuple[Callable[[float], Any], str], ...] = (
        (lambda share: False, "cancel"),
        (fail, "the bar is broken"),
        (lambda share: numpy.ones(2), "truth value"),  # neither true nor false
    )
    for progress, told in answers:
        with pytest.raises(RuntimeFailure, match=told):
            export_job.run(job, progress)
        assert not pathlib.Path(job.file).exists()


def test_an_export_that_breaks_off_keeps_its_pixels_and_goes_on(session: Session, tmp_path: pathlib.Path) -> None:
    service = session.open(GEOID)
    assert service.keeping == "nothing" and service.kept_bytes is None
    file = tmp_path / "a.Tif"

    def stop(share: float) -> bool:
        return share < 0.5

    size = {"columns": 1440, "rows": 721, "format": "TIFF-No Compression"}
    with pytest.raises(RuntimeFailure, match="cancel"):
        vlclientui.export(service, file, progress=stop, keep="partial", **size)  # type: ignore[arg-type]
    assert service.keeping == "nothing" and not file.exists()
    kept = service.kept_bytes
    assert kept is not None and kept > 0
    assert service.forecast()["bytes_kept"] == kept
    job = service.job()
    assert export_job.run(job, keep="resume") == file
    resumed = file.read_bytes()
    assert service.kept_bytes is None
    export_job.run(job)
    assert file.read_bytes() == resumed
    with pytest.raises(RuntimeFailure, match="restart"):
        service.keeping = "forever"  # type: ignore[assignment]


def test_what_was_kept_is_let_go(session: Session, tmp_path: pathlib.Path) -> None:
    service = session.open(GEOID)
    with pytest.raises(RuntimeFailure):
        vlclientui.export(
            service, tmp_path / "a.Tif", columns=1440, rows=721, progress=lambda share: share < 0.5, keep="partial"
        )
    assert service.kept_bytes
    with pytest.raises(RuntimeFailure):
        export_job.run(service.job(), keep="partial")
    assert service.discard_kept() and service.kept_bytes is None
    assert [each for each in tmp_path.iterdir() if each.name.startswith("a")] == []


def test_ctrl_c_that_python_has_not_heard_yet_ends_the_call(session: Session, job: ExportJob) -> None:
    """No code of Python runs here that could hear of it."""
    presses: collections.defaultdict[float, None] = collections.defaultdict(
        functools.partial(signal.raise_signal, signal.SIGINT)
    )
    with pytest.raises(KeyboardInterrupt):
        export_job.run(job, presses.__getitem__)
    assert not pathlib.Path(job.file).exists()


def test_what_interrupts_in_the_progress_is_raised(session: Session, job: ExportJob) -> None:
    for interruption in (KeyboardInterrupt, SystemExit):

        def interrupt(share: float) -> None:
            raise interruption

        with pytest.raises(interruption):
            export_job.run(job, interrupt)
        assert not pathlib.Path(job.file).exists()
