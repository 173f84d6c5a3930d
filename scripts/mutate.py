#!/usr/bin/env python3
"""mutate.py FLOOR [N] [--seed S] [--jobs J]: how many faults the tests of a floor catch.

Seeds N (100) single faults into the sources of FLOOR, one at a time and each into a copy of the tree: a condition turned
round, an operator or a constant changed, a statement dropped. Each is built, and the floor's tests run over it, first those
in whose names the source's name occurs. Prints the survivors with their lines, then the score. Faults that do not compile
are replaced by others. Nothing of the tree itself is touched; copies and builds lie in build/mutate.
"""
import argparse
import itertools
import os
import queue
import random
import re
import shutil
import subprocess
import sys
import threading
from pathlib import Path

root = Path(__file__).resolve().parent.parent
place = root / "build/mutate"
parts = ("base", "sys", "ui", "host", "siblings", "module", "clients", "apps", "tests", "cmake", "share", "samples",
         "CMakeLists.txt", "CMakePresets.json")

# What is replaced by what, by kind. Comparisons are told from templates, shifts and arrows by the blanks around them.
kinds = {
    "condition": [(r" == ", " != "), (r" != ", " == "), (r" && ", " || "), (r" \|\| ", " && "),
                  (r"(?<=[(\s])!(?=[a-zA-Z_(])", ""), (r"(?<=\bif \()(?=[^;]*\)( \{)?$)", "!(")],
    "operator": [(r" < ", " <= "), (r" > ", " >= "), (r" <= ", " < "), (r" >= ", " > "), (r" \+ ", " - "), (r" - ", " + "),
                 (r" \* ", " / "), (r" \+= ", " -= ")],
    "constant": [(r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"(?<![\w.\"'])(\d+)(?![\w.\"'])", "one more")],
    "statement": [(r"^\s*[\w.>:()\[\]*-]+\(.*\);$", "drop"), (r"^\s*[\w.>\[\]-]+ = .*;$", "drop"), (r"\bbreak;", ";"),
                  (r"\bcontinue;", ";")],
}


def strip(line):
    """The line with texts and comments blanked out, so that faults go into code alone."""
    line = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])*\'', lambda m: m[0][0] + "\0" * (len(m[0]) - 2) + m[0][-1], line)
    return re.sub(r"//.*", lambda m: "\0" * len(m[0]), line)


def faults_of(path, kind):
    """Every fault of a kind that can be seeded into a file: (line number, line, changed line). Rows of tables are left out."""
    found = []
    for number, line in enumerate(path.read_text().split("\n")):
        bare = strip(line)
        if re.match(r"\s*($|#|\{|-?\d|template|static_assert|using |namespace |case |class |struct |enum )", bare):
            continue
        for pattern, by in kinds[kind]:
            for match in re.finditer(pattern, bare):
                if by == "drop":
                    if re.match(r"\s*(return|throw|delete|else|const|auto)\b", bare) or bare.count("(") != bare.count(")"):
                        continue
                    changed = re.match(r"\s*", line)[0] + ";"
                elif by == "one more":
                    changed = line[:match.start()] + str(int(match[1]) + 1) + line[match.end():]
                elif by == "!(":
                    end = bare.rindex(")")
                    changed = line[:match.start()] + "!(" + line[match.start():end] + ")" + line[end:]
                else:
                    changed = line[:match.start()] + by + line[match.end():]
                found.append((number, line, changed))
    return found


class Worker:
    """A copy of the tree with a build of its own."""

    def __init__(self, number, floor):
        self.tree, self.floor = place / f"tree{number}", floor
        self.build = self.tree / "build"
        self.tree.mkdir(parents=True, exist_ok=True)
        for part in parts:
            subprocess.run(["rsync", "-a", "--delete", str(root / part), str(self.tree)], check=True)

    def run(self, *command, timeout=3600):
        try:
            return subprocess.run(command, cwd=self.tree, timeout=timeout, capture_output=True, text=True).returncode
        except subprocess.TimeoutExpired:
            return -1

    def compile(self):
        if not (self.build / "build.ninja").exists():
            if self.run("cmake", "-G", "Ninja", "-S", ".", "-B", "build", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_COMPILER=g++",
                        "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -D_GLIBCXX_ASSERTIONS"):
                return 1
        return self.run("ninja", "-C", "build", "-j1", f"{self.floor}_tests")

    def test(self, source):
        """The status of the tests, those that are likely to know the source first."""
        program = str(self.build / "bin" / f"{self.floor}_tests")
        near = "".join(part.capitalize() for part in source.stem.split("_"))
        for wanted in (f"*{near}*", "*"):
            status = self.run("timeout", "300", program, f"--gtest_filter={wanted}", "--gtest_fail_fast", timeout=330)
            if status:
                return status
        return 0

    def judge(self, source, fault):
        """'caught', 'survived', or None where the fault does not compile."""
        number, _, changed = fault
        path, kept = self.tree / source, (self.tree / source).read_text()
        lines = kept.split("\n")
        lines[number] = changed
        path.write_text("\n".join(lines))
        try:
            if self.compile():
                return None
            return "caught" if self.test(source) else "survived"
        finally:
            path.write_text(kept)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("floor")
    parser.add_argument("count", nargs="?", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    asked = parser.parse_args()
    sources = [path.relative_to(root) for path in sorted((root / asked.floor).rglob("*.cpp"))]
    if not sources:
        sys.exit(f"no floor named {asked.floor}")
    if not shutil.which("rsync"):
        sys.exit("rsync is missing: apt-get install rsync")
    chance, waiting, rows = random.Random(asked.seed), queue.SimpleQueue(), []
    for kind in kinds:
        rows.append([(source, fault) for source in sources for fault in faults_of(root / source, kind)])
        chance.shuffle(rows[-1])
    for row in itertools.zip_longest(*rows):  # of each kind as many
        for fault in filter(None, row):
            waiting.put(fault)
    possible = waiting.qsize()
    results, lock = [], threading.Lock()

    def work(number):
        worker = Worker(number, asked.floor)
        if worker.compile() or worker.test(Path("none")):
            sys.exit(f"{asked.floor}_tests do not pass without a fault")
        while not waiting.empty():
            source, fault = waiting.get()
            told = worker.judge(source, fault)
            with lock:
                if len(results) >= asked.count:
                    return
                if told:
                    results.append((told, source, fault))
                if told == "survived":
                    number, line, changed = fault
                    print(f"{source}:{number + 1}: survived\n    - {line.strip()}\n    + {changed.strip()}", flush=True)

    threads = [threading.Thread(target=work, args=(number,)) for number in range(asked.jobs)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    caught = sum(told == "caught" for told, _, _ in results)
    print(f"{asked.floor}: {caught} of {len(results)} faults caught (seed {asked.seed}, of {possible} possible)")
    return 0 if results else 1


if __name__ == "__main__":
    sys.exit(main())
