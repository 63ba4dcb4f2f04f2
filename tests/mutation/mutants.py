"""Makes the mutants of a C++ source: small faults, each of which a good test notices."""

import re
from collections import Counter
from collections.abc import Iterator
from dataclasses import dataclass

from cpp_source import BRACKETS, Reader, Statement, Token, tokenize

OPERATORS = {
    "<": ("<=", ">="),
    "<=": ("<", ">"),
    ">": (">=", "<="),
    ">=": (">", "<"),
    "==": ("!=",),
    "!=": ("==",),
    "+": ("-",),
    "-": ("+",),
    "*": ("+",),
    "+=": ("-=",),
    "&&": ("||",),
    "||": ("&&",),
}
# These ask neither the host nor the clock, so nobody can see in which order they are called.
SILENT_CALLS = {
    *("static_cast", "move", "data", "size", "view", "c_str", "strlen", "fill_n", "erase", "reserve"),
    *("FieldText", "TwoDigits", "DateMinusDate"),
}
DECLARATION_BEGINS = {"const", "constexpr", "static", "auto", "using"}
STATEMENTS_WITHOUT_MUTANT = {"using", "throw"}


# File, function, text before and text after.
Identity = tuple[str, str, str, str]


@dataclass(frozen=True)
class Edit:
    kind: str
    start: int
    end: int
    text: str


@dataclass(frozen=True)
class Mutant:
    """One fault. File, function and the text before and after still name it when its line has moved."""

    kind: str
    file: str
    line: int
    function: str
    before: str
    after: str
    source: str

    @property
    def identity(self) -> Identity:
        return self.file, self.function, self.before, self.after

    def __str__(self) -> str:
        return f"{self.file}:{self.line} {self.function} ({self.kind})\n  - {self.before}\n  + {self.after}"


def mutants_of(file: str, source: str) -> list[Mutant]:
    tokens = tokenize(source)
    reader = Reader(tokens)
    edits = [*token_edits(tokens), *ternary_edits(tokens), *structure_edits(source, reader)]
    seen: Counter[tuple[str, str, str]] = Counter()
    mutants = []
    for edit in sorted(set(edits), key=lambda edit: (edit.start, edit.end, edit.kind, edit.text)):
        function = function_at(reader, edit.start)
        before, after = lines_around(source, edit)
        seen[function, before, after] += 1
        nth = seen[function, before, after]
        mutants.append(
            Mutant(
                edit.kind,
                file,
                source.count("\n", 0, edit.start) + 1,
                function if nth == 1 else f"{function} #{nth}",
                before,
                after,
                source[: edit.start] + edit.text + source[edit.end :],
            )
        )
    return mutants


def lines_around(source: str, edit: Edit) -> tuple[str, str]:
    begin = source.rfind("\n", 0, edit.start) + 1
    end = source.find("\n", edit.end)
    before = source[begin:end]
    after = source[begin : edit.start] + edit.text + source[edit.end : end]
    return " ".join(before.split()), " ".join(after.split())


def function_at(reader: Reader, at: int) -> str:
    return next((function.name for function in reader.definitions if function.start <= at < function.end), "")


def token_edits(tokens: list[Token]) -> Iterator[Edit]:
    for token in tokens:
        if token.kind == "operator" and token.spaced:
            for other in OPERATORS.get(token.text, ()):
                yield Edit("operator", token.start, token.end, other)
        if token.text == "!":
            yield Edit("negation", token.start, token.end, "")
        if token.kind == "number":
            digits, suffix = re.fullmatch(r"(\d+)(\w*)", token.text).groups()
            yield Edit("constant", token.start, token.end, f"{int(digits) + 1}{suffix}")
            yield Edit("constant", token.start, token.end, f"({int(digits)}{suffix} - 1)")
        if token.text in ("true", "false"):
            yield Edit("constant", token.start, token.end, "false" if token.text == "true" else "true")
        if token.kind == "character":
            yield Edit("constant", token.start, token.end, "'~'")
        if token.kind == "text":
            yield Edit("text", token.end - 1, token.end - 1, "~")


def ternary_edits(tokens: list[Token]) -> Iterator[Edit]:
    for at, token in enumerate(tokens):
        if token.text != "?":
            continue
        begin = at
        depth = 0
        while depth or tokens[begin - 1].text not in ("return", "=", "(", ",", "{", ";", "?", ":"):
            begin -= 1
            depth += (tokens[begin].text in BRACKETS.values()) - (tokens[begin].text in BRACKETS)
        for forced in ("true", "false"):
            yield Edit("condition", tokens[begin].start, tokens[at - 1].end, forced)


def structure_edits(source: str, reader: Reader) -> Iterator[Edit]:
    for condition in reader.conditions:
        for forced in ("true", "false") if condition.head == "if" else ("false",):
            yield Edit("condition", condition.tokens[0].start, condition.tokens[-1].end, forced)
    for run in reader.runs:
        for statement in run:
            if can_be_dropped(statement, source):
                yield Edit("dropped", statement.tokens[0].start, statement.tokens[-1].end, ";")
        for first, second in zip(run, run[1:]):
            if calls(first) and calls(second):
                yield swapped(source, first, second)


def swapped(source: str, first: Statement, second: Statement) -> Edit:
    start, end = first.tokens[0].start, second.tokens[-1].end
    between = source[first.tokens[-1].end : second.tokens[0].start]
    texts = [source[statement.tokens[0].start : statement.tokens[-1].end] for statement in (second, first)]
    return Edit("order", start, end, between.join(texts))


def can_be_dropped(statement: Statement, source: str) -> bool:
    first = statement.tokens[0].text
    if first in STATEMENTS_WITHOUT_MUTANT:
        return False
    if first == "return":
        # Where control runs off a function's end, anything may happen, and no test can tell.
        return statement.guarded or statement.block == "if" or (statement.block == "switch" and not statement.last)
    if first == "break":
        return not statement.last
    name = declared_name(statement)
    return name is None or len(re.findall(rf"\b{name}\b", source)) == 1


def declared_name(statement: Statement) -> str | None:
    """The name that a declaration declares; none for other statements."""
    head = []
    for token in statement.tokens:
        if token.text in ("(", "=", "{", ";", "["):
            break
        head.append(token)
    if not head or head[0].text in ("return", "break", "continue", "new", "delete"):
        return None
    if head[0].text in DECLARATION_BEGINS:
        return head[-1].text
    is_declaration = (
        len(head) > 1 and head[-1].kind == "name" and (head[-2].kind == "name" or head[-2].text in (">", "*", "&"))
    )
    return head[-1].text if is_declaration else None


def calls(statement: Statement) -> bool:
    if statement.tokens[0].text in ("return", "break", "continue", "using"):
        return False
    return any(
        token.kind == "name" and following.text == "(" and token.text not in SILENT_CALLS
        for token, following in zip(statement.tokens, statement.tokens[1:])
    )
