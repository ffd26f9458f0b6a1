"""Finds the small changes that can be made to a C++ source, one at a time, and makes them.

A mutation is one change of one statement: a comparison, a constant, a condition, two neighbouring statements, a call
that is left out, two arguments. Sources are read line by line, with comments and texts blanked out first; what spans
several lines is left alone. A mutation may turn out not to compile; whoever runs it finds out and takes another.
"""
import dataclasses
import re


@dataclasses.dataclass(frozen=True)
class Mutation:
    """One change: the lines [first, last] of a file (counted from 1) become `after`."""

    path: str
    first: int
    last: int
    kind: str
    before: tuple
    after: tuple

    def describe(self):
        """The change as people read it: place, kind, the old and the new lines."""
        lines = [f"{self.path}:{self.first}: {self.kind}"]
        lines += [f"  - {line.strip()}" for line in self.before]
        lines += [f"  + {line.strip()}" for line in self.after if line.strip()]
        return "\n".join(lines)


_TOKENS = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"([^ ()\\]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\'', re.DOTALL
)


def blanked(text):
    """The text with comments, strings and characters replaced by spaces of the same length; line ends stay."""
    return _TOKENS.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), text)


# What each comparison becomes. Spaces on both sides tell them from template brackets, arrows and shifts.
_COMPARISONS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">"}
_COMPARISON = re.compile(r"(?<= )(==|!=|<=|>=|<|>)(?= )")
_NUMBER = re.compile(r"(?<![\w.'])(?:0[xX][0-9A-Fa-f']+|\d[\d']*)[uUlL]{0,3}(?![\w.'])")
_CONDITION = re.compile(
    r"^(\s*(?:\} else )?(?:if|while) \()(?!constexpr)(.+)(\) (?:\{|return\b.*;|continue;|break;)|\))\s*$"
)
_TERNARY = re.compile(r"^(\s*return )([^;?]+)( \? [^;]+;)\s*$")
_CALL = re.compile(r"^\s*(?:[A-Za-z_]\w*(?:\(\))?(?:\.|->|::))*[A-Za-z_]\w*\(.*\);\s*$")
_STATEMENT = re.compile(
    r"^(\s+)(?!return\b|break\b|continue\b|using\b|throw\b|case\b|const\b|constexpr\b|auto\b|static\b|delete\b|"
    r"public\b|private\b)[A-Za-z_*(+-].*;\s*$"
)
_DECLARATION = re.compile(r"^\s*(?:[A-Za-z_][\w:]*(?:<[^;=]*>)?[&*]?\s+)+[&*]?[A-Za-z_]\w*\s*(?:=|;|\{|\()")
_ARGUMENTS = re.compile(r"\b[A-Za-z_]\w*\(([^(),]+), ([^(),]+)\)")


def _balanced(code):
    return (
        code.count("(") == code.count(")") and code.count("{") == code.count("}") and code.count("[") == code.count("]")
    )


def _is_statement(code):
    return bool(_STATEMENT.match(code)) and _balanced(code) and not _DECLARATION.match(code)


def _changed_number(text):
    digits = text.rstrip("uUlL")
    suffix = text[len(digits) :]
    plain = digits.replace("'", "")
    if plain.lower().startswith("0x"):
        return f"0x{int(plain, 16) + 1:X}{suffix}"
    if len(plain) > 1 and plain.startswith("0"):
        return None  # octal: file modes and the like
    return f"{int(plain) + 1}{suffix}"


def _line_mutations(path, number, line, code):
    """All mutations of one line; `code` is the line with comments and texts blanked out."""

    def made(kind, changed):
        return Mutation(path, number, number, kind, (line,), (changed,))

    if code.lstrip().startswith(("#", "template", "using ", "static_assert")):
        return
    for found in _COMPARISON.finditer(code):
        replacement = _COMPARISONS[found.group()]
        yield made("comparison", line[: found.start()] + replacement + line[found.end() :])
    for found in _NUMBER.finditer(code):
        replacement = _changed_number(found.group())
        if replacement:
            yield made("constant", line[: found.start()] + replacement + line[found.end() :])
    for pattern in (_CONDITION, _TERNARY):
        found = pattern.match(code)
        # `if (a; b)` and `if (T x = y)` declare something, and `while` may end nowhere: the time limit is for that.
        if (
            found
            and _balanced(found.group(2))
            and ";" not in found.group(2)
            and not re.search(r"(?<![=!<>])=(?!=)", found.group(2))
        ):
            start, end = found.span(2)
            yield made("negated condition", f"{line[:start]}!({line[start:end]}){line[end:]}")
    if _CALL.match(code) and _balanced(code) and not _DECLARATION.match(code):
        indent = line[: len(line) - len(line.lstrip())]
        yield made("dropped call", f"{indent};")
    for found in _ARGUMENTS.finditer(code):
        (a, b), (c, d) = found.span(1), found.span(2)
        if line[a:b].strip() != line[c:d].strip() and not _DECLARATION.match(code[: found.start()] + "x("):
            yield made("swapped arguments", line[:a] + line[c:d] + line[b:c] + line[a:b] + line[d:])


def mutations(path, text):
    """Every mutation of a source, in the order of its lines."""
    lines = text.split("\n")
    codes = blanked(text).split("\n")
    for index, (line, code) in enumerate(zip(lines, codes)):
        if not code.strip():
            continue
        yield from _line_mutations(path, index + 1, line, code)
        if index + 1 < len(lines) and _is_statement(code) and _is_statement(codes[index + 1]):
            same_depth = len(code) - len(code.lstrip()) == len(codes[index + 1]) - len(codes[index + 1].lstrip())
            if same_depth and line != lines[index + 1]:
                pair = (line, lines[index + 1])
                yield Mutation(path, index + 1, index + 2, "swapped statements", pair, pair[::-1])


def applied(text, mutation):
    """The source with the mutation made."""
    lines = text.split("\n")
    if tuple(lines[mutation.first - 1 : mutation.last]) != mutation.before:
        raise ValueError(f"{mutation.path} is not the text that the mutation was found in")
    lines[mutation.first - 1 : mutation.last] = mutation.after
    return "\n".join(lines)
