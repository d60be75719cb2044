#!/usr/bin/python3 -B
"""real_servers_test.py COMMAND...: lets console_mailer, run by the command, send e-mails to real mail servers and looks
at what arrives."""
import base64
import email
import email.policy
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "mail_server"))
from real_servers import PASSWORD, RECIPIENTS, USER, Certificates, OpenSmtpd, Peer

COMMAND = sys.argv[1:]
FROM = "console@clinic.example"
SUBJECT = "Tür 3 geöffnet – " + "bitte sofort prüfen " * 5
MESSAGE = "Grüße:\r\n.\r\n..\r\n. \r\n" + "x" * 1200 + " =\r\nFrom here\r\n\r\n"
REFUSED = "Email not sent, stage "


class RealServersTest(unittest.TestCase):
    def run_console(self, certificate, sends):
        """Returns what the message boxes and the lines of the log said."""
        targets = [f"{port},{password},{';'.join(to)}" for port, password, to, _ in sends]
        run = subprocess.run([*COMMAND, "Z:" + certificate.replace("/", "\\"), SUBJECT, MESSAGE, *targets],
                             capture_output=True, timeout=250, env={**os.environ, "LC_ALL": "C.UTF-8"})
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        logon = f"\0{USER}\0{PASSWORD}".encode()
        for secret in (PASSWORD.encode(), base64.b64encode(logon), base64.b64encode(PASSWORD.encode())):
            self.assertNotIn(secret, run.stdout)
        lines = run.stdout.decode().splitlines()
        return lines[:len(sends)], lines[len(sends):]

    def check_mail(self, content):
        """What arrived, byte for byte, must decode to what was typed."""
        self.assertNotRegex(content, rb"[^\r]\n|\r[^\n]|[\x80-\xff]|[^\r\n]{999}")
        mail = email.message_from_bytes(content, policy=email.policy.SMTP)
        self.assertEqual(mail.defects, [])
        self.assertEqual((mail["From"].addresses[0].addr_spec, mail["Subject"]), (FROM, SUBJECT))
        self.assertEqual([address.addr_spec for address in mail["To"].addresses], RECIPIENTS)
        self.assertEqual(mail.get_payload(decode=True), MESSAGE.encode())

    def test_console(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        certificates = Certificates(folder.name)
        mta = OpenSmtpd(folder.name)
        self.addCleanup(mta.close)
        peers = {name: Peer(certificates.context(name)) for name in ("good", "unknown", "other-name", "expired")}
        at_once = Peer(certificates.context("good"), is_tls_first=True)
        good = peers["good"]
        untrusted = REFUSED + "TLS: schannel: CertGetCertificateChain trust error"
        stranger = ["stranger@clinic.example"]
        sends = [(good.port, PASSWORD, RECIPIENTS, "Email sent with TLS"),
                 (at_once.port, PASSWORD, RECIPIENTS, "Email sent with TLS"),
                 (mta.port, PASSWORD, RECIPIENTS, "Email sent without TLS"),
                 (mta.port, PASSWORD, RECIPIENTS + stranger, REFUSED + "recipient: RCPT failed: 550; the server said "),
                 (good.port, "pa55-word", RECIPIENTS, REFUSED + "logon: Login denied; the server said '535 5.7.8 "),
                 (peers["unknown"].port, PASSWORD, RECIPIENTS, untrusted),
                 (peers["expired"].port, PASSWORD, RECIPIENTS, untrusted),
                 (peers["other-name"].port, PASSWORD, RECIPIENTS,
                  REFUSED + "TLS: schannel: CertGetNameString() failed to match")]
        boxes, log = self.run_console(certificates.file("authority.der"), sends)
        self.assertEqual(boxes, 3 * ["Successfully concluded email test"] +
                         5 * ["Could not send email, invalid address?"])
        outcomes = [line for line in log if line.startswith(("Email sent", "Email not sent"))]
        for line, (*_, outcome) in zip(outcomes, sends, strict=True):
            self.assertIn(outcome, line)
        for peer, logons in (good, [True, True]), (at_once, [True]):
            self.assertEqual(peer.logons, logons)
            [(sender, recipients, content)] = peer.mails
            self.assertEqual((sender, recipients), (FROM, RECIPIENTS))
            self.check_mail(content)
        for address in RECIPIENTS:
            [stored] = mta.mails(address.split("@")[0])
            # Its own lines stand before ours; mailboxes have Unix's line ends.
            self.check_mail(stored[stored.index(b"\nDate: ") + 1:].replace(b"\n", b"\r\n"))
        for name in ("unknown", "other-name", "expired"):
            self.assertEqual((peers[name].logons, peers[name].senders, peers[name].connections), ([], [], 1), name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
