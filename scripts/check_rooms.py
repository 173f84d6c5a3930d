#!/usr/bin/env python3
"""check_rooms.py: rooms stay small. No source of the product has more than 500 lines, and no more than three files (a
header and its source count as one) include each other in a circle. One line for each breach; status 1 when there is any.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FLOORS = ("base", "sys", "ui", "host", "siblings", "module", "clients", "apps")
MOST_LINES = 500
LARGEST_CIRCLE = 3


def circles(arrows):
    """The sets of names that all lead to each other, by the names that each name leads to."""
    number, lowest, stack, found = {}, {}, [], []

    def visit(name):
        number[name] = lowest[name] = len(number)
        stack.append(name)
        for target in arrows.get(name, ()):
            if target not in number:
                visit(target)
            if target in stack:
                lowest[name] = min(lowest[name], lowest[target])
        if lowest[name] == number[name]:
            at = stack.index(name)
            found.append(stack[at:])
            del stack[at:]

    for name in arrows:
        if name not in number:
            visit(name)
    return found


def main():
    texts = {str(path.relative_to(ROOT)): path.read_text(encoding="utf-8")
             for floor in FLOORS for path in sorted((ROOT / floor).rglob("*")) if path.suffix in (".h", ".cpp")}
    breaches = [f"{name}: {lines} lines" for name, text in texts.items() if (lines := text.count("\n")) > MOST_LINES]
    arrows = {}
    for name, text in texts.items():
        targets = arrows.setdefault(name.rsplit(".", 1)[0], set())
        for included in re.findall(r'#include "([^"]+)"', text):
            target = included if included in texts else "host/include/" + included
            if target in texts:
                targets.add(target.rsplit(".", 1)[0])
    breaches += ["a circle: " + ", ".join(sorted(circle)) for circle in circles(arrows) if len(circle) > LARGEST_CIRCLE]
    print("\n".join(breaches) or f"{len(texts)} files, none too long, no large circle")
    return 1 if breaches else 0


sys.setrecursionlimit(10000)
sys.exit(main())
