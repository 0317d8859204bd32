"""The table of what the program asks of macOS: whole, and true to the line."""

import importlib.machinery
import importlib.util
import shutil
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def load():
    loader = importlib.machinery.SourceFileLoader("macos_calls", str(ROOT / "scripts" / "macos-calls"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("macos_calls", loader))
    loader.exec_module(module)
    return module


calls = load()


class OfTheProgram(unittest.TestCase):
    def test_the_table_is_whole_and_true(self):
        self.assertEqual(calls.check(ROOT), [])

    def test_every_line_that_it_names_is_there(self):
        text = calls.page(ROOT).read_text(encoding="utf-8")
        table = text.split(calls.BEGIN)[1].split(calls.END)[0]
        places = calls.re.findall(r"`([\w/.+]+):(\d+)`", table)
        self.assertGreater(len(places), 50)
        for name, line in places:
            lines = (ROOT / "platform" / "macos" / name).read_text(encoding="utf-8").splitlines()
            self.assertTrue(lines[int(line) - 1].strip(), f"{name}:{line} is empty")


class OfACopy(unittest.TestCase):
    """A small program with one call, and its page."""

    def setUp(self):
        self.root = Path(tempfile.mkdtemp(prefix="quillmere-calls-"))
        self.addCleanup(shutil.rmtree, self.root)
        self.write("platform/macos/calls.txt", "# none\n\nSounds | +[NSSound soundNamed:] | NSSound soundNamed:\n")
        self.source = self.write("platform/macos/Sound.mm", "// [NSWord said]\nvoid play() {\n  [NSSound soundNamed:@\"\"];\n}\n")
        self.write("docs/macos.md", f"# A page\n\n{calls.BEGIN}\n{calls.END}\n\nAfter it.\n")
        self.settle()

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path

    def settle(self):
        page = calls.page(self.root)
        page.write_text(calls.replaced(page.read_text(encoding="utf-8"), calls.table(self.root)[0]), encoding="utf-8")
        self.assertEqual(calls.check(self.root), [])

    def edit(self, before, after):
        text = self.source.read_text(encoding="utf-8")
        self.assertIn(before, text)
        self.source.write_text(text.replace(before, after), encoding="utf-8")

    def page(self):
        return calls.page(self.root).read_text(encoding="utf-8")

    def test_the_table_names_file_and_line_and_leaves_the_rest_of_the_page(self):
        self.assertIn("| +[NSSound soundNamed:] | `Sound.mm:3` |", self.page())
        self.assertTrue(self.page().endswith("\n\nAfter it.\n"))

    def test_what_stands_in_a_comment_is_no_call(self):
        self.assertNotIn("NSWord", self.page())

    def test_a_call_that_has_moved_is_noticed(self):
        self.edit("void play", "\nvoid play")
        self.assertEqual(len(calls.check(self.root)), 1)

    def test_a_call_that_is_gone_is_noticed(self):
        self.edit("[NSSound soundNamed:@\"\"];", "")
        self.assertIn("nothing in platform/macos/ calls +[NSSound soundNamed:]", calls.check(self.root))

    def test_a_call_that_is_only_remembered_in_a_comment_is_gone(self):
        self.edit("  [NSSound", "  // [NSSound")
        self.assertIn("nothing in platform/macos/ calls +[NSSound soundNamed:]", calls.check(self.root))

    def test_a_class_that_gets_its_first_message_is_noticed(self):
        for line in ("[NSWindow makeOne];", "NSWindow.windows;", "AXIsProcessTrusted();", "CFBundleCreate(nil, nil);",
                     "AudioDeviceStart(1, p);", "[[CATapDescription alloc] init];"):
            with self.subTest(line):
                self.edit("}\n", f"  {line}\n}}\n")
                self.assertEqual(len(calls.check(self.root)), 1)
                self.settle()

    def test_a_stand_in_is_no_call(self):
        self.write("platform/macos/declarations/frameworks/AppKit/NSBeep.h", "void NSBeep(void);\n")
        self.assertEqual(calls.check(self.root), [])


if __name__ == "__main__":
    unittest.main()
