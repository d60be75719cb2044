"""Mail servers on loopback for the tests: certificates, aiosmtpd and OpenSMTPD."""
import asyncio
import logging
import os
import pathlib
import signal
import socket
import ssl
import subprocess
import threading
import time

from aiosmtpd.smtp import SMTP, AuthResult

USER = "console"
PASSWORD = "pa55-wörd"
logging.disable()  # what the servers say to each failure
NAMES = "DNS:localhost,IP:127.0.0.2,IP:::1"


class Certificates:
    """An authority and what it has signed, as PEM files in a folder; and one that nobody trusts."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        for name in ("authority", "stranger"):
            self._run("req", "-x509", *self._request(name, "critical,CA:TRUE"), "-out", self.file(name))
        self._sign("good", "authority")
        self._sign("expired", "authority", days=-1)
        self._sign("other-name", "authority", names="DNS:elsewhere.example")
        self._sign("unknown", "stranger")

    def _run(self, *arguments):
        subprocess.run(["openssl", *arguments], check=True, capture_output=True)

    def _request(self, name, constraint):
        return ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-keyout", self.key(name), "-subj",
                "/CN=" + name, "-addext", "basicConstraints=" + constraint]

    def _sign(self, name, signer, names=NAMES, days=2):
        request = str(self.folder / "request")
        self._run("req", "-new", *self._request(name, "critical,CA:FALSE"), "-addext", "subjectAltName=" + names,
                  "-out", request)
        self._run("x509", "-req", "-in", request, "-CA", self.file(signer), "-CAkey", self.key(signer), "-days",
                  str(days), "-copy_extensions", "copyall", "-out", self.file(name))
        os.chmod(self.key(name), 0o600)

    def file(self, name):
        return str(self.folder / (name + ".pem"))

    def key(self, name):
        return str(self.folder / (name + ".key"))

    def context(self, name):
        context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
        context.load_cert_chain(self.file(name), self.key(name))
        return context


class Peer:
    """aiosmtpd on a thread of its own, which keeps what it is told. Recipients named "refused" are refused."""

    def __init__(self, host="127.0.0.1", ports=(0,), implicit=None, at_data=None, **parameters):
        self.at_data = at_data  # "hang" or "cut"
        self.mails = []  # sender, recipients, bytes
        self.senders = []
        self.logons = []  # each whether within TLS
        self.connections = 0
        self.parameters = {"authenticator": self._authenticate, "enable_SMTPUTF8": False, **parameters}
        self.loop = asyncio.new_event_loop()
        threading.Thread(target=self._serve, daemon=True).start()
        for self.port in ports:
            try:
                listening = self.loop.create_server(self._connect, host, self.port, ssl=implicit)
                self.server = asyncio.run_coroutine_threadsafe(listening, self.loop).result(10)
                self.port = self.server.sockets[0].getsockname()[1]
                return
            except OSError as error:
                taken = error
        raise taken

    def close(self):
        if not self.loop.is_closed():
            self.loop.call_soon_threadsafe(self.server.close)
            self.loop.call_soon_threadsafe(self.loop.stop)

    def _serve(self):
        self.loop.run_forever()
        self.loop.close()

    def _connect(self):
        self.connections += 1
        return Session(self, loop=self.loop, **self.parameters)

    def _authenticate(self, server, session, envelope, mechanism, logon):
        self.logons.append(server.transport.get_extra_info("ssl_object") is not None)
        good = (logon.login, logon.password) == (USER.encode(), PASSWORD.encode())
        return AuthResult(success=good, handled=good)

    async def handle_MAIL(self, server, session, envelope, address, options):
        self.senders.append(address)
        envelope.mail_from = address
        return "250 fine"

    async def handle_RCPT(self, server, session, envelope, address, options):
        if address.startswith("refused"):
            return "550 5.1.1 no such mailbox"
        envelope.rcpt_tos.append(address)
        return "250 fine"

    async def handle_DATA(self, server, session, envelope):
        if self.at_data == "hang":
            await asyncio.sleep(60)
        self.mails.append((envelope.mail_from, envelope.rcpt_tos, envelope.original_content))
        return "250 taken"


class Session(SMTP):
    async def smtp_DATA(self, arg):
        if self.event_handler.at_data != "cut":
            return await super().smtp_DATA(arg)
        await self.push("354 go on")
        await self._reader.readline()
        self.transport.abort()


class OpenSmtpd:
    """OpenSMTPD with users, queue and mailboxes of its own. Its places are fixed: it gets a view of the file system in
    which they are others, for which it takes root."""

    def __init__(self, folder, certificates):
        self.folder = pathlib.Path(folder)
        self.boxes = self.folder / "boxes"
        self.boxes.mkdir()
        os.chmod(folder, 0o755)
        os.chmod(self.boxes, 0o777)
        self.port, self.tls_port = free_port(), free_port()
        (self.folder / "conf").write_text(f"""
            pki here cert "{certificates.file("unknown")}"
            pki here key "{certificates.key("unknown")}"
            listen on 127.0.0.1 port {self.port} hostname localhost
            listen on 127.0.0.1 port {self.tls_port} hostname localhost tls pki here
            action keep maildir "{self.boxes}/%{{rcpt.user}}" virtual {{ "@" = nobody }}
            table known {{ "porter@clinic.example", "night@clinic.example" }}
            match from any for rcpt-to <known> action keep
            """)
        script = f"""set -e
            mount -t tmpfs none /var/spool
            mount -t tmpfs none /run
            mkdir /run/lock
            exec /usr/sbin/smtpd -d -f {folder}/conf"""
        self.log = open(self.folder / "log", "w+")
        self.process = subprocess.Popen(["unshare", "--mount", "sh", "-c", script], start_new_session=True,
                                        stdout=self.log, stderr=subprocess.STDOUT)
        for port in (self.port, self.tls_port):
            wait_until(lambda: accepts(port), self.said)

    def said(self):
        return (self.folder / "log").read_text()

    def mails(self, user, count):
        box = self.boxes / user / "new"
        wait_until(lambda: box.is_dir() and len(list(box.iterdir())) >= count, self.said)
        return [mail.read_bytes() for mail in box.iterdir()]

    def close(self):
        os.killpg(self.process.pid, signal.SIGTERM)
        self.process.wait(10)
        self.log.close()


def free_port():
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        return taken.getsockname()[1]


def accepts(port):
    with socket.socket() as client:
        return client.connect_ex(("127.0.0.1", port)) == 0


def wait_until(condition, otherwise):
    end = time.monotonic() + 20
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(otherwise())
        time.sleep(0.05)
