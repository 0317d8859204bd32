"""knock_visitors: clients and devices that come and go by the thousand."""

import os
import select
import subprocess
from pathlib import Path


class Visitors:
    def __init__(self):
        program = Path(os.environ["QUILLMERE_BUILD"]) / "tests/knocks/knock_visitors"
        log = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "visitors.log"
        with open(log, "ab") as stream:
            self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=stream)

    @property
    def pid(self):
        return self.process.pid

    def ask(self, *words, seconds=30):
        self.process.stdin.write((" ".join(map(str, words)) + "\n").encode())
        self.process.stdin.flush()
        ready, _, _ = select.select([self.process.stdout], [], [], seconds)
        answer = self.process.stdout.readline().decode().strip() if ready else "no answer"
        if answer != "ok":
            raise AssertionError(f"visitors: {' '.join(map(str, words))}: {answer}")

    def stop(self):
        self.process.stdin.close()
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process.stdout.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()
