#!/usr/bin/env python3
"""source_groups.py MOST KEPT SOURCE...: which of the sources can be compiled as one, MOST of them in a group; prints each with the
number of its group. The file KEPT holds what was printed last: sources stay in the groups they had as long as they can, so that a
new source or a new name costs the groups it comes into and no others.

Compiling sources as one reads the headers that they share once. Two sources stand apart when one uses a name that the other
keeps to itself (in an unnamed namespace, or static): the word would then mean something else, or two things. A function that a
source keeps stands in the way of calls and of types alone: a variable of its name hides it, as it should.
"""
import re
import sys
from pathlib import Path


def code(text):
    """A source without comments and without what stands in quotes."""
    text = re.sub(r'R"(\w*)\(.*?\)\1"', '""', text, flags=re.S)
    return re.sub(r'"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/', " ", text, flags=re.S)


def kept_names(text):
    """What a source declares for itself alone: the names at the line's start between `namespace {` and its end; calls as "name("."""
    inside = re.findall(r"^namespace \{\n(.*?)^\} // namespace$", text, re.S | re.M)
    lines = code("".join(inside)).split("\n") + re.findall(r"^static (.*)", text, re.M)
    names = set()
    for line in lines:
        if not re.match(r"[A-Za-z]", line) or re.match(r"TEST|using namespace|using [\w:]+;|namespace |static_assert", line):
            continue
        declared = re.match(r"(?:struct|class|enum class|enum|using)\s+(\w+)()", line) or re.search(r"(\w+)\s*(?:(\()|[={;[]|$)", line)
        if declared:
            names.add(declared.group(1) + (declared.group(2) or ""))
    return names


def used_names(text):
    """The words of a source but for members and what another namespace is asked for; calls, and what may be types, also as "name("."""
    found = re.findall(r"(?<![.\w>:])(\w+)\b(?=(\s*[({<>&*]|\s+\w)?)", code(text))
    return {word for name, use in found for word in (name, name + "(" if use else name)}


def groups(sources, most, number_of=None):
    """Lists of at most so many sources that can be compiled as one; number_of: the numbers of the groups that sources had."""
    number_of = number_of or {}
    texts = {source: Path(source).read_text(encoding="utf-8") for source in sources}
    kept = {source: kept_names(texts[source]) for source in sources}
    used = {source: used_names(texts[source]) for source in sources}
    found = [[] for _ in range(max(number_of.values(), default=-1) + 1)]

    def fits(source, group):
        return len(group) < most and all(
            kept[source].isdisjoint(used[other]) and kept[other].isdisjoint(used[source]) for other in group)

    for source in sorted(sources, key=lambda source: (source not in number_of, source)):
        had = [found[number_of[source]]] if source in number_of else []
        group = next((group for group in had + found if fits(source, group)), None)
        if group is None:
            found.append(group := [])
        group.append(source)
    return found


def main():
    most, kept, sources = int(sys.argv[1]), Path(sys.argv[2]), sys.argv[3:]
    number_of = {}
    if kept.exists():
        lines = [line.rpartition("=") for line in kept.read_text(encoding="utf-8").splitlines()]
        number_of = {source: int(number) for source, _, number in lines if source in sources}
    told = "".join(f"{source}={number}\n" for number, group in enumerate(groups(sources, most, number_of)) for source in group)
    kept.parent.mkdir(parents=True, exist_ok=True)
    kept.write_text(told, encoding="utf-8")
    print(told, end="")


if __name__ == "__main__":
    main()
