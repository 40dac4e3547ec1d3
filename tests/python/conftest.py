"""Every test has a home of its own, and a session without windows when it asks for one."""

from __future__ import annotations

import pathlib
from typing import Iterator

import pytest

import vlclientui
from fakes import Service, definitions_of


@pytest.fixture(autouse=True)
def home(tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> pathlib.Path:
    folder = tmp_path / "home"
    folder.mkdir()
    monkeypatch.setenv("HOME", str(folder))
    for variable in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "VLCLIENTUI_CATALOGUE", "VLCLIENTUI_TRACE"):
        monkeypatch.delenv(variable, raising=False)
    return folder


@pytest.fixture
def session(home: pathlib.Path) -> Iterator[vlclientui.Session]:
    with vlclientui.headless(locale="C.UTF-8") as opened:
        yield opened


@pytest.fixture
def service(session: vlclientui.Session) -> Service:
    return Service(definitions_of(session))
