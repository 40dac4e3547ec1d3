"""A web server for the rasters of a folder, which falls silent when it is told to. As a program it is the server itself, for
nothing of QGIS's process may be in its way."""

import http.server
import os
import subprocess
import sys
import threading


class FallingSilent:
    """Answers until `silence`. What is asked from then on is never answered."""

    def __init__(self, folder):
        self.asked = 0  # requests that were left without an answer
        self.program = subprocess.Popen(
            ["/usr/bin/python3", __file__, folder], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1
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

    def end(self):
        self.program.kill()
        self.program.wait()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    folder = ""
    silent = threading.Event()

    def do_HEAD(self):
        self.answer(with_content=False)

    def do_GET(self):
        self.answer(with_content=True)

    def answer(self, with_content):
        if Handler.silent.is_set():
            print("asked", flush=True)
            threading.Event().wait()
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


def serve(folder):
    Handler.folder = folder
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    print(server.server_address[1], flush=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    # Ends with whoever started it.
    for line in sys.stdin:
        if line == "silence\n":
            Handler.silent.set()


if __name__ == "__main__":
    serve(sys.argv[1])
