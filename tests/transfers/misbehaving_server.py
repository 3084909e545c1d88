#!/usr/bin/env python3
"""A small HTTP server on 127.0.0.1 that fails in the ways a real website can.

Prints "PORT <n>" once it listens, then serves until stopped. With --tls CERT KEY
it speaks HTTPS. Paths:
  /file?n=N    200, N bytes
  /404 /500 /503   that status            /hang       reads the request, never answers
  /cut?n=N     promises N bytes, sends half, closes
  /garbage     answers with bytes that are not HTTP
  /endless     200 without a length, bytes until the client goes
  /empty/downvariations.txt   an empty option list
"""
import socket
import ssl
import sys
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlparse

CHUNK = b"x" * 65536


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *args):
        pass

    def send_body(self, status, body, length=None):
        self.send_response(status)
        self.send_header("Content-Type", "application/octet-stream")
        self.send_header("Content-Length", str(len(body) if length is None else length))
        self.end_headers()
        self.wfile.write(body)

    def do_GET(self):
        url = urlparse(self.path)
        n = int(parse_qs(url.query).get("n", ["1000"])[0])
        if url.path == "/empty/downvariations.txt":
            self.send_body(200, b"")
        elif url.path == "/file":
            self.send_body(200, bytes(n))
        elif url.path in ("/404", "/500", "/503"):
            self.send_body(int(url.path[1:]), b"failed\n")
        elif url.path == "/hang":
            time.sleep(3600)
        elif url.path == "/cut":
            self.send_body(200, bytes(n // 2), length=n)
            self.wfile.flush()
            self.close_connection = True
            self.connection.shutdown(socket.SHUT_RDWR)
        elif url.path == "/garbage":
            self.wfile.write(b"\x00\x01\x02 this is not HTTP at all \xff\xfe\r\n\r\n")
            self.close_connection = True
        elif url.path == "/endless":
            self.send_response(200)
            self.send_header("Content-Type", "application/octet-stream")
            self.send_header("Connection", "close")
            self.end_headers()
            self.close_connection = True
            try:
                while True:
                    self.wfile.write(CHUNK)
            except OSError:
                pass
        else:
            self.send_body(404, b"no such path\n")


def main():
    server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    if len(sys.argv) == 4 and sys.argv[1] == "--tls":
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(sys.argv[2], sys.argv[3])
        server.socket = context.wrap_socket(server.socket, server_side=True)
    print("PORT", server.server_address[1], flush=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    try:
        sys.stdin.read()  # ends when the test closes our input or stops us
    finally:
        server.shutdown()


if __name__ == "__main__":
    main()
