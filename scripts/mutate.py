#!/usr/bin/python3
"""mutate.py FLOOR [N] [--seed S] [--jobs J] [--tests FOLDER]: how many faults the tests of a floor catch.

Seeds N (100) single faults into a copy of the floor: a condition turned round, an operator or a constant changed, a statement
dropped. All are compiled at once, each as a choice by the number in ZEF_FAULT (scripts/fault.h), so one build of the floor's
libraries serves them all. The test programs of FOLDER (build/release/bin, built from the same sources) then take these libraries
instead of their own: once for each fault, until a test fails, first those in whose names the source's name occurs. What takes five
times as long as it should is caught too. Faults that do not compile are left out. Prints the survivors with their lines, then the
score. Nothing of the tree itself is touched; copy and build lie in build/mutate.
"""
import argparse
import os
import random
import re
import shlex
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import check_tidy

root = Path(__file__).resolve().parent.parent
tree = root / "build/mutate"
build = tree / "build"
parts = ("base", "sys", "ui", "host", "siblings", "module", "clients", "cmake", "share", "scripts", "CMakeLists.txt", "CMakePresets.json")
libraries = {"base": ["zef_sys"], "sys": ["zef_sys"], "ui": ["zef_ui"], "host": ["zef_host"],
             "siblings": ["zef_kernal", "zef_pipewire", "zef_public"], "module": ["zef_pipeSystem"], "clients": ["zef_client"]}
changed_into = {"==": "!=", "!=": "==", "&&": "||", "||": "&&", "<": "<=", ">": ">=", "<=": "<", ">=": ">", "+": "-", "-": "+",
                "*": "/", "/": "*", "+=": "-=", "-=": "+="}


def faults_of(source, entry):
    """Every fault that can be seeded into a source: (kind, begin, end, what stands there then but for its number)."""
    from clang.cindex import CursorKind, Index, TranslationUnit

    directory, command = entry
    words = [word for word in shlex.split(command)[1:] if not word.startswith("-Wno-")]
    unit = Index.create().parse(str(root / source), args=[f"-working-directory={directory}"] + words,
                                options=TranslationUnit.PARSE_NONE)
    text, found = (root / source).read_bytes(), []
    fixed = {CursorKind.ENUM_CONSTANT_DECL, CursorKind.STATIC_ASSERT, CursorKind.TEMPLATE_TYPE_PARAMETER, CursorKind.TEMPLATE_NON_TYPE_PARAMETER}

    def part(cursor):
        begin, end = cursor.extent.start.offset, cursor.extent.end.offset
        return begin, end, text[begin:end].decode()

    def operator(cursor, children):
        """The operator between two operands, and their texts."""
        (begin, left_end, left), (right_begin, end, right) = part(children[0]), part(children[1])
        between = text[left_end:right_begin].decode()
        if left_end <= right_begin and between.strip() in changed_into and left and right:
            yield between.strip(), begin, end, left, right

    def dropped(cursor):
        begin, end, what = part(cursor)
        if what and text[end:].lstrip().startswith(b";"):
            found.append(("statement", begin, end, f"zef_fault(@) ? void() : void({what})"))

    def walk(cursor, within):
        kind, children = cursor.kind, list(cursor.get_children())
        begin, end, what = part(cursor)
        if kind in fixed or (kind == CursorKind.VAR_DECL and re.search(r"\bconstexpr\b", what)):
            return
        if kind == CursorKind.VAR_DECL:  # an array's bound is no value
            children = [child for child in children if text[child.extent.end.offset:][:1] != b"]"]
        if kind == CursorKind.CASE_STMT:
            children = children[1:]
        if kind == CursorKind.IF_STMT and what.startswith("if constexpr"):
            children = children[1:]
        if kind == CursorKind.COMPOUND_STMT:
            within = True
        if within:
            at, to, condition = part(children[0]) if children else (0, 0, "")
            if (kind in (CursorKind.IF_STMT, CursorKind.CONDITIONAL_OPERATOR) and condition and children[0].kind.is_expression()
                    and text[to:].lstrip()[:1] in (b")", b"?")):
                found.append(("condition", at, to, f"(zef_fault(@) != bool({condition}))"))
            if kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) and len(children) == 2:
                for sign, at, to, left, right in operator(cursor, children):
                    found.append(("condition" if sign in ("&&", "||", "==", "!=") else "operator", at, to,
                                  f"(zef_fault(@) ? ({left} {changed_into[sign]} {right}) : ({left} {sign} {right}))"))
            if kind == CursorKind.INTEGER_LITERAL and re.fullmatch(r"\d+[uUlL]*", what):
                found.append(("constant", begin, end, f"(zef_fault(@) ? {what} + 1 : {what})"))
            if kind == CursorKind.CXX_BOOL_LITERAL_EXPR and what in ("true", "false"):
                found.append(("constant", begin, end, f"(zef_fault(@) != {what})"))
            if kind == CursorKind.COMPOUND_STMT:
                for child in children:
                    inner = list(child.get_children())
                    while child.kind == CursorKind.UNEXPOSED_EXPR and len(inner) == 1:
                        child, inner = inner[0], list(inner[0].get_children())
                    if child.kind in (CursorKind.CALL_EXPR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) or (
                            child.kind == CursorKind.BINARY_OPERATOR):
                        dropped(child)
        for child in children:
            walk(child, within)

    for cursor in unit.cursor.get_children():
        if cursor.location.file is not None and cursor.location.file.name == str(root / source):
            walk(cursor, False)
    return source, found


def seeded(text, faults):
    """The text of a source with faults, whose places do not overlap: (number, fault)."""
    for number, (_, begin, end, changed) in sorted(faults, key=lambda row: -row[1][1]):
        flat = changed.replace("@", str(number)).encode()
        text = text[:begin] + flat + text[end:]
    return text


def chosen(floor, count, chance):
    """So many faults as (source, fault), of each kind as many as there can be."""
    commands = check_tidy.compile_commands()
    sources = {name: (root / name).stat().st_size for name in sorted(commands) if name.startswith(floor + "/")}
    if not sources:
        sys.exit(f"no floor named {floor}")
    drawn = chance.choices(list(sources), weights=list(sources.values()), k=2 * count)
    with ThreadPoolExecutor(1) as pool:
        places = dict(pool.map(lambda name: faults_of(name, commands[name]), sorted(set(drawn))))
    taken, kinds = [], ("condition", "operator", "constant", "statement")
    for at, name in enumerate(drawn):
        wanted = kinds[at % len(kinds)]
        free = [fault for fault in places[name] if all(
            name != other or fault[2] <= begin or end <= fault[1] for other, (_, begin, end, _) in taken)]
        free = [fault for fault in free if fault[0] == wanted] or free
        if free and len(taken) < count:
            taken.append((name, chance.choice(free)))
    return taken


def write(path, content):
    """Only what differs is written: the rest need not be compiled again."""
    if not path.exists() or path.read_bytes() != content:
        path.write_bytes(content)


def build_all(floor, faults):
    """Builds the copy with the faults {number: (source, fault)}; those that do not compile are taken out of them."""
    for part in parts:
        kept = [] if not faults else [f"--exclude=/{source}" for source in {source for source, _ in faults.values()}]
        subprocess.run(["rsync", "-rlptc", "--delete", *kept, str(root / part), str(tree)], check=True, cwd=tree)
    sources = {source for source, _ in faults.values()}
    while True:
        for source in sources:
            here = [(number, fault) for number, (name, fault) in faults.items() if name == source]
            write(tree / source, seeded((root / source).read_bytes(), here))
        if not (build / "build.ninja").exists():
            told = subprocess.run(["cmake", "-G", "Ninja", "-S", tree, "-B", build, "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_COMPILER=g++",
                                   f"-DCMAKE_CXX_FLAGS=-w -include {tree}/scripts/fault.h",
                                   "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG"], capture_output=True, text=True)
            if told.returncode:
                sys.exit(told.stdout + told.stderr)
        told = subprocess.run(["ninja", "-C", build, "-k0", *libraries[floor]], capture_output=True, text=True)
        if told.returncode == 0:
            return
        wrong = {(os.path.relpath(os.path.normpath(build / file), tree), int(line))
                 for file, line in re.findall(r"(?m)^(\S+?\.cpp):(\d+):\d+: (?:fatal )?(?:error|note)", told.stdout)}
        bad = [number for number, (source, fault) in faults.items()
               if any((source, line) in wrong for line in lines_of(source, fault))]
        if not bad:
            sys.exit(told.stdout[-4000:])
        for number in bad:
            del faults[number]


def lines_of(source, fault):
    text = (root / source).read_bytes()
    return range(text[:fault[1]].count(b"\n") + 1, text[:fault[2]].count(b"\n") + 2)


def run(program, number, wanted, seconds):
    """The status of the tests with a fault on, and how long they took."""
    began = time.monotonic()
    command = ["timeout", "-k", "5", str(seconds), str(program), f"--gtest_filter={wanted}", "--gtest_fail_fast"]
    told = subprocess.run(command, cwd=build, env=dict(os.environ, ZEF_FAULT=str(number), LD_LIBRARY_PATH=str(build / "bin")), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL)
    return told.returncode, time.monotonic() - began


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("floor")
    parser.add_argument("count", nargs="?", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--tests", type=Path, default=root / "build/release/bin")
    asked = parser.parse_args()
    if asked.floor not in libraries:
        sys.exit(f"no library holds the floor {asked.floor}: take one of {' '.join(libraries)}")
    program = (asked.tests / f"{asked.floor}_tests").resolve()
    if not program.exists():
        sys.exit(f"{program} is missing: ./test quick {asked.floor} builds it")
    tree.mkdir(parents=True, exist_ok=True)
    faults = dict(enumerate(chosen(asked.floor, asked.count, random.Random(asked.seed))))
    build_all(asked.floor, faults)
    status, taken = run(program, -1, "*", 3600)
    if status:
        sys.exit(f"{asked.floor}_tests do not pass without a fault")
    limit = int(5 * taken) + 10

    def caught(row):
        number, (source, fault) = row
        near = f"*{''.join(word.capitalize() for word in Path(source).stem.split('_'))}*"
        if run(program, number, near, limit)[0] or run(program, number, f"*-{near}", limit)[0]:
            return True
        text = (root / source).read_text()
        there = (root / source).read_bytes()[fault[1]:fault[2]].decode()
        line = text.split("\n")[lines_of(source, fault)[0] - 1].strip()
        print(f"{source}:{lines_of(source, fault)[0]}: survived ({fault[0]} {' '.join(there.split())})\n    {line}", flush=True)
        return False

    with ThreadPoolExecutor(asked.jobs) as pool:
        told = list(pool.map(caught, faults.items()))
    print(f"{asked.floor}: {sum(told)} of {len(told)} faults caught (seed {asked.seed})")
    return 0


if __name__ == "__main__":
    sys.exit(main())
