#!/usr/bin/python3
"""What five hundred tabs cost that all change once a second: the host program and the mixer together, over what the mixer
costs with the same browser silent. The companion is played; all from its pipe on is real."""

import json
import os
import subprocess
import sys
import threading
import time
from pathlib import Path

from quillmere_e2e.agent import Agent
from quillmere_e2e.players import Player, copied_executable
from quillmere_e2e.processes import processor_seconds, processor_share
from quillmere_e2e.waiting import wait_for
from watched import BUILD, figure

CHROME = "com.google.Chrome"
TABS = 500
SECONDS = 15
VERSION = json.loads((Path(__file__).parents[1] / "extension/manifest.json").read_text(encoding="utf-8"))["version"]


def main():
    browser = [str(copied_executable(os.path.realpath(sys.executable), "google-chrome")),
               str(Path(__file__).parent / "telling_browser.py"), str(BUILD / "app/quillmere-tabs"), str(TABS)]
    environment = os.environ | {"PYTHONHOME": sys.base_prefix, "COMPANION_VERSION": VERSION}
    with Agent() as agent, Player("pw-play", "Chromium", 700, binary="chromium", desktop_entry=False), \
            subprocess.Popen(browser, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, env=environment) as companion:
        wait_for(lambda: CHROME in agent.state()["live"], "the browser is live", 30)
        host = int(companion.stdout.readline())

        def listed():
            return agent.ask("tabs")["tabs"].get(CHROME, [])

        wait_for(lambda: len(listed()) == TABS, "all tabs are listed", 20)
        idle = processor_share([agent.process.pid], SECONDS)[agent.process.pid]

        # One turn a second, whatever this process is late.
        before, start = {pid: processor_seconds(pid) for pid in (host, agent.process.pid)}, time.monotonic()
        for turn in range(1, SECONDS + 1):
            companion.stdin.write("\n")
            companion.stdin.flush()
            threading.Event().wait(max(0.0, start + turn - time.monotonic()))
        wall = time.monotonic() - start
        share = {pid: 100 * (processor_seconds(pid) - before[pid]) / wall for pid in before}
        wait_for(lambda: any(f"Turn {SECONDS} " in tab["title"] for tab in listed()), "the last turn is listed", 20)
        companion.stdin.close()
    figure(f"{TABS} tabs that change once a second, host and mixer", sum(share.values()) - idle, "% of a core",
           target="value < 1")
    figure("of that the host program", share[host], "% of a core")


if __name__ == "__main__":
    main()
