#!/usr/bin/python3
"""An independent reader judges drawings that the host saved as other versions.

Each drawing is saved as every version. python3-ezdxf must read the file, find the version and the entities of the
source in it (of each layout and block, by type and layer, with their texts), or be told how many are in another form;
its audit must find nothing that it does not find in the source. Drawings of R12 that were saved as 2018 and then as
R12 again must hold every group that they had.

    judge_versions.py ZEFHOST [DRAWING...]

Without drawings: the sample, the tests' own, some that lack most of what a drawing has, and when ZEF_CORPUS names a
folder of drawings those in it.
"""
import collections
import concurrent.futures
import logging
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf import recover

ROOT = pathlib.Path(__file__).resolve().parent.parent
VERSIONS = {"2018": "AC1032", "2013": "AC1027", "2010": "AC1024", "2007": "AC1021", "2004": "AC1018",
            "2000": "AC1015", "R12": "AC1009"}
IN_R12 = {"3DFACE", "ARC", "ATTDEF", "ATTRIB", "CIRCLE", "DIMENSION", "INSERT", "LINE", "POINT", "SHAPE", "SOLID",
          "TRACE", "TEXT", "VIEWPORT"}
BARE = {
    "entities": "0 SECTION|2 ENTITIES|0 LINE|8 0|10 0|20 0|11 1|21 1|0 ENDSEC|0 EOF",
    "header": "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 EOF",
    "names": "0 SECTION|2 ENTITIES|0 TEXT|8 PIPES|6 DASHED|7 ROMAN|10 0|20 0|40 1|1 a|1001 THEIRS|1000 b|"
             "0 DIMENSION|8 0|2 *D0|3 THEIR STYLE|10 0|20 0|70 0|13 0|23 0|14 9|24 0|0 ENDSEC|0 EOF",
}


def opened(path):
    """The drawing, and what reads it: the strict reader when it can, else the one that repairs. None when neither can."""
    for reader in (ezdxf.readfile, lambda path: recover.readfile(path)[0]):
        try:
            return reader(path), reader
        except (ezdxf.DXFError, UnicodeDecodeError, ValueError, AttributeError, KeyError):
            pass
    return None, None


def audit(drawing):
    """What the auditor finds. In R12 it takes every end of attributes for one without an owner, since owners came
    later; and it does not read characters that a code page lacks."""
    auditor = drawing.audit()
    return collections.Counter(entry.code for entry in auditor.errors + auditor.fixes if "\\U+" not in entry.message and
                               (drawing.dxfversion > "AC1009" or "Deleted SEQEND" not in entry.message))


def decoded(text):
    """A text with the characters that its code page lacks: the reader leaves them as the file has them."""
    return re.sub(r"\\U\+([0-9A-Fa-f]{4})", lambda match: chr(int(match[1], 16)), text)


def layer_of(entity):
    if entity.dxf.is_supported("layer"):
        return decoded(entity.dxf.layer).upper()
    # of a type that the reader does not know
    return next((decoded(tag.value).upper() for tags in entity.xtags.subclasses for tag in tags if tag.code == 8), "0")


def places(drawing):
    """The entities of each layout and block: {place: {(type, layer): count}}, and the texts of each place."""
    counts, texts = {}, {}
    for place in drawing.blocks:
        name = decoded(place.name).upper().replace("$MODEL", "*MODEL").replace("$PAPER", "*PAPER")
        if re.match("_[A-Z]", name):
            continue  # arrows, which the reader makes where a file lacks them
        counts[name] = collections.Counter((entity.dxftype().replace("3DLINE", "LINE"), layer_of(entity)) for entity in place)
        texts[name] = collections.Counter(decoded(entity.dxf.text) for entity in place if entity.dxftype() == "TEXT")
    return counts, texts


def totals(counts):
    return sum((collections.Counter({kind: number}) for of_place in counts.values()
                for (kind, _), number in of_place.items()), collections.Counter())


def compare_modern(before, after):
    for place, counts in before[0].items():
        found = after[0].get(place)
        # The reader drops what it can not make sense of in one version and not in another.
        if found is None or any(found[key] < number for key, number in counts.items()):
            return f"{place} has {dict((found or {}))}, not {dict(counts)}"
        if before[1][place] != after[1][place]:
            return f"texts of {place} differ"
    return ""


def compare_r12(before, after, told):
    sheets = [name for name in before[0] if name.startswith("*PAPER_SPACE") and name != "*PAPER_SPACE"]
    had, has = totals({name: place for name, place in before[0].items() if name not in sheets}), totals(after[0])
    for kind, number in had.items():
        written = sum(count for what, count in told if what == kind)
        if kind in IN_R12 and kind != "INSERT" and has[kind] < number and not written:
            return f"{kind}: {has[kind]}, not {number}"
        if kind not in IN_R12 and kind not in ("LWPOLYLINE", "POLYLINE") and written < number:
            return f"{kind}: {number}, of which only {written} are told"
    if has["POLYLINE"] < had["POLYLINE"] + had["LWPOLYLINE"]:
        return "polylines are missing"
    wrong = [kind for kind in has if kind not in IN_R12 and kind not in ("POLYLINE", "SEQEND", "ENDBLK")]
    return f"R12 has no {wrong}" if wrong else ""


# ---- groups as they stand in the files

def records(path):
    """The groups of each record with its section, in the order of the file."""
    text = path.read_bytes().decode("utf-8" if b"AC1021" < path.read_bytes()[:400].split(b"AC")[-1][:4] else "latin-1")
    lines = text.replace("\r\n", "\n").split("\n")
    found, section = [], ""
    groups = [(int(lines[i]), lines[i + 1].strip()) for i in range(0, len(lines) - 1, 2) if lines[i].strip()]
    for i, (code, value) in enumerate(groups):
        if code == 0:
            if value == "SECTION":
                section = groups[i + 1][1]
            found.append((section, []))
        if found:
            found[-1][1].append((code, value))
    return found


NAMES = {2, 3, 6, 7, 8, 1001, 1003}
SPACES = ("*MODEL_SPACE", "*PAPER_SPACE", "$MODEL_SPACE", "$PAPER_SPACE")


def plain_name(text):
    """As R12 takes names, and without what its code page may lack."""
    return re.sub(r"[^A-Z0-9$_*|-]", "_", decoded(text).upper())[:31]


def kept(path):
    """What a file must give back: the entities, blocks and entries, each with its groups but for handles."""
    result = collections.defaultdict(list)
    skipping = False
    for section, groups in records(path):
        kind = groups[0][1]
        if section not in ("TABLES", "BLOCKS", "ENTITIES") or kind in ("SECTION", "ENDSEC", "TABLE", "ENDTAB"):
            continue
        if kind == "BLOCK":
            skipping = dict(reversed(groups)).get(2, "").upper() in SPACES
        if kind in ("BLOCK", "ENDBLK") and skipping:
            continue
        height = dict(groups).get(38)
        plain = collections.Counter()
        for code, value in groups[1:]:
            if code == 5 or code == 38 and height is not None:
                continue
            try:
                value = float(value) if code < 1000 and code not in NAMES | {1, 4} else value
            except ValueError:
                pass
            if code not in (5, 6, 7) or value:  # a dimension style without arrows of its own
                plain[code, plain_name(str(value)) if code in NAMES else value] += 1
        result[section].append(("LINE" if kind == "3DLINE" else kind, plain))
    return result


def variables(path):
    header = next((groups for section, groups in records(path) if section == "HEADER"), [])
    found, name = {}, None
    for code, value in header:
        if code == 9:
            name = value
        elif name:
            found.setdefault(name, []).append(plain_name(value))
    return found


def compare_groups(before, after):
    old, new = kept(before), kept(after)
    for section, entries in old.items():
        if section == "TABLES":  # tables of the file may stand in another order, and have more
            found = collections.defaultdict(list)
            for kind, groups in new[section]:
                found[kind].append(groups)
            for kind, groups in entries:
                if groups[2, "BYLAYER"] or groups[2, "BYBLOCK"]:
                    continue
                if not any(not groups - other for other in found[kind]):
                    return f"the {kind} {dict(groups)} is lost"
            continue
        if len(entries) != len(new[section]):
            return f"{section}: {len(new[section])} records, not {len(entries)}"
        for (kind, groups), (kind_after, groups_after) in zip(entries, new[section]):
            if kind != kind_after or groups - groups_after:
                return f"{kind_after} lost {dict(groups - groups_after)} of the {kind}"
    was, now = variables(before), variables(after)
    lost = [name for name in was if now.get(name) != was[name] and name not in (
        "$ACADVER", "$HANDSEED", "$HANDLING", "$DIMSTYLE", "$DWGCODEPAGE", "$ACADMAINTVER")]
    return f"the header lost {lost}" if lost else ""


def save_as(zefhost, drawing, out, version):
    """What was told; a text when it failed."""
    done = subprocess.run([zefhost, "--no-module", drawing, "-c", "", "-o", out, "--as", version],
                          capture_output=True, text=True, errors="replace", check=False, timeout=300)
    if done.returncode != 0:
        return f"exit status {done.returncode}: {done.stderr.strip()[-200:]}"
    return [(match[1], int(match[2])) for match in re.finditer(r": ([^:\n]+): (\d+) ", done.stdout + done.stderr)]


def judge(zefhost, path, folder):
    """Why a drawing fails, for each version that does; None when the reader can not open it."""
    logging.disable()
    source, reader = opened(path)
    if source is None:
        return path.name, None
    before, found = places(source), audit(source)
    faults = []
    for version, number in VERSIONS.items():
        out = folder / f"{path.stem}-{os.getpid()}-{version}.dxf"
        told = save_as(zefhost, path, out, version)
        if isinstance(told, str):
            faults.append(f"{version}: {told}")
            continue
        try:
            after = reader(out)
        except Exception as error:  # whatever it is, others can not read the file
            faults.append(f"{version}: it can not be read: {error!r}")
            continue
        fault = ""
        if after.dxfversion != number:
            fault = f"it is of {after.dxfversion}"
        elif source.dxfversion != number:
            now = places(after)
            fault = compare_r12(before, now, told) if version == "R12" else compare_modern(before, now)
            if more := audit(after) - found:
                fault = fault or f"the audit finds {[(ezdxf.audit.AuditError(code).name, n) for code, n in more.items()]}"
        if not fault and version == "2018" and source.dxfversion <= "AC1009":
            back = folder / f"{path.stem}-{os.getpid()}-back.dxf"
            told = save_as(zefhost, out, back, "R12")
            fault = told if isinstance(told, str) else compare_groups(path, back)
            fault = fault and "up and back: " + fault
        if fault:
            faults.append(f"{version}: {fault}")
        out.unlink()
    return path.name, faults


def main():
    zefhost = pathlib.Path(sys.argv[1]).resolve()
    failed = judged = 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        drawings = [pathlib.Path(argument) for argument in sys.argv[2:]]
        if not drawings:
            drawings = [ROOT / "samples" / "storey.dxf", *sorted((ROOT / "tests" / "drawings").glob("*.dxf"))]
            for bare, groups in BARE.items():
                path = folder / f"{bare}.dxf"
                path.write_text("".join(group.replace(" ", "\n", 1) + "\n" for group in groups.split("|")))
                drawings.append(path)
            corpus = os.environ.get("ZEF_CORPUS")
            if corpus:
                drawings += sorted(path for path in pathlib.Path(corpus).rglob("*.dxf")
                                   if path.parent.name not in ("broken", "binary"))
        with concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
            for drawing, faults in pool.map(judge, *zip(*[(zefhost, drawing, folder) for drawing in drawings])):
                judged += faults is not None
                failed += bool(faults)
                for fault in faults or []:
                    print(f"{drawing}: as {fault}")
    print(f"{judged} drawings judged, {failed} failed")
    return 1 if failed or not judged else 0


if __name__ == "__main__":
    sys.exit(main())
