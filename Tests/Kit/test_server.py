#!/usr/bin/env python3
"""The tests' web: a server on 127.0.0.1 that is also an HTTP proxy, so that any host name reaches it.

It answers http directly and https by a certificate that it signs on the fly with a test authority of
its own (CA.pem in the folder given). What it serves is told over its control addresses, below
/__kit__/ of the server's own address:

  POST serve     {"url", "status"?, "headers"?, "body"?, "bodyBase64"?, "delay"?, "truncate"?,
                  "hold"?: the bytes of the body that come before its release,
                  "endless"?: its length is not told, "repeat"?: how often the body comes}
  POST release   {"url"}  the rest of the body may come
  GET  requests  the list of {"method", "url", "headers", "body"} seen so far, oldest first
  POST clear     forgets the requests
  POST reset     forgets everything
  POST refuse    {"host", "port"}  connections to it are closed at once

An address that nobody described answers 404. Certificates of hosts that begin with "expired." have
expired; those that begin with "certified." ask for a certificate; before those that begin with
"behind." the proxy wants a password. Prints its port, and ends when its standard input closes.
"""

import base64
import collections
import datetime
import ipaddress
import json
import os
import socket
import ssl
import sys
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import urlsplit

from cryptography import x509
from cryptography.hazmat.primitives import hashes, serialization
from cryptography.hazmat.primitives.asymmetric import ec
from cryptography.x509.oid import ExtendedKeyUsageOID, NameOID

PEM = serialization.Encoding.PEM


class Authority:
    """Signs certificates for whatever host is asked for."""

    def __init__(self, folder):
        self.folder = folder
        self.key = ec.generate_private_key(ec.SECP256R1())
        self.leaf_key = ec.generate_private_key(ec.SECP256R1())
        self.name = x509.Name([x509.NameAttribute(NameOID.COMMON_NAME, "Orvel test authority")])
        self.contexts = {}
        self.lock = threading.Lock()
        usage = x509.KeyUsage(False, False, False, False, False, True, True, False, False)
        self.certificate = (
            self.builder(self.name, self.key, -1, 30)
            .add_extension(x509.BasicConstraints(ca=True, path_length=None), critical=True)
            .add_extension(usage, critical=True)
            .add_extension(
                x509.SubjectKeyIdentifier.from_public_key(self.key.public_key()), critical=False
            )
            .sign(self.key, hashes.SHA256())
        )
        with open(os.path.join(folder, "CA.pem"), "wb") as file:
            file.write(self.certificate.public_bytes(PEM))

    def builder(self, subject, key, first_day, last_day):
        now = datetime.datetime.utcnow()
        return (
            x509.CertificateBuilder()
            .subject_name(subject)
            .issuer_name(self.name)
            .public_key(key.public_key())
            .serial_number(x509.random_serial_number())
            .not_valid_before(now + datetime.timedelta(days=first_day))
            .not_valid_after(now + datetime.timedelta(days=last_day))
        )

    def context(self, host):
        with self.lock:
            if host not in self.contexts:
                self.contexts[host] = self.make_context(host)
            return self.contexts[host]

    def make_context(self, host):
        try:
            name = x509.IPAddress(ipaddress.ip_address(host))
        except ValueError:
            name = x509.DNSName(host)
        subject = x509.Name([x509.NameAttribute(NameOID.COMMON_NAME, host[:64])])
        last_day = -1 if host.startswith("expired.") else 7
        leaf = (
            self.builder(subject, self.leaf_key, -3, last_day)
            .add_extension(x509.SubjectAlternativeName([name]), critical=False)
            .add_extension(
                x509.ExtendedKeyUsage([ExtendedKeyUsageOID.SERVER_AUTH]), critical=False
            )
            .add_extension(
                x509.AuthorityKeyIdentifier.from_issuer_public_key(self.key.public_key()),
                critical=False,
            )
            .sign(self.key, hashes.SHA256())
        )
        path = os.path.join(self.folder, "leaf-%d.pem" % len(self.contexts))
        key = self.leaf_key.private_bytes(
            PEM, serialization.PrivateFormat.PKCS8, serialization.NoEncryption()
        )
        with open(path, "wb") as file:
            file.write(leaf.public_bytes(PEM) + self.certificate.public_bytes(PEM) + key)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(path)
        if host.startswith("certified."):
            context.verify_mode = ssl.CERT_OPTIONAL
            context.load_verify_locations(os.path.join(self.folder, "CA.pem"))
        context.set_alpn_protocols(["http/1.1"])
        return context


class State:
    def __init__(self):
        self.lock = threading.Lock()
        self.pages = {}
        self.requests = []
        self.refused = set()
        self.releases = collections.defaultdict(threading.Event)

    def released(self, url):
        return self.releases[url]


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True
    tunnel = None

    def log_message(self, *arguments):
        pass

    def do_CONNECT(self):
        host, _, port = self.path.rpartition(":")
        host = host.strip("[]")
        if (host, int(port)) in self.server.state.refused:
            self.close_connection = True
            return
        if host.startswith("denied."):
            return self.answer({"status": 502})
        if host.startswith("behind."):
            headers = {"Proxy-Authenticate": 'Basic realm="Gate"'}
            return self.answer({"status": 407, "headers": headers})
        self.send_response(200, "Connection established")
        self.end_headers()
        self.close_connection = True
        connection = self.connection
        first = connection.recv(1, socket.MSG_PEEK)
        if not first:
            return
        scheme = "http"
        if first == b"\x16":
            scheme = "https"
            try:
                connection = self.server.authority.context(host).wrap_socket(
                    connection, server_side=True
                )
            except (ssl.SSLError, OSError):
                return

        class Tunnelled(Handler):
            tunnel = (scheme, host, int(port))

        try:
            Tunnelled(connection, self.client_address, self.server)
        except (ssl.SSLError, OSError):
            pass

    def address(self):
        """The address asked for, without a default port."""
        if self.tunnel:
            scheme, host, port = self.tunnel
            default = 443 if scheme == "https" else 80
            suffix = "" if port == default else ":%d" % port
            return "%s://%s%s%s" % (scheme, host, suffix, self.path)
        if self.path.startswith("http://"):
            return self.path
        return "http://%s%s" % (self.headers.get("Host", ""), self.path)

    def body(self):
        return self.rfile.read(int(self.headers.get("Content-Length") or 0))

    def handle_any(self):
        url = self.address()
        if not self.tunnel and self.path.startswith("/__kit__/"):
            return self.control(self.path[len("/__kit__/") :])
        parts = urlsplit(url)
        port = parts.port or (443 if parts.scheme == "https" else 80)
        if (parts.hostname, port) in self.server.state.refused:
            self.close_connection = True
            return
        body = self.body()
        with self.server.state.lock:
            self.server.state.requests.append(
                {
                    "method": self.command,
                    "url": url,
                    "headers": {name.lower(): value for name, value in self.headers.items()},
                    "body": body.decode("utf-8", "replace"),
                }
            )
            pages = self.server.state.pages
            page = pages.get(url) or pages.get(url.split("?")[0])
        self.answer(page or {"status": 404, "body": "Nothing here"})

    def answer(self, page):
        if "bodyBase64" in page:
            body = base64.b64decode(page["bodyBase64"])
        else:
            body = page.get("body", "").encode()
        time.sleep(page.get("delay", 0))
        headers = {"Content-Type": "text/html; charset=utf-8", "Cache-Control": "no-store"}
        headers.update(page.get("headers", {}))
        self.send_response(page.get("status", 200))
        for name, value in headers.items():
            self.send_header(name, value)
        if "endless" in page:
            self.send_header("Connection", "close")
            self.close_connection = True
        else:
            self.send_header("Content-Length", str(len(body) * page.get("repeat", 1)))
        self.end_headers()
        if self.command == "HEAD":
            return
        if "hold" in page:
            self.wfile.write(body[: page["hold"]])
            self.wfile.flush()
            body = body[page["hold"] :]
            self.server.state.released(page["url"]).wait()
        if "truncate" in page:
            body = body[: page["truncate"]]
            self.close_connection = True
        for _ in range(page.get("repeat", 1)):
            self.wfile.write(body)

    def control(self, operation):
        state = self.server.state
        given = json.loads(self.body() or b"null")
        result = None
        with state.lock:
            if operation == "serve":
                state.pages[given["url"]] = given
            elif operation == "requests":
                result = state.requests
            elif operation == "clear":
                state.requests = []
            elif operation == "reset":
                state.pages, state.requests, state.refused = {}, [], set()
            elif operation == "release":
                state.released(given["url"]).set()
            elif operation == "refuse":
                state.refused.add((given["host"], given["port"]))
        self.answer(
            {"body": json.dumps(result), "headers": {"Content-Type": "application/json"}}
        )

    do_GET = do_POST = do_PUT = do_DELETE = do_HEAD = do_OPTIONS = handle_any


class Server(ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 128

    def handle_error(self, request, client_address):
        pass


def main():
    server = Server(("127.0.0.1", 0), Handler)
    server.state = State()
    server.authority = Authority(sys.argv[1])
    threading.Thread(target=server.serve_forever, daemon=True).start()
    print(server.server_address[1], flush=True)
    sys.stdin.read()


main()
