"""Requests and answers of HTTP/1.1, as the servers of the tests read and write them."""

import http
from dataclasses import dataclass, field
from urllib.parse import unquote, urlsplit

PIECE = 256 * 1024


@dataclass
class Request:
    method: str
    target: str  # as it was sent, whole
    headers: dict  # names in small letters
    body: bytes
    path: str = "/"  # decoded; faults are taken off its front
    raw_path: str = "/"
    query: str = ""

    def header(self, name):
        return self.headers.get(name, "")


@dataclass
class Answer:
    status: int = 200
    headers: list = field(default_factory=list)
    pieces: object = None  # an asynchronous iterator of bytes
    length: "int | None" = None  # None: sent in chunks

    def header(self, name):
        return next((value for key, value in self.headers if key.lower() == name.lower()), "")

    def replace(self, name, value):
        self.headers = [(key, old) for key, old in self.headers if key.lower() != name.lower()]
        if value is not None:
            self.headers.append((name, value))


async def one_piece(body):
    yield body


def answer(body, kind="text/plain", status=200, headers=()):
    """An answer that is known whole."""
    data = body.encode() if isinstance(body, str) else body
    return Answer(status, [("Content-Type", kind), *headers], one_piece(data), len(data))


async def whole_body(answered):
    return b"".join([piece async for piece in answered.pieces])


def bare(status, headers=()):
    """An answer without a body."""
    return Answer(status, list(headers), one_piece(b""), 0)


async def read_head(reader):
    """First line and headers."""
    head = await reader.readuntil(b"\r\n\r\n")
    lines = head.decode("latin-1").split("\r\n")
    pairs = [line.split(":", 1) for line in lines[1:] if ":" in line]
    return lines[0], [(name.strip(), value.strip()) for name, value in pairs]


async def read_request(reader):
    first, pairs = await read_head(reader)
    method, target, _ = first.split(" ", 2)
    headers = {name.lower(): value for name, value in pairs}
    body = await reader.readexactly(int(headers.get("content-length", "0")))
    request = Request(method, target, headers, body)
    parts = urlsplit(target)
    request.raw_path, request.query = parts.path or "/", parts.query
    request.path = unquote(request.raw_path)
    return request


def head_of(answered, keeps):
    reason = http.HTTPStatus(answered.status).phrase if answered.status in http.HTTPStatus._value2member_map_ else "-"
    lines = [f"HTTP/1.1 {answered.status} {reason}"]
    lines += [f"{name}: {value}" for name, value in answered.headers]
    lines.append("Connection: " + ("keep-alive" if keeps else "close"))
    return ("\r\n".join(lines) + "\r\n\r\n").encode("latin-1")


async def write_body(writer, pieces, is_chunked):
    async for piece in pieces:
        if not piece:
            continue
        writer.write(b"%x\r\n" % len(piece) + piece + b"\r\n" if is_chunked else piece)
        await writer.drain()
    if is_chunked:
        writer.write(b"0\r\n\r\n")
    await writer.drain()
