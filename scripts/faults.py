"""The faults of scripts/mutants: those of the list, and those drawn from the sources."""
import difflib
import random
import re
from dataclasses import dataclass


@dataclass
class Fault:
    name: str
    file: str
    edits: list  # (start, end, new text) in the file as it is
    listed: bool

    def applied(self, text):
        for start, end, new in sorted(self.edits, reverse=True):
            text = text[:start] + new + text[end:]
        return text

    def shown(self, text):
        """The lines that change, for the report."""
        before, after = text.splitlines(), self.applied(text).splitlines()
        changes = list(difflib.unified_diff(before, after, self.file, n=0, lineterm=""))[2:]
        return f"{self.file}\n    " + "\n    ".join(changes)


# The list


def pattern(text):
    """Finds the text whatever white space is between its tokens."""
    tokens = re.findall(r"\w+|[^\w\s]", text)
    found = r"\b" if tokens[0][0].isalnum() else ""
    for before, token in zip([""] + tokens, tokens):
        joint = r"\s+" if before[-1:].isalnum() and token[0].isalnum() else r"\s*"
        found += (joint if before else "") + re.escape(token)
    return re.compile(found + (r"\b" if tokens[-1][-1].isalnum() else ""))


def read_list(path):
    """Yields name, file and (old, new) edits; the format is told at the head of the list."""
    name, file, edits = None, None, []
    for number, line in enumerate(path.read_text().splitlines() + ["= end -"], 1):
        mark, _, text = line.partition(" ")
        if mark == "=" and len(text.split()) == 2:
            if name:
                yield name, file, [tuple(edit) for edit in edits]
            (name, file), edits = text.split(), []
        elif mark == "-" and text.strip():
            edits.append([text, ""])
        elif mark == "+" and edits:
            edits[-1][1] += ("\n" if edits[-1][1] else "") + text
        elif mark == "~" and text.count(" <> ") == 1:
            a, b = text.split(" <> ")
            edits += [[a, b], [b, a]]
        elif line and not line.startswith("#"):
            raise SystemExit(f"{path}:{number}: not understood: {line}")


def located(name, file, edits, sources):
    """The fault in its file or, when that has moved, in the one that has all its old texts."""
    spans, counts = {}, {}
    for path, text in sources.items():
        matches = [list(pattern(old).finditer(text)) for old, _ in edits]
        counts[path] = [len(found) for found in matches]
        if all(len(found) == 1 for found in matches):
            spans[path] = [(*found[0].span(), new) for found, (_, new) in zip(matches, edits)]
    if file not in spans and len(spans) == 1:
        print(f"{name}: {file} has moved to {next(iter(spans))}")
        file = next(iter(spans))
    if file in spans:
        return Fault(name, file, spans[file], True)
    if spans:
        raise LookupError(f"{name}: {file} has moved, and the old text is in {', '.join(spans)}")
    for index, (old, _) in enumerate(edits):
        here = counts.get(file, [0] * len(edits))[index]
        total = sum(count[index] for count in counts.values())
        if here != 1:
            raise LookupError(f"{name}: {here} times in {file} and {total} times in all: {old}")
    raise LookupError(f"{name}: no file has all its old texts")


def read_faults(path, sources):
    """The listed faults, and an error for each that does not fit the sources."""
    faults, errors = [], []
    for name, file, edits in read_list(path):
        try:
            faults.append(located(name, file, edits, sources))
        except LookupError as error:
            errors.append(str(error))
    names = [fault.name for fault in faults]
    errors += [f"{name}: two faults have this name" for name in set(names) if names.count(name) > 1]
    return faults, errors


# Generated faults

COMMENT = r"//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*"
STRING = r'R"\((?:.*?)\)"|"(?:\\.|[^"\\\n])*"|' + r"'(?:\\.|[^'\\\n])'"
TURNED = {"<": ("<=", ">="), ">": (">=", "<="), "<=": ("<",), ">=": (">",), "==": ("!=",),
          "!=": ("==",)}
STATEMENT = re.compile(r"^ +((?:\+\+|--|\*)?(?!return\b|delete\b|using\b)[\w:.>\[\]-]+"
                       r"(?:\(.*\)|\+\+|--| [-+*/|&]?= [^;\n]*));$", re.M)
ROW = re.compile(r"^ *\{[^,{}]*(, [^{}]*)\},?\n *\{[^,{}]*(, [^{}]*)\},?$", re.M)
ARGUMENTS = re.compile(r"(\w+)\(([^(),;{}]+), ([^(),;{}]+)(?=[,)])")
NUMBER = re.compile(r"(?<![\w.'])\d[\d']*(?:(\.\d*)?(e-?\d+)?)(?=[LU]*\b|$)(?![\w'.]*x)")


def masked(text):
    """The code alone, each character in its place; strings keep their quotes."""
    def mask(match):
        token = match.group()
        if token[0] in "\"'R":
            return '"' + "S" * (len(token) - 2) + '"'
        return re.sub(r"[^\n]", " ", token)
    return re.sub(STRING + "|" + COMMENT, mask, text, flags=re.S | re.M)


def closing(code, at):
    depth = 0
    for i in range(at, len(code)):
        depth += (code[i] == "(") - (code[i] == ")")
        if depth == 0:
            return i
    return at


def sites(text):
    """All (kind, edits) of a file."""
    code = masked(text)
    for m in re.finditer(r" (<=|>=|==|!=|<|>) ", code):
        for other in TURNED[m[1]]:
            yield "comparison", [(*m.span(1), other)]
    for m in NUMBER.finditer(code):
        digits = m[0].replace("'", "")
        if m[1] or m[2]:
            yield "constant", [(*m.span(), str(round(float(digits) * 1.1, 12) or 0.1))]
        elif digits == "0" or digits[0] != "0":
            for other in {int(digits) + 1, max(int(digits) - 1, 0)} - {int(digits)}:
                yield "constant", [(*m.span(), str(other))]
    for m in STATEMENT.finditer(code):
        before = code[:m.start()].rstrip()
        if before.endswith((";", "{", "}", ")", ":", "else")):
            yield "statement", [(m.start(1), m.end(1), "")]
    for m in re.finditer(r"\bif \(", code):
        end = closing(code, m.end() - 1)
        if not re.search(r" = |;", code[m.end():end]):
            yield "condition", [(m.end(), end, f"!({text[m.end():end]})")]
    for m in re.finditer(r" ([+-]) ", code):
        line = code[code.rfind("\n", 0, m.start()) + 1:code.find("\n", m.end())]
        if '"' not in line and "string" not in line:
            yield "sign", [(*m.span(1), "-" if m[1] == "+" else "+")]
    for at in [m.start() for m in re.finditer(r"^ *\{", code, re.M)]:
        m = ROW.match(code, at)
        if m and text[m.start(1):m.end(1)] != text[m.start(2):m.end(2)]:
            yield "rows", [(*m.span(1), text[m.start(2):m.end(2)]),
                           (*m.span(2), text[m.start(1):m.end(1)])]
    for m in ARGUMENTS.finditer(code):
        a, b = text[m.start(2):m.end(2)], text[m.start(3):m.end(3)]
        is_declaration = any(re.search(r"[\w>&*] [\w&*]+$", part) for part in (a, b))
        if m[1] not in ("min", "max", "for", "if", "while") and a != b and not is_declaration:
            yield "arguments", [(*m.span(2), b), (*m.span(3), a)]


CORE = ("libVOK", "modules", "OnlineCoach")


def area_of(file):
    """Headers are few among the drawn: each costs the compilation of nearly everything."""
    if not file.startswith(CORE):
        return "tools" if file.startswith("tools/") and file.endswith(".cpp") else None
    return "core" if file.endswith(".cpp") else "headers"


def drawn(sources, seed):
    """Without end: the faults of a seed, in the same order for the same sources."""
    choices, seen, dice = {}, set(), random.Random(seed)
    for file, text in sorted(sources.items()):
        for kind, edits in sites(text) if area_of(file) else ():
            choices.setdefault(area_of(file), {}).setdefault(kind, []).append((file, edits))
    while True:
        area = dice.choices(["core", "tools", "headers"], [85, 10, 5])[0]
        kind = dice.choice(sorted(choices[area]))
        file, edits = dice.choice(choices[area][kind])
        if (file, str(edits)) in seen:
            continue
        seen.add((file, str(edits)))
        start = edits[0][0]
        line = sources[file].count("\n", 0, start) + 1
        column = start - sources[file].rfind("\n", 0, start)
        yield Fault(f"{kind}:{file}:{line}:{column}:{edits[0][2][:8].strip()}", file, edits, False)
