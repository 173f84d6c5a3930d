#!/usr/bin/python3
"""An independent reader judges what the check finds, and what putting right leaves.

On each drawing, spoilt in as many ways as there are rules, jcjk's findings are found once more by what python3-ezdxf reads:
each of them must be there, and none besides. After gxfz the check finds nothing that can be mended, and only what findings
named has changed; its audit finds nothing that it did not find before. Layers mapped by a file and back have their names again.

    judge_checks.py ZEFHOST [DRAWING...]

Without drawings: the sample, and when ZEF_CORPUS names a folder of drawings five in it.
"""
import json
import logging
import math
import os
import pathlib
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

import ezdxf
from ezdxf import recover
from ezdxf.math import Vec3

ROOT = pathlib.Path(__file__).resolve().parent.parent
REAL = ["building/dxf-parser__api-cw750-details.dxf", "building/dxf__floorplan.dxf", "variety/ACadSharp__sample_AC1015_ascii.dxf",
        "chinese/Unity3D-DXF-Viewer__Test1.dxf", "variety/netDxf__sample.dxf"]
SAME, OVERLAP, GAP = 0.01, 1.0, 10.0
WEIGHTS = {"默认": -3, "随层": -1, "随块": -2}
GRAPHIC = ("color", "linetype", "lineweight")


class Standard:
    """The layers of the standard file by folded name, the systems of its pipe layers, and its text styles."""

    def __init__(self, file):
        root = xml.etree.ElementTree.parse(file).getroot()
        self.layers, self.pipes, self.styles = {}, {}, set()
        for layer in [*root.find("PipeSystem").iter("Layer"), *root.find("OtherLayer").iter("Layer")]:
            self.layers.setdefault(layer.findtext("LayerName").casefold(), layer)
        for pipe in root.find("PipeSystem").iter("Pipe"):
            for layer in pipe.iter("Layer"):
                if layer.get("LayerType") in ("管线", "立管", "扣弯"):
                    self.pipes.setdefault(layer.findtext("LayerName").casefold(), pipe.find("BaseInfo").findtext("PipeName"))
        self.systems = set(self.pipes.values())
        self.styles = {name.text.casefold() for name in root.find("TextStyleSetting").iter("Name")}


def key(name):
    """A layer's name without case, width and hyphens."""
    half = "".join(chr(ord(c) - 0xFEE0) if "！" <= c <= "～" else c for c in name)
    return "".join(c for c in half.casefold() if c not in "-_ 　‐‑–—―−")


def layer_of(entity):
    try:
        return entity.dxf.get("layer", "0")
    except ezdxf.DXFError:
        return "0"  # of what this reader keeps as bytes it knows none


def read(path):
    try:
        return ezdxf.readfile(path)
    except (ezdxf.DXFError, UnicodeDecodeError, ValueError):
        return recover.readfile(path)[0]


def entities(drawing):
    """What the check looks at: entity, whether it stands in a space; attributes too."""
    for block in drawing.blocks:
        name = block.name.lower()
        space = name.startswith(("*model_space", "*paper_space"))
        if not space and (name.startswith("*") or "|" in name or block.block.dxf.get("xref_path")):
            continue
        for entity in block:
            yield entity, space
            for attribute in getattr(entity, "attribs", []):
                yield attribute, space


def pieces(entity):
    """Straight pieces; None for what is no pipe."""
    if entity.dxftype() == "LINE":
        return [(entity.dxf.start, entity.dxf.end)]
    if entity.dxftype() == "LWPOLYLINE":
        points = list(entity.vertices_in_wcs())
        bulges = [point[4] for point in entity]
        ends = points[1:] + (points[:1] if entity.closed else [])
        return [(a, b) if bulge == 0 else (a, a) for a, b, bulge in zip(points, ends, bulges)]
    return None


def nearest(piece, point):
    a, b = piece
    length = (b - a).magnitude
    if length == 0:
        return a
    return a.lerp(b, min(1.0, max(0.0, (point - a).dot(b - a) / length ** 2)))


def shared(p, q):
    (a, b), (c, d) = sorted((p, q), key=lambda one: -(one[1] - one[0]).magnitude)
    length = (b - a).magnitude
    along = [(point - a).dot(b - a) / length for point in (c, d)]
    if any((a.lerp(b, t / length) - point).magnitude > SAME for t, point in zip(along, (c, d))):
        return 0.0
    return min(max(along), length) - max(min(along), 0.0)


def pipe_findings(drawing, standard):
    """Zero lengths, overlaps and gaps, by comparing each with each."""
    found, systems = set(), {}
    for entity, space in entities(drawing):
        system = standard.pipes.get(layer_of(entity).casefold())
        parts = pieces(entity) if space and system else None
        if not parts:
            continue
        if all((point - parts[0][0]).magnitude <= SAME for part in parts for point in part):
            found.add(("pipe-zero", entity.dxf.handle))
        else:
            systems.setdefault((entity.dxf.owner, system), []).append((entity, parts))
    for members in systems.values():
        missed = {}
        for i, (late, parts) in enumerate(members):
            for early, others in members[:i]:
                if any(shared(p, q) > OVERLAP for p in parts for q in others
                       if (p[1] - p[0]).magnitude > SAME and (q[1] - q[0]).magnitude > SAME):
                    found.add(("pipe-overlap", late.dxf.handle))
            if late.dxftype() == "LWPOLYLINE" and late.closed:
                continue
            for end in (parts[0][0], parts[-1][1]):
                near = [((nearest(piece, end) - end).magnitude, j) for j, (_, rest) in enumerate(members) if j != i
                        for piece in rest]
                if near and SAME < min(near)[0] <= GAP:
                    missed.setdefault(i, []).append((min(near)[1], end))
        for i, ends in missed.items():
            for j, end in ends:
                back = [point for k, point in missed.get(j, []) if k == i and (point - end).magnitude <= GAP]
                if not (back and j > i):
                    found.add(("pipe-gap", members[i][0].dxf.handle))
    return found


def expected(drawing, standard):
    """The findings as (rule, handle) of those rules that this reader can decide for itself."""
    found = set()
    used = {layer_of(entity).casefold() for block in drawing.blocks for entity in block}
    keys = {}
    for layer in standard.layers.values():
        keys.setdefault(key(layer.findtext("LayerName")), set()).add(layer.findtext("LayerName"))
    for layer in drawing.layers:
        name, handle = layer.dxf.name, layer.dxf.handle
        if "|" in name:
            continue
        wanted = standard.layers.get(name.casefold())
        if wanted is None and len(keys.get(key(name), ())) == 1 or wanted is not None and wanted.findtext("LayerName") != name:
            found.add(("layer-near", handle))
        if wanted is None:
            continue
        if "," not in wanted.findtext("LayerColor") and (layer.has_dxf_attrib("true_color") or
                                                        abs(layer.dxf.color) != int(wanted.findtext("LayerColor"))):
            found.add(("layer-color", handle))
        if layer.dxf.linetype.casefold() != wanted.findtext("LineStyle").casefold():
            found.add(("layer-linetype", handle))
        text = wanted.findtext("LineWeight")
        weight = WEIGHTS[text] if text in WEIGHTS else round(float(text) * 100)
        if drawing.dxfversion > "AC1009" and layer.dxf.get("lineweight", -3) != weight:
            found.add(("layer-lineweight", handle))
        if drawing.dxfversion > "AC1009" and bool(layer.dxf.get("plot", 1)) != (wanted.findtext("CanPlot") != "0"):
            found.add(("layer-plot", handle))
    for entity, space in entities(drawing):
        handle = entity.dxf.handle
        if layer_of(entity).casefold() in standard.layers:
            color, linetype, weight = (entity.dxf.get(name) for name in GRAPHIC)
            true = entity.dxf.hasattr("true_color")
            if (true or color not in ((None, 256) if space else (None, 0, 256)) or
                    (linetype or "ByLayer").casefold() not in (("bylayer",) if space else ("bylayer", "byblock")) or
                    weight not in ((None, -1) if space else (None, -1, -2))):
                found.add(("own-properties", handle))
        if entity.dxftype() in ("TEXT", "MTEXT", "ATTRIB", "ATTDEF"):
            if entity.dxf.get("style", "Standard").casefold() not in standard.styles:
                found.add(("text-style", handle))
        if space and entity.has_xdata("VR-LAYER"):
            mark = next((tag.value for tag in entity.get_xdata("VR-LAYER") if tag.code == 1000), "")
            if mark not in standard.systems | {"Dolmo", ""}:
                found.add(("mark", handle))
    return found | pipe_findings(drawing, standard), used


def spoil(drawing):
    """Adds to model space something for every rule that there is a remedy for."""
    space, layers = drawing.modelspace(), drawing.layers
    modern = drawing.dxfversion > "AC1009"
    for name in ("pipe_给水", "ＰＩＰＥ－污水", "W-RAIN-PIPE", "PIPE-消防", "PIPE-喷淋", "没有用的图层"):
        if name not in layers:
            layers.add(name, color=5)
    place = Vec3(-1e5, -1e5)

    def line(layer, a, b, **more):
        return space.add_line(place + Vec3(a), place + Vec3(b), dxfattribs={"layer": layer, **more})

    line("pipe_给水", (0, 0), (900, 0))
    line("ＰＩＰＥ－污水", (0, 50), (900, 50))
    line("W-RAIN-PIPE", (0, 100), (900, 100))
    line("PIPE-喷淋", (0, 150), (900, 150), color=3, linetype="Continuous")
    if modern:
        line("PIPE-喷淋", (0, 200), (900, 200), lineweight=35)
    line("PIPE-消防", (0, 300), (0, 300))
    for layer, y in (("PIPE-消防", 400), ("PIPE-喷淋", 500)):
        line(layer, (0, y), (1000, y))
        line(layer, (200, y), (600, y))  # lies in it
        line(layer, (900, y), (2000, y))  # goes on
        line(layer, (2004, y + 3), (2500, y + 400))  # a hair beside
        line(layer, (1500, y + 2), (1500, y + 90))  # before a pipe
        line(layer, (2500, y + 400), (2900, y + 800))  # meets
        line(layer, (2500, y + 430), (2900, y + 830))  # another one
    space.add_lwpolyline([place + Vec3(p) for p in ((0, 900), (500, 900), (500, 1200))], dxfattribs={"layer": "PIPE-消防"})
    line("PIPE-消防", (500, 1205), (900, 1205))
    if "VR-LAYER" not in drawing.appids:
        drawing.appids.new("VR-LAYER")
    line("0", (0, 700), (900, 700)).set_xdata("VR-LAYER", [(1000, "没有的系统")])


def run(zefhost, profile, drawing, script, *more):
    done = subprocess.run([zefhost, drawing, "-c", script, "--profile", profile, *more], capture_output=True, text=True,
                          check=False, env=os.environ | {"LC_ALL": "C.UTF-8"})
    return done.returncode, done.stdout + done.stderr


def check(zefhost, profile, drawing):
    """The findings of jcjk's report."""
    report = drawing.with_suffix(".json")
    status, said = run(zefhost, profile, drawing, f"jcjk\\nF\\n{report}\\n\\n")
    findings = json.loads(report.read_text(encoding="utf-8"))["findings"]
    if status != (1 if findings else 0):
        raise ValueError(f"status {status} for {len(findings)} findings: {said[-300:]}")
    return findings


def contents(drawing):
    """What each entity is, by its handle, without what merging and mending may touch unseen."""
    return {entity.dxf.handle: (entity.dxftype(), sorted((k, str(v)) for k, v in entity.dxfattribs().items()))
            for block in drawing.blocks for entity in block}


def layers_of(drawing):
    return sorted(layer.dxf.name.casefold() for layer in drawing.layers), {
        entity.dxf.handle: layer_of(entity).casefold() for block in drawing.blocks for entity in block}


def audit(drawing):
    auditor = drawing.audit()
    return {(entry.code, entry.entity.dxf.handle if entry.entity else "") for entry in auditor.errors + auditor.fixes}


def judge(zefhost, source, folder):
    """Why a drawing fails; an empty text when it does not."""
    standard = Standard(ROOT / "share/kol.vrsl")
    profile, path = folder / "profile", folder / "spoilt.dxf"
    drawing = read(source)
    spoil(drawing)
    drawing.encoding = "gbk"  # for the names, where the drawing's version has a code page
    try:
        drawing.saveas(path)
    except AttributeError as error:
        return f"it can not be spoilt: {error}"
    drawing = read(path)
    findings = check(zefhost, profile, path)
    wanted, used = expected(drawing, standard)
    decided = {rule for rule, _ in wanted} | {"pipe-zero", "pipe-overlap", "pipe-gap", "layer-near"}
    got = {(one["rule"], one["handle"]) for one in findings if one["rule"] in decided}
    if got != wanted:
        return f"findings: not told {sorted(wanted - got)[:9]}, wrong {sorted(got - wanted)[:9]}"
    empty = {one["layer"].casefold() for one in findings if one["rule"] == "layer-empty"}
    if empty & used or "没有用的图层" not in empty:
        return f"empty layers: {sorted(empty & used)}"

    mended = folder / "mended.dxf"
    run(zefhost, profile, path, "QUIT\\n", "-o", folder / "same.dxf")
    dry_status, _ = run(zefhost, profile, path, "gxfz\\nA\\nN\\n", "-o", folder / "dry.dxf")
    if dry_status or (folder / "dry.dxf").read_bytes() != (folder / "same.dxf").read_bytes():
        return "a dry run changed the drawing"
    status, said = run(zefhost, profile, path, "gxfz\\nY\\n", "-o", mended)
    if status:
        return f"gxfz: status {status}: {said[-300:]}"
    left = [one for one in check(zefhost, profile, mended) if one["mendable"]]
    if left:
        return f"{len(left)} findings that can be mended are left: {left[:3]}"
    after = read(mended)
    named = {one["handle"] for one in findings if one["mendable"]} | {one.get("other") for one in findings}
    moved = {one["layer"].casefold() for one in findings if one["rule"] in ("layer-near", "layer-alias")}
    old, new = contents(drawing), contents(after)
    touched = [handle for handle in old if old[handle] != new.get(handle) and handle not in named and
               dict(old[handle][1])["layer"].casefold() not in moved]
    if touched or set(new) - set(old):
        return f"changed without a finding: {touched[:9]}, new: {sorted(set(new) - set(old))[:9]}"
    if more := audit(after) - audit(drawing):
        return f"audit: {sorted(more)[:5]}"

    mapping, there, back = folder / "map.txt", folder / "there.dxf", folder / "back.dxf"
    mapping.write_text("# all\n给水=J\nPIPE-*=外院-*-P\nA??*=审A-??*\n墙体=PIPE-消防\nPIPE-消防=墙体\n", encoding="utf-8")
    for script, come, go in ((f"gxfz\\nM\\n{mapping}\\nY\\n", mended, there), (f"gxfz\\nT\\n{mapping}\\nY\\n", there, back)):
        status, said = run(zefhost, profile, come, script, "-o", go)
        if status:
            return f"mapping: status {status}: {said[-300:]}"
    if layers_of(read(there)) == layers_of(after) or layers_of(read(back)) != layers_of(after):
        return "the mapping turned round did not give the layers back"
    return ""


def main():
    logging.disable(logging.CRITICAL)
    zefhost = pathlib.Path(sys.argv[1]).resolve()
    drawings = [pathlib.Path(name) for name in sys.argv[2:]]
    if not drawings:
        drawings = [ROOT / "samples/storey.dxf"]
        if corpus := os.environ.get("ZEF_CORPUS"):
            drawings += [pathlib.Path(corpus) / name for name in REAL]
    failed = 0
    for drawing in drawings:
        with tempfile.TemporaryDirectory() as folder:
            why = judge(zefhost, drawing, pathlib.Path(folder))
        print(f"{drawing.name}: {why or 'good'}", flush=True)
        if why:
            failed += 1
    print(f"{len(drawings) - failed} of {len(drawings)} drawings: findings and remedies as an independent reader has them")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
