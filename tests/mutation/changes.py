"""What is changed: a source is read as tokens, and each change is of one place in it."""
import re
from collections import namedtuple
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SOURCES = ["XML_tools/**/*.cc", "XML_tools/**/*.hh", "event_util/*.cc"]
# Changes that were looked at and make no difference that a caller could see, with their reasons.
UNSEEN = Path(__file__).with_name("unseen_changes.txt")

TOKEN = re.compile(r"""
    (?P<skip>  //[^\n]* | /\*.*?\*/ | (?<![^\n])\#(?:\\\n|[^\n])* | \bstatic_assert\b[^;]*; )
  | (?P<text>  (?:u8|[uUL])?R"(?P<fence>[^(\s]*)\(.*?\)(?P=fence)" | (?:u8|[uUL])?"(?:\\.|[^"\\])*"
             | (?:u8|[uUL])?'(?:\\.|[^'\\])+' )
  | (?P<number> (?:0[xX][0-9a-fA-F']+|\d[\d']*)(?:\.\d+)?(?:[eE][-+]?\d+)?[uUlLfF]* )
  | (?P<name>  [A-Za-z_]\w* )
  | (?P<op>    <<=|>>=|->|\+\+|--|::|&&|\|\||[-+*/%&|^=!<>]=|<<|>>|[^\s\w] )
""", re.VERBOSE | re.DOTALL)

BINARY = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="],
    ">=": [">", "<"], "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"],
    "%": ["*"], "&": ["|"], "|": ["&"], "<<": [">>"], ">>": ["<<"], "+=": ["-="], "-=": ["+="],
    "|=": ["&="], "&=": ["|="],
}
UNARY = {"!": "", "~": "", "++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true"}
EMPTY = {"", "0", "nullptr", "false", "{}"}

Token = namedtuple("Token", "kind text start end")


class Mutant(namedtuple("Mutant", "file line column start end old new")):
    def __str__(self):
        def shown(text):
            return re.sub(r"\s+", " ", text) or "(nothing)"
        return f"{self.file}:{self.line}:{self.column}: {shown(self.old)} -> {shown(self.new)}"


def tokens_of(text):
    found = [Token(m.lastgroup if m.lastgroup != "fence" else "text", m.group(), *m.span())
             for m in TOKEN.finditer(text)]
    return [token for token in found if token.kind != "skip"]


def closing(tokens, opening):
    """Index of the bracket that closes the one at index opening."""
    pairs, depth = {"(": ")", "{": "}"}, 0
    left, right = tokens[opening].text, pairs[tokens[opening].text]
    for index in range(opening, len(tokens)):
        depth += (tokens[index].text == left) - (tokens[index].text == right)
        if depth == 0:
            return index
    raise ValueError("bracket without end")


def dropped_call(tokens, index):
    """Index of the ";" of a statement at index that is nothing but a call; None for another."""
    while index + 1 < len(tokens) and tokens[index].kind == "name":
        if tokens[index + 1].text == "(":
            end = closing(tokens, index + 1) + 1
            return end if end < len(tokens) and tokens[end].text == ";" else None
        if tokens[index + 1].text not in ("::", ".", "->"):
            return None
        index += 2
    return None


def value_of(number):
    """Of a literal in C++, where a zero in front means octal."""
    digits = number.rstrip("uUlL").replace("'", "")
    return int(digits, 8) if re.fullmatch("0[0-7]+", digits) else int(digits, 0)


def changes(text):
    """(start, end, replacement) of every change to one source."""
    tokens = tokens_of(text)
    for i, token in enumerate(tokens):
        before = tokens[i - 1].text if i else ";"
        # clang-format leaves blanks at both sides of a binary operator, and of nothing else.
        spaced = text[max(token.start - 1, 0)].isspace() and text[token.end:token.end + 1].isspace()
        if token.kind == "op" and spaced and token.text in BINARY and before != "operator":
            for new in BINARY[token.text]:
                yield token.start, token.end, new
        elif token.kind == "op" and token.text in UNARY and not spaced:
            yield token.start, token.end, UNARY[token.text]
        elif token.kind == "number" and re.fullmatch(r"(0[xX][\da-fA-F']+|[\d']+)[uUlL]*", token.text):
            yield token.start, token.end, f"{value_of(token.text) + 1}"
        elif token.text in WORDS:
            yield token.start, token.end, WORDS[token.text]
        elif token.text in ("if", "while") and tokens[i + 1].text == "(":
            inside = tokens[i + 2:closing(tokens, i + 1)]
            # Comparisons and "!" are changed themselves.
            if not any(t.text in {"==", "!=", "<", "<=", ">", ">=", "&&", "||", "!", ";"} for t in inside):
                condition = text[inside[0].start:inside[-1].end]
                yield inside[0].start, inside[-1].end, f"!({condition})"
        elif token.text == "return":
            end = i + 1
            while tokens[end].text != ";":
                end = closing(tokens, end) + 1 if tokens[end].text in "({" else end + 1
            value = text[token.end:tokens[end].start].strip()
            if value not in EMPTY:
                yield tokens[i + 1].start, tokens[end].start, "{}"
        if token.kind == "name" and before in {";", "{", "}", ")", "else"}:
            end = dropped_call(tokens, i)
            if end is not None:
                yield token.start, tokens[end].start, ""


def sources():
    return sorted({str(path.relative_to(ROOT)) for pattern in SOURCES for path in ROOT.glob(pattern)})


def mutants_of(file):
    text = (ROOT / file).read_text()
    for start, end, new in sorted(changes(text)):
        line_start = text.rfind("\n", 0, start) + 1
        yield Mutant(file, text.count("\n", 0, start) + 1, start - line_start + 1, start, end,
                     text[start:end], new)


def unseen(mutant, listed):
    """The entry of the list that has the change, by the text of its line: numbers of lines do not last."""
    line = (ROOT / mutant.file).read_text().splitlines()[mutant.line - 1].strip()
    change = str(mutant).split(": ", 1)[1]
    return next((entry for entry in ((mutant.file, line, change), (mutant.file, line, "*"))
                 if entry in listed), None)


def listed_unseen():
    """(source, line, change) of each entry."""
    return {tuple(line.split(" | ")[:3]) for line in UNSEEN.read_text().splitlines() if " | " in line}
