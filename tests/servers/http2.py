"""As much of HTTP/2 as it takes to see who speaks it: every request gets the same answer."""

import asyncio
import struct

PREFACE = b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"
DATA, HEADERS, SETTINGS, PING, GOAWAY = 0, 1, 4, 6, 7
END_STREAM, END_HEADERS, ACKNOWLEDGED = 1, 4, 1
# ":status: 200" stands in the table of the protocol.
ANSWER_HEADERS = b"\x88"
ANSWER = b"spoken in HTTP/2\n"


def frame(kind, flags, stream, payload=b""):
    return struct.pack(">I", len(payload))[1:] + bytes([kind, flags]) + struct.pack(">I", stream) + payload


async def read_frame(reader):
    head = await reader.readexactly(9)
    length = int.from_bytes(head[:3], "big")
    stream = int.from_bytes(head[5:], "big") & 0x7FFFFFFF
    return head[3], head[4], stream, await reader.readexactly(length)


def handler(state):
    async def connected(reader, writer):
        state.connections += 1
        try:
            await converse(reader, writer, state)
        except (ConnectionError, asyncio.IncompleteReadError):
            pass
        finally:
            writer.close()

    return connected


async def converse(reader, writer, state):
    if await reader.readexactly(len(PREFACE)) != PREFACE:
        return
    writer.write(frame(SETTINGS, 0, 0))
    while True:
        kind, flags, stream, payload = await read_frame(reader)
        if kind == GOAWAY:
            return
        if kind == SETTINGS and not flags & ACKNOWLEDGED:
            writer.write(frame(SETTINGS, ACKNOWLEDGED, 0))
        elif kind == PING and not flags & ACKNOWLEDGED:
            writer.write(frame(PING, ACKNOWLEDGED, 0, payload))
        elif kind == HEADERS:
            state.requests.append("HTTP/2")
            writer.write(frame(HEADERS, END_HEADERS, stream, ANSWER_HEADERS) + frame(DATA, END_STREAM, stream, ANSWER))
        await writer.drain()
