"""No source outside platform/ and app/ asks the preprocessor, or a page its engine, which platform it is built for.

What differs between hosts is behind a port, or is picked in app/. Kinds of processors may be asked for: their
instructions are no platform. Run with the root of the sources, or with nothing, to test the reader itself."""

import re
import sys
import unittest
from pathlib import Path

# The parts that may have to know. Tests of a host are built for that host alone.
ALLOWED = ("platform/", "app/", "tests/platform/", "tests/headers/")
FOLDERS = ("core", "runtime", "platform", "engine", "integrations", "state", "remote", "shell", "views", "windows", "app",
           "bench", "tests")

PLATFORM = (r"__linux(?:__)?\b|\blinux\b|__gnu_linux__|__unix(?:__)?\b|__APPLE__|__MACH__|\bTARGET_OS_\w+"
            r"|\b_?_?WIN(?:32|64)(?:__)?\b|_MSC_VER|__ANDROID__|__(?:Free|Net|Open)BSD__|__GLIBC__"
            r"|\bQ_OS_\w+|\bQUILLMERE_(?:LINUX|MACOS)\b")
DIRECTIVE = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b((?:.*\\\n)*.*)", re.M)
ASKS = re.compile(PLATFORM + r'|__has_include\s*\(\s*[<"](?:sys/|linux/|mach/|windows|TargetConditionals|dispatch/)')
IN_A_PAGE = re.compile(r"\bQt\.platform\.os\b")


def branches(text, is_page=False):
    """The lines that ask, each as (line, text)."""
    found = []
    for match in (IN_A_PAGE if is_page else DIRECTIVE).finditer(text):
        if is_page or ASKS.search(match.group(1)):
            start = match.start() + len(match.group(0)) - len(match.group(0).lstrip())
            found.append((text.count("\n", 0, start) + 1, match.group(0).strip()))
    return found


class Reader(unittest.TestCase):
    def test_every_way_to_ask_for_a_platform_is_found(self):
        for line in ("#if defined(__linux__)", "#ifdef __APPLE__", "#  ifndef _WIN32", "# elif __unix__", "#ifdef Q_OS_MACOS",
                     "#if TARGET_OS_OSX", "#if FOO && \\\n    defined(__linux__)", "#if __has_include(<sys/epoll.h>)"):
            self.assertEqual(len(branches("int a;\n" + line + "\n#endif\n")), 1, line)

    def test_processors_options_and_words_in_comments_are_no_platform(self):
        for line in ("#if defined(__x86_64__)", "#ifdef QUILLMERE_THREAD_CHECKS", "// #if is not asked on __linux__",
                     "#include <linux/input.h>", "#if defined(__cpp_lib_to_chars)", "#ifdef __SANITIZE_THREAD__"):
            self.assertEqual(branches(line + "\n"), [], line)

    def test_a_page_may_not_ask_either(self):
        self.assertEqual(len(branches("Item {\n  visible: Qt.platform.os === \"osx\"\n}\n", is_page=True)), 1)

    def test_the_line_is_that_of_the_directive(self):
        self.assertEqual(branches("int a;\n\n  #if defined(__linux__)\n#endif\n"), [(3, "#if defined(__linux__)")])


if __name__ == "__main__":
    if len(sys.argv) < 2:
        unittest.main()
    root = Path(sys.argv[1])
    sources = [(path, path.relative_to(root).as_posix()) for folder in FOLDERS for path in sorted((root / folder).rglob("*"))
               if path.suffix in (".h", ".cpp", ".mm", ".def", ".qml", ".js")]
    if not sources:
        sys.exit(f"no sources below {root}")
    problems = [f"{name}:{line}: asks for a platform: {text}" for path, name in sources if not name.startswith(ALLOWED)
                for line, text in branches(path.read_text(encoding="utf-8"), path.suffix in (".qml", ".js"))]
    print("\n".join(problems) or f"no source of {len(sources)} asks which platform it is built for")
    sys.exit(bool(problems))
