#!/usr/bin/python3
"""What cmake --install makes, at any prefix and under a stage, and whether its files say what is true."""

import configparser
import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["QUILLMERE_BUILD"])
CMAKE = os.environ.get("QUILLMERE_CMAKE", "cmake")
NAME = "app.quillmere.host"
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
BROWSERS = {f"etc/{folder}/native-messaging-hosts/app.quillmere.tabs.json" for folder in ("chromium", "opt/chrome", "opt/edge")}


def run(*command, **environment):
    return subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False, env=os.environ | environment)


def expected(prefix):
    """Below the root, for a prefix without its first slash."""
    files = {"bin/quillmere", "libexec/quillmere/quillmere-windows", "libexec/quillmere/quillmere-tabs",
             f"share/applications/{NAME}.desktop", f"share/dbus-1/services/{NAME}.service",
             f"share/metainfo/{NAME}.metainfo.xml", "share/man/man1/quillmere.1",
             f"share/icons/hicolor/scalable/apps/{NAME}.svg", f"share/icons/hicolor/symbolic/apps/{NAME}-symbolic.svg",
             "share/locale/de/LC_MESSAGES/quillmere.mo", "share/locale/en/LC_MESSAGES/quillmere.mo",
             *(f"share/icons/hicolor/{size}x{size}/apps/{NAME}.png" for size in SIZES),
             *(f"share/quillmere/extension/{path.name}" for path in (ROOT / "extension").iterdir() if path.name != "README.md")}
    return {f"{prefix}/{file}" for file in files}


class Installed(unittest.TestCase):
    def install(self, prefix):
        self.stage = Path(tempfile.mkdtemp(prefix="quillmere-install-"))
        self.addCleanup(shutil.rmtree, self.stage)
        done = run(CMAKE, "--install", BUILD, "--prefix", prefix, DESTDIR=str(self.stage))
        self.assertEqual(done.returncode, 0, done.stdout)
        return {str(path.relative_to(self.stage)) for path in self.stage.rglob("*") if not path.is_dir()}

    def text(self, file):
        return (self.stage / file).read_text(encoding="utf-8")

    def service(self, prefix):
        service = configparser.RawConfigParser()
        service.optionxform = str
        service.read_string(self.text(f"{prefix}/share/dbus-1/services/{NAME}.service"))
        return dict(service["D-BUS Service"])


class InAnyPrefix(Installed):
    def test_a_system_gets_the_manifests_where_browsers_look_for_them(self):
        for prefix in ("usr", "usr/local", "opt/quillmere"):
            with self.subTest(prefix=prefix):
                self.assertEqual(self.install(f"/{prefix}"), expected(prefix) | BROWSERS)
                for file in BROWSERS:
                    self.assertEqual(json.loads(self.text(file))["path"], f"/{prefix}/libexec/quillmere/quillmere-tabs")

    def test_a_users_own_prefix_gets_nothing_outside_of_it(self):
        self.assertEqual(self.install("/home/anna/.local"), expected("home/anna/.local"))

    def test_the_bus_starts_the_program_of_this_prefix(self):
        self.install("/opt/a place")
        self.assertEqual(self.service("opt/a place"), {"Name": NAME, "Exec": "'/opt/a place/bin/quillmere' --activated"})
        self.install("/usr")
        self.assertEqual(self.service("usr")["Exec"], "/usr/bin/quillmere --activated")

    def test_without_a_stage_it_lies_where_it_is_meant_to(self):
        with tempfile.TemporaryDirectory(prefix="quillmere-prefix-") as prefix:
            done = run(CMAKE, "--install", BUILD, "--prefix", prefix, DESTDIR="")
            self.assertEqual(done.returncode, 0, done.stdout)
            self.assertEqual({str(path.relative_to("/")) for path in Path(prefix).rglob("*") if not path.is_dir()},
                             expected(prefix.lstrip("/")))
            told = run(Path(prefix) / "bin/quillmere", "--help", LANGUAGE="de", LC_ALL="", LANG="de_DE.UTF-8")
            self.assertEqual(told.returncode, 0, told.stdout)


class WhatIsInstalled(Installed):
    def setUp(self):
        self.files = self.install("/usr")

    def check(self, tool, *words):
        if shutil.which(tool) is None:
            self.skipTest(f"there is no {tool} here; scripts/install-deps package")
        done = run(tool, *words)
        self.assertEqual((done.returncode, done.stdout.strip()), (0, ""), f"{tool} {words}")

    def entry(self):
        entry = configparser.RawConfigParser()
        entry.optionxform = str
        entry.read_string(self.text(f"usr/share/applications/{NAME}.desktop"))
        return entry

    def test_the_desktop_entry_is_valid(self):
        self.check("desktop-file-validate", self.stage / f"usr/share/applications/{NAME}.desktop")

    def test_the_metainfo_is_valid(self):
        if shutil.which("appstreamcli") is None:
            self.skipTest("there is no appstreamcli here; scripts/install-deps package")
        done = run("appstreamcli", "validate", "--no-net", "--no-color", "--explain", self.stage / f"usr/share/metainfo/{NAME}.metainfo.xml")
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertNotRegex(done.stdout, r"(?m)^[EWI]:")

    def test_the_metainfo_names_what_is_there(self):
        text = self.text(f"usr/share/metainfo/{NAME}.metainfo.xml")
        version = run(BUILD / "app/quillmere", "--version").stdout.split()[1]
        self.assertIn(f'<release version="{version}"', text)
        self.assertIn(f'<launchable type="desktop-id">{NAME}.desktop</launchable>', text)
        self.assertIn("<binary>quillmere</binary>", text)

    def test_the_man_page_is_well_formed(self):
        if shutil.which("man") is None:
            self.skipTest("there is no man here; scripts/install-deps package")
        done = run("man", "--warnings=all", "--encoding=UTF-8", "--local-file", "--troff-device=utf8", "--ditroff",
                   self.stage / "usr/share/man/man1/quillmere.1", LC_ALL="C.UTF-8", MANWIDTH="80")
        self.assertNotIn("warning", done.stdout)
        self.assertEqual(done.returncode, 0)

    def test_the_man_page_tells_every_option_and_no_other(self):
        told = set(re.findall(r"--[a-z]+", run(BUILD / "app/quillmere", "--help", LC_ALL="C").stdout))
        page = set(re.findall(r"\\-\\-[a-z]+", self.text("usr/share/man/man1/quillmere.1")))
        self.assertEqual({option.replace("\\", "") for option in page}, told)

    def test_each_program_in_the_path_has_a_man_page(self):
        programs = {Path(file).name for file in self.files if file.startswith("usr/bin/")}
        pages = {Path(file).stem for file in self.files if file.startswith("usr/share/man/man1/")}
        self.assertEqual(programs, pages)

    def test_the_entry_the_service_and_the_icons_have_the_name_on_the_bus(self):
        entry = self.entry()["Desktop Entry"]
        self.assertEqual(entry["DBusActivatable"], "true")
        self.assertEqual(entry["Icon"], NAME)
        self.assertIn(f'busName = "{NAME}"', (ROOT / "platform/linux/instance/BusPlace.cpp").read_text(encoding="utf-8"))
        self.assertIn(f'setDesktopFileName(QStringLiteral("{NAME}"))',
                      (ROOT / "windows/WindowsApplication.cpp").read_text(encoding="utf-8"))

    def test_the_entrys_actions_are_known_to_the_program(self):
        source = (ROOT / "platform/linux/instance/BusPlace.cpp").read_text(encoding="utf-8")
        for action in filter(None, self.entry()["Desktop Entry"]["Actions"].split(";")):
            self.assertIn(f'"{action}"', source)
            self.assertTrue(self.entry()[f"Desktop Action {action}"]["Exec"].startswith("quillmere --section="))

    def test_the_pictures_have_the_sizes_of_their_folders_and_show_something(self):
        for size in SIZES:
            data = (self.stage / f"usr/share/icons/hicolor/{size}x{size}/apps/{NAME}.png").read_bytes()
            self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual((int.from_bytes(data[16:20], "big"), int.from_bytes(data[20:24], "big")), (size, size))
            self.assertGreater(len(data), 8 * size)

    def test_the_manifest_lets_our_companion_alone_start_the_host(self):
        manifest = json.loads(self.text("etc/chromium/native-messaging-hosts/app.quillmere.tabs.json"))
        source = (ROOT / "platform/linux/tabs/HostManifest.cpp").read_text(encoding="utf-8")
        self.assertEqual(manifest["name"], "app.quillmere.tabs")
        self.assertEqual(manifest["type"], "stdio")
        self.assertEqual(len(manifest["allowed_origins"]), 1)
        self.assertIn(f'"{manifest["allowed_origins"][0]}"', source)

    def test_the_manifests_lie_where_the_program_looks_for_the_systems(self):
        source = (ROOT / "platform/linux/tabs/Browsers.cpp").read_text(encoding="utf-8")
        looked_for = set(re.findall(r'"/(etc/[^"]+)"', source))
        self.assertEqual({str(Path(file).parent) for file in BROWSERS}, looked_for)

    def test_nothing_starts_with_the_session_by_itself(self):
        self.assertEqual([file for file in self.files if "autostart" in file], [])


if __name__ == "__main__":
    unittest.main()
