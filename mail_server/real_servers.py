"""Real mail servers on loopback, each in a folder of its own: certificates, aiosmtpd and OpenSMTPD."""
import asyncio
import hmac
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
RECIPIENTS = ["porter@clinic.example", "night@clinic.example"]
PORTS = iter(range(21000, 32000))  # within the console's range, so it shows no message about the port
logging.disable()  # else the servers print each failure that a test provokes


class Certificates:
    """A certificate authority and what it has signed, as PEM files in a folder; and an authority that nobody trusts."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        for name in ("authority", "stranger"):
            self._run("req", "-x509", *self._request(name, "critical,CA:TRUE"), "-out", self.file(name))
        self._run("x509", "-in", self.file("authority"), "-outform", "der", "-out", self.file("authority.der"))
        self._sign("good", "authority")
        self._sign("expired", "authority", days=-1)
        self._sign("other-name", "authority", host="elsewhere.example")
        self._sign("unknown", "stranger")

    def _run(self, *arguments):
        subprocess.run(["openssl", *arguments], check=True, capture_output=True)

    def _request(self, name, constraint):
        return ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-keyout", self.file(name + ".key"),
                "-subj", "/CN=" + name, "-addext", "basicConstraints=" + constraint]

    def _sign(self, name, signer, host="localhost", days=2):
        self._run("req", "-new", *self._request(name, "critical,CA:FALSE"), "-addext", "subjectAltName=DNS:" + host,
                  "-out", self.file("request"))
        self._run("x509", "-req", "-in", self.file("request"), "-CA", self.file(signer), "-CAkey",
                  self.file(signer + ".key"), "-days", str(days), "-copy_extensions", "copyall", "-out", self.file(name))

    def file(self, name):
        return str(self.folder / name)

    def context(self, name):
        context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
        context.load_cert_chain(self.file(name), self.file(name + ".key"))
        return context


class Peer:
    """aiosmtpd on its own thread. It keeps the e-mails, senders and logons that it receives. With STARTTLS it knows only
    the logon CRAM-MD5, with TLS from the first byte only PLAIN and LOGIN."""

    def __init__(self, tls, is_tls_first=False):
        self.mails = []  # sender, recipients, bytes
        self.senders = []
        self.logons = []  # for each: whether it was within TLS
        self.connections = 0
        self.parameters = {"authenticator": self._authenticate, "enable_SMTPUTF8": False}
        if is_tls_first:
            self.parameters["auth_require_tls"] = False  # aiosmtpd counts only STARTTLS as TLS
        else:
            self.parameters |= {"require_starttls": True, "tls_context": tls, "auth_exclude_mechanism": ["PLAIN", "LOGIN"]}
            self.auth_CRAM__MD5 = self._check_cram
        self.loop = asyncio.new_event_loop()
        threading.Thread(target=self.loop.run_forever, daemon=True).start()
        self.port = 465 if is_tls_first else free_port()
        listening = self.loop.create_server(self._connect, "127.0.0.1", self.port, ssl=tls if is_tls_first else None)
        asyncio.run_coroutine_threadsafe(listening, self.loop).result(10)

    def _connect(self):
        self.connections += 1
        return SMTP(self, loop=self.loop, **self.parameters)

    def _authenticate(self, server, session, envelope, mechanism, logon):
        return self._judge(server, (logon.login, logon.password) == (USER.encode(), PASSWORD.encode()))

    async def _check_cram(self, server, arguments):
        challenge = b"<1.2@clinic.example>"
        digest = hmac.new(PASSWORD.encode(), challenge, "md5").hexdigest()
        return self._judge(server, await server.challenge_auth(challenge) == f"{USER} {digest}".encode())

    def _judge(self, server, good):
        self.logons.append(server.transport.get_extra_info("ssl_object") is not None)
        return AuthResult(success=good, handled=good)

    async def handle_MAIL(self, server, session, envelope, address, options):
        self.senders.append(address)
        envelope.mail_from = address
        return "250 fine"

    async def handle_RCPT(self, server, session, envelope, address, options):
        envelope.rcpt_tos.append(address)
        return "250 fine"

    async def handle_DATA(self, server, session, envelope):
        self.mails.append((envelope.mail_from, envelope.rcpt_tos, envelope.original_content))
        return "250 taken"


class OpenSmtpd:
    """OpenSMTPD with its own users, queue and mailboxes. The paths of its queue and socket are fixed, so it runs in its own
    mount namespace with empty folders there. This needs root."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.boxes = self.folder / "boxes"
        self.boxes.mkdir()
        os.chmod(folder, 0o755)
        os.chmod(self.boxes, 0o777)
        self.port = free_port()
        (self.folder / "conf").write_text(f"""
            listen on 127.0.0.1 port {self.port} hostname localhost
            action keep maildir "{self.boxes}/%{{rcpt.user}}" virtual {{ "@" = nobody }}
            table known {{ {", ".join(f'"{address}"' for address in RECIPIENTS)} }}
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
        self._wait_until(lambda: accepts(self.port))

    def _wait_until(self, condition):
        end = time.monotonic() + 20
        while not condition():
            if time.monotonic() > end:
                raise AssertionError((self.folder / "log").read_text())
            time.sleep(0.05)

    def mails(self, user):
        """Waits for the first e-mail to a user, and returns all."""
        box = self.boxes / user / "new"
        self._wait_until(lambda: box.is_dir() and list(box.iterdir()))
        return [mail.read_bytes() for mail in box.iterdir()]

    def close(self):
        os.killpg(self.process.pid, signal.SIGTERM)
        self.process.wait(10)
        self.log.close()


def accepts(port):
    with socket.socket() as client:
        return client.connect_ex(("127.0.0.1", port)) == 0


def free_port():
    return next(port for port in PORTS if not accepts(port))  # without a connection later on, which a Peer would count
