#!/usr/bin/env python3
"""A web server that misbehaves, on 127.0.0.1, for the tests of fetching.

Usage: web_server.py FOLDER
Makes an authority in FOLDER (authority.pem) and certificates of it and of another one, then serves until its standard
input ends. Prints one line once it serves: NAME=PORT for each of
  http, https       what a path does is told in Handler below
  wrong_host        https with a certificate for another host
  unknown           https with a certificate of an authority that nobody knows
  old               https that speaks TLS 1.1 and older only
  mute              accepts connections and never says a word
  closed            a port that nobody listens on
"""
import gzip
import http.server
import os
import socket
import ssl
import subprocess
import sys
import threading
import urllib.parse

GIB = 1 << 30
BLOCK = bytes(1 << 16)
BOMB = gzip.compress(bytes(64 << 20), 9)
ended = threading.Event()


def openssl(folder, *arguments):
    subprocess.run(
        ["openssl", *arguments], cwd=folder, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
    )


def make_authority(folder, name):
    openssl(
        folder,
        "req",
        "-x509",
        "-newkey",
        "ec",
        "-pkeyopt",
        "ec_paramgen_curve:prime256v1",
        "-nodes",
        "-days",
        "2",
        "-subj",
        f"/CN=Test authority {name}",
        "-keyout",
        f"{name}.key",
        "-out",
        f"{name}.pem",
    )


def make_certificate(folder, authority, name, host):
    with open(os.path.join(folder, f"{name}.extensions"), "w", encoding="ascii") as extensions:
        extensions.write(f"subjectAltName={host}\n")
    openssl(
        folder,
        "req",
        "-newkey",
        "ec",
        "-pkeyopt",
        "ec_paramgen_curve:prime256v1",
        "-nodes",
        "-subj",
        f"/CN={name}",
        "-keyout",
        f"{name}.key",
        "-out",
        f"{name}.request",
    )
    openssl(
        folder,
        "x509",
        "-req",
        "-in",
        f"{name}.request",
        "-CA",
        f"{authority}.pem",
        "-CAkey",
        f"{authority}.key",
        "-CAcreateserial",
        "-days",
        "2",
        "-extfile",
        f"{name}.extensions",
        "-out",
        f"{name}.pem",
    )


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *arguments):
        pass

    def answer(self, body, status=200, headers=(), length=None):
        self.send_response(status)
        for key, value in headers:
            self.send_header(key, value)
        self.send_header("Content-Length", str(len(body) if length is None else length))
        self.end_headers()
        self.wfile.write(body)

    def redirect(self, target, headers=()):
        self.answer(b"moved", 302, [("Location", target), *headers])

    def do_GET(self):
        try:
            self.serve(urllib.parse.urlsplit(self.path))
        except (BrokenPipeError, ConnectionResetError, ssl.SSLError):
            pass
        self.close_connection = True

    def serve(self, address):
        name, _, rest = address.path[1:].partition("/")
        simple = {"plain": b"plain body", "empty": b"", "a%20b": b"escaped", "twice": b"twice"}
        if name in simple:
            self.answer(simple[name])
        elif name == "compressed":
            self.answer(gzip.compress(b"plain body"), headers=[("Content-Encoding", "gzip")])
        elif name in ("404", "500"):
            self.answer(b"an error page", int(name))
        elif name == "redirect":
            self.redirect(f"/redirect/{int(rest) - 1}") if int(rest) > 0 else self.answer(b"arrived")
        elif name == "loop":
            self.redirect("/loop")
        elif name == "to":
            self.redirect(urllib.parse.unquote(address.query))
        elif name == "cookie":
            self.redirect("/headers-sent", [("Set-Cookie", "a=b; Path=/")])
        elif name == "headers-sent":
            kept = [key for key in ("Cookie", "Authorization") if key in self.headers]
            self.answer(",".join(kept).encode() or b"neither")
        elif name == "silent":
            ended.wait()
        elif name == "slow":
            self.answer(b"", length=1000)
            while not ended.wait(1):
                self.wfile.write(b"x")
        elif name == "short":
            self.answer(b"0123456789", length=1000)
        elif name == "huge":
            self.answer(b"", length=GIB)
            for _ in range(GIB // len(BLOCK)):
                self.wfile.write(BLOCK)
        elif name == "huge-chunks":
            self.send_response(200)
            self.send_header("Transfer-Encoding", "chunked")
            self.end_headers()
            for _ in range(GIB // len(BLOCK)):
                self.wfile.write(b"%x\r\n%s\r\n" % (len(BLOCK), BLOCK))
        elif name == "huge-redirect":
            self.answer(b"", 302, [("Location", "/plain")], GIB)
            for _ in range(GIB // len(BLOCK)):
                self.wfile.write(BLOCK)
        elif name == "bomb":
            self.answer(BOMB, headers=[("Content-Encoding", "gzip")])
        elif name == "headers":
            self.wfile.write(b"HTTP/1.1 200 OK\r\n")
            while True:
                self.wfile.write(b"X-Filler: " + b"y" * 1000 + b"\r\n")
        elif name == "long-header":
            self.wfile.write(b"HTTP/1.1 200 OK\r\nX-Filler: ")
            while True:
                self.wfile.write(b"y" * 65536)
        elif name == "list":
            self.answer(b"<plist><dict><key>CFBundleShortVersionString</key><string>1.9</string></dict></plist>")
        elif name == "deep-list":
            self.answer(b"<plist>" + b"<array>" * 9000 + b"</plist>")
        else:
            self.answer(b"no such thing", 404)


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    context = None

    def finish_request(self, request, client_address):
        # The handshake is the thread's of this connection, so that a client that fails it holds up no other.
        try:
            if self.context is not None:
                request = self.context.wrap_socket(request, server_side=True)
            super().finish_request(request, client_address)
            request.close()
        except (ssl.SSLError, OSError):
            pass


def start(context=None):
    server = Server(("127.0.0.1", 0), Handler)
    server.context = context
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.server_address[1]


def encrypted(folder, name, oldest_only=False):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(os.path.join(folder, f"{name}.pem"), os.path.join(folder, f"{name}.key"))
    if oldest_only:
        context.set_ciphers("DEFAULT:@SECLEVEL=0")
        context.minimum_version = ssl.TLSVersion.TLSv1
        context.maximum_version = ssl.TLSVersion.TLSv1_1
    return context


def main():
    folder = sys.argv[1]
    for authority in ("authority", "stranger"):
        make_authority(folder, authority)
    make_certificate(folder, "authority", "right", "IP:127.0.0.1")
    make_certificate(folder, "authority", "elsewhere", "DNS:elsewhere.example")
    make_certificate(folder, "stranger", "unknown", "IP:127.0.0.1")
    mute = socket.create_server(("127.0.0.1", 0))
    closed = socket.create_server(("127.0.0.1", 0))
    ports = {
        "http": start(),
        "https": start(encrypted(folder, "right")),
        "wrong_host": start(encrypted(folder, "elsewhere")),
        "unknown": start(encrypted(folder, "unknown")),
        "old": start(encrypted(folder, "right", oldest_only=True)),
        "mute": mute.getsockname()[1],
        "closed": closed.getsockname()[1],
    }
    closed.close()
    print(" ".join(f"{name}={port}" for name, port in ports.items()), flush=True)
    sys.stdin.buffer.read()
    ended.set()


if __name__ == "__main__":
    import warnings

    warnings.simplefilter("ignore", DeprecationWarning)
    main()
