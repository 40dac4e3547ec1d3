"""A web server for the rasters of a folder, which falls silent when it is told to, and may ask for a password. As a program it is the server itself, for
nothing of QGIS's process may be in its way."""

import base64
import http.server
import os
import subprocess
import sys
import threading


class FallingSilent:
    """Answers until `silence`. What is asked from then on is never answered."""

    def __init__(self, folder, user=""):
        """@param user: "name:password" that it asks for; empty: it lets everybody in."""
        self.asked = 0  # requests that were left without an answer
        self.program = subprocess.Popen(
            ["/usr/bin/python3", __file__, folder, user], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1
        )
        self.port = int(self.program.stdout.readline())
        threading.Thread(target=self.count, daemon=True).start()

    def count(self):
        for line in self.program.stdout:
            self.asked += line == "asked\n"

    def reference(self, name):
        service = os.path.splitext(name)[0]
        return f"ImageService://http://127.0.0.1:{self.port}/{name}/{service}"

    def silence(self):
        self.program.stdin.write("silence\n")

    def speak(self):
        """Answers again what is asked from now on."""
        self.program.stdin.write("speak\n")

    def end(self):
        self.program.kill()
        self.program.wait()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    folder = ""
    user = ""
    silent = threading.Event()

    def do_HEAD(self):
        self.answer(with_content=False)

    def do_GET(self):
        self.answer(with_content=True)

    def answer(self, with_content):
        if Handler.silent.is_set():
            print("asked", flush=True)
            threading.Event().wait()
        if Handler.user and self.headers.get("Authorization") != basic(Handler.user):
            self.send_response(401)
            self.send_header("WWW-Authenticate", 'Basic realm="rasters"')
            self.send_header("Content-Length", "0")
            return self.end_headers()
        path = os.path.join(Handler.folder, os.path.basename(self.path.split("?")[0]))
        if not os.path.isfile(path):
            return self.send_error(404)
        with open(path, "rb") as file:
            content = file.read()
        first, last = 0, len(content) - 1
        told = self.headers.get("Range", "")
        if told.startswith("bytes="):
            begin, end = told[6:].split("-")
            first, last = int(begin), min(int(end or last), last)
        self.send_response(206 if told else 200)
        self.send_header("Content-Type", "image/tiff")
        self.send_header("Accept-Ranges", "bytes")
        self.send_header("Content-Length", str(last + 1 - first))
        if told:
            self.send_header("Content-Range", f"bytes {first}-{last}/{len(content)}")
        self.end_headers()
        if with_content:
            self.wfile.write(content[first : last + 1])

    def log_message(self, *_):
        pass


def basic(user):
    return "Basic " + base64.b64encode(user.encode()).decode()


def serve(folder, user):
    Handler.folder, Handler.user = folder, user
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    print(server.server_address[1], flush=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    # Ends with whoever started it.
    for line in sys.stdin:
        if line == "silence\n":
            Handler.silent.set()
        if line == "speak\n":
            Handler.silent.clear()


if __name__ == "__main__":
    serve(sys.argv[1], sys.argv[2])
