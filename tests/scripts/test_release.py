"""The parts of ./dev --release that need no root of another release: the mirror, the copy of the tree, the refusals."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
SCRIPTS = ROOT / "scripts"


def run(*command, **options):
    return subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, text=True, check=False, **options)


class InAFolder(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="quillmere-scripts-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text="text\n"):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path


class Mirror(InAFolder):
    def mirror(self, *suffix):
        done = run("sh", SCRIPTS / "apt-mirror", *suffix, "--apt", self.folder, "--codename", "bookworm")
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout.strip()

    def test_a_one_line_source_of_this_release_is_found_among_others(self):
        self.write("sources.list", "# deb http://comment/debian bookworm main\n"
                                   "deb http://other/debian trixie main\n"
                                   "deb-src http://source/debian bookworm main\n"
                                   "deb http://games/debian bookworm contrib\n"
                                   "deb [arch=amd64 signed-by=/x.gpg] http://right/debian/ bookworm contrib main # one\n"
                                   "deb http://later/debian bookworm main\n"
                                   "deb http://right/debian-security bookworm-security main\n")
        self.assertEqual(self.mirror(), "http://right/debian")
        self.assertEqual(self.mirror("-security"), "http://right/debian-security")

    def test_a_paragraph_with_several_suites_is_read(self):
        self.write("sources.list.d/debian.sources",
                   "# The distribution\nTypes: deb deb-src\nURIs: https://right/debian\nSuites: bookworm-updates\n bookworm\n"
                   "Components: main\n\nTypes: deb\nURIs: https://safe/debian-security\nSuites: bookworm-security\n"
                   "Components: main\n")
        self.assertEqual(self.mirror(), "https://right/debian")
        self.assertEqual(self.mirror("-security"), "https://safe/debian-security")

    def test_a_source_that_is_switched_off_is_none(self):
        self.write("sources.list.d/debian.sources",
                   "Types: deb\nEnabled: no\nURIs: http://wrong\nSuites: bookworm\nComponents: main\n")
        self.assertEqual(self.mirror(), "")

    def test_a_file_of_mirrors_gives_its_first(self):
        mirrors = self.write("mirrors.list", "# ours\nhttps://first/debian priority:1\nhttps://second/debian\n")
        self.write("sources.list.d/debian.sources",
                   f"Types: deb\nURIs: mirror+file:{mirrors}\nSuites: bookworm\nComponents: main\n")
        self.assertEqual(self.mirror(), "https://first/debian")

    def test_another_distributions_sources_give_none(self):
        self.write("sources.list", "deb http://archive/ubuntu noble main universe\n")
        self.assertEqual(self.mirror(), "")


class CopiedTree(InAFolder):
    def setUp(self):
        super().setUp()
        self.checkout, self.copy = self.folder / "checkout", self.folder / "copy"
        (self.checkout / "scripts").mkdir(parents=True)
        shutil.copy2(SCRIPTS / "copy-tree", self.checkout / "scripts/copy-tree")
        self.write("checkout/engine/Gain.cpp")
        self.write("checkout/engine/a name with blanks.cpp")
        self.write("checkout/build/dev/object.o")

    def copy_tree(self):
        # Git must find no repository around the temporary folder.
        done = run("sh", self.checkout / "scripts/copy-tree", self.copy,
                   env=os.environ | {"GIT_CEILING_DIRECTORIES": str(self.folder)})
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return {str(path.relative_to(self.copy)) for path in self.copy.rglob("*")
                if not path.is_dir() and path.parts[len(self.copy.parts)] != "build"}

    EVERYTHING = {"scripts/copy-tree", "engine/Gain.cpp", "engine/a name with blanks.cpp"}

    def use_git(self):
        self.write("checkout/.gitignore", "/build/\n*.pyc\n")
        self.assertEqual(run("git", "init", "-q", self.checkout).returncode, 0)
        self.assertEqual(run("git", "-C", self.checkout, "add", "engine").returncode, 0)

    def test_without_git_everything_but_the_builds_is_copied(self):
        self.assertEqual(self.copy_tree(), self.EVERYTHING)

    @unittest.skipIf(shutil.which("git") is None, "there is no git here")
    def test_with_git_what_is_ignored_stays_away(self):
        self.use_git()
        self.write("checkout/engine/cache.pyc")
        self.assertEqual(self.copy_tree(), self.EVERYTHING | {".gitignore"})

    @unittest.skipIf(shutil.which("git") is None, "there is no git here")
    def test_a_file_that_was_removed_here_goes_there_too_with_its_empty_folder(self):
        self.use_git()
        self.copy_tree()
        shutil.rmtree(self.checkout / "engine")
        self.assertEqual(self.copy_tree(), {"scripts/copy-tree", ".gitignore"})
        self.assertFalse((self.copy / "engine").exists())

    def test_times_are_kept_and_the_copys_own_build_stays(self):
        os.utime(self.checkout / "engine/Gain.cpp", (1000000000, 1000000000))
        self.copy_tree()
        built = self.write("copy/build/dev/object.o", "built there")
        self.copy_tree()
        self.assertEqual((self.copy / "engine/Gain.cpp").stat().st_mtime, 1000000000)
        self.assertEqual(built.read_text(encoding="utf-8"), "built there")

    def test_what_has_changed_is_copied_even_to_an_older_time(self):
        self.copy_tree()
        self.write("checkout/engine/Gain.cpp", "other\n")
        os.utime(self.checkout / "engine/Gain.cpp", (1000000000, 1000000000))
        self.copy_tree()
        self.assertEqual((self.copy / "engine/Gain.cpp").read_text(encoding="utf-8"), "other\n")


class Refusals(unittest.TestCase):
    def test_what_is_no_name_of_a_release_is_a_wrong_use(self):
        for name in ("../elsewhere", "", "Trixie", "-x"):
            with self.subTest(name=name):
                self.assertEqual(run(ROOT / "dev", "test", "--release", name).returncode, 64)
        self.assertEqual(run(ROOT / "dev", "test", "--release").returncode, 64)

    def refused(self, *prefix):
        done = run(*prefix, "sh", SCRIPTS / "release", "trixie", "test")
        self.assertEqual(done.returncode, 79, done.stdout + done.stderr)
        return done.stdout

    def test_whoever_is_not_root_is_told_so(self):
        # Nobody may read a checkout in root's home.
        prefix = ["setpriv", "--reuid", "65534", "--clear-groups"] if os.getuid() == 0 else []
        if prefix and run(*prefix, "test", "-r", SCRIPTS / "release").returncode != 0:
            self.skipTest("the checkout lies where only root can read it")
        self.assertIn("only root", self.refused(*prefix))

    @unittest.skipIf(os.getuid() != 0, "only root can drop what root may do")
    def test_where_nothing_may_be_mounted_it_says_what_a_container_needs(self):
        self.assertIn("CAP_SYS_ADMIN", self.refused("setpriv", "--bounding-set=-sys_admin"))


if __name__ == "__main__":
    unittest.main()
