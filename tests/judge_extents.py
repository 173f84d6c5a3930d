#!/usr/bin/python3
"""An independent reader judges the boxes around what entities draw.

tests/tools/list_extents lists the entities of a drawing with their boxes; python3-ezdxf reckons each box anew. Per type
of entity this tells how many were compared and how many agree within the type's tolerance, and names each that differs,
with both boxes. Types that the reader does not draw are counted apart. Status 1 when a difference is left that
EXPLAINED does not know.

    judge_extents.py LIST_EXTENTS [--type TYPE]... [--all] [DRAWING...]

--type judges entities of these types alone; --all names explained differences too, and more than ten of a type in one
drawing. Without drawings: the sample, the tests' own, and when ZEF_CORPUS names a folder of drawings those in it.
"""
import argparse
import collections
import logging
import math
import os
import pathlib
import subprocess
import sys

import ezdxf
from ezdxf import bbox, disassemble, recover
from ezdxf.math import BoundingBox, Vec3

ROOT = pathlib.Path(__file__).resolve().parent.parent

# How far sides of two boxes may be apart, relative to the diagonal of the larger box. A type that is not named here
# must agree exactly.
EXACT = 1e-6
CURVE = 1e-5  # the reader gives points along the curve, two thousand here
BEZIER = 1e-3  # the reader draws arcs as cubic curves here
WIDE = 2e-2  # the reader cuts wide arcs into straight pieces and joins them in its own way
TEXT = 0.6  # the reader takes letters of a font that is not the drawing's
TOLERANCES = {
    "SPLINE": CURVE, "HELIX": CURVE, "HATCH": BEZIER, "MPOLYGON": BEZIER, "LEADER": BEZIER, "MLINE": BEZIER,
    "TEXT": TEXT, "ATTRIB": TEXT, "ATTDEF": TEXT, "MTEXT": TEXT, "DIMENSION": TEXT, "ARC_DIMENSION": TEXT,
    "LARGE_RADIAL_DIMENSION": TEXT, "MULTILEADER": TEXT, "TOLERANCE": TEXT, "ACAD_TABLE": TEXT, "SHAPE": TEXT,
}

MOST_NAMED = 10

# What the reader raises over drawings and entities that it does not like.
FAULTS = (ezdxf.DXFError, ArithmeticError, AttributeError, LookupError, TypeError, ValueError)

# Differences with a reason: drawing (its name's end), type, handle ("" for any), reason.
EXPLAINED = [
    ("06457.dxf", "SPLINE", "2C62A1", "without tangents the reader guesses some at the ends of a spline through points; "
     "the editor's splines do not bend there"),
    ("ACadSharp__sample_AC1015_ascii.dxf", "MLINE", "3A6", "its beginning is cut away, the reader draws it"),
    ("netDxf__sample.dxf", "MLINE", "3A9", "its beginning is cut away, the reader draws it"),
    ("netDxf__sample.dxf", "POLYLINE", "1A66", "the reader draws the frame in the place of the smooth mesh"),
    ("netDxf__sample.dxf", "POLYLINE", "1BBC", "the reader draws the frame of the spline too"),
    ("storey.dxf", "TEXT", "", "letters of txt are nearly twice as wide as the reader's"),
    ("06457.dxf", "TEXT", "", "letters of txt are nearly twice as wide as the reader's"),
    ("Unity3D-DXF-Viewer__Test1.dxf", "ATTDEF", "118A", "letters of txt are nearly twice as wide as the reader's"),
    ("06457.dxf", "ATTDEF", "", "the reader is not exact where letters are a ten-thousandth of a unit high"),
    ("ACadSharp__sample_AC1015_ascii.dxf", "ATTDEF", "798", "constant: in its block it shows its text, which is empty"),
    ("Unity3D-DXF-Viewer__Test1.dxf", "MTEXT", "", "without a width the reader breaks behind every word"),
    ("ezdxf__caret_encoding.dxf", "MTEXT", "", "without a width the reader breaks behind every word"),
    ("dxf-parser__api-cw750-details.dxf", "MTEXT", "", "without a width the reader breaks behind every word"),
    ("dxf__floorplan.dxf", "MTEXT", "", "without a width the reader breaks behind every word"),
    ("netDxf__sample.dxf", "MTEXT", "981", "without a width the reader breaks behind every word"),
    ("ezdxf__xclip.dxf", "MTEXT", "F8", "the reader's box is as wide as the lines may become"),
    ("gdal__assorted.dxf", "MTEXT", "", "the reader's box is as wide as the lines may become"),
    ("gdal__assorted.dxf", "INSERT", "55", "the reader's boxes of paragraph texts are as wide as the lines may become"),
    ("ezdxf__xclip.dxf", "INSERT", "", "the reader does not clip references"),
    ("ACadSharp__sample_AC1015_ascii.dxf", "INSERT", "D2F", "the reader does not clip references"),
    ("dxf-parser__api-cw750-details.dxf", "LEADER", "", "its style does not say that texts stand above the line: then they "
     "do not, and the line does not go on under the note; the reader takes them to"),
    ("netDxf__sample.dxf", "MESH", "504", "the reader draws the frame in the place of the smooth mesh"),
    ("06457.dxf", "VIEWPORT", "3623", "stands on no sheet: shows nothing"),
    ("gdal__attribs.dxf", "INSERT", "", "the reader draws invisible attributes"),
    ("gdal__block-hidden-entities.dxf", "INSERT", "F81", "the reader draws invisible entities of blocks"),
]


class Judged:
    """A box, and how far it may be from the other one, absolute."""

    def __init__(self):
        self.box = BoundingBox()
        self.slack = 0.0

    def add(self, points, tolerance):
        points = [point for point in points if all(abs(value) < 1e100 for value in point)]
        if not points:
            return
        box = BoundingBox(points)
        self.box.extend([box.extmin, box.extmax])
        self.slack = max(self.slack, tolerance * (box.extmax - box.extmin).magnitude)


def wide(entity):
    """Whether a flat polyline has widths."""
    if entity.dxftype() == "LWPOLYLINE":
        return entity.has_width
    return entity.is_2d_polyline and entity.has_width


def telling_angles(x, y, start, end, turn):
    """The ends of an arc, and where between them center + x cos t + y sin t is extreme."""
    sweep = (end - start) % turn
    if sweep < turn * 1e-12:
        sweep = turn
    angles = [start, end]
    for a, b in zip(x, y):
        extreme = math.atan2(b, a) * turn / math.tau
        angles += [at for at in (extreme, extreme + turn / 2) if (at - start) % turn < sweep]
    return angles


def flat_points(entity, judged):
    """Adds an entity that has no parts."""
    kind = entity.dxftype()
    tolerance = TOLERANCES.get(kind, EXACT)
    if kind in ("CIRCLE", "ARC"):
        x, y = (entity.ocs().to_wcs(axis) for axis in ((1, 0, 0), (0, 1, 0)))
        ends = (0, 360) if kind == "CIRCLE" else (entity.dxf.start_angle, entity.dxf.end_angle)
        points = list(entity.vertices(telling_angles(x, y, *ends, 360)))
    elif kind == "ELLIPSE":
        ends = entity.dxf.start_param, entity.dxf.end_param
        points = list(entity.vertices(telling_angles(entity.dxf.major_axis, entity.minor_axis, *ends, math.tau)))
    elif kind in ("SPLINE", "HELIX"):
        curve = entity.construction_tool()
        points = list(curve.points(curve.params(2000)))
    elif kind in ("LWPOLYLINE", "POLYLINE") and not wide(entity):
        parts = list(entity.virtual_entities())
        for part in parts:
            flat_points(part, judged)
        if parts:
            return
        points = box_points(entity)
    else:
        if kind in ("LWPOLYLINE", "POLYLINE"):
            tolerance = WIDE
        points = box_points(entity)
    thickness = entity.dxf.get("thickness", 0.0) if entity.dxf.is_supported("thickness") else 0.0
    if thickness and points and kind not in ("TEXT", "ATTRIB", "ATTDEF"):
        up = Vec3(entity.dxf.get("extrusion", (0, 0, 1))).normalize(thickness)
        points = points + [point + up for point in points]
    judged.add(points, tolerance)


def is_invisible(entity):
    return entity.dxf.is_supported("invisible") and bool(entity.dxf.get("invisible", 0))


def box_points(entity):
    box = bbox.extents([entity])
    return [box.extmin, box.extmax] if box.has_data else []


def judge_entity(entity):
    """What the reader says; None when it does not draw such entities."""
    judged = Judged()
    kind = entity.dxftype()
    for part in disassemble.recursive_decompose([entity]):
        if is_invisible(part):
            continue
        flat_points(part, judged)
    if not judged.box.has_data:
        return None
    if kind in TOLERANCES:
        judged.slack = max(judged.slack, TOLERANCES[kind] * (judged.box.extmax - judged.box.extmin).magnitude)
    return judged


def is_near(mine, judged):
    size = max((mine.extmax - mine.extmin).magnitude, (judged.box.extmax - judged.box.extmin).magnitude)
    reach = max(abs(value) for corner in (judged.box.extmin, judged.box.extmax) for value in corner)
    slack = max(judged.slack, size * EXACT, reach * 1e-12, 1e-9)
    return all(abs(a - b) <= slack for a, b in zip((*mine.extmin, *mine.extmax),
                                                   (*judged.box.extmin, *judged.box.extmax)))


def read(path):
    """The reader's document; None when it can not open the drawing."""
    try:
        return ezdxf.readfile(path)
    except FAULTS:
        try:
            return recover.readfile(path)[0]
        except FAULTS:
            return None


def listed(tool, path):
    """Block name -> list of (handle, type, box or None)."""
    done = subprocess.run([tool, path], capture_output=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(done.stderr.decode(errors="replace").strip() or f"status {done.returncode}")
    blocks = collections.defaultdict(list)
    for line in done.stdout.decode().splitlines():
        block, handle, kind, _, *numbers = line.split("\t")
        box = None
        if len(numbers) == 6:
            values = [float(number) for number in numbers]
            box = BoundingBox([values[:3], values[3:]])
        blocks[block.lower()].append((handle, kind, box))
    return blocks


def pairs(mine, entities):
    """Entities of one block with what the reader has for them: by their order when the types are the same, else by
    handle."""
    if [kind for _, kind, _ in mine] == [entity.dxftype() for entity in entities]:
        return list(zip(mine, entities))
    by_handle = {entity.dxf.handle: entity for entity in entities}
    found = ((row, by_handle.get(row[0])) for row in mine)
    return [(row, entity) for row, entity in found if entity is not None and entity.dxftype() == row[1]]


def explanation(path, block, entity):
    kind, handle = entity.dxftype(), entity.dxf.handle
    if kind == "VIEWPORT" and block.is_any_paperspace and entity is block.query("VIEWPORT").first:
        return "the sheet itself, which is looked at and not drawn"
    for end, explained_kind, explained_handle, reason in EXPLAINED:
        if str(path).endswith(end) and kind == explained_kind and explained_handle in ("", handle):
            return reason
    return ""


def text_of(box):
    if box is None:
        return "nothing"
    return "({:.9g}, {:.9g}, {:.9g})-({:.9g}, {:.9g}, {:.9g})".format(*box.extmin, *box.extmax)


class Tally:
    """What was found of one type."""
    compared = agreed = explained = undrawn = invisible = unmatched = 0


def judge_drawing(tool, path, types, name_all, tallies):
    """Adds a drawing to the tallies; how many differences nobody explains, None when the reader can not open it."""
    drawing = read(path)
    if drawing is None:
        return None
    unexplained = 0
    named = collections.Counter()
    blocks = {block.name.lower(): block for block in drawing.blocks}
    for name, mine in listed(tool, path).items():
        matched = pairs(mine, list(blocks[name])) if name in blocks else []
        for kind, count in collections.Counter(kind for _, kind, _ in mine).items():
            tallies[kind].unmatched += count - sum(row[1] == kind for row, _ in matched)
        for (handle, kind, box), entity in matched:
            tally = tallies[kind]
            if types and kind not in types:
                continue
            if is_invisible(entity):
                tally.invisible += 1
                continue
            try:
                judged = judge_entity(entity)
            except FAULTS:
                judged = None
            if judged is None:
                tally.undrawn += 1
                continue
            tally.compared += 1
            if box is not None and is_near(box, judged):
                tally.agreed += 1
                continue
            reason = explanation(path, blocks[name], entity)
            tally.explained += bool(reason)
            unexplained += not reason
            named[kind] += 1
            if name_all or not reason and named[kind] <= MOST_NAMED:
                print(f"{path.name}: {kind} {handle} in {name}: {text_of(box)}, the reader {text_of(judged.box)}"
                      + (f": {reason}" if reason else ""))
    for kind, count in named.items():
        if count > MOST_NAMED and not name_all:
            print(f"{path.name}: {kind}: {count - MOST_NAMED} more")
    return unexplained


def main():
    logging.disable()  # the reader tells of every value that it repairs and every font that it does not find
    parser = argparse.ArgumentParser()
    parser.add_argument("tool", type=pathlib.Path)
    parser.add_argument("drawings", type=pathlib.Path, nargs="*")
    parser.add_argument("--type", action="append", default=[])
    parser.add_argument("--all", action="store_true")
    arguments = parser.parse_args()
    drawings = arguments.drawings
    if not drawings:
        drawings = [ROOT / "samples" / "storey.dxf", *sorted((ROOT / "tests" / "drawings").glob("*.dxf"))]
        corpus = os.environ.get("ZEF_CORPUS")
        if corpus:
            drawings += sorted(path for path in pathlib.Path(corpus).rglob("*.dxf")
                               if path.parent.name not in ("broken", "binary"))
    tallies = collections.defaultdict(Tally)
    unexplained = judged = 0
    for path in drawings:
        try:
            found = judge_drawing(arguments.tool.resolve(), path, arguments.type, arguments.all, tallies)
        except RuntimeError as fault:
            print(f"{path.name}: {fault}")
            unexplained += 1
            continue
        judged += found is not None
        unexplained += found or 0
        if found is None:
            print(f"{path.name}: the reader can not open it")
    print(f"{'type':24}{'compared':>10}{'agree':>8}{'explained':>11}{'differ':>8}{'not drawn':>11}{'invisible':>11}"
          f"{'no match':>10}")
    for kind, tally in sorted(tallies.items()):
        if arguments.type and kind not in arguments.type:
            continue
        differ = tally.compared - tally.agreed - tally.explained
        print(f"{kind:24}{tally.compared:10}{tally.agreed:8}{tally.explained:11}{differ:8}{tally.undrawn:11}"
              f"{tally.invisible:11}{tally.unmatched:10}")
    print(f"{judged} drawings judged, {unexplained} differences that nobody explains")
    return 1 if unexplained or not judged else 0


if __name__ == "__main__":
    sys.exit(main())
