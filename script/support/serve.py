#!/usr/bin/env python3
"""Starts one server on loopback and a free port, tells "ready PORT" when it answers, and ends it with all that
belongs to it: at SIGTERM, SIGINT or SIGHUP, when one of its processes dies for good, or when whoever started it is
gone. What it writes lies in a temporary folder that it removes.

Usage: serve.py mapserver FOLDER    FOLDER holds mapserver.conf
       serve.py qgis PROJECT        a project file
       serve.py static FOLDER       files, with range requests
       serve.py secured HOST:PORT   passes on by https what another server answers; needs --certificate
"""

import argparse
import ctypes
import http.client
import os
import shutil
import signal
import socket
import ssl
import sys
import tempfile
import time

WORKERS = {"mapserver": 3, "qgis": 2}  # the second needs a second to start, each
PATIENCE = 20  # seconds until a server answers for the first time
PR_SET_PDEATHSIG = 1
ENDINGS = {signal.SIGTERM, signal.SIGINT, signal.SIGHUP}

LIGHTTPD = """server.document-root = "{scratch}"
server.port = {port}
server.bind = "127.0.0.1"
server.systemd-socket-activation = "enable"
server.errorlog = "{scratch}/lighttpd.log"
server.upload-dirs = ( "{scratch}" )
server.modules = ( "mod_fastcgi" )
fastcgi.server = ( {paths} )
"""

SECURED = """
  server {{
    listen 127.0.0.1:{port} ssl reuseport;
    ssl_certificate "{certificate}.pem";
    ssl_certificate_key "{certificate}.key";
    location / {{
      proxy_pass http://{what};
      proxy_set_header Host $http_host;
    }}
  }}
"""

FILES = """
  server {{
    listen 127.0.0.1:{port} reuseport;
    root "{folder}";
    autoindex on;
  }}
"""

NGINX = """daemon off;
master_process off;
pid {scratch}/nginx.pid;
error_log {scratch}/nginx.log;
events {{ worker_connections 256; }}
http {{
  access_log {log};
  default_type application/octet-stream;
  types {{
    image/tiff tif tiff;
    application/json json;
    application/geo+json geojson;
    application/xml xml vrt;
    text/html html;
    text/plain txt;
  }}
  client_body_temp_path {scratch}/body;
  proxy_temp_path {scratch}/proxy;
  fastcgi_temp_path {scratch}/fastcgi;
  uwsgi_temp_path {scratch}/uwsgi;
  scgi_temp_path {scratch}/scgi;
{server}
}}
"""


class Programs:
    """Finds programs where they were unpacked, else where they are installed."""

    def __init__(self, root):
        self.root = root

    def find(self, path):
        for place in (self.root + path, path):
            if os.access(place, os.X_OK):
                return place
        sys.exit(f"serve.py: {path} is neither unpacked below {self.root} nor installed; script/serve --set-up does it")

    def folder_of(self, path):
        return self.root + path if os.path.isdir(self.root + path) else path

    def environment(self, more):
        libraries = [self.root + "/usr/lib/" + name for name in os.listdir(self.root + "/usr/lib")
                     if name.endswith("-linux-gnu")] if os.path.isdir(self.root + "/usr/lib") else []
        told = os.environ.get("LD_LIBRARY_PATH")
        return {**os.environ, **more, "LD_LIBRARY_PATH": ":".join(libraries + ([told] if told else []))}


def bound(family, address):
    """A socket at a free port, which nobody else gets before the server has it."""
    listener = socket.socket(family, socket.SOCK_STREAM)
    if family == socket.AF_INET:
        listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEPORT, 1)
    try:
        listener.bind(address)
    except OSError as error:
        sys.exit(f"serve.py: {address}: {error.strerror}")
    return listener


def die_with_parent(number):
    ctypes.CDLL(None, use_errno=True).prctl(PR_SET_PDEATHSIG, int(number), 0, 0, 0)


def become(words, environment, listener, slot, log):
    """The rest of a forked child. The listening socket, if any, stands at the descriptor where the program expects
    it."""
    die_with_parent(signal.SIGKILL)
    signal.pthread_sigmask(signal.SIG_UNBLOCK, ENDINGS | {signal.SIGCHLD})
    output = os.open(log, os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o600)
    kept = os.dup(listener.fileno()) if listener else None
    os.dup2(output, 1)
    os.dup2(output, 2)
    if listener:
        os.dup2(kept, slot)
        os.set_inheritable(slot, True)
    environment["LISTEN_PID"] = str(os.getpid())
    os.execve(words[0], words, environment)


class Family:
    """The processes of a server. None of them outlives this one."""

    def __init__(self, scratch):
        self.log = scratch + "/output.log"
        self.starts = {}  # process id: what started it

    def start(self, *what):
        child = os.fork()
        if child == 0:
            try:
                become(*what, self.log)
            finally:
                os._exit(127)
        self.starts[child] = what
        return child

    def reap(self):
        """Those that ended since the last call."""
        ended = []
        while self.starts:
            child, _ = os.waitpid(-1, os.WNOHANG)
            if child == 0:
                break
            ended.append(self.starts.pop(child))
        return ended

    def end(self):
        # Some of these programs ignore every kinder signal while they work.
        for child in self.starts:
            os.kill(child, signal.SIGKILL)
        for child in self.starts:
            os.waitpid(child, 0)


def start_lighttpd(family, programs, scratch, listener, gateway, paths):
    rows = ", ".join(f'"{path}" => (( "socket" => "{gateway}", "check-local" => "disable" ))' for path in paths)
    with open(scratch + "/lighttpd.conf", "w", encoding="utf-8") as file:
        file.write(LIGHTTPD.format(scratch=scratch, port=listener.getsockname()[1], paths=rows))
    modules = programs.folder_of("/usr/lib/lighttpd")
    words = [programs.find("/usr/sbin/lighttpd"), "-D", "-m", modules, "-f", scratch + "/lighttpd.conf"]
    listener.listen(128)
    family.start(words, programs.environment({"LISTEN_FDS": "1"}), listener, 3)
    listener.close()


def start_gateway(family, programs, scratch, listener, program, environment, paths, workers):
    """A FastCGI program with several workers on one socket, and lighttpd before it."""
    gateway = scratch + "/gateway"
    socket_of_workers = bound(socket.AF_UNIX, gateway)
    socket_of_workers.listen(128)
    worker = ([programs.find(program)], programs.environment(environment), socket_of_workers, 0)
    for _ in range(workers):
        family.start(*worker)
    start_lighttpd(family, programs, scratch, listener, gateway, paths)
    return worker


def start_mapserver(family, programs, scratch, listener, options):
    settings = {"MAPSERVER_CONFIG_FILE": os.path.abspath(options.what) + "/mapserver.conf"}
    return start_gateway(family, programs, scratch, listener, "/usr/lib/cgi-bin/mapserv", settings,
                         ["/cgi-bin/mapserv", "/wcs"], WORKERS["mapserver"])


def start_qgis(family, programs, scratch, listener, options):
    settings = {"QGIS_PROJECT_FILE": os.path.abspath(options.what), "QT_QPA_PLATFORM": "offscreen", "HOME": scratch,
                "QGIS_OPTIONS_PATH": scratch, "QGIS_SERVER_LOG_LEVEL": "2", "QGIS_SERVER_LOG_STDERR": "1"}
    return start_gateway(family, programs, scratch, listener, "/usr/lib/cgi-bin/qgis_mapserv.fcgi", settings,
                         ["/cgi-bin/qgis_mapserv.fcgi", "/ows"], WORKERS["qgis"])


def start_nginx(family, programs, scratch, options, server):
    log = os.path.abspath(options.log) if options.log else "off"
    with open(scratch + "/nginx.conf", "w", encoding="utf-8") as file:
        file.write(NGINX.format(scratch=scratch, log=log, server=server))
    words = [programs.find("/usr/sbin/nginx"), "-p", scratch, "-e", scratch + "/nginx.log", "-c",
             scratch + "/nginx.conf"]
    # It crashes on a socket that it is given; so it opens the port a second time.
    family.start(words, programs.environment({}), None, None)


def start_static(family, programs, scratch, listener, options):
    start_nginx(family, programs, scratch, options,
                FILES.format(port=listener.getsockname()[1], folder=os.path.abspath(options.what)))


def start_secured(family, programs, scratch, listener, options):
    start_nginx(family, programs, scratch, options,
                SECURED.format(port=listener.getsockname()[1], what=options.what,
                               certificate=os.path.abspath(options.certificate)))


STARTERS = {"mapserver": start_mapserver, "qgis": start_qgis, "static": start_static, "secured": start_secured}
FIRST_REQUESTS = {"mapserver": "/wcs?SERVICE=WCS&REQUEST=GetCapabilities",
                  "qgis": "/ows?SERVICE=WCS&REQUEST=GetCapabilities", "static": "/", "secured": "/"}


def connected(port, kind):
    if kind != "secured":
        return http.client.HTTPConnection("127.0.0.1", port, timeout=PATIENCE)
    # Whether it answers at all; who it is, its clients find out.
    context = ssl._create_unverified_context()
    return http.client.HTTPSConnection("127.0.0.1", port, timeout=PATIENCE, context=context)


def answers(port, kind):
    try:
        connection = connected(port, kind)
        connection.request("GET", FIRST_REQUESTS[kind])
        return connection.getresponse().status < 500
    except (OSError, http.client.HTTPException):
        return False


def wait_until_ready(family, port, kind):
    limit = time.monotonic() + PATIENCE
    while not family.reap() and time.monotonic() < limit:
        if answers(port, kind):
            return True
        time.sleep(0.05)
    return False


def stay(family, worker):
    """A worker that dies is started again, as the server itself would do it; without the server all is over."""
    while True:
        if signal.sigwait(ENDINGS | {signal.SIGCHLD}) != signal.SIGCHLD:
            return
        for what in family.reap():
            if what is not worker and what != worker:
                return
            time.sleep(0.1)
            family.start(*what)


def run(options, scratch):
    family = Family(scratch)
    try:
        listener = bound(socket.AF_INET, ("127.0.0.1", options.port))
        port = listener.getsockname()[1]
        worker = STARTERS[options.kind](family, Programs(options.root), scratch, listener, options)
        if not wait_until_ready(family, port, options.kind):
            report(scratch)
        print(f"ready {port}", flush=True)
        stay(family, worker)
    finally:
        family.end()


def report(scratch):
    for name in ("output.log", "lighttpd.log", "nginx.log"):
        if os.path.exists(scratch + "/" + name):
            with open(scratch + "/" + name, encoding="utf-8", errors="replace") as file:
                sys.stderr.write(file.read())
    sys.exit("serve.py: the server does not answer")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kind", choices=sorted(STARTERS))
    parser.add_argument("what")
    here = os.path.dirname(os.path.abspath(__file__))
    parser.add_argument("--root", default=os.path.normpath(here + "/../../build/servers/root"),
                        help="where packages were unpacked")
    parser.add_argument("--port", type=int, default=0, help="instead of a free one")
    parser.add_argument("--log", help="a file that gets one line for each request (static and secured only)")
    parser.add_argument("--certificate", help="two files without their endings .pem and .key (secured only)")
    options = parser.parse_args()
    signal.pthread_sigmask(signal.SIG_BLOCK, ENDINGS | {signal.SIGCHLD})
    die_with_parent(signal.SIGTERM)
    scratch = tempfile.mkdtemp(prefix="vlclientui-server-")
    try:
        run(options, scratch)
    finally:
        shutil.rmtree(scratch, ignore_errors=True)


if __name__ == "__main__":
    main()
