"""Connections of a user, with their secrets, and what is asked for them."""

from __future__ import annotations

import base64
import concurrent.futures
import http.server
import pathlib
import threading
from typing import Iterator

import pytest

import vlclientui
from vlclientui import Connection, RuntimeFailure, Session


class SignInServer:
    """Lets in who signs in as it wants, and notes how each request signed in. It has no services."""

    def __init__(self) -> None:
        server = self
        self.signed: list[str] = []

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self) -> None:
                signed = self.headers.get("Authorization", "")
                server.signed.append(signed or self.path)
                self.send_response(200 if signed else 401)
                self.send_header("Content-Length", "0")
                if not signed:
                    self.send_header("WWW-Authenticate", "Basic")
                self.end_headers()

            def log_message(self, *_: object) -> None:
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.address = f"http://127.0.0.1:{self._server.server_address[1]}/wcs"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def close(self) -> None:
        self._server.shutdown()
        self._server.server_close()


@pytest.fixture(autouse=True)
def without_former_ones(session: Session) -> None:
    """A process has one book of connections, whichever home came first."""
    for connection in session.connections():
        session.remove_connection(connection.name)


@pytest.fixture
def server() -> Iterator[SignInServer]:
    made = SignInServer()
    yield made
    made.close()


def basic(user: str, password: str) -> str:
    return "Basic " + base64.b64encode(f"{user}:{password}".encode()).decode()


def test_a_connection_is_saved_found_changed_and_removed(session: Session, home: pathlib.Path) -> None:
    assert session.connections() == []
    made = Connection("Alps", "https://maps.example/wcs", user="ann")
    session.save_connection(made, "secret", keep="file")
    (kept,) = session.connections()
    assert (kept.name, kept.address, kept.user, kept.kept) == ("Alps", "https://maps.example/wcs", "ann", "file")
    assert "secret" not in repr(kept) and "ann" in repr(kept)
    changed = Connection("Relief", "https://maps.example/wcs", token_parameter="key")
    session.save_connection(changed, "token", keep="file", replaces="Alps")
    assert [(each.name, each.token_parameter, each.token_header) for each in session.connections()] == [
        ("Relief", "key", "")
    ]
    assert session.remove_connection("relief") == ""
    assert session.connections() == []
    with pytest.raises(RuntimeFailure):
        session.remove_connection("relief")


def test_a_saved_secret_signs_in(session: Session, server: SignInServer) -> None:
    session.save_connection(Connection("mine", server.address, user="ann"), "pass word", keep="file")
    with pytest.raises(RuntimeFailure):
        session.services("mine")
    assert basic("ann", "pass word") in server.signed
    told = session.try_connection(Connection("mine", server.address, user="ann"), "other")
    assert not told["answers"] and told["words"] and basic("ann", "other") in server.signed


def test_a_function_is_asked_for_the_secret_of_a_session(session: Session, server: SignInServer) -> None:
    session.save_connection(Connection("mine", server.address, token_header="Authorization"), keep="session")
    asked: list[str] = []

    def answer(connection: Connection) -> str:
        asked.append(connection.name)
        return "abc"

    session.ask_for_secrets(answer)
    with pytest.raises(RuntimeFailure):
        session.services("mine")
    session.ask_for_secrets(None)
    assert asked == ["mine"] and "Bearer abc" in server.signed
    session.remove_connection("mine")


def test_what_the_asked_function_raises_is_raised(session: Session, server: SignInServer) -> None:
    session.save_connection(Connection("mine", server.address, user="ann"), keep="session")

    def fail(connection: Connection) -> str:
        raise LookupError("the safe is shut")

    session.ask_for_secrets(fail)
    try:
        with pytest.raises(LookupError, match="the safe is shut"):
            session.services("mine")
    finally:
        session.ask_for_secrets(None)
        session.remove_connection("mine")


def test_a_question_that_asks_its_own_server_fails_and_does_not_wait(session: Session, server: SignInServer) -> None:
    session.save_connection(Connection("mine", server.address, user="ann"), keep="session")
    told: list[str] = []

    def answer(connection: Connection) -> str:
        with pytest.raises(RuntimeFailure) as failure:
            session.services(connection.name)
        told.append(failure.value.description)
        return "word"

    session.ask_for_secrets(answer)
    with pytest.raises(RuntimeFailure):
        session.services("mine")
    session.ask_for_secrets(None)
    assert len(told) == 1 and "a question about a secret cannot ask for another one" in told[0]
    assert server.signed == [basic("ann", "word")] * len(server.signed) and server.signed
    session.remove_connection("mine")


def test_a_question_that_waits_for_a_helper_asking_its_own_server_fails(session: Session, server: SignInServer) -> None:
    session.save_connection(Connection("mine", server.address, user="ann"), keep="session")
    told: list[str] = []

    def ask(name: str) -> None:
        with vlclientui.headless() as own:
            own.services(name)

    def answer(connection: Connection) -> str:
        with concurrent.futures.ThreadPoolExecutor() as pool:
            failure = pool.submit(ask, connection.name).exception(30)
        assert isinstance(failure, RuntimeFailure)
        told.append(failure.description)
        return "word"

    session.ask_for_secrets(answer, patience=0.5)
    with pytest.raises(RuntimeFailure):
        session.services("mine")
    session.ask_for_secrets(None)
    assert len(told) == 1 and "another thread has asked for it" in told[0]
    assert server.signed and set(server.signed) == {basic("ann", "word")}
    session.remove_connection("mine")
    for patience in (-1.0, 1e9, float("nan")):
        with pytest.raises(ValueError):
            session.ask_for_secrets(None, patience=patience)


def test_secrets_in_an_address_are_used_and_not_shown(session: Session, server: SignInServer) -> None:
    shown = session.without_secrets(server.address.replace("//", "//bob:hush@"))
    assert "hush" not in shown
    with pytest.raises(RuntimeFailure):
        session.services(shown)
    assert basic("bob", "hush") in server.signed


@pytest.mark.parametrize(
    "words",
    [
        {"user": "ann", "token_header": "X-Key"},
        {"token_header": "X-Key", "token_parameter": "key"},
    ],
)
def test_a_connection_signs_in_one_way_only(words: dict[str, str]) -> None:
    with pytest.raises(RuntimeFailure, match="one only"):
        Connection("mine", "https://maps.example/", **words)


def test_what_makes_no_sense_is_refused(session: Session) -> None:
    for name, address in (("a/b", "https://maps.example/"), ("mine", "nonsense"), ("", "https://maps.example/")):
        with pytest.raises(RuntimeFailure):
            session.save_connection(Connection(name, address))
    with pytest.raises(RuntimeFailure, match="best, desktop, file and session"):
        session.save_connection(Connection("mine", "https://maps.example/"), keep="pocket")  # type: ignore[arg-type]
    assert session.connections() == []
