"""What quillmere-feed fetches, and what it refuses. The servers answer on this machine only."""

import os
import socket
import ssl
import subprocess
import tempfile
import threading
import unittest
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

PROGRAM = Path(os.environ["QUILLMERE_BUILD"]) / "app" / "quillmere-feed"
LIMIT = 256 * 1024


def make_certificate(folder, name, host):
    """A certificate that nobody but itself vouches for, and its key."""
    key, certificate = folder / f"{name}.key", folder / f"{name}.pem"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", f"/CN={host}",
         "-addext", f"subjectAltName=DNS:{host}", "-keyout", key, "-out", certificate],
        check=True, capture_output=True)
    return certificate, key


class Handler(BaseHTTPRequestHandler):
    def do_GET(self):
        self.server.requests.append((self.path, dict(self.headers)))
        self.server.answers[self.path](self)

    def log_message(self, *_):
        pass

    def give(self, body, status=200, headers=()):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)


class Server:
    """A web server, with TLS where it has a certificate."""

    def __init__(self, certificate=None, key=None):
        self.http = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.http.daemon_threads = True
        # Clients that turn away are what this is about.
        self.http.handle_error = lambda *_: None
        self.http.requests = []
        self.http.answers = {}
        self.scheme = "http"
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate, key)
            self.http.socket = context.wrap_socket(self.http.socket, server_side=True, do_handshake_on_connect=False)
            self.scheme = "https"
        self.thread = threading.Thread(target=self.http.serve_forever, daemon=True)
        self.thread.start()

    def address(self, path="/"):
        return f"{self.scheme}://localhost:{self.http.server_address[1]}{path}"

    def answer(self, path, answer):
        self.http.answers[path] = answer

    def requests(self):
        return self.http.requests

    def close(self):
        self.http.shutdown()
        self.http.server_close()


def fetch(address, *options):
    environment = {name: value for name, value in os.environ.items() if not name.lower().endswith("_proxy")}
    return subprocess.run([PROGRAM, *options, address], capture_output=True, timeout=60, env=environment)


class Feed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="quillmere-feed-")
        folder = Path(cls.folder.name)
        cls.certificate, key = make_certificate(folder, "right", "localhost")
        cls.server = Server(cls.certificate, key)
        cls.other_certificate, other_key = make_certificate(folder, "wrong", "elsewhere.example")
        cls.misnamed = Server(cls.other_certificate, other_key)
        cls.plain = Server()

    @classmethod
    def tearDownClass(cls):
        for server in (cls.server, cls.misnamed, cls.plain):
            server.close()
        cls.folder.cleanup()

    def trusted(self, path, *options):
        return fetch(self.server.address(path), "--authorities", str(self.certificate), *options)

    def assertRefused(self, result, words=None):
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(result.stdout, b"")
        self.assertTrue(result.stderr.strip())
        if words:
            self.assertIn(words, result.stderr.decode().lower())

    def test_tells_the_text_as_it_is(self):
        body = '{"version": "1.2.3"}\n\u00e4'.encode() + b"\xff\x00"
        self.server.answer("/feed", lambda to: to.give(body))
        result = self.trusted("/feed")
        self.assertEqual((result.returncode, result.stdout), (0, body))

    def test_says_who_asks_and_nothing_else_of_anybody(self):
        self.server.answer("/who", lambda to: to.give(b"{}"))
        self.trusted("/who")
        headers = [headers for path, headers in self.server.requests() if path == "/who"][0]
        self.assertRegex(headers["User-Agent"], r"^quillmere/[0-9.]+$")
        self.assertEqual(set(headers), {"Host", "User-Agent", "Accept"})

    def test_a_certificate_that_nobody_vouches_for_is_refused(self):
        self.server.answer("/self-signed", lambda to: to.give(b'{"version": "99.0"}'))
        self.assertRefused(fetch(self.server.address("/self-signed")), "certificate")
        self.assertFalse([path for path, _ in self.server.requests() if path == "/self-signed"])

    def test_a_certificate_of_another_host_is_refused(self):
        self.misnamed.answer("/", lambda to: to.give(b'{"version": "99.0"}'))
        result = fetch(self.misnamed.address(), "--authorities", str(self.other_certificate))
        self.assertRefused(result)
        self.assertFalse(self.misnamed.requests())

    def test_an_address_without_tls_is_refused(self):
        self.plain.answer("/", lambda to: to.give(b'{"version": "99.0"}'))
        self.assertRefused(fetch(self.plain.address()))
        self.assertRefused(fetch("file:///etc/hostname"))
        self.assertRefused(fetch("rubbish"))
        self.assertFalse(self.plain.requests())

    def test_a_way_out_of_tls_is_refused(self):
        self.plain.answer("/out", lambda to: to.give(b'{"version": "99.0"}'))
        self.server.answer("/away", lambda to: to.give(b"", 302, [("Location", self.plain.address("/out"))]))
        self.assertRefused(self.trusted("/away"))
        self.server.answer("/file", lambda to: to.give(b"", 302, [("Location", "file:///etc/hostname")]))
        self.assertRefused(self.trusted("/file"))
        self.assertFalse([path for path, _ in self.plain.requests() if path == "/out"])

    def test_a_few_redirections_are_followed_and_not_a_circle(self):
        self.server.answer("/old", lambda to: to.give(b"", 301, [("Location", "/new")]))
        self.server.answer("/new", lambda to: to.give(b"there"))
        self.assertEqual(self.trusted("/old").stdout, b"there")
        self.server.answer("/circle", lambda to: to.give(b"", 302, [("Location", "/circle")]))
        self.assertRefused(self.trusted("/circle"))
        self.assertLess(len([path for path, _ in self.server.requests() if path == "/circle"]), 10)

    def test_a_page_that_is_not_there_is_no_feed(self):
        for status in (404, 500, 403):
            self.server.answer("/gone", lambda to, status=status: to.give(b'{"version": "99.0"}', status))
            self.assertRefused(self.trusted("/gone"), str(status))

    def test_a_text_up_to_the_limit_is_whole_and_no_longer_one(self):
        self.server.answer("/long", lambda to: to.give(b"x" * LIMIT))
        self.assertEqual(len(self.trusted("/long").stdout), LIMIT)
        self.server.answer("/longer", lambda to: to.give(b"x" * (LIMIT + 1)))
        self.assertRefused(self.trusted("/longer"), "too long")

    def test_a_text_without_end_is_cut_off(self):
        sent = []

        def endless(to):
            to.send_response(200)
            to.end_headers()
            try:
                while len(sent) < 10000:
                    to.wfile.write(b"x" * 65536)
                    sent.append(1)
            except OSError:
                pass

        self.server.answer("/endless", endless)
        self.assertRefused(self.trusted("/endless"), "too long")
        self.assertLess(len(sent), 10000)

    def test_a_small_text_that_unpacks_to_a_huge_one_is_not_unpacked(self):
        self.server.answer("/zip", lambda to: to.give(b"\x1f\x8b rubbish", headers=[("Content-Encoding", "gzip")]))
        self.assertEqual(self.trusted("/zip").stdout, b"\x1f\x8b rubbish")

    def test_a_server_that_hangs_is_given_up(self):
        released = threading.Event()
        self.addCleanup(released.set)
        self.server.answer("/hang", lambda to: released.wait(50))
        self.assertRefused(self.trusted("/hang", "--seconds", "1"), "timed out")

    def test_a_server_that_drips_is_given_up(self):
        released = threading.Event()
        self.addCleanup(released.set)

        def drip(to):
            to.send_response(200)
            to.send_header("Content-Length", "1000000")
            to.end_headers()
            try:
                while not released.wait(0.05):
                    to.wfile.write(b"x")
                    to.wfile.flush()
            except OSError:
                pass

        self.server.answer("/drip", drip)
        self.assertRefused(self.trusted("/drip", "--seconds", "1"), "timed out")

    def test_a_connection_that_breaks_off_gives_no_half_text(self):
        def half(to):
            to.send_response(200)
            to.send_header("Content-Length", "1000")
            to.end_headers()
            to.wfile.write(b'{"version": "99.0"}')
            to.wfile.flush()
            to.connection.shutdown(socket.SHUT_RDWR)

        self.server.answer("/half", half)
        self.assertRefused(self.trusted("/half"))

    def test_nobody_at_the_address_is_a_failure(self):
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            port = free.getsockname()[1]
        self.assertRefused(fetch(f"https://localhost:{port}/"))
        self.assertRefused(fetch("https://nowhere.invalid/"))

    def test_it_wants_one_address(self):
        self.assertNotEqual(subprocess.run([PROGRAM], capture_output=True).returncode, 0)
        self.assertNotEqual(subprocess.run([PROGRAM, "--what"], capture_output=True).returncode, 0)
        self.assertRefused(fetch("https://localhost/", "--seconds", "0"))


if __name__ == "__main__":
    unittest.main()
