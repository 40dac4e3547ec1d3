"""A web server for tests that does what it is told, wrong things included. See README.md in this folder.

Prints "ready PORT" when it takes connections. Takes commands as requests below /control/.
"""

import argparse
import asyncio
from urllib.parse import unquote

import certificates
import faults
import http2
from messages import answer as message
from messages import head_of, read_request, write_body
from sources import Echo, Folder, Upstream


class State:
    """What all ports share: counts, what is armed, and who waits to be released."""

    def __init__(self):
        self.released = asyncio.Event()
        self.every = {}
        self.clear()

    def clear(self):
        self.requests = []
        self.connections = 0
        self.open = 0
        self.together = 0
        self.armed = []
        self.every = {}
        self.spared = 0
        self.release()

    def release(self):
        """Answers what is held now; what comes later waits for the next release."""
        self.released.set()
        self.released = asyncio.Event()

    def begin(self, request):
        self.requests.append(f"{request.method} {request.target}")
        self.open += 1
        self.together = max(self.together, self.open)

    def fault_for(self, request):
        """Of the path, of the next in line, and of every request, in this order."""
        fault = {}
        if self.every.get("only", "") in request.target:
            fault = dict(self.every) if self.spared == 0 else {}
            self.spared = max(self.spared - 1, 0)
        if self.armed:
            fault |= self.armed.pop(0)
        if request.raw_path.startswith("/fault/"):
            text, _, rest = request.raw_path[len("/fault/"):].partition("/")
            request.raw_path = "/" + rest
            request.path = unquote(request.raw_path)
            fault |= faults.parsed(text)
        return fault


class Server:
    def __init__(self, source):
        self.state = State()
        self.source = source
        self.echo = Echo()
        self.ports = {}

    async def connected(self, reader, writer):
        is_counted = False
        try:
            while request := await read_request(reader):
                if request.path.startswith("/control/"):
                    keeps = await self.control(request, writer)
                else:
                    self.state.connections += 0 if is_counted else 1
                    is_counted = True
                    keeps = await self.one_request(request, reader, writer)
                if not keeps:
                    return
        except (faults.Ended, ConnectionError, asyncio.IncompleteReadError, asyncio.LimitOverrunError, ValueError):
            pass
        finally:
            writer.close()

    async def one_request(self, request, reader, writer):
        if request.method == "CONNECT":
            self.state.requests.append(f"CONNECT {request.target}")
            refused = faults.replacing(self.state.fault_for(request), request)
            if refused:
                await self.send(request, refused, writer, False)
            else:
                await self.tunnel(request, reader, writer)
            return False
        self.state.begin(request)
        try:
            return await self.answer(request, writer)
        finally:
            self.state.open -= 1

    async def control(self, request, writer):
        told = self.command(request.raw_path.split("/")[2:])
        answered = message("unknown", status=404) if told is None else message(told)
        await self.send(request, answered, writer, True)
        return True

    async def answer(self, request, writer):
        fault = self.state.fault_for(request)
        await faults.before_answer(fault, writer, self.state.released)
        if "norange" in fault:
            request.headers.pop("range", None)
        answered = faults.replacing(fault, request) or await self.source_for(request).answer(request)
        faults.changed_headers(fault, answered)
        answered = await faults.changed_body(fault, answered)
        await faults.broken_body(fault, answered, writer)
        keeps = request.header("connection").lower() != "close" and "once" not in fault
        await self.send(request, answered, writer, keeps)
        return keeps

    def source_for(self, request):
        return self.echo if request.path.startswith("/echo") else self.source

    async def send(self, request, answered, writer, keeps):
        has_body = answered.status not in (204, 304)
        if has_body and answered.length is None:
            answered.replace("Transfer-Encoding", "chunked")
        elif has_body:
            answered.replace("Content-Length", str(answered.length))
        writer.write(head_of(answered, keeps))
        if has_body and request.method != "HEAD":
            await write_body(writer, answered.pieces, answered.length is None)
        await writer.drain()

    async def tunnel(self, request, reader, writer):
        """A proxy's part in a secured connection. Only servers of this machine are reached."""
        port = int(request.target.rpartition(":")[2])
        there, back = await asyncio.open_connection("127.0.0.1", port)
        writer.write(b"HTTP/1.1 200 Connected\r\n\r\n")
        await asyncio.gather(self.pump(reader, back), self.pump(there, writer))

    async def pump(self, reader, writer):
        while piece := await reader.read(65536):
            writer.write(piece)
            await writer.drain()
        writer.close()

    def command(self, words):
        """The answer to a command; None for one that is unknown."""
        state = self.state
        name = words[0]
        if name == "arm":
            state.armed += [faults.parsed(words[2])] * int(words[1])
        elif name == "every":
            state.every = faults.parsed(words[1]) if len(words) > 1 else {}
            state.spared = 0
        elif name == "after":
            state.every = faults.parsed(words[2])
            state.spared = int(words[1])
        elif name == "release":
            state.release()
        elif name == "clear":
            state.clear()
        elif name == "counts":
            return f"{len(state.requests)} {state.connections} {state.together} {state.open}"
        elif name == "requests":
            return "\n".join(state.requests)
        elif name == "ports":
            return " ".join(f"{port}={value}" for port, value in self.ports.items())
        else:
            return None
        return "ok"


async def listen(server, context=None):
    handler = server.connected
    if context is not None and context.alpn_only:
        handler = http2.handler(server.state)
    tls = context.context if context is not None else None
    listener = await asyncio.start_server(handler, "127.0.0.1", 0, ssl=tls, limit=1 << 20, backlog=512)
    return listener, listener.sockets[0].getsockname()[1]


async def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--folder", default=".")
    parser.add_argument("--upstream", help="host:port of a server whose answers are passed on")
    parser.add_argument("--certificates", help="an empty folder; asks for the secured ports too")
    options = parser.parse_args()
    server = Server(Upstream(options.upstream) if options.upstream else Folder(options.folder))
    listener, port = await listen(server)
    server.ports["other"] = (await listen(server))[1]
    if options.certificates:
        made = certificates.make(options.certificates)
        for name in ("tls", "expired", "http2"):
            server.ports[name] = (await listen(server, certificates.context(made, name)))[1]
        server.ports["authority"] = made.authority
    print(f"ready {port}", flush=True)
    await listener.serve_forever()


asyncio.run(main())
