#!/usr/bin/python3
"""Makes docs/api.md, the list of what host/include offers, from the headers and their comments.

    api_list.py            writes docs/api.md
    api_list.py --check    status 1 when docs/api.md is another one, when a call or class has no comment, or when a
                           function of the host answers "not supported" and its header does not say so
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADERS = ROOT / "host" / "include"
LIST = ROOT / "docs" / "api.md"

INTRODUCTION = """# What host/include offers

Made by `scripts/api_list.py` from the headers and their comments; `scripts/check.sh` sees that it is true. Names that
stand together share what is said behind them. A call that is not here, the host does not have.
"""

# What a comment says of a call that the host has only by name.
REFUSAL = re.compile(r"\beNotImplementedYet\b|\bnot supported\b", re.IGNORECASE)

CLASS = re.compile(r"^(?:class|struct)\s+(?:[A-Z_]+_PORT\s+)?(\w+)(?:\s+final)?\s*(?::[^;{]*)?\{")
ENUM = re.compile(r"^enum\s+(?:class\s+|struct\s+)?(\w*)[^;{]*\{")
CALL = re.compile(r"([~\w]+|operator\s*(?:\(\)|\[\]|[^\s(]+|\s+[\w:*&\s]+?))\s*\(")
OUTSIDE = ("#include", "#pragma", "using ", "typedef ", "extern ", "static_assert", "friend ")


def clean(text):
    """A declaration without strings, inner comments and what its brackets hold."""
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    return re.sub(r"//[^\n]*", "", text)


def declarations(lines):
    """What stands at one level of a header: (comment, text, body); body is the lines inside of a class or a
    namespace. A comment counts for all that follows it up to a blank line or another comment."""
    comment, at = [], 0
    fresh = False
    while at < len(lines):
        line = lines[at]
        bare = line.strip()
        if not bare:
            comment = []
            at += 1
            continue
        if bare.startswith("//"):
            if not fresh:
                comment = []
            comment.append(bare[2:].strip())
            fresh = True
            at += 1
            continue
        fresh = False
        if bare.startswith("#"):
            first = at
            while lines[at].rstrip().endswith("\\"):
                at += 1
            at += 1
            yield comment, "\n".join(lines[first:at]), None
            continue
        text, body, depth = "", [], 0
        while at < len(lines):
            inside = depth > 0
            code = re.sub(r"//.*", "", re.sub(r"\"(?:\\.|[^\"\\])*\"|'(?:\\.|[^'\\])'", "", lines[at]))
            depth += code.count("{") - code.count("}")
            if inside and depth > 0:
                body.append(lines[at])
            else:
                text += lines[at] + "\n"
            at += 1
            ended = code.rstrip().endswith((";", "}", ":")) or (inside and depth == 0)
            if depth <= 0 and ended:
                break
        yield comment, text, body


def first_words(comment):
    """A comment as one line; drawings and lists in it are left out."""
    words = []
    for line in comment:
        if line.startswith(("---", "===")) or re.match(r"^-{2,}", line):
            continue
        words.append(line)
    return " ".join(" ".join(words).split())


class Scope:
    """A header or a class: calls by what is said of them, constants, and classes inside."""

    def __init__(self, name, comment):
        self.name, self.comment = name, comment
        self.rows = []  # [names, comment]
        self.scopes = []

    def add(self, name, comment):
        said = first_words(comment)
        if self.rows and self.rows[-1][1] == said:
            if name not in self.rows[-1][0]:
                self.rows[-1][0].append(name)
            return
        self.rows.append([[name], said])


def called(text):
    """The name of the function that a declaration declares; None when it declares none."""
    bare = clean(text).strip()
    bare = re.sub(r"^template\s*<.*?>\s*(?=\w)", "", bare, flags=re.S)
    bare = re.sub(r"\bnoexcept\b|\b__attribute__\s*\(\(.*?\)\)|\brequires\b[^{;]*", "", bare)
    found = CALL.search(bare)
    if found is None or "=" in bare[:found.start()]:
        return None
    return " ".join(found.group(1).split())


def read(lines, scope, is_public=True):
    for comment, text, body in declarations(lines):
        bare = clean(text).strip()
        if re.match(r"^(public|protected|private)\s*:", bare):
            is_public = not bare.startswith("private")
            bare = re.sub(r"^(public|protected|private)\s*:\s*", "", bare)
            if not bare:
                continue
        if not is_public or bare.startswith(OUTSIDE):
            continue
        if bare.startswith("#"):
            macro = re.match(r"#\s*define\s+(\w+)(\(?)", bare)
            if macro and comment and not macro.group(1).endswith("_PORT"):
                scope.add(macro.group(1), comment)
            continue
        plain = re.sub(r"^template\s*<[^;{]*?>\s*(?=class|struct)", "", bare, flags=re.S)
        if match := re.match(r"^(?:inline\s+)?namespace\s+(\w*)", bare):
            if match.group(1) not in ("detail", "gi", "db", "rx"):
                read(body, scope)
        elif match := CLASS.match(plain):
            inner = Scope(match.group(1), comment)
            scope.scopes.append(inner)
            read(body, inner, plain.startswith("struct"))
        elif match := ENUM.match(plain):
            if match.group(1):
                scope.add(match.group(1), comment)
        elif bare.startswith("ACRX_DECLARE") or bare.startswith("ACRX_"):
            continue
        elif "= delete" in bare:
            continue
        elif name := called(text):
            own = scope.name.split(" ")[-1]
            if name.lstrip("~") != own or comment:
                scope.add(name, comment)


def headers():
    found = []
    for path in sorted(HEADERS.rglob("*.h"), key=lambda path: str(path).lower()):
        lines = path.read_text(encoding="utf-8").splitlines()
        top = []
        while lines and lines[0].startswith("//"):
            top.append(lines.pop(0)[2:].strip())
        scope = Scope(str(path.relative_to(HEADERS)), top[:top.index("")] if "" in top else top)
        read(lines, scope)
        found.append(scope)
    return found


def row_text(names, said):
    return "- " + ", ".join(f"`{name}`" for name in names) + (f": {said}" if said else "")


def show(scope, depth, out):
    out.append(f"{'#' * depth} {scope.name}\n")
    said = first_words(scope.comment)
    if said:
        out.append(said + "\n")
    out += [row_text(*row) for row in scope.rows]
    if scope.rows:
        out.append("")
    for inner in scope.scopes:
        show(inner, depth + 1, out)


def refused(scope, path=""):
    """What is there by name only: (class or header, names, what is said)."""
    here = scope.name if path else ""
    for names, said in scope.rows:
        if REFUSAL.search(said):
            yield here, names, said
    for inner in scope.scopes:
        yield from refused(inner, scope.name)


def written(all_headers):
    out = [INTRODUCTION, "## Not supported\n",
           "Some or all of what these calls are asked for, the host does not have; they say so and change nothing.\n"]
    for scope in all_headers:
        for name, names, said in refused(scope):
            out.append(row_text([f"{name}::{one}" if name else one for one in names], said))
    out.append("")
    for scope in all_headers:
        if scope.rows or scope.scopes:
            show(scope, 2, out)
    return "\n".join(out).rstrip() + "\n"


def refusing_functions():
    """The functions in the host's sources that answer "not supported": (class or "", name)."""
    begin = re.compile(r"^(?:[\w:<>&*\s]+[\s*&])?(?:(\w+)::)?(~?\w+)\(")
    for path in sorted((ROOT / "host").rglob("*.cpp")):
        inside = None
        for line in path.read_text(encoding="utf-8").splitlines():
            if line[:1].isalpha():
                found = begin.match(line)
                inside = (found.group(1) or "", found.group(2)) if found else inside
            if re.search(r"return .*\beNotImplementedYet\b", line) and inside:
                yield inside


def main():
    found = headers()
    text = written(found)
    if "--check" not in sys.argv:
        LIST.write_text(text, encoding="utf-8")
        return 0
    status = 0
    if not LIST.exists() or LIST.read_text(encoding="utf-8") != text:
        print("docs/api.md is not what the headers say: scripts/api_list.py makes it")
        status = 1
    for scope in found:
        for inner in scope.scopes[1:]:  # of a header's first class its own first words tell
            if not inner.comment:
                print(f"host/include/{scope.name}: what is {inner.name} for?")
                status = 1
    told = {name for scope in found for _, names, _ in refused(scope) for name in names}
    offered = {name for scope in found for one in [scope, *scope.scopes] for names, _ in one.rows for name in names}
    for owner, name in sorted(set(refusing_functions())):
        public = name[3].lower() + name[4:] if re.match(r"sub[A-Z]", name) else name
        if not {name, public} & told and {name, public} & offered:
            print(f"host/include: {owner}::{name} answers eNotImplementedYet, its comment does not say when")
            status = 1
    return status


if __name__ == "__main__":
    sys.exit(main())
