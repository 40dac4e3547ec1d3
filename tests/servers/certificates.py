"""A private authority with a good certificate and an expired one, made by the openssl command."""

import os
import ssl
import subprocess
from dataclasses import dataclass

# One name alone: the number of the machine is another one.
NAMES = "subjectAltName=DNS:localhost"


@dataclass
class Made:
    authority: str
    good: str
    expired: str


@dataclass
class Context:
    context: ssl.SSLContext
    alpn_only: bool


def run(folder, *words):
    subprocess.run(["openssl", *words], cwd=folder, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def new_key(folder, name, *words):
    run(folder, "req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-keyout", f"{name}.key",
        "-subj", f"/CN={name} of the tests", *words)


def signed(folder, name, first, last):
    new_key(folder, name, "-out", f"{name}.request")
    run(folder, "ca", "-batch", "-config", "authority.cnf", "-in", f"{name}.request", "-out", f"{name}.pem",
        "-notext", "-startdate", first, "-enddate", last)
    return os.path.join(folder, name)


def make(folder):
    with open(os.path.join(folder, "authority.cnf"), "w", encoding="ascii") as file:
        file.write(f"""[ca]
default_ca = here
[here]
new_certs_dir = .
database = index
serial = serial
certificate = authority.pem
private_key = authority.key
default_md = sha256
policy = any
x509_extensions = server
unique_subject = no
[any]
commonName = supplied
[server]
{NAMES}
""")
    for name, text in (("index", ""), ("serial", "01\n")):
        with open(os.path.join(folder, name), "w", encoding="ascii") as file:
            file.write(text)
    new_key(folder, "authority", "-x509", "-days", "2", "-out", "authority.pem")
    good = signed(folder, "good", "20200101000000Z", "20900101000000Z")
    expired = signed(folder, "expired", "20200101000000Z", "20200201000000Z")
    return Made(os.path.join(folder, "authority.pem"), good, expired)


def context(made, name):
    place = made.expired if name == "expired" else made.good
    made_context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    made_context.load_cert_chain(place + ".pem", place + ".key")
    is_http2 = name == "http2"
    if is_http2:
        made_context.set_alpn_protocols(["h2"])
    return Context(made_context, is_http2)
