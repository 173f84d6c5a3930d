#!/usr/bin/python3
"""An independent reader judges what a layer command leaves behind.

On each drawing OpenSelLayer isolates the layers of the first entities. Then only LAYER records may differ from the
file before, but for the layer state that keeps what was before; python3-ezdxf's audit may find nothing that it did not
find before, where it opens the original. Restoring that state brings the LAYER records back.

    judge_layers.py ZEFHOST [DRAWING...]

Without drawings: the sample, the tests' own, and when ZEF_CORPUS names a folder of drawings those in it, with storeys
that its gen_plan.py draws in three versions.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

from judging import audit, drawings, judge_all, opened

STOREYS = [("R2000", "gbk"), ("R2010", "gbk"), ("R2018", "gbk")]
PARTS = {b"VERTEX", b"ATTRIB", b"SEQEND"}


def records(data):
    """The records of a drawing: lists of (code line, value line) that begin with a group 0."""
    lines = data.split(b"\n")
    found = []
    for code, value in zip(lines[0::2], lines[1::2]):
        if code.strip() == b"0" or not found:
            found.append([])
        found[-1].append((code, value))
    return found


def handle(record):
    return next((value.strip() for code, value in record if code.strip() == b"5"), None)


def first_entities(found, count):
    """Handles of the first entities that stand in the ENTITIES section and have one."""
    handles = []
    section = None
    for record in found:
        kind = record[0][1].strip()
        if kind == b"SECTION":
            section = record[1][1].strip()
        elif section == b"ENTITIES" and kind not in PARTS:
            handles += [value.strip().decode() for code, value in record if code.strip() == b"5"][:1]
    return handles[:count]


def layers(found):
    return [record for record in found if record[0][1].strip() == b"LAYER"]


def without_state(found, there):
    """The records without those that hold the state before: DICTIONARYs and an XRECORD whose handles are not `there`, a
    section of objects where there was none, and what heads and header say of them."""
    kept = []
    for record in found:
        kind, name = record[0][1].strip(), (record[1:2] or [(b"", b"")])[0][1].strip()
        if kind in (b"DICTIONARY", b"XRECORD") and handle(record) not in there:
            continue
        if kind == b"SECTION" and name == b"OBJECTS" and b"OBJECTS" not in there:
            continue
        if kind == b"ENDSEC" and len(kept) > 1 and kept[-1][0][1].strip() == b"ENDSEC":
            continue
        if kind == b"TABLE" and name == b"LAYER":
            record = record[:2]
        if kind == b"SECTION" and name == b"HEADER":
            record = [group for before, group in zip([None, *record], record)
                      if before is None or before[1].strip() != b"$HANDSEED"]
        kept.append(record)
    return kept


def judge(zefhost, drawing, folder):
    """Why a drawing fails; an empty text when it does not, None when it has nothing to pick."""
    before = drawing.read_bytes()
    handles = first_entities(records(before), 3)
    if not handles:
        return None
    out = folder / "out.dxf"
    script = folder / "isolate.scr"
    script.write_text("OpenSelLayer\n" + "".join(f'(handent "{handle}")\n' for handle in handles) + "\n")
    done = subprocess.run([zefhost, drawing, "-s", script, "-o", out, "--profile", folder / "profile"],
                          capture_output=True, text=True, check=False)
    if done.returncode != 0:
        return f"exit status {done.returncode}: {done.stderr.strip()}"
    there = {handle(record) for record in records(before) if record[0][1].strip() != b"SECTION"}
    there |= {record[1][1].strip() for record in records(before)
              if record[0][1].strip() == b"SECTION" and len(record) > 1}
    whole = records(out.read_bytes())
    old, new = without_state(records(before), there), without_state(whole, there)
    kept = b"*BEFORE*" in out.read_bytes()
    if len(whole) - len(new) > (6 if kept else 0):
        return f"{len(whole) - len(new)} records came"
    if len(old) != len(new):
        return f"{len(old)} records became {len(new)}"
    others = {a[0][1].strip() for a, b in zip(old, new) if a != b} - {b"LAYER"}
    if others:
        return f"records of {others} differ"
    source, saved = opened(drawing), opened(out)
    if source is not None and (saved is None or audit(saved) != audit(source)):
        return "the audit finds something else than before"
    if kept:
        script.write_text("-LAYER A R *BEFORE*\n\n")
        back = folder / "back.dxf"
        done = subprocess.run([zefhost, out, "-s", script, "-o", back, "--profile", folder / "profile"],
                              capture_output=True, text=True, check=False)
        if done.returncode != 0 or layers(records(back.read_bytes())) != layers(old):
            return f"the state before is not restored: {done.returncode} {done.stderr.strip()}"
    return ""


def main():
    zefhost = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        storeys = []
        corpus = os.environ.get("ZEF_CORPUS")
        for version, encoding in STOREYS if corpus and not sys.argv[2:] else []:
            storeys.append(folder / f"storey-{version}.dxf")
            subprocess.run([sys.executable, pathlib.Path(corpus) / "gen_plan.py", storeys[-1], "--version", version,
                            "--encoding", encoding], check=True, capture_output=True)
        return judge_all(drawings(sys.argv[2:], more=storeys), lambda path: judge(zefhost, path, folder))


if __name__ == "__main__":
    sys.exit(main())
