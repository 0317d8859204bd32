"""Both programs in the language of the session: the icon's menu as a panel asks for it, the windows as a reader hears them."""
# needs: display

import os
import subprocess
import unittest
from pathlib import Path

from quillmere_e2e import accessibility as a11y
from quillmere_e2e.program import Program
from quillmere_e2e.settings import forget_settings
from quillmere_e2e.waiting import wait_for

GERMAN_MENU = ["quillmere-Fenster öffnen", "Flüstermodus einschalten", "Schlummertimer", "Profile", "Einstellungen …",
               "Über quillmere", "Nach Aktualisierungen suchen …", "quillmere beenden"]
ENGLISH_MENU = ["Open quillmere Window", "Engage Whisper Mode", "Sleep Timer", "Profiles", "Settings…",
                "About quillmere", "Check for Updates…", "Quit quillmere"]


class Language(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # A machine need not have any locale but C.
        cls.locales = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "locales"
        cls.locales.mkdir()
        for name in ("de_DE", "en_US"):
            subprocess.run(["localedef", "--no-archive", "-i", name, "-f", "UTF-8", cls.locales / f"{name}.UTF-8"],
                           check=True, timeout=120)

    def setUp(self):
        self.addCleanup(forget_settings)

    def start(self, locale, languages=None):
        environment = {"LOCPATH": str(self.locales), "LC_ALL": locale}
        if languages:
            environment["LANGUAGE"] = languages
        self.program = self.enterContext(Program(arguments=["--background"], environment=environment))
        self.item = self.program.item()

    def menu(self):
        return [entry[1].replace("_", "") for entry in self.item.menu()]

    def open_settings(self):
        """Through the menu's entry, whatever it is called."""
        self.item.choose(self.item.menu()[4][0])
        return self.program.accessible_name()

    def assert_shows(self, *texts):
        name = self.open_settings()
        for text in texts:
            a11y.find(name, name=text, seconds=15)

    def test_german_session_is_german_in_the_panel_and_in_the_windows(self):
        self.start("de_DE.UTF-8")
        self.assertEqual(self.menu(), GERMAN_MENU)
        sleep = self.item.menu()[2][4]
        self.assertEqual([entry[1].replace("_", "") for entry in sleep],
                         ["15 Minuten", "30 Minuten", "45 Minuten", "60 Minuten", "90 Minuten"])
        wait_for(lambda: "\u00a0%" in self.item.property("ToolTip")[2], "the tool tip is German")
        self.assert_shows("Wie sich quillmere verhält", "Beim Anmelden starten", "Auto-Absenkung")

    def test_list_of_languages_comes_before_the_locale_for_both(self):
        self.start("en_US.UTF-8", "de:en")
        self.assertEqual(self.menu(), GERMAN_MENU)
        self.assert_shows("Wie sich quillmere verhält")

    def test_english_before_german_is_english_for_both(self):
        self.start("de_DE.UTF-8", "en_GB:de")
        self.assertEqual(self.menu(), ENGLISH_MENU)
        self.assert_shows("How quillmere behaves")

    def test_session_without_a_language_is_english_for_both_whatever_the_list_says(self):
        self.start("C", "de")
        self.assertEqual(self.menu(), ENGLISH_MENU)
        self.assert_shows("How quillmere behaves")


if __name__ == "__main__":
    unittest.main()
