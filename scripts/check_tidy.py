#!/usr/bin/env python3
"""check_tidy.py [--changed]: runs clang-tidy on the sources of the house, as the release preset compiles them.

A source that was found clean is looked at again only when it, or something that it includes, has changed. --changed looks
only at the sources that differ from main and, for a header that does, at the source of the same name.

Most of clang-tidy's time goes into the standard library's headers, so some twenty sources of a folder are judged as one. Those
that define a name twice between them are judged alone.
"""
import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

root = Path(__file__).resolve().parent.parent
floors = ("base", "sys", "ui", "host", "siblings", "module", "clients", "apps")
clean = root / "build/tidy"
together = 20


def output(*command):
    return subprocess.run(command, cwd=root, capture_output=True, text=True)


def compile_commands():
    """The command of each source, without what only GCC or the cache of compilers understands."""
    if not (root / "build/release/build.ninja").exists():
        told = output("cmake", "--preset", "release")
    else:
        told = output("cmake", "--build", "--preset", "release", "--target", "build.ninja")  # takes in new sources
    if told.returncode:
        sys.exit(told.stdout + told.stderr)
    found = {}
    for entry in json.loads((root / "build/release/compile_commands.json").read_text()):
        name = os.path.relpath(entry["file"], root)
        if name.startswith(tuple(floor + "/" for floor in floors)):
            command = re.sub(r" -Winvalid-pch -include \S+cmake_pch\.hxx| -fpch-preprocess|^\S*ccache ", "", entry["command"])
            # -w: what the compilers warn of they refuse already, and names of other sources may be shadowed here
            found[name] = (entry["directory"], re.sub(r" -o \S+ -c \S+$", " -w", command))
    return found


def include_graph(names):
    """For each file those that it may include: an include counts for every file that it may mean."""
    ending = {}
    for name in names:
        parts = name.split("/")
        for at in range(len(parts)):
            ending.setdefault("/".join(parts[at:]), []).append(name)
    directive = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"]+)', re.M)
    return {name: [file for found in directive.findall((root / name).read_bytes()) for file in ending.get(found.decode(), [])]
            for name in names}


def keys(sources):
    """A source's key: the contents of all that it may include, and the rules it is judged by."""
    names = sorted(str(path.relative_to(root)) for floor in floors for path in (root / floor).rglob("*")
                   if path.suffix in (".h", ".cpp"))
    rules = output("clang-tidy", "--version").stdout + "".join(
        (root / file).read_text() for file in (".clang-tidy", "cmake/zef.cmake", "CMakePresets.json", "scripts/check_tidy.py"))
    sums = {name: hashlib.sha1((root / name).read_bytes()).digest() for name in names}
    graph = include_graph(names)
    found = {}
    for source in sources:
        reached, waiting = {source}, [source]
        while waiting:
            for name in graph[waiting.pop()]:
                if name not in reached:
                    reached.add(name)
                    waiting.append(name)
        found[source] = hashlib.sha1(rules.encode() + b"".join(sums[name] for name in sorted(reached))).hexdigest()
    return found


def changed():
    base = output("git", "merge-base", "main", "HEAD").stdout.strip() or "HEAD"
    names = output("git", "diff", "--name-only", base).stdout.split()
    names += output("git", "ls-files", "--others", "--exclude-standard").stdout.split()
    return {re.sub(r"[.]h$", ".cpp", name) for name in names}


def judge(sources, commands, folder):
    """What is found in the sources, which are judged as one as far as they can be."""
    directory, command = commands[sources[0]]
    work = Path(tempfile.mkdtemp(dir=folder))
    one, apart = work / "sources.cpp", []
    while True:
        one.write_text("".join(f'#include "{root / name}"\n' for name in sources))
        if len(sources) == 1:
            break
        told = subprocess.run(["clang++", "-fsyntax-only", "-w", "-ferror-limit=0", *command.split()[1:], str(one)],
                              cwd=directory, capture_output=True, text=True, check=False)
        blamed = [name for name in sources[1:] if f"{root / name}:" in "".join(re.findall(r"^.*: error: ", told.stderr, re.M))]
        if not told.returncode or not blamed:
            break
        apart += blamed
        sources = [name for name in sources if name not in blamed]
    entry = {"directory": directory, "command": f"{command} -c {one}", "file": str(one)}
    (work / "compile_commands.json").write_text(json.dumps([entry]))
    told = output("clang-tidy", "--quiet", f"--config-file={root / '.clang-tidy'}", "-p", str(work), str(one))
    found = told.stdout + told.stderr if told.returncode else ""
    if found and len(sources) > 1 and "clang-diagnostic-error" in found:
        apart, found = sources + apart, ""  # they do not stand together for a reason that names none of them
    return found + "".join(judge([name], commands, folder) for name in apart)


def main():
    commands = compile_commands()
    clean.mkdir(parents=True, exist_ok=True)
    key_of = keys(sorted(commands))
    wanted = [name for name in sorted(commands) if not (clean / key_of[name]).exists()]
    if "--changed" in sys.argv:
        wanted = sorted(changed().intersection(wanted))
    batches, by_command = [], {}
    for name in wanted:
        by_command.setdefault((os.path.dirname(name), commands[name]), []).append(name)
    for names in by_command.values():
        batches += [names[at:at + together] for at in range(0, len(names), together)]
    batches.sort(key=len, reverse=True)
    told, status = set(), 0
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(os.cpu_count()) as pool:
        for names, found in zip(batches, pool.map(lambda names: judge(names, commands, folder), batches)):
            if not found:
                for name in names:
                    (clean / key_of[name]).touch()
                continue
            status = 1
            found = re.sub(r"(?m)^(\d+ (warning|error).* generated|Suppressed|Error while processing).*\n?", "", found)
            for block in re.split(r"(?m)^(?=/\S+: (?:error|warning):)", found):
                head = block.split("\n", 1)[0]
                if head not in told:  # what a header is blamed for comes from every source that includes it
                    told.add(head)
                    print(block.rstrip(), flush=True)
    return status


if __name__ == "__main__":
    sys.exit(main())
