"""Reads C++ as far as mutants need it: the tokens of a source, and the statements and conditions they make."""

import re
from dataclasses import dataclass, field

TOKEN = re.compile(
    r"""(?P<space>\s+|//[^\n]*|/\*.*?\*/)
      | (?P<directive>^[ \t]*\#[^\n]*)
      | (?P<text>"(?:\\.|[^"\\])*")
      | (?P<character>'(?:\\.|[^'\\])')
      | (?P<number>\d[\w.]*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<operator>->|::|<=|>=|==|!=|&&|\|\||\+\+|--|[-+*/%|&^]=|.)""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

BRACKETS = {"(": ")", "[": "]", "{": "}"}
SCOPES = {"namespace", "class", "struct", "enum", "union", "template"}
BEFORE_A_BLOCK = {")", "else", "try", "do", "{", "}", ";", ":", "noexcept", "const", "override"}
HEADS = {"if", "for", "while", "switch"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int
    spaced: bool  # with white space on both sides, as .clang-format writes a binary operator


@dataclass(frozen=True)
class Statement:
    tokens: tuple[Token, ...]
    guarded: bool  # the whole body of an if, an else or a loop
    block: str  # what the innermost block belongs to: if, else, for, while, switch, try, catch or body
    last: bool  # nothing follows it in its block


@dataclass(frozen=True)
class Condition:
    head: str  # if, for or while
    tokens: tuple[Token, ...]


@dataclass(frozen=True)
class Definition:
    """A function with its body."""

    name: str
    start: int
    end: int


@dataclass
class Level:
    """A pair of brackets that is being read."""

    opener: str
    code: bool  # statements are executed here, one after the other
    block: str = ""
    begin: int = 0  # the token that begins the statement being read
    head: str = ""  # the if, else or loop that guards it
    run: list[Statement] = field(default_factory=list)


def tokenize(source: str) -> list[Token]:
    tokens = []
    for match in TOKEN.finditer(source):
        if match.lastgroup in ("space", "directive"):
            continue
        start, end = match.span()
        spaced = source[start - 1 : start].isspace() and source[end : end + 1].isspace()
        tokens.append(Token(match.lastgroup or "", match.group(), start, end, spaced))
    return without_assertions(tokens)


def without_assertions(tokens: list[Token]) -> list[Token]:
    """Leaves out static_assert, which the compiler judges and no test."""
    kept = []
    depth = 0
    asserting = False
    for token in tokens:
        asserting = asserting or token.text == "static_assert"
        if not asserting:
            kept.append(token)
        elif token.text == "(":
            depth += 1
        elif token.text == ")":
            depth -= 1
        elif token.text == ";" and depth == 0:
            asserting = False
    return kept


class Reader:
    """Finds the functions, their statements in runs that follow each other, and their conditions."""

    def __init__(self, tokens: list[Token]):
        self.tokens = tokens
        self.runs: list[list[Statement]] = []
        self.conditions: list[Condition] = []
        self.definitions: list[Definition] = []
        self._levels = [Level("{", code=False)]
        for at, token in enumerate(tokens):
            self._read(at, token)

    def _read(self, at: int, token: Token) -> None:
        level = self._levels[-1]
        if token.text in BRACKETS:
            self._open(at, token, level)
        elif token.text in BRACKETS.values():
            self._close(at)
        elif level.opener != "{":
            return
        elif token.text == ";":
            self._end_statement(at, level)
        elif token.text == "else" or (token.text == ":" and self._first(level).text in ("case", "default")):
            self._begin(level, at + 1, "else" if token.text == "else" else "")

    def _open(self, at: int, token: Token, level: Level) -> None:
        first = self._first(level).text
        before = self.tokens[at - 1].text if at else ""
        block = ""
        code = False
        is_block = token.text == "{" and self._opens_block(before, first)
        if is_block:
            block = level.head or {"try": "try", "catch": "catch"}.get(first, "body")
            code = first not in SCOPES
        opener = "{" if is_block else "(" if token.text == "{" else token.text
        self._levels.append(Level(opener, code, block, at + 1))

    @staticmethod
    def _opens_block(before: str, first: str) -> bool:
        return first in SCOPES or before in BEFORE_A_BLOCK

    def _close(self, at: int) -> None:
        closed = self._levels.pop()
        self._keep(closed)
        level = self._levels[-1]
        if closed.opener == "{":
            if closed.code and not any(outer.code for outer in self._levels):
                self._note_definition(level, at)
            if level.opener == "{":
                self._begin(level, at + 1, "")
            return
        if level.opener != "{":
            return
        first = self._first(level)
        opened_head = self.tokens[closed.begin - 2] if closed.begin >= 2 else first
        if self.tokens[closed.begin - 1].text == "(" and opened_head is first and first.text in HEADS:
            self._note_condition(first.text, tuple(self.tokens[closed.begin : at]))
            self._begin(level, at + 1, first.text)

    def _note_definition(self, level: Level, at: int) -> None:
        head = self.tokens[level.begin : at]
        opening = next((n for n, token in enumerate(head) if token.text == "("), None)
        if opening is None:
            return
        begin = opening - 1
        while begin > 0 and (head[begin].text == "::" or head[begin - 1].text in ("::", "~")):
            begin -= 1
        name = "".join(token.text for token in head[begin:opening]).removeprefix(">::")
        self.definitions.append(Definition(name, head[0].start, self.tokens[at].end))

    def _note_condition(self, head: str, tokens: tuple[Token, ...]) -> None:
        parts = split(tokens, ";")
        if head == "for":
            if len(parts) == 3:
                self.conditions.append(Condition(head, parts[1]))
        elif head != "switch":
            self.conditions.append(Condition(head, parts[-1]))

    def _end_statement(self, at: int, level: Level) -> None:
        if level.code and at > level.begin:
            following = self.tokens[at + 1].text if at + 1 < len(self.tokens) else "}"
            statement = Statement(
                tuple(self.tokens[level.begin : at + 1]), bool(level.head), level.block, following == "}"
            )
            if statement.guarded:
                self._keep(level)
            level.run.append(statement)
            if statement.guarded:
                self._keep(level)
        level.begin = at + 1
        level.head = ""

    def _begin(self, level: Level, at: int, head: str) -> None:
        self._keep(level)
        level.begin = at
        level.head = head

    def _keep(self, level: Level) -> None:
        if level.run:
            self.runs.append(level.run)
        level.run = []

    def _first(self, level: Level) -> Token:
        return self.tokens[min(level.begin, len(self.tokens) - 1)]


def split(tokens: tuple[Token, ...], separator: str) -> list[tuple[Token, ...]]:
    """Splits at the separators that stand outside all brackets."""
    parts: list[list[Token]] = [[]]
    depth = 0
    for token in tokens:
        depth += (token.text in BRACKETS) - (token.text in BRACKETS.values())
        if depth == 0 and token.text == separator:
            parts.append([])
        else:
            parts[-1].append(token)
    return [tuple(part) for part in parts]
