#!/usr/bin/python3
"""Independent parsers judge how documents of markup are read: expat, and libxml2's xmllint where it is installed.

    judge_markup.py make FOLDER COUNT [SEED]   writes documents: some well-formed, the others made of those by damage
    judge_markup.py judge FOLDER               reads them, beside each NAME.xml what the engine told in NAME.told

What a judge calls well-formed must be well-formed to the engine, with the same elements, attributes and texts. What the
engine takes besides must be damage of a kind that it is meant to take. Differences that are meant are counted by their
reason; status 1 when there is one without a reason.
"""
import collections
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import xml.parsers.expat as expat

# Judges' first complaints about documents that the engine takes: it reads files as they are, and its records know no such
# fault. Unclosed, mismatched and missing tags (3, 5, 7) and unclosed CDATA sections (20) are never among them.
TAKEN = {
    0: "a declaration cut off inside the document type",
    2: "text before the root",
    4: "a character, name, value or entity that is none",
    6: "a character cut off at the end",
    8: "an attribute twice",
    9: "text behind the root",
    10: "an attribute that takes an external entity",
    11: "an entity that is not declared",
    12: "an entity inside itself",
    13: "an entity that begins in one element and ends in another",
    14: "a reference to a character that is none",
    16: "an attribute that takes an external entity",
    17: "a processing instruction called xml",
    18: "an encoding that the judge does not know",
    19: "an encoding that the bytes are not in",
    24: "a parameter entity between declarations",
    29: "a parameter entity cut off",
    30: "a declaration not at the beginning",
    31: "a declaration of another form",
    32: "a public identifier with characters of its own",
}

UNCLOSED, CUT_OFF, BEHIND, IN_DOCTYPE = 5, 6, 9, 0
UTF16_MARKS = (b"\xff\xfe", b"\xfe\xff")
# An entity beside the five. Without a document type the judges refuse it.
DOCTYPE = re.compile(rb"""<!DOCTYPE(?:"[^"]*"|'[^']*'|[^>\["'])*(?:\[.*?\]\s*)?>""", re.S)
OWN_ENTITY = re.compile(rb"&(?!lt;|gt;|amp;|quot;|apos;|#x[0-9A-Fa-f]|#[0-9])")

NAMES = ["a", "b", "Layer", "管线", "x.y-z", "_n", "p:q", "A1", "VPipeRaidus"]
TEXTS = ["", "给水", " ", "\r\n", "\n\t", "]]", "\U0001f4a7", "t", "0.35", "é", "&amp;", "&lt;", "&gt;", "&quot;", "&apos;",
         "&#65;", "&#x6c34;", "&#x1F4A7;", "&#xD;", "&#10;", "'", '"', ">", "long text " * 9]


class Maker:
    def __init__(self, seed):
        self.random = random.Random(seed)

    def chance(self, percent):
        return self.random.random() * 100 < percent

    def text(self, without=""):
        parts = [part for part in self.random.choices(TEXTS, k=self.random.randrange(4)) if not set(part) & set(without)]
        return "".join(parts).replace("]]>", "")

    def blank(self):
        return self.random.choice(["", "", "", " ", "\n", "\r\n", "\t "])

    def attributes(self):
        out = ""
        for name in self.random.sample(NAMES, self.random.choice([0, 0, 1, 1, 2, 4])):
            quote = self.random.choice("'\"")
            out += (self.blank() + " " + name + self.blank() + "=" + self.blank() + quote +
                    self.text(quote) + quote)
        return out + self.blank()

    def aside(self):
        return self.random.choice(["<!-- c <b> & -->", "<!---->", "<?p <d> ?>", "<?q?>", "<!--\r\n-->"])

    def element(self, depth):
        name = self.random.choice(NAMES)
        tag = "<" + name + self.attributes()
        if self.chance(15):
            return tag + "/>"
        inner = self.text()
        for _ in range(self.random.choice([0, 0, 1, 2, 3]) if depth else 0):
            inner += self.element(depth - 1) + self.blank() + self.text()
            if self.chance(10):
                inner += self.random.choice([self.aside(), "<![CDATA[<x> &amp; ]]]]>", "<![CDATA[]]>"])
        return tag + ">" + inner + "</" + name + self.blank() + ">"

    def document(self):
        encoding, mark = self.random.choice([("utf-8", b""), ("utf-8", b"\xef\xbb\xbf"), ("utf-16-le", b"\xff\xfe"),
                                             ("utf-16-be", b"\xfe\xff"), ("iso-8859-1", b""), (None, b"")])
        out = ""
        if encoding == "iso-8859-1" or (encoding and self.chance(60)):
            declared = "utf-16" if "16" in encoding else encoding
            out = f"<?xml version='1.0' encoding=\"{declared}\"" + self.random.choice(["", " standalone='yes'"]) + "?>"
        out += self.blank() if out else ""
        if self.chance(20):
            out += ("<!DOCTYPE a" + self.random.choice(["", " SYSTEM 'no.dtd'", ' PUBLIC "-//x//y" "z>"']) +
                    self.random.choice(["", " [ <!ELEMENT a ANY> <!-- ]> ' --> <?p ]> ?>\n<!ENTITY e \"<b>]></b>\">"
                                            "<!ATTLIST a k CDATA '>' l CDATA #IMPLIED> ]"]) + ">\n")
        out += self.aside() if self.chance(20) else ""
        out += self.element(4)
        out += self.random.choice(["", "\r\n", self.aside()])
        return mark + out.encode(encoding or "utf-8", "xmlcharrefreplace" if encoding == "iso-8859-1" else "strict")

    def damaged(self, data):
        data = bytearray(data)
        for _ in range(self.random.choice([1, 1, 1, 2, 3])):
            at = self.random.randrange(len(data)) if data else 0
            kind = self.random.randrange(6)
            if kind == 0:
                del data[at:at + self.random.choice([1, 1, 2, 5, 40])]
            elif kind == 1:
                data[at:at] = self.random.choice([b"<", b">", b"&", b"\"", b"'", b"/", b"]", b"!", b"-", b"?", b"=", b" ",
                                                  b"</a>", b"<a>", b"<b/>", b"<!--", b"-->", b"<![CDATA[", b"]]>", b"&e;",
                                                  b"<!x", b"<!DOCTYPE a [", b"\xff", b"\0", b"\xe6", b"[", b"#", b"1"])
            elif kind == 2:
                there = self.random.randrange(at, min(len(data), at + 60) + 1)
                data[there:there] = data[at:there]
            elif kind == 3:
                data = data[:at]
            elif kind == 4 and data:
                data[at] = self.random.choice(b"<>&\"'/=!?-[] \nax0")
            else:
                signs = [i for i, byte in enumerate(data) if byte in b"<>\"'/&;]-!?"]
                if signs:
                    del data[self.random.choice(signs)]
        return bytes(data)


def make(folder, count, seed):
    maker = Maker(seed)
    for number in range(count):
        data = maker.document()
        (folder / f"{number:05}.xml").write_bytes(maker.damaged(data) if number % 2 else data)


def ascii_of(data):
    return data.replace(b"\0", b"")


def is_text(data):
    """Whether bytes that begin like UTF-16, with a mark or with a <, are UTF-16: expat does not look closely."""
    encoding = {b"\xff\xfe": "utf-16", b"\xfe\xff": "utf-16", b"<\0": "utf-16-le", b"\0<": "utf-16-be"}.get(data[:2])
    try:
        return encoding is None or data.decode(encoding) is not None
    except UnicodeDecodeError:
        return False


def escaped(text):
    return text.replace("\\", "\\\\").replace("\n", "\\n").replace("\r", "\\r")


def told_by_expat(data):
    """The lines that the engine should tell, or expat's error."""
    parser = expat.ParserCreate()
    parser.buffer_text = True
    parser.specified_attributes = True
    parser.ordered_attributes = True
    parser.UseForeignDTD(False)
    root = []
    open_elements = [root]

    def start(name, attributes):
        element = [name, list(zip(attributes[0::2], attributes[1::2])), "", []]
        open_elements[-1].append(element) if open_elements[-1] is root else open_elements[-1][3].append(element)
        open_elements.append(element)

    def text(data):
        if open_elements[-1] is not root:
            open_elements[-1][2] += data

    parser.StartElementHandler = start
    parser.EndElementHandler = lambda name: open_elements.pop()
    parser.CharacterDataHandler = text
    try:
        parser.Parse(data, True)
    except expat.ExpatError as error:
        if error.code == UNCLOSED:
            # Such a token begins with a whole <, or it is none.
            rest = data[parser.ErrorByteIndex:]
            if data[:2] in UTF16_MARKS and len(rest) < 2:
                return None, CUT_OFF
            before = re.sub(rb"\"[^\"]*\"", b"", ascii_of(data[:parser.ErrorByteIndex]))
            if b"<!DOCTYPE" in before and not re.search(rb"<[^!?]", before):
                return None, IN_DOCTYPE
            return None, UNCLOSED if rest[:2].strip(b"\0").startswith(b"<") else BEHIND
        return None, error.code
    except (LookupError, ValueError):
        return None, 18
    lines = []

    def tell(element):
        name, attributes, own, children = element
        lines.append("<" + name)
        lines.extend(f"@{key}={escaped(value)}" for key, value in attributes)
        lines.append("=" + escaped(own))
        for child in children:
            tell(child)
        lines.append(">")

    tell(root[0])
    return lines, 0


def without_blanks(lines):
    """The lines for parsers that keep line ends as they are and for those that make one kind, or blanks, of them."""
    return [re.sub(r"\\[rn]|[\t ]", "", line) for line in lines]


def libxml2(files):
    """The names of those that xmllint does not call well-formed; None when it is not installed."""
    if not shutil.which("xmllint"):
        return None
    bad = set()
    for first in range(0, len(files), 200):
        done = subprocess.run(["xmllint", "--noout", "--nonet", *files[first:first + 200]], capture_output=True)
        for line in done.stderr.decode("utf-8", "replace").splitlines():
            found = re.match(r"(.*?\.xml):\d+: .*(parser|encoding) error", line)
            if found:
                bad.add(found.group(1))
    return bad


def canonical(file):
    """A document as libxml2 writes it anew."""
    return subprocess.run(["xmllint", "--c14n", "--nonet", file], capture_output=True).stdout


def judge(folder):
    files = sorted(str(path) for path in folder.glob("*.xml"))
    refused_by_libxml2 = libxml2(files)
    counts = collections.Counter()
    faults = []
    for number, name in enumerate(files):
        data = pathlib.Path(name).read_bytes()
        verdict, *told = pathlib.Path(name[:-4] + ".told").read_text("utf-8", "surrogateescape").split("\n")[:-1]
        expected, error = told_by_expat(data)
        if expected is None:
            counts["refused by expat"] += 1
            if verdict == "good" and not is_text(data):
                counts["  of them taken: half of a pair of surrogates, which the judge takes the next sign for"] += 1
            elif verdict == "good":
                counts["  of them taken: " + TAKEN.get(error, f"error {error}")] += 1
                if error not in TAKEN:
                    faults.append(f"{name}: taken; expat says {expat.errors.messages[error]}")
        else:
            counts["well-formed to expat"] += 1
            if verdict != "good":
                faults.append(f"{name}: refused; expat takes it")
            elif not is_text(data):
                counts["  of them with surrogates that make no pair"] += 1
            elif told != expected and OWN_ENTITY.search(DOCTYPE.sub(b"", ascii_of(data), 1)):
                counts["  of them with an entity of their own, which is never expanded"] += 1
            elif told != expected:
                if without_blanks(told) == without_blanks(expected):
                    counts["  of them with line ends and blanks kept as they are, which expat makes alike"] += 1
                else:
                    pairs = zip(without_blanks(told + [""]), without_blanks(expected + [""]))
                    faults.append(f"{name}: told and expat: {next(pair for pair in pairs if pair[0] != pair[1])}")
        if refused_by_libxml2 is None:
            continue
        if name not in refused_by_libxml2:
            counts["well-formed to libxml2"] += 1
            if verdict != "good":
                counts["  of them refused by expat and the engine"] += 1
            elif number % 8 == 0 and b"<!ATTLIST" not in ascii_of(data):
                again, _ = told_by_expat(canonical(name))
                counts["  of them compared as libxml2 writes them"] += 1
                if again is None or sorted(without_blanks(again)) != sorted(without_blanks(told)):
                    faults.append(f"{name}: told otherwise than libxml2 writes it")
        elif expected is not None:
            counts["  of those well-formed to expat refused by libxml2"] += 1
    for what, count in counts.items():
        print(f"{count:6} {what}")
    for fault in faults[:20]:
        print(fault)
    print(f"{len(files)} documents, {len(faults)} differences without a reason")
    return not faults and len(files) > 0


if __name__ == "__main__":
    if sys.argv[1:2] == ["make"] and len(sys.argv) in (4, 5):
        make(pathlib.Path(sys.argv[2]), int(sys.argv[3]), int((sys.argv[4:] or ["1"])[0]))
    elif sys.argv[1:2] == ["judge"] and len(sys.argv) == 3:
        sys.exit(0 if judge(pathlib.Path(sys.argv[2])) else 1)
    else:
        sys.exit(__doc__)
