"""The bundle for a Mac: what it says of itself, what it asks for, and how it is packed."""

import os
import plistlib
import re
import shlex
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
PACKAGING = ROOT / "packaging" / "macos"
SCRIPT = ROOT / "scripts" / "package-macos"


def plist(name):
    return plistlib.loads((PACKAGING / name).read_bytes())


class Description(unittest.TestCase):
    def setUp(self):
        self.info = plist("Info.plist")

    def test_the_program_is_the_one_that_the_settings_and_the_log_know(self):
        self.assertEqual(self.info["CFBundleIdentifier"], "app.quillmere.host")
        self.assertEqual(self.info["CFBundleExecutable"], "quillmere")
        self.assertEqual(self.info["CFBundlePackageType"], "APPL")

    def test_it_is_an_agent_which_has_no_place_in_the_dock(self):
        self.assertIs(self.info["LSUIElement"], True)

    def test_it_runs_on_the_system_that_has_taps(self):
        self.assertEqual(self.info["LSMinimumSystemVersion"], "14.4")

    def test_it_says_what_it_hears_applications_for(self):
        text = self.info["NSAudioCaptureUsageDescription"]
        self.assertIn("plays an application's sound again", text)
        self.assertIn("Nothing is recorded.", text)

    def test_it_says_that_a_headsets_microphone_is_not_what_it_wants(self):
        text = self.info["NSMicrophoneUsageDescription"]
        self.assertIn("headset", text)
        self.assertIn("Nothing is recorded.", text)

    def test_it_says_what_it_asks_browsers_for(self):
        self.assertIn("the tabs of your browsers", self.info["NSAppleEventsUsageDescription"])

    def test_it_says_what_it_wants_to_know_of_a_focus_for(self):
        self.assertIn("Focus", self.info["NSFocusStatusUsageDescription"])

    def test_its_versions_are_the_builds(self):
        self.assertEqual(self.info["CFBundleShortVersionString"], "${MACOSX_BUNDLE_SHORT_VERSION_STRING}")
        self.assertEqual(self.info["CFBundleVersion"], "${MACOSX_BUNDLE_BUNDLE_VERSION}")
        cmake = (ROOT / "app" / "CMakeLists.txt").read_text(encoding="utf-8")
        for name in re.findall(r"\$\{(\w+)\}", (PACKAGING / "Info.plist").read_text(encoding="utf-8")):
            self.assertIn(name, cmake, "nobody fills this in")

    def test_it_names_the_languages_that_there_are_texts_in(self):
        texts = {file.stem.removeprefix("quillmere_") for file in (ROOT / "resources" / "translations").glob("*.ts")}
        self.assertEqual(set(self.info["CFBundleLocalizations"]), texts)

    def test_it_looks_for_updates_nowhere_until_it_is_packed_with_an_address(self):
        self.assertNotIn("SUFeedURL", self.info)


class Entitlements(unittest.TestCase):
    def test_it_may_hear_and_send_events_and_nothing_else(self):
        self.assertEqual(plist("quillmere.entitlements"),
                         {"com.apple.security.device.audio-input": True,
                          "com.apple.security.automation.apple-events": True})

    def test_the_focus_comes_on_top_of_that(self):
        self.assertEqual(plist("focus.entitlements"),
                         {**plist("quillmere.entitlements"), "com.apple.developer.focus-status": True})


class Packing(unittest.TestCase):
    def packed(self, *options):
        done = subprocess.run([SCRIPT, "--dry-run", *options], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        lines = done.stdout.splitlines()
        self.assertEqual(lines[-1], "package-macos: nothing was done")
        return [shlex.split(line.removeprefix("+ ")) for line in lines[:-1]]

    def refused(self, *options, env=None):
        done = subprocess.run([SCRIPT, *options], env=env, capture_output=True, text=True, check=False)
        self.assertNotEqual(done.returncode, 0)
        self.assertTrue(done.stderr.startswith("package-macos: "), done.stderr)
        self.assertEqual(done.stdout, "")
        return done.stderr

    def at(self, steps, *words):
        found = [number for number, step in enumerate(steps) if step[:len(words)] == list(words)]
        self.assertTrue(found, f"nothing like {words}")
        return found[0]

    def test_it_builds_signs_and_makes_the_image_in_this_order(self):
        steps = self.packed("--identity", "Developer ID Application: Somebody (AB12)")
        order = [self.at(steps, "cmake", "-S"), self.at(steps, "cmake", "--build"), self.at(steps, "macdeployqt"),
                 self.at(steps, "codesign", "--force"), self.at(steps, "codesign", "--verify"),
                 self.at(steps, "hdiutil", "create")]
        self.assertEqual(order, sorted(order))
        self.assertIn("-DCMAKE_OSX_ARCHITECTURES=arm64", steps[order[0]])
        self.assertIn("-DCMAKE_OSX_DEPLOYMENT_TARGET=14.4", steps[order[0]])

    def test_the_bundle_is_signed_last_for_the_hardened_runtime_with_its_entitlements(self):
        identity = "Developer ID Application: Somebody's (AB12)"
        signed = [step for step in self.packed("--identity", identity) if step[:2] == ["codesign", "--force"]]
        for step in signed:
            self.assertEqual(step[step.index("--options") + 1], "runtime")
            self.assertEqual(step[step.index("--sign") + 1], identity)
        self.assertTrue(signed[-1][-1].endswith("/quillmere.app"))
        self.assertEqual(signed[-1][signed[-1].index("--entitlements") + 1], "packaging/macos/quillmere.entitlements")

    def test_without_an_identity_the_runtime_is_left_as_it_is(self):
        for step in self.packed():
            self.assertNotIn("runtime", step)

    def test_the_updater_comes_with_its_address_and_its_key_before_anything_is_signed(self):
        steps = self.packed("--sparkle", "/elsewhere/Sparkle.framework/", "--feed", "https://example.org/feed.xml",
                            "--feed-key", "KEY=")
        copied = self.at(steps, "cp", "-R", "/elsewhere/Sparkle.framework")
        address = self.at(steps, "plutil", "-replace", "SUFeedURL", "-string", "https://example.org/feed.xml")
        key = self.at(steps, "plutil", "-replace", "SUPublicEDKey", "-string", "KEY=")
        self.assertLess(max(copied, address, key), self.at(steps, "codesign", "--force"))

    def test_a_profile_brings_the_focus(self):
        steps = self.packed("--profile", "/elsewhere/focus.provisionprofile")
        self.at(steps, "cp", "/elsewhere/focus.provisionprofile")
        bundle = [step for step in steps if "--entitlements" in step][0]
        self.assertIn("packaging/macos/focus.entitlements", bundle)

    def test_a_profile_that_does_not_grant_the_focus_is_refused_before_anything_is_done(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in (("uname", "echo Darwin"), ("cmake", "echo built; exit 1"),
                               ("security", "echo '<key>com.apple.developer.somethingelse</key>'")):
                tool = Path(folder, name)
                tool.write_text(f"#!/bin/sh\n{text}\n", encoding="utf-8")
                tool.chmod(0o755)
            mac = {**os.environ, "PATH": f"{folder}:{os.environ['PATH']}"}
            said = self.refused("--profile", "/elsewhere/other.provisionprofile", env=mac)
            self.assertIn("doesn't grant com.apple.developer.focus-status", said)
            # One that grants it gets as far as the build.
            Path(folder, "security").write_text(
                "#!/bin/sh\necho '<key>com.apple.developer.focus-status</key>'\n", encoding="utf-8")
            done = subprocess.run([SCRIPT, "--profile", "/elsewhere/focus.provisionprofile"], env=mac,
                                  capture_output=True, text=True, check=False)
            self.assertIn("built", done.stdout)

    def test_the_icon_is_made_from_the_programs_picture_at_every_size(self):
        sizes = {step[2] for step in self.packed() if step[0] == "sips"}
        self.assertEqual(sizes, {"16", "32", "64", "128", "256", "512", "1024"})

    def test_files_that_it_names_are_there(self):
        for step in self.packed():
            for word in step:
                if re.fullmatch(r"(packaging|resources)/\S+", word):
                    self.assertTrue((ROOT / word).is_file(), word)

    def test_an_updater_that_knows_nobody_to_believe_is_refused(self):
        self.assertIn("--feed-key", self.refused("--dry-run", "--sparkle", "/elsewhere/Sparkle.framework"))

    def test_an_address_that_can_be_changed_on_the_way_is_refused(self):
        self.assertIn("safe", self.refused("--dry-run", "--sparkle", "/x", "--feed", "http://example.org", "--feed-key", "K"))

    def test_an_unknown_option_and_one_without_its_value_are_refused(self):
        self.assertIn("--nonsense", self.refused("--nonsense"))
        self.assertIn("--identity wants a value", self.refused("--identity"))

    def test_it_does_nothing_on_another_system(self):
        self.assertIn("this needs a Mac", self.refused())

    def test_the_shell_has_nothing_to_say_against_it(self):
        if shutil.which("shellcheck") is None:
            self.skipTest("shellcheck is not installed")
        done = subprocess.run(["shellcheck", str(SCRIPT)], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout)


if __name__ == "__main__":
    unittest.main()
