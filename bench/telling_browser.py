"""A browser's companion without the browser: starts the host program that it is given and tells it so many tabs, all of
which change with every line of its input. Run under an executable named like a browser's, it counts as that browser."""

import json
import os
import struct
import subprocess
import sys


def frame(message):
    text = json.dumps(message, ensure_ascii=False, separators=(",", ":")).encode()
    return struct.pack("=I", len(text)) + text


def receive(stream):
    return json.loads(stream.read(struct.unpack("=I", stream.read(4))[0]))


def tabs(count, turn):
    return [[100 + each, int(each % 50 == turn % 50), f"Turn {turn} of the page with the number {each} – a title as long as most",
             f"https://example.org/some/path/{each}?turn={turn}&more=of+what+addresses+have"] for each in range(count)]


def main():
    count = int(sys.argv[2])
    with subprocess.Popen([sys.argv[1]], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as host:
        host.stdin.write(frame({"companion": os.environ["COMPANION_VERSION"]}))
        host.stdin.flush()
        while "listen" not in receive(host.stdout):
            pass
        windows = [[window, [100 + each for each in range(count) if each % 5 == window]] for window in range(5)]
        host.stdin.write(frame({"tabs": tabs(count, 0), "windows": windows}))
        host.stdin.flush()
        print(host.pid, flush=True)
        turn = 0
        while sys.stdin.readline():
            turn += 1
            host.stdin.write(frame({"tabs": tabs(count, turn)}))
            host.stdin.flush()
        host.stdin.close()


if __name__ == "__main__":
    main()
