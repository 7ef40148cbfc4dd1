"""Small changes of the product, drawn by seed: each changes one place of one file."""

import dataclasses
import math
import pathlib
import random
import re

from named import NAMED

# The product, longest folder first. What a seed draws is shared out by their sizes.
FOLDERS = ["app", "basebandd", "client", "messages", "metrics", "platform", "tools/metricctl", "viewer"]
LEAST = 3  # of each folder


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    kind: str
    start: int  # in the file's text
    end: int
    after: str

    def applied(self, text):
        return text[: self.start] + self.after + text[self.end :]

    def line(self, text):
        return text.count("\n", 0, self.start) + 1

    def told(self, text):
        """The lines before and after, each as one line."""
        first = text.rfind("\n", 0, self.start) + 1
        last = text.find("\n", self.end)
        last = len(text) if last < 0 else last
        before = text[first:last]
        after = text[first : self.start] + self.after + text[self.end : last]
        return " ".join(before.split()), " ".join(after.split())


# ---- Reading C++ as far as is needed -----------------------------------------------------------

_NOISE = re.compile(
    r"""//[^\n]*|\bstatic_assert\([^;]*;|/\*.*?\*/|R"(?P<mark>[^(\s"]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|(?<![\w'])'(?:\\.|[^'\\\n])+'"""
    r"""|^[ \t]*\#[ \t]*(?:include|pragma|if|ifdef|ifndef|else|elif|endif|undef)\b[^\n]*""",
    re.S | re.M | re.X,
)


def code_of(text):
    """The text with the same length, without comments, directives, compile-time checks and what
    stands in quotes."""

    def blank(match):
        found = match.group()
        kept = lambda c: c if c == "\n" else " "
        if found[0] in "\"'" or found.startswith('R"'):
            return found[0] + "".join(map(kept, found[1:-1])).replace(" ", "_") + found[-1]
        return "".join(map(kept, found))

    return _NOISE.sub(blank, text)


def _elements(code, start):
    """The elements between the bracket at `start` and its match, as (start, end); and the match."""
    depth, first, found = 0, start + 1, []
    for at in range(start, len(code)):
        c = code[at]
        if c in "([{":
            depth += 1
        elif c in ")]}":
            depth -= 1
        if (c == "," and depth == 1) or depth == 0:
            inner = code[first:at]
            if inner.strip():
                found.append((first + len(inner) - len(inner.lstrip()), first + len(inner.rstrip())))
            first = at + 1
        if depth == 0:
            return found, at
    return found, len(code)


_ROW_LINE = re.compile(
    r"^[ \t]*(?P<row>PB_[A-Z0-9]+(?P<args>\([^;{}#]*?\))(?=\n)|(?:inline )?(?:static )?constexpr [\w:]+ \w+ ?(?:=|(?=\{)) ?(?P<value>[^;()]*);"
    r"|static constexpr [\w:]+ \w+ = (?P<other>[^;()]*);)",
    re.M,
)


def tables_of(code):
    """The tables of a file: each a list of rows, each row its place and its columns' places."""
    tables = []
    for brace in re.finditer(r"\{", code):
        rows, _ = _elements(code, brace.start())
        braced = [r for r in rows if code[r[0]] == "{"]
        if len(rows) >= 2 and len(braced) == len(rows) and ";" not in code[brace.start() : rows[-1][1]]:
            tables.append([(r, _elements(code, r[0])[0]) for r in rows])
    lines, last = [], None
    for match in _ROW_LINE.finditer(code):
        row = match.span("row")
        if match["args"]:
            columns = [(row[0], match.start("args"))] + _elements(code, match.start("args"))[0]
        else:
            group = "value" if match["value"] is not None else "other"
            columns = [match.span(group)]
        if last is not None and code[last : row[0]].strip() == "" and code.count("\n", last, row[0]) < 4:
            lines.append((row, columns))
        else:
            if len(lines) > 1:
                tables.append(lines)
            lines = [(row, columns)]
        last = row[1]
    if len(lines) > 1:
        tables.append(lines)
    return tables


# ---- Tables ------------------------------------------------------------------------------------

_NUMBER = re.compile(r"(?<![\w.'#])(?:0[xX][0-9A-Fa-f']+|\d[\d']*(?:\.\d+)?)(?=[uUlLfF]*\b)(?!\.)")


def _off_by_one(literal, sign):
    plain = literal.replace("'", "")
    if plain[:2] in ("0x", "0X"):
        value = int(plain, 16) + sign
        return None if value < 0 else "0x%0*X" % (len(plain) - 2, value)
    if "." in plain:
        places = len(plain.split(".")[1])
        return "%.*f" % (places, float(plain) + sign * 10**-places)
    value = int(plain) + sign
    return None if value < 0 else str(value)


def _numbers(code, start, end, kind, file):
    for match in _NUMBER.finditer(code, start, end):
        if code[max(0, match.start() - 10) : match.start()].endswith((") = ", ") const = ")):
            continue  # a pure virtual function
        for sign in (1, -1):
            after = _off_by_one(match.group(), sign)
            if after is not None:
                yield Mutant(file, kind, match.start(), match.end(), after)


def _other_letter(letter):
    if letter.isdigit():
        return str((int(letter) + 1) % 10)
    return chr(ord(letter) + 1) if letter.lower() != "z" else chr(ord(letter) - 1)


def table_mutants(file, text, code, tables):
    for table in tables:
        for i, (row, columns) in enumerate(table):
            yield from _numbers(code, *row, "table number", file)
            for match in re.finditer(r"\b(true|false)\b", code[row[0] : row[1]]):
                start = row[0] + match.start()
                after = "false" if match.group() == "true" else "true"
                yield Mutant(file, "table flag", start, start + len(match.group()), after)
            for match in re.finditer(r'"[^"\n]*"', code[row[0] : row[1]]):
                for at in range(row[0] + match.start() + 1, row[0] + match.end() - 1):
                    if text[at].isascii() and text[at].isalnum() and text[at - 1] != "\\":
                        yield Mutant(file, "table name", at, at + 1, _other_letter(text[at]))
            is_constant = code[row[0]] != "{" and not code.startswith("PB_", row[0])
            end = row[1]
            if is_constant:
                end = None  # its users would not compile
            elif code[end : end + 1] == ",":
                end += 1
            elif i > 0 and code[row[0]] == "{":
                end = None  # the last row's comma stands before it
            if end is not None:
                yield Mutant(file, "table row dropped", row[0], end, "")
            if i + 1 == len(table):
                continue
            other, others = table[i + 1]
            here, there = text[row[0] : row[1]], text[other[0] : other[1]]
            if here == there:
                continue
            if not is_constant:  # whose place is no matter
                yield Mutant(file, "table rows swapped", row[0], other[1],
                             there + text[row[1] : other[0]] + here)
            for mine, theirs in zip(columns, others):
                a, b = text[mine[0] : mine[1]], text[theirs[0] : theirs[1]]
                if a == b:
                    continue
                yield Mutant(file, "table column", mine[0], mine[1], b)
                yield Mutant(file, "table column", theirs[0], theirs[1], a)


# ---- Operators ---------------------------------------------------------------------------------

# Kind, what stands there, what comes instead. Binary operators stand between blanks.
_OPERATORS = [
    ("ordering", r"(?<=\S) (<) (?=\S)", "<="),
    ("ordering", r"(?<=\S) (<=)(?=\s)", "<"),
    ("ordering", r"(?<=\S) (>) (?=\S)", ">="),
    ("ordering", r"(?<=\S) (>=)(?=\s)", ">"),
    ("equality", r"(?<=\S) (==)(?=\s)", "!="),
    ("equality", r"(?<=\S) (!=)(?=\s)", "=="),
    ("arithmetic", r"(?<=[\w)\]]) (\+) (?=[\w(*])", "-"),
    ("arithmetic", r"(?<=\S) (-)(?=\s)", "+"),
    ("arithmetic", r"(?<=\S) (\*)(?=\s)", "/"),
    ("arithmetic", r"(?<=\S) (/)(?=\s)", "*"),
    ("arithmetic", r"(?<=\S) (%)(?=\s)", "/"),
    ("arithmetic", r"(?<=\S) (\+=)(?=\s)", "-="),
    ("arithmetic", r"(?<=\S) (-=)(?=\s)", "+="),
    ("bits", r"(?<=[\w)\]]) (<<) (?=[\w(~])", ">>"),
    ("bits", r"(?<=[\w)\]]) (>>) (?=[\w(~])", "<<"),
    ("bits", r"(?<=\S) (&)(?=\s)", "|"),
    ("bits", r"(?<=\S) (\|)(?=\s)", "&"),
    ("bits", r"(?<=\S) (\^)(?=\s)", "|"),
    ("bits", r"(?<=\()(~)|(?<=[&|=] )(~)", ""),
    ("logic", r"(?<=\S) (&&)(?=\s)", "||"),
    ("logic", r"(?<=\S) (\|\|)(?=\s)", "&&"),
    ("negation", r"(?<=[\s(\[])(!)(?=[\w(:*])", ""),
    ("step", r"(\+\+)(?=[\w(*])|(?<=[\w)\]])(\+\+)", "--"),
    ("step", r"(--)(?=[\w(*])|(?<=[\w)\]])(--)", "++"),
    ("extreme", r"\bstd::(?:ranges::)?(min)\b", "max"),
    ("extreme", r"\bstd::(?:ranges::)?(max)\b", "min"),
    ("extreme", r"\b(min_element)\b", "max_element"),
    ("extreme", r"\b(max_element)\b", "min_element"),
    ("extreme", r"\b(lower_bound)\b", "upper_bound"),
    ("extreme", r"\b(upper_bound)\b", "lower_bound"),
    ("extreme", r"\b(all_of)\b", "any_of"),
    ("extreme", r"\b(any_of)\b", "all_of"),
    ("extreme", r"\b(none_of)\b", "any_of"),
    ("rounding", r"\bstd::(floor)\b", "ceil"),
    ("rounding", r"\bstd::(ceil)\b", "floor"),
    ("rounding", r"\bstd::(trunc)\b", "round"),
    ("rounding", r"\bstd::(ll?round)\b", "int64_t"),
    ("truth", r"\b(true)\b", "false"),
    ("truth", r"\b(false)\b", "true"),
]
_OPERATORS = [(kind, re.compile(pattern), after) for kind, pattern, after in _OPERATORS]


def _is_alone(code, at):
    """Whether no other && or || stands beside this one: the compiler asks for brackets where the two
    are mixed, so that changing one of several would not compile."""
    for step in (-1, 1):
        depth, i = 0, at
        while 0 <= (i := i + step) < len(code):
            c = code[i]
            if c in ("([{" if step > 0 else ")]}"):
                depth += 1
            elif c in (")]}" if step > 0 else "([{"):
                depth -= 1
            if depth < 0 or (depth == 0 and c in ";?,"):
                break
            if depth == 0 and code[i : i + 2] in ("&&", "||") and abs(i - at) > 1:
                return False
    return True


def operator_mutants(file, text, code, tables):
    inside = [row for table in tables for row, _ in table]
    covered = bytearray(len(text))
    for start, end in inside:
        covered[start:end] = b"\1" * (end - start)
    for kind, pattern, after in _OPERATORS:
        for match in pattern.finditer(code):
            group = next(g for g in range(1, pattern.groups + 1) if match[g] is not None)
            if kind == "logic" and not _is_alone(code, match.start(group)):
                continue
            if not covered[match.start(group)]:
                yield Mutant(file, kind, match.start(group), match.end(group), after)
    # A division that truncates, rounded.
    for match in re.finditer(r"(?<=return )([\w.>*()-]+) / ([\w']+)(?=;)", code):
        a, b = match.groups()
        if not covered[match.start()] and "." not in b:
            yield Mutant(file, "rounding", match.start(), match.end(), f"({a} + {b} / 2) / {b}")
    for mutant in _numbers(code, 0, len(code), "constant", file):
        if not covered[mutant.start]:
            yield mutant


# ---- The draw ----------------------------------------------------------------------------------


def sources(root):
    """The product's C++ files: name -> text."""
    found = {}
    for folder in FOLDERS + ["tools"]:
        for path in sorted((pathlib.Path(root) / folder).glob("*" if folder == "tools" else "**/*")):
            if path.suffix in (".cc", ".h"):
                found[path.relative_to(root).as_posix()] = path.read_text(encoding="utf-8")
    return found


def folder_of(file):
    return next((f for f in FOLDERS if file.startswith(f + "/")), "tools/metricctl")


class Draw:
    """What may be drawn from these sources, and what a seed draws."""

    def __init__(self, files, count=60):
        self.files = files
        self.count = count
        self.places = {f: {"table": {}, "code": {}} for f in FOLDERS}
        self.sizes = dict.fromkeys(FOLDERS, 0)
        for file, text in files.items():
            code = code_of(text)
            tables = tables_of(code)
            folder = folder_of(file)
            self.sizes[folder] += sum(1 for line in code.splitlines() if line.strip())
            for part, made in (("table", table_mutants), ("code", operator_mutants)):
                for mutant in made(file, text, code, tables):
                    self.places[folder][part].setdefault(mutant.kind, []).append(mutant)

    def named(self, seed):
        """One of each group."""
        groups = {}
        for group, file, before, after in NAMED:
            groups.setdefault(group, []).append((file, before, after))
        chosen = []
        for group, rows in groups.items():
            file, before, after = rows[(seed - 1) % len(rows)]
            text = self.files[file]
            if text.count(before) != 1:
                raise SystemExit(f"named.py: '{before}' stands {text.count(before)} times in {file}")
            start = text.index(before)
            chosen.append(Mutant(file, f"named: {group}", start, start + len(before), after))
        return chosen

    def shares(self, count):
        """How many mutants each folder gives: at least `LEAST`, else by size."""
        rest = count - LEAST * len(FOLDERS)
        total = sum(self.sizes.values())
        exact = {f: rest * self.sizes[f] / total for f in FOLDERS}
        shares = {f: LEAST + math.floor(exact[f]) for f in FOLDERS}
        by_rest = sorted(FOLDERS, key=lambda f: (math.floor(exact[f]) - exact[f], f))
        for folder in by_rest[: count - sum(shares.values())]:
            shares[folder] += 1
        return shares

    def slots(self, seed):
        """The mutants of a seed, as a list of rows: where one does not compile or changes nothing
        that can be seen, the next of its row takes its place."""
        named = self.named(seed)
        rows = [iter([mutant]) for mutant in named]
        for folder, share in self.shares(self.count - len(named)).items():
            order = random.Random(f"{seed} {folder}")
            kinds = {}
            for part, places in self.places[folder].items():
                kinds[part] = sorted(places)
                order.shuffle(kinds[part])
            drawn = []  # part and kind of each
            for i in range(share):
                part = "table" if i % 5 in (0, 2) and kinds["table"] else "code"
                turn = sum(one == part for one, _ in drawn)
                drawn.append((part, kinds[part][turn % len(kinds[part])]))
            for i, (part, kind) in enumerate(drawn):
                rows.append(self._row(seed, folder, part, kind, drawn[:i].count((part, kind)),
                                      drawn.count((part, kind))))
        return rows

    def _row(self, seed, folder, part, kind, turn, turns):
        """Of the folder's places of this kind each `turns`th; behind them any of the folder."""
        order = random.Random(f"{seed} {folder} {kind}")
        places = self.places[folder][part]
        pool = list(places[kind])
        order.shuffle(pool)
        yield from pool[turn::turns]
        others = [place for other in sorted(places) if other != kind for place in places[other]]
        order.shuffle(others)
        yield from others[turn::turns]

    def first(self, seed):
        """What a seed draws when everything compiles."""
        return [next(row) for row in self.slots(seed)]
