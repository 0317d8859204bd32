#!/usr/bin/python3
"""The Debian package's own files against the tree: what a build and a run need is what the package asks for."""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DEBIAN = ROOT / "packaging/debian"


def section(name):
    """The packages of a section of scripts/packages.txt, and whether each is there on every release."""
    text = (ROOT / "scripts/packages.txt").read_text(encoding="utf-8")
    lines = re.search(rf"(?ms)^\[{name}\]$(.*?)(?=^\[|\Z)", text)[1].splitlines()
    words = [line.split("#")[0].split() for line in lines]
    return {word[0]: len(word) == 1 for word in words if word}


def field(name):
    """The packages of a field of debian/control, all alternatives."""
    text = (DEBIAN / "control").read_text(encoding="utf-8")
    value = re.search(rf"(?m)^{name}:\n?((?: .*\n?)+)", text)[1]
    return {re.split(r"[ (]", word.strip())[0] for word in re.split(r"[,|]", value) if word.strip()}


class Control(unittest.TestCase):
    def test_builds_with_what_the_tree_is_built_with(self):
        # g++ is part of what every build has; the cache is for those who build often.
        wanted = {name for name, everywhere in section("build").items() if everywhere} - {"g++", "ccache"}
        self.assertEqual(field("Build-Depends") - {"debhelper-compat", "base-files"} - set(section("build")) | wanted, wanted)
        self.assertLessEqual(wanted, field("Build-Depends"))

    def test_asks_for_what_the_tree_is_run_with(self):
        # The libraries come from the program itself; these are parts of what is named here.
        implied = {"libqt6svg6", "dbus", "dbus-daemon", "pipewire-bin", "ca-certificates"}
        asked = field("Depends") | field("Recommends")
        self.assertLessEqual(set(section("run")) - implied, asked)

    def test_names_nothing_that_one_of_the_releases_has_not_without_a_way_out(self):
        text = (DEBIAN / "control").read_text(encoding="utf-8")
        for name, everywhere in (section("build") | section("run")).items():
            if not everywhere and name != "libwayland-dev":
                self.assertRegex(text, rf"(?m)^ {re.escape(name)}( \([^)]*\))? \| ")


if __name__ == "__main__":
    unittest.main()
