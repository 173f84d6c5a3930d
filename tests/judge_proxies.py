#!/usr/bin/python3
"""An independent reader judges the pictures that entities of applications leave for programs that do not know them.

make_pipes puts pipe entities into a drawing and tells what each of them draws. Then python3-ezdxf, which knows none
of their classes, must find the same lines, areas, circles and texts in their proxy graphics, in drawings of each
version of the files, and in the drawing no fault that it did not find before.

    judge_proxies.py MAKE_PIPES
"""
import collections
import pathlib
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf.math import Vec3
from ezdxf.proxygraphic import ProxyGraphic

DRAWINGS = pathlib.Path(__file__).resolve().parent / "drawings"


def rounded(numbers):
    return tuple(round(float(number), 3) + 0.0 for number in numbers)


def told(lines):
    """Figures by handle, as make_pipes tells them."""
    figures = collections.defaultdict(list)
    for line in lines:
        handle, kind, *rest = line.split("\t")
        if kind == "text":
            figures[handle].append((kind, *rounded(rest[:4]), rest[4]))
        else:
            figures[handle].append((kind, *rounded(rest)))
    return figures


def found(entity, drawing):
    """Figures that the reader finds in an entity's picture."""
    figures = []
    picture = entity.proxy_graphic
    for part in ProxyGraphic(picture, drawing).virtual_entities() if picture else []:
        kind = part.dxftype()
        if kind == "LINE":
            figures.append(("lines", *rounded([*part.dxf.start, *part.dxf.end])))
        elif kind == "POLYLINE":
            points = [number for vertex in part.vertices for number in vertex.dxf.location]
            figures.append(("area" if part.is_closed else "lines", *rounded(points)))
        elif kind == "LWPOLYLINE":
            points = [number for point in part.vertices_in_wcs() for number in point]
            figures.append(("area" if part.closed else "lines", *rounded(points)))
        elif kind == "HATCH":
            for path in part.paths:
                points = [number for x, y, _ in path.vertices for number in (x, y, part.dxf.elevation.z)]
                figures.append(("area", *rounded(points)))
        elif kind == "CIRCLE":
            figures.append(("circle", *rounded([*part.ocs().to_wcs(part.dxf.center), part.dxf.radius])))
        elif kind == "ARC":
            figures.append(("arc", *rounded([*part.ocs().to_wcs(part.dxf.center), part.dxf.radius])))
        elif kind == "TEXT":
            place = Vec3(part.ocs().to_wcs(part.dxf.insert))
            figures.append(("text", *rounded([*place, part.dxf.height]), part.dxf.text))
        else:
            figures.append((kind,))
    return figures


def faults(drawing):
    return sorted(entry.code for entry in drawing.audit().errors)


def judge(make_pipes, path, out, words):
    """Why a drawing fails; nothing when it does not. And how many figures were found."""
    before = faults(ezdxf.readfile(path))
    done = subprocess.run([make_pipes, path, out, words], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        return [f"exit status {done.returncode}: {done.stderr.strip()}"], 0
    drawing = ezdxf.readfile(out)
    expected = told(done.stdout.splitlines())
    wrong = []
    entities = [entity for entity in drawing.modelspace() if entity.dxftype().startswith("ZEF_")]
    if len(entities) < len(expected):
        wrong.append("entities are missing")
    for entity in entities:
        figures = found(entity, drawing)
        if figures != expected[entity.dxf.handle]:
            wrong.append(f"{entity.dxftype()} {entity.dxf.handle}:\n  found {figures}\n"
                         f"  drawn {expected[entity.dxf.handle]}")
    if faults(drawing) != before:
        wrong.append(f"faults: {before}, then {faults(drawing)}")
    return wrong, sum(map(len, expected.values()))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        # The reader takes all texts of one byte a letter for UTF-8, whatever the drawing's code page.
        for name, words in (("r2000_gbk.dxf", "JL-1"), ("r2018.dxf", "JL-1 立管")):
            wrong, count = judge(sys.argv[1], DRAWINGS / name, pathlib.Path(folder) / "out.dxf", words)
            failed += bool(wrong)
            print(f"{name}: {count} figures" + (", all found" if not wrong else ""))
            for text in wrong:
                print(f"  {text}")
    sys.exit(failed != 0)


main()
