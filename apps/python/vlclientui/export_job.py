"""Exports as files: a job says a whole export, and gives the same image whoever runs it. docs/jobs.md describes them."""

from __future__ import annotations

import os
import pathlib
from typing import Callable, Literal, Optional, Union

from ._core import CatalogueImageService, ExportJob, current_session

PathText = Union[str, "os.PathLike[str]"]
Progress = Callable[[float], Optional[bool]]
Keeping = Literal["nothing", "partial", "resume", "restart"]


def read(file: PathText) -> ExportJob:
    """Reads and checks a job, also from the metadata beside an image.

    Raises:
        RuntimeFailure: naming the file and why it is no job, and without a session.
    """
    return current_session().open_job(file)


def write(job: ExportJob, file: PathText) -> pathlib.Path:
    """Writes a job, whole or not at all.

    Raises:
        RuntimeFailure: when it cannot be written, and without a session.
    """
    current_session().save_job(job, file)
    return pathlib.Path(file)


def of(service: CatalogueImageService) -> ExportJob:
    """The job of the export that a service was asked for last, by a window or by a program.

    Raises:
        RuntimeFailure: when it was asked for none.
    """
    return service.job()


def run(job: Union[ExportJob, PathText], progress: Optional[Progress] = None, *, keep: Keeping = "nothing") -> pathlib.Path:
    """Runs a job, or the one in a file.

    Args:
        job: what is exported; folders on the way to its file are made.
        progress: called with the share done, 0 to 1; False cancels.
        keep: what becomes of pixels that were read where it breaks off, as of CatalogueImageService.keeping.

    Returns:
        The file that was written.

    Raises:
        RuntimeFailure: with why nothing was written.
    """
    session = current_session()
    given = job if isinstance(job, ExportJob) else session.open_job(job)
    session.run_job(given, progress, keep)
    return pathlib.Path(given.file)
