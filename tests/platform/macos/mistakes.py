"""Compiles a source of the macOS host as the build does, after one word of it, or of a header, was changed in a copy.

Run by CTest in the tree that is compiled for macOS: mistakes.py BUILD SOURCE [FILE WORD CHANGED EXPECTED]. FILE is what
is changed, below the root of the sources. The compiler must refuse, with words that match EXPECTED; without a change it
must not refuse. So a wrong selector, cast, enumerator or key can't get as far as a program."""

import json
import re
import shlex
import subprocess
import sys
from pathlib import Path


def command_of(build, source):
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        if Path(entry["file"]) == source:
            words = shlex.split(entry["command"])
            # Nothing is written, and the cache has no use for what is compiled once.
            words = [word for word in words if not word.endswith("ccache")]
            for option in ("-o", "-MF", "-MT"):
                if option in words:
                    at = words.index(option)
                    del words[at:at + 2]
            return [word for word in words if word not in ("-MD", "-c", str(source))], entry["directory"]
    sys.exit(f"no command compiles {source}")


def main(build, root, source, change):
    command, folder = command_of(build, root / source)
    compiled = root / source
    if change:
        name, word, changed, expected = change
        text = (root / name).read_text(encoding="utf-8")
        if text.count(word) != 1:
            sys.exit(f"{name} has '{word}' {text.count(word)} times: there is not one word to change")
        copies = build / "mistakes" / re.sub(r"\W+", "_", f"{source} {name} {word} {changed}")
        copy = copies / name
        copy.parent.mkdir(parents=True, exist_ok=True)
        copy.write_text(text.replace(word, changed), encoding="utf-8")
        # Found before the file itself.
        command.insert(1, f"-I{copies}")
        if name == source:
            compiled = copy
    done = subprocess.run([*command, "-fsyntax-only", str(compiled)], cwd=folder, text=True, stderr=subprocess.PIPE,
                          check=False)
    if not change:
        if done.returncode:
            sys.exit(f"it should compile:\n{done.stderr}")
    elif done.returncode == 0:
        sys.exit(f"it compiles with '{changed}' for '{word}', but should say: {expected}")
    elif not re.search(expected, done.stderr):
        sys.exit(f"it should say '{expected}':\n{done.stderr}")


if __name__ == "__main__":
    main(Path(sys.argv[1]).resolve(), Path(__file__).resolve().parents[3], sys.argv[2], sys.argv[3:])
