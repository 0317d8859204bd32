"""The tabs of a real browser: listed as the browser has them, brought to the front by a click, and right again after
whatever has ended."""
# needs: display
# takes: a minute

import http.server
import os
import re
import signal
import threading
import unittest
from pathlib import Path

from quillmere_e2e import accessibility as a11y
from quillmere_e2e.agent import Agent
from quillmere_e2e.browser import COMPANION_ID, PROGRAM, Browser
from quillmere_e2e.program import Program
from quillmere_e2e.settings import forget_settings
from quillmere_e2e.tones import tone_file
from quillmere_e2e.waiting import wait_for

CHROME = "com.google.Chrome"
# The mixer asks every three seconds, and the companion gathers what happens for a moment.
TWO_POLLS = 7.0
# Control characters, and the ends of lines and paragraphs: a blank of its own for each.
CONTROLS = re.compile("[\x00-\x1f\x7f-\x9f\u2028\u2029]")

SOUND = '<audio src="/tone.wav" autoplay loop></audio>'
AWKWARD = {
    "tabs": ("<script>document.title = 'a\\tb\\u0007c\\u0085d\\u2028e'</script>"),
    "rtl": "<title>שלום עולם \u202eabc\u202c مرحبا</title>",
    "emoji": "<title>👩‍👩‍👧‍👦 🏳️‍🌈 \U0001f1e9\U0001f1ea</title>",
    # Cut by the browser in the middle of a character of two.
    "long": "<script>document.title = 'x' + '😀'.repeat(5000)</script>",
    "markup": "<title>&lt;b&gt;bold&lt;/b&gt; &amp;amp; &lt;script&gt;</title>",
    "half": "<script>document.title = 'half \\ud83d a character'</script>",
    "untitled": "nothing but text",
}


class Pages(http.server.BaseHTTPRequestHandler):
    """Pages with awkward titles, on this machine's own loop."""

    def do_GET(self):
        name = self.path.strip("/")
        if name == "tone.wav":
            body, kind = tone_file(700, 0.25, 20).read_bytes(), "audio/wav"
        elif name == "sound":
            body, kind = f"<!DOCTYPE html><meta charset=utf-8><title>Sound</title>{SOUND}".encode(), "text/html"
        else:
            page = AWKWARD.get(name, f"<title>Page {name}</title>")
            body, kind = f"<!DOCTYPE html><meta charset=utf-8>{page}".encode(), "text/html"
        self.send_response(200)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def expected(windows):
    """The browser's report as the mixer lists it."""
    tabs = []
    for number, window in enumerate(windows, 1):
        for place, tab in enumerate(window, 1):
            title = CONTROLS.sub(" ", tab["title"]).strip() or tab["url"]
            tabs.append({"id": f"{CHROME}:w{number}:t{place}", "title": title, "url": tab["url"],
                         "active": tab["active"]})
    return tabs


@unittest.skipUnless(PROGRAM, "there is no Chromium here (package chromium)")
class WithABrowser(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pages)
        self.addCleanup(self.server.server_close)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.addCleanup(self.server.shutdown)

    def url(self, name):
        return f"http://127.0.0.1:{self.server.server_port}/{name}"

    def browse(self, **options):
        """A browser that sounds, since only those are listed, and whose pages have loaded."""
        options.setdefault("urls", [self.url("sound")])
        browser = self.enterContext(Browser(**options))
        wait_for(lambda: self.titles(browser) == [["Sound"]], "the first page has loaded", 60)
        return browser

    @staticmethod
    def titles(browser):
        return [[tab["title"] for tab in window] for window in browser.report()]

    def open_all(self, browser):
        """A second window with the awkward pages: seven tabs in all, and one that sounds."""
        names = list(AWKWARD)
        browser.ask("openWindow", urls=[self.url(name) for name in names])

        def loaded():
            windows = browser.report()
            return (len(windows) == 2 and len(windows[1]) == len(names)
                    and all(tab["title"] != "" and not tab["title"].startswith("127.0.0.1") for tab in windows[1][:-1]))

        wait_for(loaded, "all pages have loaded", 30)


class Lists(WithABrowser):
    """The mixer without its face."""

    def setUp(self):
        super().setUp()
        self.agent = self.enterContext(Agent())

    def tabs(self):
        return self.agent.ask("tabs")["tabs"].get(CHROME)

    def wait_until_equal(self, browser, seconds=TWO_POLLS):
        """Asked together, as the browser may be loading still."""
        def is_equal():
            before = browser.report()
            tabs = self.tabs()
            return tabs == expected(before) and browser.report() == before

        try:
            wait_for(is_equal, "the list is the browser's", seconds, pause=0.1)
        except AssertionError:
            self.assertEqual(self.tabs(), expected(browser.report()))
            raise

    def wait_until_listed(self):
        wait_for(lambda: CHROME in self.agent.state()["live"], "the browser's sound makes it live", 30)

    def check_a_whole_life(self, headless):
        browser = self.browse(headless=headless)
        self.wait_until_listed()
        self.open_all(browser)
        self.wait_until_equal(browser)
        listed = self.tabs()
        self.assertEqual(len(listed), 1 + len(AWKWARD))
        for tab in listed:
            self.assertNotRegex(tab["title"] + tab["url"], CONTROLS)
        with self.subTest("a tab that closes"):
            browser.ask("closeTab", window=1, tab=0)
            self.wait_until_equal(browser)
            self.assertEqual(len(self.tabs()), len(AWKWARD))
        with self.subTest("an activation, with the numbers of the list"):
            self.agent.ask("activate", CHROME, f"{CHROME}:w2:t3")
            wait_for(lambda: browser.report()[1][2]["active"], "the tab is its window's current one", 5)
            self.wait_until_equal(browser)
        if not headless:
            with self.subTest("an activation in a window that is put away"):
                browser.ask("minimize", window=1)
                wait_for(lambda: browser.ask("report")[1]["state"] == "minimized", "the window is put away", 5)
                self.agent.ask("activate", CHROME, f"{CHROME}:w2:t2")
                wait_for(lambda: browser.ask("report")[1]["state"] == "normal", "the window is back", 5)
                wait_for(lambda: browser.report()[1][1]["active"], "with its tab", 5)
                self.wait_until_equal(browser)
        with self.subTest("the browser closes"):
            browser.stop()
            wait_for(lambda: not self.tabs(), "no tabs are left", TWO_POLLS)

    def test_a_browser_with_windows_is_listed_as_it_says_itself(self):
        self.check_a_whole_life(headless=False)

    def test_a_browser_without_windows_is_listed_as_it_says_itself(self):
        self.check_a_whole_life(headless=True)

    def test_the_list_is_right_again_after_whatever_ends(self):
        browser = self.browse(headless=True)
        self.wait_until_listed()
        self.open_all(browser)
        self.wait_until_equal(browser)
        with self.subTest("the host program is killed"):
            [host] = browser.hosts()
            os.kill(host, signal.SIGKILL)
            wait_for(lambda: browser.hosts() not in ([], [host]), "the companion has started another", 5)
            self.wait_until_equal(browser)
        with self.subTest("the companion's worker is ended and begins anew"):
            browser.ask("enable", extension=COMPANION_ID, enabled=False)
            wait_for(lambda: not self.tabs(), "no tabs are left", TWO_POLLS)
            browser.ask("enable", extension=COMPANION_ID, enabled=True)
            self.wait_until_equal(browser)
        with self.subTest("the mixer is killed and comes back"):
            self.agent.kill()
            browser.ask("openTab", window=0, url=self.url("later"))
            self.agent.start()
            self.wait_until_listed()
            self.wait_until_equal(browser)
            self.assertIn("Page later", [tab["title"] for tab in self.tabs()])
        with self.subTest("the browser is killed"):
            browser.kill()
            wait_for(lambda: not self.tabs(), "no tabs are left", TWO_POLLS)
            wait_for(lambda: not self.agent.ask("tabs")["companions"], "no companion is left", TWO_POLLS)
        with self.subTest("and started again"):
            again = self.browse(headless=True)
            self.wait_until_listed()
            self.wait_until_equal(again)

    def test_two_profiles_are_one_list_whose_windows_are_numbered_through(self):
        first = self.browse(headless=True)
        self.wait_until_listed()
        self.wait_until_equal(first)
        second = self.browse(headless=True)
        second.ask("openTab", window=0, url=self.url("two"))
        wait_for(lambda: self.titles(second) == [["Sound", "Page two"]], "its pages have loaded", 30)
        wait_for(lambda: self.tabs() == expected(first.report() + second.report()), "both are listed", TWO_POLLS)
        self.assertEqual([each["browser"] for each in self.agent.ask("tabs")["companions"]], ["chromium", "chromium"])
        self.agent.ask("activate", CHROME, f"{CHROME}:w2:t1")
        wait_for(lambda: second.report()[0][0]["active"], "the tab of the second profile is current", 5)

    def test_without_the_hosts_manifest_there_are_no_tabs_and_with_it_they_come(self):
        browser = self.browse(headless=True, installs_host=False)
        self.wait_until_listed()
        wait_for(lambda: self.tabs() == [], "the browser is asked and has told nothing", TWO_POLLS)
        browser.install_host()
        # A tab that opens lets the companion try again, should it be asleep.
        def tries():
            browser.ask("openTab", window=0, url=self.url("wake"))
            return self.agent.ask("tabs")["companions"]

        wait_for(tries, "the companion is connected", 60, pause=1)
        self.wait_until_equal(browser)


class Companions(WithABrowser):
    """The companion alone: this test is its host."""

    def test_what_has_gone_since_the_last_poll_brings_its_window_to_the_front_and_then_the_browser(self):
        browser = self.enterContext(Browser(urls=[self.url("one")], plays_host=True))
        companion = browser.companion
        self.assertEqual(list(companion.hear()), ["companion"])
        companion.say({"listen": True})
        browser.ask("openWindow", urls=[self.url("two"), self.url("three")])
        windows = []
        while [len(tabs) for _, tabs in windows] != [1, 2]:
            windows = companion.hear().get("windows", windows)
        (first, _), (second, tabs) = windows

        def activate(window, tab):
            companion.say({"activate": {"window": window, "tab": tab}})

        with self.subTest("the tab"):
            browser.ask("closeTab", window=1, tab=0)
            activate(first, None)
            wait_for(lambda: browser.ask("report")[0]["focused"], "the first window is in front", 5)
            activate(second, tabs[0])
            wait_for(lambda: browser.ask("report")[1]["focused"], "the tab's window is in front", 5)
        with self.subTest("its window too"):
            browser.ask("closeTab", window=1, tab=0)
            wait_for(lambda: len(browser.report()) == 1, "the window has closed", 5)
            browser.ask("minimize", window=0)
            wait_for(lambda: browser.ask("report")[0]["state"] == "minimized", "the other is put away", 5)
            activate(second, tabs[1])
            wait_for(lambda: browser.ask("report")[0]["state"] == "normal", "the other window is back", 5)


class Clicks(WithABrowser):
    """The real program, by its rows."""

    def setUp(self):
        super().setUp()
        self.program = self.enterContext(Program(arguments=["--background"]))
        self.item = self.program.item()

    def test_a_row_in_the_popover_and_one_in_the_main_window_bring_their_tabs_to_the_front(self):
        browser = self.browse()
        browser.ask("openWindow", urls=[self.url("alpha"), self.url("beta")])
        wait_for(lambda: self.titles(browser) == [["Sound"], ["Page alpha", "Page beta"]], "the pages have loaded", 30)
        self.assertTrue(browser.report()[1][0]["active"])
        with self.subTest("the popover"):
            self.item.click()
            name = self.program.accessible_name()
            self.press(name, lambda text: text.startswith("3 tabs"))
            self.press(name, lambda text: "Page beta" in text)
            wait_for(lambda: browser.report()[1][1]["active"], "the tab is current", 5)
            wait_for(lambda: browser.ask("report")[1]["focused"], "its window is in front", 5)
        with self.subTest("the main window"):
            self.assertEqual(self.program.open_again(), 0)
            self.press(name, lambda text: text.startswith("3 tabs open"))
            self.press(name, lambda text: "Page alpha" in text)
            wait_for(lambda: browser.report()[1][0]["active"], "the tab is current", 5)
            self.press(name, lambda text: "Sound" in text, visible=False)
            wait_for(lambda: browser.ask("report")[0]["focused"], "the other window is in front", 5)

    def test_the_preferences_set_the_browser_up_and_tell_when_it_is_connected(self):
        self.assertEqual(self.program.open_again(), 0)
        wait_for(self.program.windows, "a process draws the windows", 10)
        name = self.program.accessible_name()
        self.press(name, "Settings")
        a11y.find(name, name="Not set up", seconds=20, visible=False)
        self.press(name, "Set up", visible=False)
        a11y.find(name, name="Waits for its companion", seconds=20, visible=False)
        browser = self.browse(users_profile=True)
        a11y.find(name, name="Connected", seconds=20, visible=False)
        wait_for(lambda: len(browser.hosts()) == 1, "the host that runs is the one that was set up", 5)
        browser.stop()
        a11y.find(name, name="Waits for its companion", seconds=20, visible=False)
        self.press(name, "Remove", visible=False)
        a11y.find(name, name="Not set up", seconds=20, visible=False)
        self.assertFalse((browser.profile / "NativeMessagingHosts/app.quillmere.tabs.json").exists())

    @staticmethod
    def press(name, matches, visible=True):
        a11y.press(a11y.find_pressable(name, matches, 30, visible))


if __name__ == "__main__":
    unittest.main()
