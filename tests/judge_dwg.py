#!/usr/bin/env python3
"""judge_dwg.py ZEFHOST [-v]: compares what zefhost makes of DWG drawings with the DXF files that the editor wrote of them.

The folder $ZEF_DWG holds NAME.dwg with its twin NAME.dxf beside it, or MANIFEST.tsv with a column of twins; without it
nothing is judged. Each drawing is opened and saved; then records of the same handle are compared group by group, and
ezdxf must find the same entities, layers, blocks, texts and extents in both. Prints the share of equal records of
entities and tables, and of all; status 1 when a drawing does not open, when ezdxf finds a difference, or when the
share of entities and tables is below LEAST. -v tells of every difference.

What may differ, and why:
  reals       by 1e-11 of their size, or 1e-13: the editor writes 16 digits at most
  names       the numbers of blocks without a name of their own (*U12); DXF alone has them
  handles     of the proxies' dictionaries and reactors where the twin has fewer objects (the list of scales)
  sheets      68 and 69 of viewports: which were opened last, which a DWG file does not hold
  splines     of fit points: the editor computes control points and knots for DXF
  leaders     75 and, since 2010, 40 and 41: computed for DXF
  shapes      their names stand in the shape file alone
  graphics    of entities of classes: their size counts; behind texts in them stand left-over bytes of memory
  data        of applications that one of both lacks, and up to 2004 of the editor itself, which keeps there what
              those versions lack
  bodies      the second line of their text, where the editor writes when it saved
  views       what was seen on the screen (VPORT 12, 40, 41); whether a leader style was changed (295, 296)
  proxies     95, 71, 97: the version that writes
Twins of other programs than the editor are left out.
Records of types that are kept as proxies are counted apart.
"""
import os
import re
import subprocess
import sys
import tempfile
from collections import Counter

try:
    import ezdxf
    from ezdxf import bbox
except ImportError:
    ezdxf = None

LEAST = 0.99
TABLES = {"VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE", "BLOCK_RECORD", "BLOCK", "ENDBLK"}
OTHER_WRITERS = {"libredwg__2018_Leader.dwg"}  # has groups that the editor does not write
SESSION = {("VPORT", 12), ("VPORT", 22), ("VPORT", 40), ("VPORT", 41), ("MLEADERSTYLE", 295), ("MLEADERSTYLE", 296)}
ABOUT_SHEETS = {("VIEWPORT", 68), ("VIEWPORT", 69)}
BODIES = {"REGION", "3DSOLID", "BODY"}
COMPUTED = {("LEADER", 75), ("LEADER", 40), ("LEADER", 41), ("SHAPE", 2)}


def groups_of(path):
    data = open(path, "rb").read()
    if data.startswith(b"AutoCAD Binary DXF"):
        return None
    lines = [line.rstrip(b"\r") for line in data.split(b"\n")]
    return [(int(lines[i]), lines[i + 1]) for i in range(0, len(lines) - 1, 2)]


def records_of(groups):
    """Records by handle: (section, type, groups)."""
    records, section, record = {}, "", []

    def close():
        if len(record) < 2:
            return
        for code, value in record[1:]:
            if code in (5, 105):
                records.setdefault(value.strip().lstrip(b"0"), (section, record[0][1].decode(), list(record)))
                return
            if code == 100:
                return

    for code, value in groups:
        if code == 0:
            close()
            record = []
        record.append((code, value))
        if code == 2 and len(record) == 2 and record[0][1] == b"SECTION":
            section = value.decode()
    close()
    return records


def is_real(code):
    code %= 1000
    return 10 <= code < 60 or 110 <= code < 150 or 210 <= code < 240 or 460 <= code < 470


def same(kind, a, b):
    if a[0] != b[0]:
        return False
    code, left, right = a[0], a[1].strip(), b[1].strip()
    if left == right or (code == 6 and left.lower() == right.lower()) or (kind, code) in COMPUTED or (kind, code) in ABOUT_SHEETS | SESSION:
        return True
    if kind.startswith("ACAD_PROXY") and code in (71, 95, 97):
        return True
    if kind == "SPLINE" and code == 70:  # bits above are of later versions
        return int(left) & 15 == int(right) & 15
    if is_real(code):
        x, y = float(left), float(right)
        return abs(x - y) <= max(1e-13, 1e-11 * max(abs(x), abs(y)))
    anonymous = re.compile(rb"^\*([A-Z])\d*$")
    one, other = anonymous.match(left), anonymous.match(right)
    return bool(one and other and one.group(1) == other.group(1))


def without_gone_links(record, known):
    """A record without reactors and dictionaries that the other file does not have."""
    out, at = [], 0
    while at < len(record):
        code, value = record[at]
        if code == 102 and value.startswith(b"{"):
            end = at + 1
            while end < len(record) and record[end] != (102, b"}"):
                end += 1
            kept = [one for one in record[at + 1:end] if one[1].strip() in known]
            if kept and value.strip() != b"{BLKREFS":
                out += [record[at], *kept, (102, b"}")]
            at = end + 1
            continue
        out.append(record[at])
        at += 1
    return out


def applications_of(record):
    """The record without application data, and that data by application."""
    at = next((i for i, one in enumerate(record) if one[0] == 1001), len(record))
    data = {}
    for one in record[at:]:
        if one[0] == 1001:
            data[one[1]] = []
        data[next(reversed(data))].append(one)
    return record[:at], data


def without_graphics(record):
    """Graphics stand behind their size, in front of the class's own groups."""
    at = next((i for i, one in enumerate(record) if one[0] in (92, 160)), None)
    own = [i for i, one in enumerate(record) if one[0] == 100]
    if at is None or len(own) < 2 or not own[0] < at < own[1]:
        return record
    return record[:at + 1] + record[own[1]:]


def without_date(record):
    """A body's text without its second line."""
    lines = [i for i, one in enumerate(record) if one[0] == 1]
    return record[:lines[1]] + record[lines[1] + 1:] if len(lines) > 1 else record


def bits_of(record):
    """The data of a proxy as whole numbers of as many bits as it says; what fills the last byte is left out."""
    out, count, digits = [], 0, b""
    for code, value in [*record, (0, b"")]:
        if code in (310, 311) and count:
            digits += value.strip()
            continue
        if digits:
            out.append((1, b"%x" % (int(digits, 16) >> max(0, 4 * len(digits) - count))))
            digits = b""
        count = int(value) if code in (93, 161, 162) else 0
        out.append((code, value))
    return out[:-1]


def compare(kind, ours, twin, version):
    """The first difference of two records; nothing when they are equal."""
    (ours, our_data), (twin, their_data) = applications_of(ours), applications_of(twin)
    ours, twin = without_graphics(ours), without_graphics(twin)
    for name in our_data.keys() & their_data.keys():
        if name == b"ACAD" and version < "AC1021":
            continue
        ours, twin = ours + our_data[name], twin + their_data[name]
    if kind == "SPLINE":
        computed = {70, 72, 73, 40, 10, 20, 30}
        if any(code == 11 for code, _ in twin):
            ours = [one for one in ours if one[0] not in computed]
            twin = [one for one in twin if one[0] not in computed]
    if kind == "LEADER":
        ours = [one for one in ours if (kind, one[0]) not in COMPUTED]
        twin = [one for one in twin if (kind, one[0]) not in COMPUTED]
    if kind in BODIES:
        ours, twin = without_date(ours), without_date(twin)
    if kind.startswith("ACAD_PROXY"):
        ours, twin = bits_of(ours), bits_of(twin)
    for a, b in zip(ours, twin):
        if not same(kind, a, b):
            return f"{a[0]} {a[1].decode('latin1')!r}, twin {b[0]} {b[1].decode('latin1')!r}"
    if len(ours) != len(twin):
        longer = max(ours, twin, key=len)
        code, value = longer[min(len(ours), len(twin))]
        return f"{'more' if longer is ours else 'less'}: {code} {value.decode('latin1')!r}"
    return ""


def census(path):
    """What ezdxf finds: entities by type, layers, blocks, texts, the extents of what is drawn with lines."""
    drawing = ezdxf.readfile(path)
    space = list(drawing.modelspace())
    texts = Counter(one.dxf.text if one.dxftype() == "TEXT" else one.text for one in space
                    if one.dxftype() in ("TEXT", "MTEXT"))
    drawn = [one for one in space if one.dxftype() in ("LINE", "CIRCLE", "ARC", "LWPOLYLINE", "POINT", "SOLID", "INSERT")]
    box = bbox.extents(drawn, flatten=0)
    corners = [round(number, 6) for corner in (box.extmin, box.extmax) for number in corner] if box.has_data else []
    return {"entities": Counter(one.dxftype() for one in space),
            "layers": {layer.dxf.name for layer in drawing.layers},
            "blocks": Counter(re.sub(r"^(\*[A-Z])\d+$", r"\1", block.name) for block in drawing.blocks),
            "texts": texts, "extents": corners}


def peers_difference(ours, twin):
    if ezdxf is None:
        return ""
    mine, other = census(ours), census(twin)
    kept = mine["entities"].pop("ACAD_PROXY_ENTITY", 0) - other["entities"].pop("ACAD_PROXY_ENTITY", 0)
    missing = other["entities"] - mine["entities"]
    if kept < missing.total() or mine["entities"] - other["entities"]:
        return f"other entities: {mine['entities']}, twin {other['entities']}"
    return next((f"other {key}: {mine[key]}, twin {other[key]}" for key in ("layers", "blocks", "texts", "extents")
                 if mine[key] != other[key]), "")


def pairs_of(folder):
    manifest = os.path.join(folder, "MANIFEST.tsv")
    if os.path.exists(manifest):
        rows = [line.rstrip("\n").split("\t") for line in open(manifest, encoding="utf-8")][1:]
        return [(os.path.join(folder, row[0]), os.path.join(folder, row[7]) if row[7] else "") for row in rows]
    names = sorted(name for name in os.listdir(folder) if name.endswith(".dwg"))
    return [(os.path.join(folder, name), os.path.join(folder, name[:-4] + ".dxf")) for name in names]


def main():
    zefhost, verbose = sys.argv[1], "-v" in sys.argv
    folder = os.environ.get("ZEF_DWG", "")
    if not os.path.isdir(folder):
        print("no folder of drawings (ZEF_DWG): nothing is judged")
        return 0
    plan, every, proxies, failed, others = [0, 0], [0, 0], 0, 0, 0
    by_kind, examples = {}, {}
    with tempfile.TemporaryDirectory() as place:
        for dwg, twin in pairs_of(folder):
            out = os.path.join(place, "out.dxf")
            if os.path.exists(out):
                os.remove(out)
            # SAVEAS of what was not changed gives the drawing as it was read.
            run = subprocess.run([zefhost, dwg, "-o", out], input="QUIT\n", text=True, capture_output=True,
                                 timeout=120, check=False)
            if run.returncode != 0 or not os.path.exists(out):
                print(f"{os.path.basename(dwg)}: does not open: {run.stdout} {run.stderr}")
                failed += 1
                continue
            theirs = groups_of(twin) if os.path.exists(twin) else None
            if theirs is None or os.path.basename(dwg) in OTHER_WRITERS:
                continue
            version = open(dwg, "rb").read(6).decode()
            if difference := peers_difference(out, twin):
                print(f"{os.path.basename(dwg)}: ezdxf finds {difference}")
                others += 1
            ours, theirs = records_of(groups_of(out)), records_of(theirs)
            for handle in ours.keys() & theirs.keys():
                section, kind, record = ours[handle]
                other = theirs[handle]
                if kind.startswith("ACAD_PROXY") and not other[1].startswith("ACAD_PROXY"):
                    proxies += 1
                    continue
                if kind in ("TABLE", "SECTION"):
                    continue
                difference = compare(kind, without_gone_links(record, theirs.keys()),
                                     without_gone_links(other[2], ours.keys()), version)
                every[0] += not difference
                every[1] += 1
                if kind in TABLES or section in ("ENTITIES", "BLOCKS"):
                    plan[0] += not difference
                    plan[1] += 1
                count = by_kind.setdefault(kind, [0, 0])
                count[0] += not difference
                count[1] += 1
                if difference:
                    examples.setdefault(kind, []).append(
                        f"{os.path.basename(dwg)} {handle.decode()}: {difference}")
    for kind, (equal, count) in sorted(by_kind.items()):
        if equal != count:
            print(f"{kind}: {equal} of {count} equal")
            for one in examples[kind] if verbose else examples[kind][:2]:
                print("   ", one)
    share = plan[0] / plan[1] if plan[1] else 1
    print(f"entities and tables: {plan[0]} of {plan[1]} records equal ({100 * share:.2f} %); "
          f"all: {every[0]} of {every[1]}; kept as proxies: {proxies}; drawings that do not open: {failed}; "
          f"that ezdxf finds other: {others if ezdxf else 'not asked'}")
    return 1 if failed or others or share < LEAST else 0


sys.exit(main())
