"""Where answers come from: a folder, another server, or the request itself."""

import asyncio
import email.utils
import gzip
import os
from html import escape
from urllib.parse import quote

from messages import PIECE, Answer, answer, bare, read_head

TYPES = {
    ".json": "application/json",
    ".geojson": "application/geo+json",
    ".xml": "application/xml",
    ".vrt": "application/xml",
    ".txt": "text/plain",
    ".html": "text/html",
    ".tif": "image/tiff",
    ".tiff": "image/tiff",
    ".png": "image/png",
    ".jpg": "image/jpeg",
}
COMPRESSED = (".json", ".geojson", ".xml", ".vrt", ".txt", ".html")


async def file_part(path, first, count):
    with open(path, "rb") as file:
        file.seek(first)
        while count > 0:
            piece = file.read(min(PIECE, count))
            if not piece:
                return
            count -= len(piece)
            yield piece


def told_range(text, size):
    """First and last byte of a single range; None for anything else, "beyond" for one outside the file."""
    if not text.startswith("bytes=") or "," in text:
        return None
    first, _, last = text[len("bytes="):].partition("-")
    if not first:
        begin, end = max(size - int(last), 0), size - 1
    else:
        begin, end = int(first), min(int(last), size - 1) if last else size - 1
    return (begin, end) if begin <= end else "beyond"


class Folder:
    """Files with ranges, ETag, Last-Modified, 304 and gzip; folders as pages of links."""

    def __init__(self, root):
        self.root = os.path.realpath(root)

    async def answer(self, request):
        path = os.path.realpath(os.path.join(self.root, request.path.lstrip("/")))
        if path != self.root and not path.startswith(self.root + os.sep):
            return answer("not there", status=404)
        if os.path.isdir(path):
            return self.listing(path, request)
        if not os.path.isfile(path):
            return answer("not there", status=404)
        return self.file(path, request)

    def listing(self, path, request):
        names = sorted(name + ("/" if os.path.isdir(os.path.join(path, name)) else "") for name in os.listdir(path))
        links = "\n".join(f'<a href="{quote(name)}">{escape(name)}</a>' for name in names)
        title = f"Index of {escape(request.path)}"
        return answer(f"<html><head><title>{title}</title></head><body><h1>{title}</h1><pre>\n{links}\n</pre>"
                      "</body></html>\n", "text/html")

    def file(self, path, request):
        state = os.stat(path)
        ending = os.path.splitext(path)[1].lower()
        headers = [
            ("Content-Type", TYPES.get(ending, "application/octet-stream")),
            ("ETag", f'"{state.st_mtime_ns:x}-{state.st_size:x}"'),
            ("Last-Modified", email.utils.formatdate(state.st_mtime, usegmt=True)),
            ("Accept-Ranges", "bytes"),
        ]
        if self.is_known(request, headers[1][1], state.st_mtime):
            return bare(304, headers[1:3])
        part = told_range(request.header("range"), state.st_size)
        if part == "beyond":
            return bare(416, [("Content-Range", f"bytes */{state.st_size}")])
        if part:
            first, last = part
            headers.append(("Content-Range", f"bytes {first}-{last}/{state.st_size}"))
            return Answer(206, headers, file_part(path, first, last - first + 1), last - first + 1)
        if ending in COMPRESSED and "gzip" in request.header("accept-encoding"):
            with open(path, "rb") as file:
                packed = gzip.compress(file.read())
            return answer(packed, headers[0][1], headers=[*headers[1:], ("Content-Encoding", "gzip")])
        return Answer(200, headers, file_part(path, 0, state.st_size), state.st_size)

    def is_known(self, request, tag, changed):
        if request.header("if-none-match"):
            return tag in request.header("if-none-match")
        since = request.header("if-modified-since")
        return bool(since) and int(changed) <= email.utils.parsedate_to_datetime(since).timestamp()


class Upstream:
    """Another server: what it answers is passed on as it comes, over connections that are kept."""

    HOP = ("connection", "keep-alive", "transfer-encoding", "content-length", "proxy-connection")

    def __init__(self, place):
        self.host, _, self.port = place.rpartition(":")
        self.idle = []

    async def answer(self, request):
        while True:
            is_kept = bool(self.idle)
            try:
                pair = self.idle.pop() if is_kept else await asyncio.open_connection(self.host, int(self.port))
                return await self.exchange(request, *pair)
            except (ConnectionError, asyncio.IncompleteReadError):
                # It may have closed a connection that was kept; one that was made anew has no excuse.
                if not is_kept:
                    return answer("the server behind is gone", status=502)

    async def exchange(self, request, reader, writer):
        target = request.raw_path + ("?" + request.query if request.query else "")
        lines = [f"{request.method} {target} HTTP/1.1"]
        lines += [f"{name}: {value}" for name, value in request.headers.items() if name not in self.HOP]
        if request.body:
            lines.append(f"Content-Length: {len(request.body)}")
        writer.write(("\r\n".join(lines) + "\r\n\r\n").encode("latin-1") + request.body)
        await writer.drain()
        first, pairs = await read_head(reader)
        status = int(first.split(" ")[1])
        told = {name.lower(): value for name, value in pairs}
        passed = [(name, value) for name, value in pairs if name.lower() not in self.HOP]
        keeps = first.startswith("HTTP/1.1") and told.get("connection", "").lower() != "close"
        length = int(told["content-length"]) if "content-length" in told else None
        if status in (204, 304) or request.method == "HEAD":
            length = 0
        is_chunked = told.get("transfer-encoding", "").lower() == "chunked"
        body = self.chunks(reader) if is_chunked else self.counted(reader, length)
        return Answer(status, passed, self.passed(body, reader, writer, keeps and (is_chunked or length is not None)),
                      length)

    async def counted(self, reader, length):
        while length is None or length > 0:
            piece = await reader.read(PIECE if length is None else min(PIECE, length))
            if not piece:
                return
            length = None if length is None else length - len(piece)
            yield piece

    async def chunks(self, reader):
        while True:
            size = int((await reader.readline()).split(b";")[0], 16)
            if size:
                yield await reader.readexactly(size)
            await reader.readline()
            if not size:
                return

    async def passed(self, body, reader, writer, keeps):
        async for piece in body:
            yield piece
        if keeps:
            self.idle.append((reader, writer))
        else:
            writer.close()


class Echo:
    """The request itself: its first line, its headers, an empty line, its body."""

    async def answer(self, request):
        lines = [f"{request.method} {request.target}"]
        lines += [f"{name}: {value}" for name, value in sorted(request.headers.items())]
        return answer("\n".join(lines) + "\n\n" + request.body.decode("latin-1"))
