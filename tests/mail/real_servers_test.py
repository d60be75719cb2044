#!/usr/bin/python3 -B
"""real_servers_test.py CLASS COMMAND...: lets the command send e-mails to real mail servers and looks at what arrives.

AiosmtpdTest and OpenSmtpdTest take mailer_cli, ConsoleTest takes console_mailer and how to run it.
"""
import base64
import email
import email.policy
import os
import subprocess
import sys
import tempfile
import time
import unittest

from mail_servers import PASSWORD, USER, Certificates, OpenSmtpd, Peer

COMMAND = sys.argv[2:]
FROM = "console@clinic.example"
TO = ["porter@clinic.example", "night@clinic.example"]
SUBJECT = "Tür 3 geöffnet – " + "bitte sofort prüfen " * 5
MESSAGE = "Grüße:\n.\n..\n. \n" + "x" * 1200 + " =\nFrom here\n\n"
ACCEPTED = "Email sent with TLS\nsent\n"
REFUSED = "Email not sent, stage "


class MailTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.certificates = Certificates(folder.name)
        cls.tls = {"require_starttls": True, "tls_context": cls.certificates.context("good")}

    def peer(self, **parameters):
        peer = Peer(**parameters)
        self.addCleanup(peer.close)
        return peer

    def run_command(self, *arguments):
        run = subprocess.run([*COMMAND, *arguments], capture_output=True, timeout=150,
                             env={**os.environ, "LC_ALL": "C.UTF-8"})
        said = run.stdout.decode()
        self.assertEqual(run.returncode, 0, said + run.stderr.decode())
        logon = f"\0{USER}\0{PASSWORD}".encode()
        for secret in (PASSWORD.encode(), base64.b64encode(logon), base64.b64encode(PASSWORD.encode())):
            self.assertNotIn(secret, run.stdout)
        return said

    def send(self, port, **given):
        settings = {"host": "localhost", "port": port, "user": USER, "password": PASSWORD, "from": FROM,
                    "to": "; ".join(TO), "subject": SUBJECT, "message": MESSAGE, "limit": 10000,
                    "trusted": self.certificates.file("authority"), **given}
        return self.run_command(*(f"{name}={value}" for name, value in settings.items()))

    def check_mail(self, content, to, subject=SUBJECT, message=MESSAGE):
        """What arrived, byte for byte, must decode to what was typed."""
        self.assertNotRegex(content, rb"[^\r]\n|\r[^\n]|[\x80-\xff]|[^\r\n]{999}")
        mail = email.message_from_bytes(content, policy=email.policy.SMTP)
        self.assertEqual(mail.defects, [])
        self.assertEqual((mail["From"].addresses[0].addr_spec, mail["Subject"]), (FROM, subject))
        self.assertEqual([address.addr_spec for address in mail["To"].addresses], to)
        typed = message if message.endswith("\n") else message + "\n"
        self.assertEqual(mail.get_payload(decode=True), typed.replace("\n", "\r\n").encode())


class AiosmtpdTest(MailTest):
    def test_accepted(self):
        # 465 is the one port that speaks TLS at once; this address of ours has its own.
        at_once = {"host": "127.0.0.2", "ports": [465], "implicit": self.certificates.context("good"),
                   "auth_require_tls": False}
        cases = [(self.tls, {}), ({"host": "::1", **self.tls}, {"host": "::1"}),
                 ({"host": "::1", **self.tls}, {"host": " [::1] "}), (at_once, {"host": "127.0.0.2"}),
                 (self.tls, {"subject": "plain", "message": "a\r\n.\r\nMAIL FROM:<x@y.example>\r\n"})]
        for parameters, given in cases:
            with self.subTest(**given):
                peer = self.peer(**parameters)
                self.assertIn(ACCEPTED, self.send(peer.port, **given))
                self.assertEqual(peer.logons, [True])
                [(sender, recipients, content)] = peer.mails
                self.assertEqual((sender, recipients), (FROM, TO))
                message = given.get("message", MESSAGE).replace("\r\n", "\n")
                self.check_mail(content, TO, given.get("subject", SUBJECT), message)

    def test_recipients_between_separators(self):
        peer = self.peer()
        self.assertIn("\nsent\n", self.send(peer.port, user="", to="a; b, ,c"))
        self.assertEqual(peer.mails[0][1], ["a", "b", "c"])

    def test_refused(self):
        for given, reason in [({"password": "pa55-word"}, "logon: Login denied; the server said '535 5.7.8"),
                              ({"user": "nobody"}, "logon: Login denied"),
                              ({"to": "porter@x.example; refused@x.example"}, "recipient: RCPT failed: 550; the server "
                               "said '550 5.1.1 no such mailbox'")]:
            with self.subTest(**given):
                peer = self.peer(**self.tls)
                self.assertIn(REFUSED + reason, self.send(peer.port, **given))
                self.assertEqual(peer.mails, [])

    def test_password_without_tls_goes_in_clear_and_the_log_says_so(self):
        peer = self.peer(auth_require_tls=False)
        said = self.send(peer.port)
        self.assertIn("the server offers no TLS, the password goes in clear", said)
        self.assertIn("Email sent without TLS", said)
        self.assertEqual(peer.logons, [False])

    def test_bad_certificates(self):
        for name, reason in [("unknown", "unable to get local issuer"), ("expired", "certificate has expired"),
                             ("other-name", "no alternative certificate subject name matches")]:
            context = self.certificates.context(name)
            for parameters in ({"require_starttls": True, "tls_context": context},
                               {"host": "127.0.0.2", "ports": [465], "implicit": context, "auth_require_tls": False}):
                with self.subTest(name, **parameters):
                    peer = self.peer(**parameters)
                    said = self.send(peer.port, host=parameters.get("host", "localhost"))
                    self.assertIn(REFUSED + "TLS: SSL", said)
                    self.assertIn(reason, said)
                    self.assertEqual((peer.logons, peer.senders, peer.connections), ([], [], 1))
                    peer.close()

    def test_silent_and_cut(self):
        for parameters, reason in [({"at_data": "hang", **self.tls}, "data: time limit reached"),
                                   ({"at_data": "cut", **self.tls}, "data: "),
                                   ({"implicit": self.certificates.context("good")}, "connect: time limit reached")]:
            with self.subTest(reason, **parameters):
                peer = self.peer(**parameters)
                begin = time.monotonic()
                self.assertIn(REFUSED + reason, self.send(peer.port, limit=2000, message="line\n" * 20000))
                self.assertLess(time.monotonic() - begin, 5)
                self.assertEqual(peer.mails, [])

    def test_injection(self):
        more = "\r\nBcc: all@x.example\r\nRCPT TO:<all@x.example>\r\n"
        for name in ("from", "to", "subject", "host"):
            for value in ("a@x.example" + more, "a@x.example\n", "\r\na@x.example"):
                with self.subTest(name, value=value):
                    peer = self.peer(**self.tls)
                    self.assertTrue(self.send(peer.port, **{name: value}).endswith("not valid\nfailed\n"))
                    self.assertEqual(peer.connections, 0)
        for name in ("user", "password"):
            with self.subTest(name):
                peer = self.peer(**self.tls)
                self.assertIn(REFUSED + "logon", self.send(peer.port, **{name: "a" + more}))
                self.assertEqual((len(peer.logons), peer.senders), (1, []))

    def test_hosts_that_are_none(self):
        for host in ("x" * 5000, "x." * 2500, "nowhere.invalid"):
            with self.subTest(host=host):
                said = self.send(25, host=host)
                self.assertTrue(said.endswith("failed\n"))
                self.assertLess(max(map(len, said.splitlines())), 300)


class OpenSmtpdTest(MailTest):
    def test_mailboxes(self):
        with tempfile.TemporaryDirectory() as folder:
            server = OpenSmtpd(folder, self.certificates)
            self.addCleanup(server.close)
            self.assertIn("\nsent\n", self.send(server.port, user=""))
            for address in TO:
                [stored] = server.mails(address.split("@")[0], 1)
                # Its own lines stand before ours; mailboxes have Unix's line ends.
                content = stored[stored.index(b"Date: "):].replace(b"\n", b"\r\n")
                self.check_mail(content, TO)
            self.assertIn(REFUSED + "recipient: RCPT failed: 550; the server said '550 ",
                          self.send(server.port, user="", to=TO[0] + ",stranger@clinic.example"))
            self.assertIn(REFUSED + "TLS: SSL", self.send(server.tls_port))
            self.assertEqual(len(server.mails("porter", 1)), 1, "an e-mail that failed was delivered")


class ConsoleTest(MailTest):
    def test_windows_program(self):
        authority = str(self.certificates.folder / "authority.der")
        subprocess.run(["openssl", "x509", "-in", self.certificates.file("authority"), "-outform", "der", "-out",
                        authority], check=True)
        # The console would complain about ports above 32000.
        peers = {name: self.peer(ports=range(21000, 32000), require_starttls=True,
                                 tls_context=self.certificates.context(name))
                 for name in ("good", "unknown", "other-name", "expired")}
        sends = [("good", PASSWORD, "Email sent with TLS"),
                 ("good", "pa55-word", REFUSED + "logon: Login denied; the server said '535 5.7.8 "),
                 ("unknown", PASSWORD, REFUSED + "TLS: schannel: CertGetCertificateChain trust error"),
                 ("other-name", PASSWORD, REFUSED + "TLS: schannel: CertGetNameString() failed to match"),
                 ("expired", PASSWORD, REFUSED + "TLS: schannel: CertGetCertificateChain trust error")]
        said = self.run_command("Z:" + authority.replace("/", "\\"), ";".join(TO), SUBJECT,
                                *(f"{peers[name].port},{password}" for name, password, _ in sends)).splitlines()
        self.assertEqual(said[:5], ["Successfully concluded email test"] +
                         4 * ["Could not send email, invalid address?"])
        for line, (_, _, outcome) in zip(said[6::2], sends, strict=True):
            self.assertIn(outcome, line)
        self.assertEqual(peers["good"].logons, [True, True])
        [(sender, recipients, content)] = peers["good"].mails
        self.assertEqual((sender, recipients), (FROM, TO))
        self.check_mail(content, TO, message="Hello\n.\n")
        for name in ("unknown", "other-name", "expired"):
            self.assertEqual((peers[name].logons, peers[name].senders, peers[name].connections), ([], [], 1), name)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], sys.argv[1]])
