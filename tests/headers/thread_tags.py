"""Every public function below platform/ tells which thread may call it.

A tag counts in the comment of a function, of a class around it, or at the head of its file; see docs/threads.md. An
override has the tags of what it overrides, and so has what answers for a port. Functions that are defaulted, deleted or
friends are nobody's to call. Run with a folder, or with nothing, to test the reader itself."""

import re
import sys
import unittest
from pathlib import Path

TAG = re.compile(r"\[(main|engine|audio|background|loop|host|any)( but [a-z]+)?\]")
ACCESS = re.compile(r"(public|protected|private|Q_SIGNALS)\s*:")


def untagged(text):
    """The functions of a header that have no tag, each as (line, declaration)."""
    head, rest = re.match(r"((?:\s*//[^\n]*\n)*)(.*)", text, re.S).groups()
    if TAG.search(head):
        return []
    reader = _Reader(rest, head.count("\n") + 1)
    reader.read()
    return reader.found


def _without_templates(text):
    before = None
    while before != text:
        before, text = text, re.sub(r"<[^<>()]*(\([^()]*\)[^<>()]*)*>", "", text)
    return text


def _is_function(statement):
    statement = _without_templates(statement.replace("->", ""))
    if re.search(r"\b(typedef|using|friend|static_assert|extern)\b|=\s*(delete|default)\s*$", statement):
        return False
    parenthesis, equals = statement.find("("), re.sub(r"\boperator\s*=", "operator_", statement).find("=")
    return parenthesis > 0 and not 0 <= equals < parenthesis


class _Scope:
    def __init__(self, kind, is_public=True, is_told=False):
        self.kind, self.is_public, self.is_told = kind, is_public, is_told


class _Reader:
    """Goes through declarations; what stands in bodies and initializers is skipped."""

    def __init__(self, text, line):
        self.text, self.line = text, line
        self.scopes = [_Scope("namespace")]
        self.comment, self.statement, self.start = "", "", line
        self.found = []

    def read(self):
        tokens = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\])*"|R"XML\(.*?\)XML"|#[^\n]*(?:\\\n[^\n]*)*|\n|.', re.S)
        depth = 0
        for token in tokens.findall(self.text):
            if depth == 0:
                depth += self._take(token)
            elif token in "{}":
                depth += 1 if token == "{" else -1
                if depth == 0 and self.ends_statement:
                    self._reset()
            self.line += token.count("\n")

    def _take(self, token):
        """One token of a declaration; 1 where it opens a body to be skipped."""
        if token.startswith(("//", "/*")):
            if not self.statement.strip():
                self.comment += token
        elif token.startswith("#"):
            self._reset()
        elif token == ";":
            self._declared()
        elif token == "{":
            return self._opened()
        elif token == "}":
            self.scopes.pop()
            self._reset()
        else:
            # A blank line parts a comment from what follows it.
            if token == "\n" and not self.statement.strip() and self.text_before_is_blank:
                self.comment = ""
            if not self.statement.strip():
                self.start = self.line
            self.statement += token
            access = ACCESS.fullmatch(self.statement.strip())
            if access:
                self.scopes[-1].is_public = access.group(1) in ("public", "Q_SIGNALS")
                self._reset()
        self.text_before_is_blank = token == "\n" or (token.isspace() and getattr(self, "text_before_is_blank", False))
        return 0

    text_before_is_blank = False
    ends_statement = True

    def _opened(self):
        statement = _without_templates(self.statement)
        is_told = self.scopes[-1].is_told or bool(TAG.search(self.comment))
        if re.search(r"\bnamespace\b", statement):
            self.scopes.append(_Scope("namespace"))
        elif re.match(r"\s*(class|struct|union)\b", statement) and "(" not in statement:
            self.scopes.append(_Scope("class", statement.split()[0] != "class", is_told or not self.scopes[-1].is_public))
        else:
            # A body ends its function; an initializer is followed by more of the statement.
            self.ends_statement = _is_function(self.statement) or bool(re.search(r"\benum\b", statement))
            if self.ends_statement:
                self._check()
            return 1
        self._reset()
        return 0

    def _declared(self):
        self._check()
        self._reset()

    def _check(self):
        scope = self.scopes[-1]
        if not scope.is_public or scope.is_told or TAG.search(self.comment) or not _is_function(self.statement):
            return
        declaration = " ".join(self.statement.split())
        if not re.search(r"\boverride\b", declaration):
            self.found.append((self.start, declaration))

    def _reset(self):
        self.comment, self.statement = "", ""


class Reader(unittest.TestCase):
    def names(self, text):
        return [declaration for _, declaration in untagged("// Head.\n#pragma once\n" + text)]

    def test_a_function_without_a_tag_is_found(self):
        self.assertEqual(self.names("/// Tells.\nint f(int a = 3);\n"), ["int f(int a = 3)"])

    def test_a_tag_in_its_comment_is_enough(self):
        self.assertEqual(self.names("/// Tells. [any but main]\nint f();\n"), [])

    def test_a_tag_of_another_is_not(self):
        self.assertEqual(self.names("/// Tells. [any]\nint f();\nint g();\n"), ["int g()"])

    def test_a_comment_before_a_blank_line_is_another_s(self):
        self.assertEqual(self.names("// All below: [any].\n\nint f();\n"), ["int f()"])

    def test_the_tag_of_a_class_is_its_members(self):
        self.assertEqual(self.names("/// [main]\nclass A {\n public:\n  A();\n  void f();\n};\nvoid g();\n"), ["void g()"])

    def test_every_public_member_of_a_class_without_one_is_found(self):
        text = """class A final : public B {
 public:
  explicit A(int a) : a_(a), b_{1} {}
  ~A() = default;
  A(const A&) = delete;
  /// [any]
  [[nodiscard]] int get() const { return a_; }
  int set(std::function<void(int)> f) { if (f) { f(1); } return 0; }
  void take() override;
  std::function<void(int)> told;
  static constexpr int four = four_(4);

 private:
  void hidden();
  int a_ = 0;
};
"""
        self.assertEqual(self.names(text), ["explicit A(int a) : a_(a), b_", "int set(std::function<void(int)> f)"])

    def test_values_and_aliases_are_no_functions(self):
        self.assertEqual(self.names("using F = std::function<void(int)>;\nstruct S {\n  std::function<void()> f;\n"
                                    "  int a{3};\n  friend bool operator==(const S&, const S&) = default;\n};\n"
                                    "inline constexpr int b = code(\"abcd\");\nenum class E { a, b };\n"), [])

    def test_the_head_of_a_file_speaks_for_all(self):
        self.assertEqual(untagged("// Head. Pure: [any].\n#pragma once\nint f();\n"), [])

    def test_the_line_is_that_of_the_declaration(self):
        self.assertEqual(untagged("// Head.\n#pragma once\n\n/// Tells.\nint f();\n"), [(5, "int f()")])


if __name__ == "__main__":
    if len(sys.argv) < 2:
        unittest.main()
    folder = Path(sys.argv[1])
    # The stand-ins for a platform's own headers are called as that platform says.
    headers = sorted(header for header in folder.rglob("*.h") if "declarations" not in header.parts)
    problems = [f"{header}:{line}: no thread tag: {declaration}" for header in headers
                for line, declaration in untagged(header.read_text(encoding="utf-8"))]
    print("\n".join(problems) or f"every function below {folder} tells its thread")
    sys.exit(bool(problems))
