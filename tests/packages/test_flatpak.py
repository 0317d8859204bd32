#!/usr/bin/python3
"""The Flatpak manifest against the tree: that it can be read, and that what it names is there. Nothing is built."""

import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

try:
    import yaml
except ImportError:
    yaml = None

ROOT = Path(__file__).resolve().parents[2]
MANIFEST = ROOT / "packaging/flatpak/app.quillmere.host.yml"
# What a permission is for stands somewhere in the sources; a folder or socket is named there by these words.
WORDS = {"xdg-run/pipewire-0": "pw_context_connect", "/var/lib/flatpak/exports/share": "/var/lib/flatpak/exports/share",
         "xdg-data/flatpak/exports/share": "/flatpak/exports/share", "xdg-data/applications": "/applications",
         "xdg-config/autostart": "HOST_XDG_CONFIG_HOME"}


@unittest.skipIf(yaml is None, "there is no reader of YAML here (python3-yaml)")
class Manifest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.text = MANIFEST.read_text(encoding="utf-8")
        cls.manifest = yaml.safe_load(cls.text)
        cls.sources = "\n".join(path.read_text(encoding="utf-8") for folder in ("platform/linux", "windows", "views")
                                for path in sorted((ROOT / folder).rglob("*.cpp")))

    def test_the_builder_reads_it(self):
        if shutil.which("flatpak-builder") is None:
            self.skipTest("there is no flatpak-builder here")
        # Without a word about it, it makes a folder where it stands.
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run(["flatpak-builder", "--show-manifest", str(MANIFEST)], capture_output=True, text=True,
                                  check=False, cwd=folder)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn('"command" : "quillmere"', done.stdout)
        self.assertNotIn("Unknown property", done.stderr)

    def test_has_the_programs_name_in_the_bus_and_in_the_theme(self):
        self.assertEqual(self.manifest["id"], "app.quillmere.host")
        self.assertEqual(MANIFEST.stem, self.manifest["id"])
        self.assertIn(f'"{self.manifest["id"]}"', self.sources)

    def test_starts_a_program_that_is_installed(self):
        text = (ROOT / "app/CMakeLists.txt").read_text(encoding="utf-8")
        self.assertIn(f'install(TARGETS {self.manifest["command"]} RUNTIME DESTINATION "${{CMAKE_INSTALL_BINDIR}}")', text)

    def test_says_why_of_each_permission(self):
        lines = self.text[self.text.index("finish-args:"):self.text.index("cleanup:")].splitlines()[1:]
        permissions = [number for number, line in enumerate(lines) if line.strip().startswith("- ")]
        self.assertEqual(len(permissions), len(self.manifest["finish-args"]))
        for number in permissions:
            self.assertRegex(lines[number - 1], r"^  # .{10,}", f"above {lines[number]}")

    def test_asks_for_no_more_than_the_program_uses(self):
        for permission in self.manifest["finish-args"]:
            kind, _, what = permission.removeprefix("--").partition("=")
            with self.subTest(permission=permission):
                if kind == "talk-name":
                    self.assertIn(f'"{what.removesuffix("*")}', self.sources)
                elif kind == "filesystem":
                    self.assertIn(WORDS[what.removesuffix(":ro")], self.sources)
                else:
                    self.assertIn((kind, what), {("socket", "wayland"), ("socket", "fallback-x11"), ("share", "ipc"),
                                                 ("device", "dri")})

    def test_gives_no_folder_for_writing(self):
        for permission in self.manifest["finish-args"]:
            if permission.startswith("--filesystem=") and not permission.endswith("pipewire-0"):
                self.assertTrue(permission.endswith(":ro"), permission)

    def test_asks_the_session_manager_as_its_head_says(self):
        self.assertIn('PW_KEY_MEDIA_CATEGORY, "Manager"', self.sources)

    def test_each_module_is_fetched_whole_and_by_its_digest(self):
        for module in self.manifest["modules"]:
            self.assertIn(module["buildsystem"], ("simple", "cmake-ninja", "autotools"))
            for source in module["sources"]:
                if source["type"] == "dir":
                    self.assertEqual((MANIFEST.parent / source["path"]).resolve(), ROOT)
                else:
                    self.assertRegex(source["sha256"], r"^[0-9a-f]{64}$")
                    self.assertRegex(source["url"], r"^https?://")

    def test_builds_with_options_that_the_build_knows(self):
        module = self.manifest["modules"][-1]
        self.assertEqual(module["name"], "quillmere")
        lists = "\n".join(path.read_text(encoding="utf-8") for path in ROOT.glob("*/CMakeLists.txt"))
        lists += (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
        for option in module["config-opts"]:
            name = re.match(r"-D([A-Z_]+)=", option)[1]
            if not name.startswith("CMAKE_"):
                self.assertIn(f"option({name} ", lists)

    def test_what_the_build_needs_and_no_runtime_has_is_a_module(self):
        modules = {module["name"] for module in self.manifest["modules"]}
        self.assertLessEqual({"nlohmann-json", "startup-notification", "fonts"}, modules)
        fonts = " ".join(source["url"] for module in self.manifest["modules"] if module["name"] == "fonts"
                         for source in module["sources"])
        packages = (ROOT / "scripts/packages.txt").read_text(encoding="utf-8")
        run = packages[packages.index("[run]"):packages.index("[test]")]
        for package in re.findall(r"(?m)^fonts-\S+", run):
            self.assertIn(f"/{package}_", fonts)


if __name__ == "__main__":
    unittest.main()
