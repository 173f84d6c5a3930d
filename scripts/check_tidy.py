#!/usr/bin/env python3
"""check_tidy.py [--changed]: runs clang-tidy on the sources of the house, as the release preset compiles them.

A source that was found clean is looked at again only when it, or something that it includes, has changed. --changed looks
only at the sources that differ from main and, for a header that does, at the source of the same name.

Most of clang-tidy's time goes into the standard library's headers, so sources that do not disturb each other are judged as one.
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

from source_groups import groups

root = Path(__file__).resolve().parent.parent
floors = ("base", "sys", "ui", "host", "siblings", "module", "clients", "apps")
clean = root / "build/tidy"


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
        command = re.sub(r" -Winvalid-pch -include \S+cmake_pch\.hxx| -fpch-preprocess|^\S*ccache ", "", entry["command"])
        # -w: what the compilers warn of they refuse already
        command = re.sub(r" -o \S+ -c \S+$", " -w", command)
        file = Path(entry["file"])
        together = re.findall(r'^#include "(.*)"$', file.read_text(), re.M) if "/Unity/" in entry["file"] else [file]
        for name in (os.path.relpath(file, root) for file in together):
            if name.startswith(tuple(floor + "/" for floor in floors)):
                found[name] = (entry["directory"], command)
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
        (root / file).read_text() for file in (".clang-tidy", "cmake/zef.cmake", "CMakePresets.json", "scripts/check_tidy.py", "scripts/source_groups.py"))
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
    """What is found in the sources, which are judged as one."""
    directory, command = commands[sources[0]]
    work = Path(tempfile.mkdtemp(dir=folder))
    one = work / "sources.cpp"
    one.write_text("".join(f'#include "{root / name}"\n' for name in sources))
    entry = {"directory": directory, "command": f"{command} -c {one}", "file": str(one)}
    (work / "compile_commands.json").write_text(json.dumps([entry]))
    told = output("clang-tidy", "--quiet", f"--config-file={root / '.clang-tidy'}", "-p", str(work), str(one))
    return told.stdout + told.stderr if told.returncode else ""


def main():
    commands = compile_commands()
    clean.mkdir(parents=True, exist_ok=True)
    key_of = keys(sorted(commands))
    wanted = [name for name in sorted(commands) if not (clean / key_of[name]).exists()]
    if "--changed" in sys.argv:
        wanted = sorted(changed().intersection(wanted))
    batches, by_command = [], {}
    for name in wanted:
        by_command.setdefault(commands[name], []).append(name)
    for names in by_command.values():
        # One by one, what changed shows what it forgets to include. More than 30 would keep one core waiting for the other at the end.
        batches += groups(names, 1 if "--changed" in sys.argv else 30)
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
