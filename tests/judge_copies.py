#!/usr/bin/python3
"""Independent readers judge what is drawn by the standard on the sample, and the copy in which it is taken apart.

Pipes of six systems with labels, risers with numbers, a valve. python3-ezdxf's audit finds nothing in either drawing
and sees a picture of every pipe; what is written in the pictures is what the copy says, and so says a copy that is made
when the drawing was opened again. LibreCAD, when it is installed, plots the copy without a screen.

    judge_copies.py ZEFHOST
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import ezdxf

SAMPLE = pathlib.Path(__file__).resolve().parent.parent / "samples/storey.dxf"
SYSTEMS = ["给水", "热给水", "消防", "喷淋", "污水", "雨水"]


def script(copy):
    lines = []
    for i, system in enumerate(SYSTEMS):
        lines += ["hzgx", system, "50", "Y", f"30000,{i * 1000}", f"34000,{i * 1000}", "",
                  "hzlg", system, "50", "0", "3", f"36000,{i * 1000}", ""]
    lines += ["hzfj", "Z", "32000,0", "",
              "bzgj", "S", "3", "", "(ssget \"X\" '((8 . \"PIPE-喷淋\") (0 . \"ZEF_PIPE\")))", "",
              "gxbh", "(ssget \"X\" '((8 . \"VPIPE-*\") (0 . \"ZEF_PIPE\")))", "", "J", "L-1", "", "X",
              "zhcc", str(copy)]
    return "\n".join(lines) + "\n"


def check(holds, what):
    if not holds:
        sys.exit(f"judge_copies: {what}")


def texts(entities):
    """What is written, and where, as far as a tenth of a millimetre."""
    return sorted((text.plain_text(), *(round(number, 1) for number in text.dxf.insert)) for text in entities
                  if text.dxftype() == "TEXT" and text.dxf.insert.x > 29000)


def main(zefhost):
    with tempfile.TemporaryDirectory() as place:
        drawn, copy, again = (pathlib.Path(place) / f"{name}.dxf" for name in ("drawn", "copy", "again"))
        (pathlib.Path(place) / "draw.scr").write_text(script(copy), encoding="utf-8")
        subprocess.run([zefhost, "--profile", f"{place}/profile", SAMPLE, "-s", f"{place}/draw.scr", "-o", drawn],
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run([zefhost, "--profile", f"{place}/profile", drawn, "-c", f"zhcc {again}"], check=True,
                       stdout=subprocess.DEVNULL)
        before = len(list(ezdxf.readfile(SAMPLE).modelspace()))
        pieces, written = 0, []
        for path in (drawn, copy, again):
            drawing = ezdxf.readfile(path)
            check(not drawing.audit().errors, f"{path.name}: {drawing.audit().errors}")
            ours = [entity for entity in drawing.modelspace() if entity.dxftype().startswith("ZEF_")]
            if path == drawn:
                for entity in ours:
                    seen = list(entity.__virtual_entities__())
                    check(bool(seen) != (entity.dxftype() == "ZEF_PIPENODE"), f"{entity}: {seen}")
                    pieces += len(seen)
                    written += texts(seen)
            else:
                check(texts(drawing.modelspace()) == sorted(written), f"{copy.name}: other texts")
                check(not ours, f"{copy.name}: {ours}")
                check(len(list(drawing.modelspace())) == before + pieces, f"{copy.name}: not {pieces} pieces")
        said = sorted(text for text, *_ in written)
        check(said == sorted(["DN50"] * 11 + [f"L-{i + 1}" for i in range(6)] + ["ZP Ø60.3x3.8"]), said)
        if shutil.which("librecad"):
            subprocess.run(["librecad", "dxf2pdf", "-a", "-o", f"{place}/copy.pdf", copy], check=True, timeout=120,
                           env=os.environ | {"QT_QPA_PLATFORM": "offscreen"}, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            check(os.path.getsize(f"{place}/copy.pdf") > 1000, "LibreCAD plotted nothing")
        print(f"{len(SYSTEMS)} systems, {pieces} pieces: ezdxf" + (" and LibreCAD" if shutil.which("librecad") else ""))


if __name__ == "__main__":
    main(sys.argv[1])
