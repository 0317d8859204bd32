#!/usr/bin/python3
"""The Debian package in clean roots of this machine's release: what it needs, started, used, upgraded and removed.

Run by ./dev package, as root. Ends with 79, and the reason, where that can't be done."""

import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from clean_root import USER, CleanRoot, NotHere, enter_namespace, kept_roots  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
PACKAGED = Path(os.environ.get("QUILLMERE_PACKAGED", ROOT / "build/package"))
PLACE = PACKAGED / "roots"
NOT_RUN = 79

EXPECTED = """
/etc/chromium/native-messaging-hosts/app.quillmere.tabs.json
/etc/opt/chrome/native-messaging-hosts/app.quillmere.tabs.json
/etc/opt/edge/native-messaging-hosts/app.quillmere.tabs.json
/usr/bin/quillmere
/usr/libexec/quillmere/quillmere-tabs
/usr/libexec/quillmere/quillmere-windows
/usr/share/applications/app.quillmere.host.desktop
/usr/share/dbus-1/services/app.quillmere.host.service
/usr/share/doc/quillmere/changelog.gz
/usr/share/doc/quillmere/copyright
/usr/share/icons/hicolor/128x128/apps/app.quillmere.host.png
/usr/share/icons/hicolor/16x16/apps/app.quillmere.host.png
/usr/share/icons/hicolor/22x22/apps/app.quillmere.host.png
/usr/share/icons/hicolor/24x24/apps/app.quillmere.host.png
/usr/share/icons/hicolor/256x256/apps/app.quillmere.host.png
/usr/share/icons/hicolor/32x32/apps/app.quillmere.host.png
/usr/share/icons/hicolor/48x48/apps/app.quillmere.host.png
/usr/share/icons/hicolor/512x512/apps/app.quillmere.host.png
/usr/share/icons/hicolor/64x64/apps/app.quillmere.host.png
/usr/share/icons/hicolor/scalable/apps/app.quillmere.host.svg
/usr/share/icons/hicolor/symbolic/apps/app.quillmere.host-symbolic.svg
/usr/share/lintian/overrides/quillmere
/usr/share/locale/de/LC_MESSAGES/quillmere.mo
/usr/share/locale/en/LC_MESSAGES/quillmere.mo
/usr/share/man/man1/quillmere.1.gz
/usr/share/metainfo/app.quillmere.host.metainfo.xml
/usr/share/quillmere/extension/companion.js
/usr/share/quillmere/extension/manifest.json
""".split()

# What dpkg, apt and the loader keep of their own for every package.
KEPT_BY_THE_SYSTEM = re.compile(r"/var/lib/(dpkg|apt)(/|$)|/var/log(/|$)|/var/cache(/|$)|/etc/ld\.so\.cache$"
                                r"|/etc/(resolv\.conf|hosts)$")


def package(folder):
    found = sorted((PACKAGED / folder).glob("quillmere_*.deb"))
    if len(found) != 1:
        raise NotHere(f"there is no package in {PACKAGED / folder}; ./dev package makes it")
    return found[0]


def run(*command):
    done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)
    return done.returncode, done.stdout


def field(deb, name):
    return run("dpkg-deb", "--field", deb, name)[1].strip()


class ThePackage(unittest.TestCase):
    """What can be seen without installing it."""

    def test_holds_these_files_and_no_other(self):
        _, told = run("dpkg-deb", "--contents", package("packages"))
        files = sorted(line.split(maxsplit=5)[5].removeprefix(".") for line in told.splitlines() if not line.startswith("d"))
        self.assertEqual(files, sorted(EXPECTED))

    def test_lets_everybody_read_what_it_holds_and_nobody_change_it(self):
        _, told = run("dpkg-deb", "--contents", package("packages"))
        for line in told.splitlines():
            mode, owner = line.split()[:2]
            self.assertEqual(owner, "root/root", line)
            self.assertRegex(mode, r"^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x)$", line)

    def test_runs_nothing_when_it_is_installed_or_removed(self):
        scripts = [name for name in ("preinst", "postinst", "prerm", "postrm")
                   if run("dpkg-deb", "--info", package("packages"), name)[0] == 0]
        self.assertEqual(scripts, [])

    def test_is_clean_for_lintian(self):
        changes = next((PACKAGED / "packages").glob("*.changes"))
        code, told = run("lintian", "--allow-root", "--display-info", "--pedantic", "--tag-display-limit", "0",
                         "--fail-on", "error,warning,pedantic", changes)
        (PACKAGED / "lintian.txt").write_text(told, encoding="utf-8")
        # It guesses that one from the names of the functions that a program calls.
        problems = [line for line in told.splitlines() if "hardening-no-fortify-functions" not in line]
        self.assertEqual((code, problems), (0, []))


class InARoot(unittest.TestCase):
    LAYERS = 0

    def setUp(self):
        self.root = CleanRoot(PLACE, kept_roots(PLACE, field(package("packages"), "Depends"))[self.LAYERS], type(self).__name__)
        self.addCleanup(self.root.leave)
        self.root.bind(PACKAGED, "/run/packaged")
        self.root.bind(ROOT, "/run/checkout")

    def inside(self, folder):
        return f"/run/packaged/{folder}/{package(folder).name}"

    def without_what_the_system_keeps(self, files):
        return {path: facts for path, facts in files.items() if not KEPT_BY_THE_SYSTEM.match(path)}

    def expect_nothing_left(self, before):
        after = self.without_what_the_system_keeps(self.root.files())
        before = self.without_what_the_system_keeps(before)
        self.assertEqual(sorted(set(after) - set(before)), [], "left by the package")
        # An empty folder that no package owns goes with the last one that had something in it.
        self.assertEqual(sorted(set(before) - set(after) - {"/etc/opt"}), [], "taken away with it")
        self.assertEqual([path for path in before if path in after and before[path] != after[path]], [], "changed by it")
        told = self.root.run("grep", "--recursive", "--files-with-matches", "--word-regexp", "Package: quillmere",
                             "/var/lib/dpkg", check=False)
        self.assertEqual([line for line in told.splitlines() if not line.startswith("/var/lib/dpkg/status-old")], [])
        self.assertEqual(self.root.run("find", "/var/lib/dpkg/info", "-name", "quillmere*"), "")


class WithNothingButWhatItDependsOn(InARoot):
    """A minimal system to which only the package and its Depends have been added."""

    LAYERS = 0

    def missing_modules(self):
        """Of the modules of the toolkit that any page imports; one window doesn't show all pages."""
        wanted = {name for page in (ROOT / "views").rglob("*.qml")
                  for name in re.findall(r"(?m)^import (Qt[\w.]+)", page.read_text(encoding="utf-8"))}
        self.assertIn("QtQuick", wanted)
        folders = list((self.root.root / "usr/lib").glob("*/qt6/qml"))
        return {name for name in wanted
                if not any((folder / name.replace(".", "/") / "qmldir").exists() for folder in folders)}

    def test_it_starts_draws_and_goes_without_a_trace(self):
        before = self.root.files()
        self.root.install("install", self.inside("packages"))
        self.assertIn(f"quillmere {field(package('packages'), 'Version').split('+')[0].split('~')[0]}",
                      self.root.run("quillmere", "--version"))
        for program in ("/usr/bin/quillmere", "/usr/libexec/quillmere/quillmere-windows", "/usr/libexec/quillmere/quillmere-tabs"):
            self.assertNotIn("not found", self.root.run("ldd", program))
        self.assertEqual(self.missing_modules(), set())
        said = self.root.run("sh", "/run/checkout/tests/packages/bare_start.sh", user=USER)
        for problem in ("is not installed", "unavailable", "no program for the windows", "Could not", "Cannot", "cannot"):
            self.assertNotIn(problem, said)
        self.root.run("apt-get", "-q", "-y", "remove", "quillmere")
        # The settings of the system's administrator stay until they are purged; nothing else does.
        left = set(self.without_what_the_system_keeps(self.root.files())) - set(self.without_what_the_system_keeps(before))
        self.assertEqual({path for path in left if path.endswith(".json")}, {path for path in EXPECTED if path.startswith("/etc")})
        self.assertEqual({path for path in left if not path.startswith("/etc/")}, set())
        self.root.run("apt-get", "-q", "-y", "purge", "quillmere")
        self.expect_nothing_left(before)


class InASession(InARoot):
    """A system with a desktop session, in which somebody uses the program while it is upgraded and removed."""

    LAYERS = 1

    def test_it_is_used_upgraded_and_removed_while_it_runs(self):
        before = self.root.files()
        self.root.install("install", self.inside("packages"))
        logs = PACKAGED / "session-logs"
        command = self.root.command(
            "env", "PYTHONDONTWRITEBYTECODE=1", f"QUILLMERE_UPGRADE={self.inside('upgrade')}",
            f"QUILLMERE_UPGRADED_VERSION={field(package('upgrade'), 'Version').split('+')[0].split('~')[0]}",
            "QUILLMERE_BUILD=/nowhere", "python3", "/run/checkout/scripts/private-session", "--keep-logs", "/tmp/logs", "--",
            "/usr/bin/python3", "-W", "ignore::DeprecationWarning", "/run/checkout/tests/packages/use_package.py", "-v", user=USER)
        code = subprocess.run(command, stdin=subprocess.DEVNULL, check=False, timeout=600).returncode
        if (self.root.root / "tmp/logs").is_dir():
            logs.mkdir(exist_ok=True)
            subprocess.run(["cp", "-r", f"{self.root.root}/tmp/logs/.", str(logs)], check=False)
        self.assertEqual(code, 0, f"the session's logs are in {logs}")
        # Who used it has purged it.
        self.expect_nothing_left(before)


def main():
    try:
        package("packages"), package("upgrade")
        enter_namespace()
        kept_roots(PLACE, field(package("packages"), "Depends"))
    except NotHere as reason:
        print(f"not run: the package in a clean root: {reason}", flush=True)
        return NOT_RUN
    result = unittest.main(exit=False).result
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
