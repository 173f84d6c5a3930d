#!/usr/bin/python3
"""python3-ezdxf judges what is exported by layers, and what is extracted from references.

Of each drawing all layers go to one file of the newest version, of 2000 and of R12, and to a file each. The audit finds
nothing in them that it does not find in the drawing; model space has what the drawing has there; no layer, style or block
came along that nothing names. What is extracted from the sample's reference lies where the reference shows it.

    judge_exports.py ZEFHOST [DRAWING...]
"""
import os
import pathlib
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf import recover

SAMPLE = pathlib.Path(__file__).resolve().parent.parent / "samples/storey.dxf"
STANDING = {"0", "DEFPOINTS"}


def check(holds, what):
    if not holds:
        sys.exit(f"judge_exports: {what}")


def run(zefhost, place, drawing, answers):
    script = pathlib.Path(place) / "answers.scr"
    script.write_text("\n".join(answers) + "\n", encoding="utf-8")
    done = subprocess.run([zefhost, "--profile", f"{place}/profile", drawing, "-s", script], capture_output=True,
                          text=True, cwd=place)
    check(done.returncode == 0, f"{drawing}: {done.stdout}{done.stderr}")
    return done.stdout


def read(path):
    drawing, auditor = recover.readfile(path)
    return drawing, {str(error.message) for error in auditor.errors}


def kinds(drawing):
    found = {}
    for entity in drawing.modelspace():
        found[entity.dxftype()] = found.get(entity.dxftype(), 0) + 1
    return found


def used_layers(path):
    """What groups 8 and 1003 name."""
    lines = path.read_bytes().decode("utf-8", "replace").splitlines()
    return {value.upper() for code, value in zip(lines[::2], lines[1::2]) if code.strip() in ("8", "1003")}


def judge(zefhost, path, place):
    source, known = read(path)
    faults = len(known)
    total = 0
    for version in ("", "2000", "R12"):
        out = pathlib.Path(place) / f"all{version}.dxf"
        out.unlink(missing_ok=True)
        run(zefhost, place, path, ["tcdc", "N", "*", "N", "N", version, str(out)])
        if not out.exists():
            check(not list(source.modelspace()), f"{path}: nothing was exported")
            continue
        copy, found = read(out)
        check(len(found) <= faults, f"{path} {version}: {sorted(found - known)[:3]}")
        if version == "":
            check(kinds(copy) == kinds(source), f"{path}: {kinds(source)} became {kinds(copy)}")
            total = len(list(copy.modelspace()))
            used = used_layers(out)
            for layer in copy.layers:
                name = layer.dxf.name.upper()
                check(name in STANDING or name in used or "|" in name, f"{path}: {name} is not needed")
    each = pathlib.Path(place) / "each"
    each.mkdir()
    run(zefhost, place, path, ["tcdc", "N", "*", "Y", "N", "", str(each / "*.dxf")])
    parts = 0
    for file in each.iterdir():
        copy, found = read(file)
        check(len(found) <= faults, f"{path} {file.name}: {sorted(found - known)[:3]}")
        parts += len(list(copy.modelspace()))
        file.unlink()
    each.rmdir()
    check(parts >= total, f"{path}: {total} entities, {parts} in the files of single layers")
    print(f"{path.name}: {total} entities, {parts} by layers")


def main(zefhost, drawings):
    with tempfile.TemporaryDirectory() as place:
        for drawing in [SAMPLE, *map(pathlib.Path, drawings)]:
            judge(os.path.abspath(zefhost), drawing.absolute(), place)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2:])
