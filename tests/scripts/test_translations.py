"""No text without its translation: the catalogues as they are, and what the check says of worse ones."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def check(texts):
    done = subprocess.run([ROOT / "scripts" / "translations", "check", "--texts", texts], capture_output=True, text=True)
    return done.returncode, done.stdout + done.stderr


class Catalogues(unittest.TestCase):
    def test_have_every_text_of_the_sources_and_no_other(self):
        code, said = check(ROOT / "resources" / "translations")
        self.assertEqual(said, "translations: complete\n")
        self.assertEqual(code, 0)


class WorseCatalogues(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.texts = Path(folder.name)

    def change(self, name, before, after):
        file = Path(shutil.copy(ROOT / "resources" / "translations" / name, self.texts))
        text = file.read_text()
        self.assertIn(before, text)
        file.write_text(text.replace(before, after, 1))

    def assert_found(self, name, *words):
        code, said = check(self.texts)
        self.assertEqual(code, 1, said)
        found = said.splitlines()[0]
        for word in (name, *words):
            self.assertIn(word, found)

    def test_text_that_nobody_has_taken_into_the_catalogue_is_missing(self):
        self.change("quillmere_de.ts", "<source>Delete profile</source>", "<source>Delete a profile</source>")
        code, said = check(self.texts)
        self.assertEqual(code, 1)
        self.assertIn("quillmere_de.ts: missing: ('ProfileEditor', 'Delete profile', '')", said)
        self.assertIn("quillmere_de.ts: of no text in the sources: ('ProfileEditor', 'Delete a profile', '')", said)

    def test_unfinished_translation_is_found(self):
        self.change("quillmere_de.ts", "<translation>Profil löschen", '<translation type="unfinished">Profil löschen')
        self.assert_found("quillmere_de.ts", "unfinished", "Delete profile")

    def test_translation_that_lost_its_place_for_a_value_is_found(self):
        self.change("quillmere_de.ts", "Profil: %1", "Profil")
        self.assert_found("quillmere_de.ts", "places differ", "Profile: %1")

    def test_plural_form_without_its_number_is_found(self):
        self.change("quillmere_de.ts", "<numerusform>%n Tabs</numerusform>", "<numerusform>Tabs</numerusform>")
        self.assert_found("quillmere_de.ts", "no number", "%n tabs")

    def test_english_plural_form_that_is_missing_is_found(self):
        self.change("quillmere_en.ts", "<numerusform>%n tab</numerusform>", "")
        self.assert_found("quillmere_en.ts", "a plural form is missing", "%n tabs")

    def test_text_of_the_tray_without_translation_is_found(self):
        self.change("de.po", 'msgstr "quillmere beenden"', 'msgstr ""')
        self.assert_found("de.po", "untranslated")

    def test_text_of_the_tray_that_is_in_doubt_is_found(self):
        self.change("de.po", '#, no-c-format\nmsgid "Quit', '#, fuzzy, no-c-format\nmsgid "Quit')
        self.assert_found("de.po", "needs to be reviewed")

    def test_text_of_the_tray_that_nobody_has_taken_into_the_catalogue_is_missing(self):
        self.change("de.po", 'msgid "Quit quillmere"', 'msgid "Quit"')
        code, said = check(self.texts)
        self.assertEqual(code, 1)
        self.assertIn("de.po: of no text in the sources: msgid \"Quit\"", said)

    def test_text_of_the_tray_that_lost_its_place_for_a_value_is_found(self):
        self.change("de.po", 'msgstr "%1 (Kopie)"', 'msgstr "Kopie"')
        self.assert_found("de.po", "places differ", "%1 Copy")


if __name__ == "__main__":
    unittest.main()
