#!/usr/bin/python3
"""An independent reader judges what is made of damaged drawings.

Whole drawings are damaged in every way that is repaired. What zefhost saves of them must open without a repair,
python3-ezdxf must read it without its own recovery, and its audit may find nothing that it does not find in the whole
drawing or in the damaged one.

    judge_repairs.py ZEFHOST [DRAWING...]

Without drawings: the sample and the tests' own; when ZEF_CORPUS names a folder of drawings, also those in its folder
broken, as they are.
"""
import collections
import logging
import os
import pathlib
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf import recover

ROOT = pathlib.Path(__file__).resolve().parent.parent
CUTS = 7


def records(data):
    """The records of a drawing as bytes, each from its group 0 to the next."""
    lines = data.splitlines(keepends=True)
    found = []
    for at in range(0, len(lines) - 1, 2):
        if lines[at].strip() == b"0" or not found:
            found.append(b"")
        found[-1] += lines[at] + lines[at + 1]
    return found


def kind(record):
    return record.split(b"\n", 2)[1].strip()


def damages(data):
    """What can be wrong with a drawing: names and bytes."""
    whole = records(data)
    section = next(i for i, record in enumerate(whole) if b"\nENTITIES" in record)
    entity = next(i for i in range(section, len(whole)) if kind(whole[i]) == b"LINE")
    line = whole[entity]
    end_of_entities = next(i for i in range(entity, len(whole)) if kind(whole[i]) == b"ENDSEC")

    def without(at):
        return b"".join(whole[:at] + whole[at + 1:])

    def instead(at, record):
        return b"".join(whole[:at] + [record] + whole[at + 1:])

    for name in (b"EOF", b"ENDTAB", b"ENDBLK", b"SEQEND"):
        at = [i for i, record in enumerate(whole) if kind(record) == name]
        if at:
            yield f"no {name.decode()}", without(at[-1])
    yield "no ENDSEC", without(end_of_entities)
    yield "a double", instead(entity, line + line)
    pieces = line.splitlines(keepends=True)
    handle = next(i for i in range(0, len(pieces), 2) if pieces[i].strip() == b"5")
    yield "no handle", instead(entity, b"".join(pieces[:handle] + pieces[handle + 2:]))
    yield "an empty handle", instead(entity, b"".join(pieces[:handle + 1] + [b"\r\n"] + pieces[handle + 2:]))
    for lost in (b"10", b"20", b"11"):
        code = next(i for i in range(0, len(pieces), 2) if pieces[i].strip() == lost)
        yield f"no code {lost.decode()}", instead(entity, b"".join(pieces[:code] + pieces[code + 1:]))
        yield f"code {lost.decode()} is 0", instead(entity, b"".join(pieces[:code] + [b"  0\r\n"] + pieces[code + 1:]))
    yield "no code of a type", instead(entity, b"".join(pieces[1:]))
    yield "an entity behind its section", b"".join(whole[:entity] + whole[entity + 1:end_of_entities + 1] + [line] +
                                                   whole[end_of_entities + 1:])
    yield "two sections", instead(entity, line + b"  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n")
    yield "zero bytes", instead(entity, line.replace(b"LINE", b"LI\0NE", 1))
    blocks = data.index(b"BLOCKS")
    for i in range(1, CUTS + 1):
        at = blocks + (len(data) - blocks) * i // (CUTS + 1)
        yield f"cut at byte {at}", data[:at]


def audit(path):
    """What the auditor finds, counted by code, and whether the reader needed its recovery; None: it cannot."""
    recovered = False
    try:
        drawing = ezdxf.readfile(path)
    except (ezdxf.DXFError, UnicodeDecodeError, ValueError, KeyError):
        recovered = True
        try:
            drawing, _ = recover.readfile(path)
        except (ezdxf.DXFError, UnicodeDecodeError, ValueError, KeyError):
            return None
    auditor = drawing.audit()
    return recovered, collections.Counter(entry.code for entry in auditor.errors + auditor.fixes)


def judge(zefhost, drawing, known, folder):
    """Why a damaged drawing fails; an empty text when it does not, None when it was refused."""
    out, again = folder / "out.dxf", folder / "again.dxf"

    def run(source, target):
        return subprocess.run([zefhost, source, "--no-module", "-c", "QUIT", "-o", target, "--profile",
                               folder / "profile"], capture_output=True, text=True, check=False)

    done = run(drawing, out)
    if done.returncode == 3:
        return None if ": line " in done.stderr else f"refused without a line: {done.stderr}"
    if done.returncode != 0 or ": repair 1: line " not in done.stderr:
        return f"exit status {done.returncode}: {done.stderr.strip()}"
    done = run(out, again)
    if done.returncode != 0 or "repair" in done.stderr or out.read_bytes() != again.read_bytes():
        return f"what was saved is damaged: {done.stderr.strip()}"
    before, after = audit(drawing), audit(out)
    if after is None or after[0]:
        return "the reader does not open what was saved"
    worse = after[1] - known - (before[1] if before else collections.Counter())
    return f"the audit finds {dict(worse)}" if worse and before and not before[0] else ""


def main():
    logging.disable()  # the reader tells of every value that it repairs
    zefhost = pathlib.Path(sys.argv[1]).resolve()
    failed = judged = refused = 0
    corpus = os.environ.get("ZEF_CORPUS")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        damaged = folder / "damaged.dxf"
        cases = []
        for drawing in sys.argv[2:] or [ROOT / "samples/storey.dxf", ROOT / "tests/drawings/r2018.dxf"]:
            known = audit(drawing)[1]
            cases += [(f"{pathlib.Path(drawing).name}, {what}", data, known)
                      for what, data in damages(pathlib.Path(drawing).read_bytes())]
        if corpus and not sys.argv[2:]:
            cases += [(path.name, path.read_bytes(), collections.Counter())
                      for path in sorted((pathlib.Path(corpus) / "broken").glob("*.dxf"))]
        for what, data, known in cases:
            damaged.write_bytes(data)
            fault = judge(zefhost, damaged, known, folder)
            judged += 1
            refused += fault is None
            if fault:
                failed += 1
                print(f"{what}: {fault}")
    print(f"{judged} damaged drawings judged, {refused} refused, {failed} failed")
    return 1 if failed or refused > judged // 4 else 0


if __name__ == "__main__":
    sys.exit(main())
