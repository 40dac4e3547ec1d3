"""What goes wrong on demand. A fault is written name, name=value, or several of them with ";" between."""

import asyncio
import base64
import email.utils
import gzip
import socket
import struct
import time
import zlib
from urllib.parse import parse_qs, unquote

from messages import Answer, answer, bare, head_of, whole_body

EXCEPTION = """<?xml version="1.0" encoding="UTF-8"?>
<ows:ExceptionReport xmlns:ows="http://www.opengis.net/ows/2.0" version="2.0.1">
  <ows:Exception exceptionCode="NoApplicableCode" locator="coverage">
    <ows:ExceptionText>The coverage cannot be read today.</ows:ExceptionText>
  </ows:Exception>
</ows:ExceptionReport>
"""


class Ended(Exception):
    """The connection ended as the fault asked for."""


def parsed(text):
    """ "delay=20;status=503" as a dictionary; a name alone has the value ""."""
    pairs = (part.partition("=") for part in text.split(";") if part)
    return {name: unquote(value) for name, _, value in pairs}


def reset(writer):
    """Ends the connection in a way that the other side hears as a failure."""
    plain = writer.get_extra_info("socket")
    plain.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    writer.transport.abort()
    raise Ended


async def endless(piece):
    while True:
        yield piece


async def bomb():
    """Zeros without an end, packed a thousandfold."""
    packer = zlib.compressobj(9, zlib.DEFLATED, 31)
    zeros = bytes(1 << 20)
    while True:
        yield packer.compress(zeros)


def told_pause(text):
    """Seconds as they are; "date+5" as the date in five seconds."""
    if not text.startswith("date"):
        return text
    return email.utils.formatdate(time.time() + float(text[len("date"):]), usegmt=True)


def proves(wanted, request):
    """Whether the request carries what is wanted: basic:USER:PASSWORD, header:NAME:VALUE, parameter:NAME:VALUE."""
    kind, _, rest = wanted.partition(":")
    if kind == "basic":
        return request.header("authorization") == "Basic " + base64.b64encode(rest.encode()).decode()
    name, _, value = rest.partition(":")
    if kind == "header":
        return request.header(name.lower()) == value
    return value in parse_qs(request.query).get(name, [])


def replacing(fault, request):
    """The answer that stands in place of the real one; None where no fault asks for one."""
    if "wants" in fault and not proves(fault["wants"], request):
        return answer("who is there?", status=401, headers=[("WWW-Authenticate", 'Basic realm="tests"')])
    if "status" in fault:
        told = [("Retry-After", told_pause(fault["after"]))] if "after" in fault else []
        return answer("something is wrong", status=int(fault["status"]), headers=told)
    if "exception" in fault:
        return answer(EXCEPTION, "application/xml")
    if "loop" in fault:
        return bare(302, [("Location", request.target)])
    if "redirect" in fault:
        return bare(int(fault.get("as", "302")), [("Location", fault["redirect"])])
    if "endless" in fault:
        return Answer(200, [("Content-Type", "text/plain")], endless(b"more and more\n" * 1000))
    if "bomb" in fault:
        return Answer(200, [("Content-Type", "text/plain"), ("Content-Encoding", "gzip")], bomb())
    if "notgzip" in fault:
        return answer("no gzip at all", headers=[("Content-Encoding", "gzip")])
    return None


async def before_answer(fault, writer, released):
    """What happens instead of any answer, or before one."""
    if "delay" in fault:
        await asyncio.sleep(float(fault["delay"]) / 1000)
    if "hold" in fault:
        await released.wait()
    if "hang" in fault:
        await asyncio.Event().wait()
    if "reset" in fault:
        reset(writer)
    if "close" in fault:
        raise Ended
    if "garbage" in fault:
        writer.write(b"220 this is another protocol\r\n" * 3)
        await writer.drain()
        raise Ended
    if "manyheaders" in fault:
        writer.write(b"HTTP/1.1 200 OK\r\n")
        while True:
            writer.write(b"X-More: and more\r\n" * 100)
            await writer.drain()


def changed_headers(fault, answered):
    if "type" in fault:
        answered.replace("Content-Type", fault["type"])
    if "nocheck" in fault:
        answered.replace("ETag", None)
        answered.replace("Last-Modified", None)
    if "header" in fault:
        name, _, value = fault["header"].partition(":")
        answered.replace(name, value.strip())


async def changed_body(fault, answered):
    """Bodies that are whole, but not what they should be."""
    if "corrupt" in fault:
        body = bytearray(await whole_body(answered))
        for place in range(len(body) // 3, len(body), max(len(body) // 7, 1)):
            body[place] ^= 0xFF
        return answer(bytes(body), status=answered.status, headers=answered.headers)
    if "without" in fault:
        body = (await whole_body(answered)).replace(fault["without"].encode(), b"")
        return answer(body, status=answered.status, headers=answered.headers)
    if "pack" in fault:
        body = gzip.compress(await whole_body(answered))
        answered.replace("Content-Encoding", "gzip")
        return Answer(answered.status, answered.headers, answer(body).pieces, len(body))
    if "otherpart" in fault:
        first, last = 1, answered.length
        answered.replace("Content-Range", f"bytes {first}-{last}/{last + 1}")
    if "shortpart" in fault:
        body = (await whole_body(answered))[:-1]
        return Answer(answered.status, answered.headers, answer(body).pieces, len(body))
    return answered


async def broken_body(fault, answered, writer):
    """Sends a body that breaks off or has another length than told; gives False where none of that is asked."""
    kinds = ("truncate", "truncatechunks", "truncateclose", "resetmid", "stall", "length", "drip")
    if not any(kind in fault for kind in kinds):
        return False
    body = await whole_body(answered)
    half = body[: len(body) // 2]
    if "truncatechunks" in fault:
        answered.replace("Transfer-Encoding", "chunked")
        writer.write(head_of(answered, True) + b"%x\r\n" % len(half) + half + b"\r\n")
    elif "truncateclose" in fault:
        writer.write(head_of(answered, False) + half)
    elif "length" in fault:
        answered.replace("Content-Length", str(len(body) + int(fault["length"])))
        writer.write(head_of(answered, True) + body)
    elif "drip" in fault:
        answered.replace("Content-Length", str(len(body)))
        writer.write(head_of(answered, True))
        for place in range(len(body)):
            writer.write(body[place : place + 1])
            await writer.drain()
            await asyncio.sleep(float(fault["drip"]) / 1000)
    else:
        answered.replace("Content-Length", str(len(body)))
        writer.write(head_of(answered, True) + half)
    await writer.drain()
    if "stall" in fault:
        await asyncio.Event().wait()
    if "resetmid" in fault:
        # The half that was sent arrives before the reset does.
        await asyncio.sleep(0.05)
        reset(writer)
    raise Ended
