#!/usr/bin/python3
"""An independent reader judges what is made of drawings of which one line is damaged.

Whole drawings lose a line, have one twice, or a blank one in its place. zefhost must open and save each;
python3-ezdxf must read what was saved, without its own recovery, and count the entities that we count there, which are
those of the whole drawing. What is saved needs no further repair.

    judge_lines.py FOLDER_OF_PROGRAMS [CASES [SEED]]

The drawings are the tests' own and the samples; when ZEF_CORPUS names a folder, also those in it that are whole.
"""
import collections
import logging
import multiprocessing
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

import ezdxf

ROOT = pathlib.Path(__file__).resolve().parent.parent
FEW, MANY = 60, 1000
LARGEST = 1500000  # bytes; larger ones say the same and take the reader long

# What can be otherwise than in the whole drawing, and why.
EXCEPTIONS = {
    "a line of text": "a text that people write may go on in the next line, so a line more is no damage",
    "a type": "a lost type that no other object like it tells is read as the one that fits best",
    "no section": "of a drawing of one section nothing is left when the name of that is lost: it is refused",
    "a space": "a lost group 67, 330 or name of a block does not tell any more in which space an entity was",
}


def exception(kind, lines, at, fault):
    """The name of the exception that a damaged line is; empty when it is none."""
    code = lines[at - 1].strip()
    around = {line.strip() for line in lines[max(0, at - 3):at + 3]}
    if kind == "doubled" and code in (b"1", b"3", b"1000", b"300") and fault.startswith("the reader"):
        return "a line of text"
    if fault == "exit status 3" and len(lines) < 12:
        return "no section"
    if fault.startswith("other entities") and kind != "doubled" and lines[at - 1].strip() == b"0":
        return "a type"
    if fault.startswith("other entities") and around & {b"67", b"330"}:
        return "a space"
    return ""


def damaged(lines, kind, at):
    if kind == "dropped":
        return b"".join(lines[:at] + lines[at + 1:])
    if kind == "doubled":
        return b"".join(lines[:at + 1] + lines[at:])
    end = re.search(rb"\r?\n?$", lines[at]).group()
    return b"".join(lines[:at] + [end] + lines[at + 1:])


def entities(path):
    """The entities of all blocks and spaces, counted by type, as the reader finds them."""
    drawing = ezdxf.readfile(path)
    return collections.Counter(entity.dxftype() for block in drawing.blocks for entity in block)


def counted(programs, path):
    """The same as we find them."""
    listed = subprocess.run([programs / "list_extents", path], capture_output=True, text=True, errors="replace",
                            check=False)
    return collections.Counter(line.split("\t")[2] for line in listed.stdout.splitlines())


def judge(task):
    """What is wrong, whether anything was told, and what the program said."""
    programs, source, kind, at, whole = task
    lines = re.findall(rb"[^\n]*\n|[^\n]+$", pathlib.Path(source).read_bytes())
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        broken, out, again = folder / "in.dxf", folder / "out.dxf", folder / "again.dxf"
        broken.write_bytes(damaged(lines, kind, at))

        def run(program, *arguments):
            return subprocess.run([programs / program, *arguments], capture_output=True, text=True, errors="replace",
                                  check=False)

        def save(drawing, target):
            return run("zefhost", drawing, "--no-module", "-c", "QUIT", "-o", target, "--profile", folder / "profile")

        done = save(broken, out)
        told = ": repair 1: " in done.stderr
        fault = ""
        if done.returncode != 0:
            fault = f"exit status {done.returncode}"
        else:
            second = save(out, again)
            if second.returncode != 0 or "repair" in second.stderr or out.read_bytes() != again.read_bytes():
                fault = f"what was saved is damaged: {second.stderr.strip()[:200]}"
        if not fault:
            ours = counted(programs, out)
            try:
                found = entities(out)
            except Exception as error:  # whatever the reader throws, it did not read
                found = None
                fault = f"the reader does not open what was saved: {error}"
            if found is not None and found != ours:
                fault = f"the reader counts {dict(found - ours)} more and {dict(ours - found)} fewer than we"
            elif found is not None and found != whole:
                fault = f"other entities: {dict(found - whole)} came, {dict(whole - found)} went"
        named = exception(kind, lines, at, fault) if fault else ""
        return fault, named, told, done.stderr.strip()[-400:]


def main():
    logging.disable()  # the reader tells of every value that it repairs
    programs = pathlib.Path(sys.argv[1]).resolve()
    corpus = os.environ.get("ZEF_CORPUS")
    cases = int(sys.argv[2]) if len(sys.argv) > 2 else MANY if corpus else FEW
    choice = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    files = sorted([*(ROOT / "tests/drawings").glob("*.dxf"), *(ROOT / "samples").glob("*.dxf")])
    if corpus:
        files += sorted(path for path in pathlib.Path(corpus).rglob("*.dxf") if path.parent.name != "broken")
    drawings = []
    for path in files:
        data = path.read_bytes()
        if len(data) > LARGEST or data.startswith(b"AutoCAD Binary"):
            continue
        try:
            whole = entities(path)
        except Exception as error:
            print(f"{path.name} is left out: the reader does not open it whole: {error}")
            continue
        if whole == counted(programs, path):
            drawings.append((path, whole, data.count(b"\n")))
        else:
            print(f"{path.name} is left out: of the whole drawing the reader counts other entities than we")
    tasks = []
    for number in range(cases):
        path, whole, lines = drawings[number % len(drawings)]
        tasks.append((programs, path, choice.choice(["dropped", "doubled", "blanked"]), choice.randrange(lines), whole))
    told = failed = 0
    excepted = collections.Counter()
    with multiprocessing.Pool() as pool:
        for task, (fault, named, was_told, words) in zip(tasks, pool.imap(judge, tasks)):
            told += was_told
            excepted[named] += bool(named)
            if fault and not named:
                failed += 1
                print(f"{task[1].name}, line {task[3] + 1} {task[2]}: {fault}\n    {words}")
    for name, reason in EXCEPTIONS.items():
        if excepted[name]:
            print(f"{excepted[name]} times {name}: {reason}")
    print(f"{cases} drawings with one damaged line judged, {told} told, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
