"""A mail relay on loopback for the tests: aiosmtpd, with or without AUTH LOGIN,
writing one JSON line per message it accepts into the file named on the command
line. Prints "READY <port>" once it listens; stops when its stdin closes."""
import json
import socket
import sys

from aiosmtpd.controller import Controller
from aiosmtpd.smtp import SMTP, AuthResult


def text(data):
    if isinstance(data, bytes):
        return data.decode("utf-8", errors="replace")
    return data


class Recorder:
    def __init__(self, path):
        self.path = path

    async def handle_DATA(self, server, session, envelope):
        auth = session.auth_data
        record = {
            "greeting": "EHLO" if session.extended_smtp else "HELO",
            "host_name": session.host_name,
            "login": text(auth.login) if auth is not None else None,
            "password": text(auth.password) if auth is not None else None,
            "mail_from": envelope.mail_from,
            "rcpt_tos": envelope.rcpt_tos,
            "content": text(envelope.original_content),
        }
        with open(self.path, "a", encoding="utf-8") as out:
            out.write(json.dumps(record) + "\n")
        return "250 OK"


class OneWriteReplies(SMTP):
    """Sends a multi-line reply in one write, as common relays do. The client
    takes each arrival of data as one reply, so a reply pushed line by line
    could reach it split, or run together with the next one under load."""

    _held = b""

    async def push(self, status):
        line = status.encode("utf-8") if isinstance(status, str) else status
        if line[3:4] == b"-":
            self._held += line + b"\r\n"
            return
        held, self._held = self._held, b""
        await super().push(held + line)


class OneWriteController(Controller):
    def factory(self):
        return OneWriteReplies(self.handler, **self.SMTP_kwargs)


def accept_login(server, session, envelope, mechanism, auth_data):
    return AuthResult(success=True, auth_data=auth_data)


def main():
    path, mode = sys.argv[1], sys.argv[2]
    probe = socket.socket()
    probe.bind(("127.0.0.1", 0))
    port = probe.getsockname()[1]
    probe.close()
    kwargs = {}
    if mode == "auth":
        kwargs = {"authenticator": accept_login, "auth_require_tls": False, "auth_required": True}
    controller = OneWriteController(Recorder(path), hostname="127.0.0.1", port=port, decode_data=False, **kwargs)
    controller.start()
    print("READY", port, flush=True)
    sys.stdin.read()
    controller.stop()


if __name__ == "__main__":
    main()
