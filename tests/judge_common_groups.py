#!/usr/bin/python3
"""An independent reader judges what becomes of properties that stand behind the marker of an entity's class.

Each drawing is taken as it stands, with every fifth entity hidden, and a second time with what all entities have in
common (layer, colour, linetype and so on) scattered among the groups of their classes. python3-ezdxf must read the
same entities from both; so must zefhost, and every layer command must tell and do the same to both.

    judge_common_groups.py ZEFHOST [DRAWING...]

Without drawings: the small ones, and when ZEF_CORPUS names a folder of drawings those in it.
"""
import logging
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf import recover

ROOT = pathlib.Path(__file__).resolve().parent.parent
# What all entities have in common, without the parts of a picture, which follow one another.
COMMON = {6, 8, 48, 60, 62, 67, 284, 347, 370, 390, 410, 420, 430, 440}
# Types whose classes use some of these codes, or whose groups must not be parted.
CELLS = {60, 62, 284, 370, 420, 430, 440}
OWN = {"ACAD_TABLE": CELLS, "MESH": {62, 420, 430, 440}, "SURFACE": {48}, "EXTRUDEDSURFACE": {48},
       "LOFTEDSURFACE": {48}, "REVOLVEDSURFACE": {48}, "SWEPTSURFACE": {48}}
PLAIN = {"LINE", "POINT", "CIRCLE", "ARC", "TEXT", "INSERT", "ELLIPSE", "SOLID", "TRACE", "3DFACE", "XLINE", "RAY",
         "MTEXT", "ATTDEF", "ATTRIB", "VERTEX", "POLYLINE", "DIMENSION", "VIEWPORT", "IMAGE"}
OTHERS = {"HATCH", "LWPOLYLINE", "SPLINE", "LEADER", "MULTILEADER", "MLINE", "BLOCK", "TOLERANCE", "SHAPE", "3DSOLID",
          "BODY", "REGION", "HELIX", "WIPEOUT", "PDFUNDERLAY", "DWFUNDERLAY", "DGNUNDERLAY", "ARC_DIMENSION",
          "LARGE_RADIAL_DIMENSION"} | set(OWN)
# Types of which python3-ezdxf looks at the common part alone: what stands elsewhere it misses.
SHORT_SIGHTED = {"ATTRIB", "DIMENSION", "VIEWPORT", "MLINE", "3DSOLID", "REGION", "BODY", "PDFUNDERLAY", "DWFUNDERLAY",
                 "DGNUNDERLAY"}
PROPERTIES = ("layer", "color", "linetype", "invisible", "paperspace", "ltscale", "lineweight", "true_color",
              "color_name", "transparency", "material_handle", "plotstyle_handle", "shadow_mode")
PARTS = {"VERTEX", "ATTRIB", "SEQEND"}
PICKS = 3


def records(data):
    """Lists of (code, code line, value line) that begin with a group 0; None when the lines are no such pairs."""
    lines = data.replace(b"\r\n", b"\n").split(b"\n")
    found = [[]]
    for code, value in zip(lines[0::2], lines[1::2]):
        try:
            number = int(code)
        except ValueError:
            return None
        if number == 0:
            found.append([])
        found[-1].append((number, code, value))
    return found


def kind(record):
    return record[0][2].strip().decode("latin1") if record else ""


def value(record, code):
    return next((group[2].strip().decode("latin1") for group in record if group[0] == code), "")


def entities(found):
    """The records of the BLOCKS and ENTITIES sections that stand on layers, each with its section."""
    section = ""
    for record in found:
        if kind(record) == "SECTION":
            section = value(record, 2)
        elif section in ("BLOCKS", "ENTITIES") and kind(record) != "ENDSEC":
            yield section, record


def common_part(record):
    """The indices of the groups behind AcDbEntity; none when what follows is no class that may be scattered."""
    if kind(record) not in PLAIN | OTHERS:
        return range(0)
    begin = next((i for i, group in enumerate(record) if group[0] == 100 and group[2].strip() == b"AcDbEntity"), None)
    if begin is None:
        return range(0)
    end = next((i for i in range(begin + 1, len(record)) if record[i][0] in (100, 101, 102) or record[i][0] > 999), 0)
    return range(begin + 1, end) if end and record[end][0] == 100 else range(0)


def hide(found):
    for count, (_, record) in enumerate(entities(found)):
        part = common_part(record)
        if count % 5 == 0 and part and kind(record) not in PARTS | {"BLOCK"} and not value(record, 60):
            record.insert(part.stop, (60, b" 60", b"     1"))


def places_in(record):
    """Where a group may be put behind the marker of a class: never between the coordinates of a point."""
    end = next((i for i, group in enumerate(record) if group[0] == 101 or group[0] > 999), len(record))
    first = next(i for i in range(end) if record[i][0] == 100 and record[i][2].strip() != b"AcDbEntity")
    places = [first + 1]
    braces = False
    for i in range(first + 1, end):
        braces = record[i][2].strip().startswith(b"{") if record[i][0] == 102 else braces
        if kind(record) in PLAIN and not braces and record[i][0] not in (*range(20, 40), 102, 220, 230):
            places.append(i)
    return places


def scatter(found, dice):
    """Moves what is common behind a marker of a class; how many groups moved."""
    moved = 0
    for _, record in entities(found):
        part = common_part(record)
        movable = COMMON - OWN.get(kind(record), set())
        groups = [record[i] for i in part if record[i][0] in movable]
        record[:] = [group for i, group in enumerate(record) if i not in part or group[0] not in movable]
        dice.shuffle(groups)
        for group in groups:
            record.insert(dice.choice(places_in(record)), group)
        moved += len(groups)
    return moved


def joined(found, end):
    return b"".join(code + end + text + end for record in found for _, code, text in record)


def normal(data):
    """A drawing's records, what is common sorted and taken out of its place."""
    found = records(data)
    handled = []
    for record in found:
        movable = COMMON - OWN.get(kind(record), set()) if kind(record) in PLAIN | OTHERS else set()
        end = next((i for i, group in enumerate(record) if group[0] == 101 or group[0] > 999), len(record))
        groups = [(code, text.strip()) for code, _, text in record]
        handled.append((sorted(group for group in groups[:end] if group[0] in movable),
                        [group for i, group in enumerate(groups) if i >= end or group[0] not in movable]))
    return handled


def read(path, handles):
    """What python3-ezdxf reads: the properties of entities by their handles."""
    try:
        drawing, _ = recover.readfile(path)
    except (OSError, ezdxf.DXFError, UnicodeDecodeError, ValueError, AttributeError):
        return {}
    found = ((handle, drawing.entitydb.get(handle)) for handle in handles)
    return {handle: {name: told for name, told in entity.dxfattribs().items() if name in PROPERTIES}
            for handle, entity in found if entity is not None and entity.is_alive}


def scripts(found):
    """The layer commands with picks of entities on different layers, and what is asked of all entities."""
    layers, picked = set(), []
    for section, record in entities(found):
        layer, handle = value(record, 8), value(record, 5)
        if section == "ENTITIES" and kind(record) not in PARTS and handle and layer not in layers:
            layers.add(layer)
            picked.append(f'(handent "{handle}")\n')
    some = "".join(picked[:PICKS])
    yield "SetAllPipeLayOpen\n"
    yield "UnLockSelLayer\n\n"
    yield "UnFrozenAllLayer\n"
    yield "OpenLayer\n*\nOK\n"
    yield "tbds\nE\n*\nOK\n30\n"
    yield "LIST\nALL\n\n"
    if not picked:
        return
    for command in ("OpenSelLayer", "CloseSelLayer", "LockSelLayer", "sfxc", "FrozenLayer", "EraseSelLayer"):
        yield f"{command}\n{some}\n"
    for pick in picked[:PICKS]:
        yield f"EraseSelLayer\n{pick}\n"
        yield f"ConvertLayer\n{pick}{picked[-1]}"


def run(zefhost, drawing, script, folder):
    out = folder / "out.dxf"
    out.unlink(missing_ok=True)
    shutil.rmtree(folder / "profile", ignore_errors=True)  # what was answered last time is remembered there
    answers = folder / "answers.scr"
    answers.write_text(script)
    done = subprocess.run([zefhost, drawing, "-s", answers, "-o", out, "--keep-going", "--profile",
                           folder / "profile"], capture_output=True, check=False)
    told = (done.stdout + done.stderr).replace(str(drawing).encode(), b"").replace(drawing.name.encode(), b"")
    return done.returncode, told, normal(out.read_bytes()) if out.exists() else None


def judge(zefhost, drawing, folder):
    """Why a drawing fails; an empty text when it does not, None when nothing in it can be scattered."""
    data = drawing.read_bytes()
    end = b"\r\n" if b"\r\n" in data else b"\n"
    found = records(data)
    if found is None:
        return None
    hide(found)
    plain, scattered = folder / "plain.dxf", folder / "scattered.dxf"
    plain.write_bytes(joined(found, end))
    picks = list(scripts(found))
    if scatter(found, random.Random(drawing.name)) == 0:
        return None
    scattered.write_bytes(joined(found, end))
    handles = [value(record, 5) for _, record in entities(found)]
    told, told_scattered = read(plain, handles), read(scattered, handles)
    for _, record in entities(found):
        before, after = (all_told.get(value(record, 5), {}) for all_told in (told, told_scattered))
        missed = before.items() - after.items() if kind(record) in SHORT_SIGHTED else set()
        if before.items() - after.items() != missed or after.items() - before.items():
            return f"the reader sees {value(record, 5)} as {after}, not as {before}"
    for script in picks:
        before, after = run(zefhost, plain, script, folder), run(zefhost, scattered, script, folder)
        for what, one, other in zip(("status", "transcript", "drawing"), before, after):
            if one != other:
                return f"{script!r}: another {what}: {difference(one, other)}"
    return ""


def difference(one, other):
    if isinstance(one, bytes):
        one, other = one.decode(errors="replace").splitlines(), other.decode(errors="replace").splitlines()
    if not isinstance(one, list) or not isinstance(other, list):
        return f"{one} and {other}"
    return next((f"{a} and {b}" for a, b in zip(one, other) if a != b), f"{len(one)} and {len(other)} of them")


def main():
    logging.disable()  # the reader tells of every value that it repairs
    zefhost = pathlib.Path(sys.argv[1]).resolve()
    failed = judged = 0
    drawings = [pathlib.Path(argument) for argument in sys.argv[2:]]
    if not drawings:
        drawings = [ROOT / "samples/storey.dxf", *sorted((ROOT / "tests/drawings").rglob("*.dxf"))]
        if os.environ.get("ZEF_CORPUS"):
            drawings += sorted(path for path in pathlib.Path(os.environ["ZEF_CORPUS"]).rglob("*.dxf")
                               if path.parent.name not in ("broken", "binary"))
    with tempfile.TemporaryDirectory() as name:
        for drawing in drawings:
            fault = judge(zefhost, drawing, pathlib.Path(name))
            judged += fault is not None
            if fault:
                failed += 1
                print(f"{drawing.name}: {fault}")
    print(f"{judged} drawings judged, {failed} failed")
    return 1 if failed or not judged else 0


if __name__ == "__main__":
    sys.exit(main())
