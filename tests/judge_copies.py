#!/usr/bin/python3
"""Independent readers judge what is drawn by the standard on the sample, and the copy in which it is taken apart.

Pipes of six systems, risers, a valve. python3-ezdxf's audit finds nothing in either drawing and sees a picture of every
pipe; LibreCAD, when it is installed, plots the copy without a screen.

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
        lines += ["hzgx", system, "50", f"30000,{i * 1000}", f"34000,{i * 1000}", "",
                  "hzlg", system, "50", "0", "3", f"36000,{i * 1000}", ""]
    lines += ["hzfj", "Z", "32000,0", "", "zhcc", str(copy)]
    return "\n".join(lines) + "\n"


def check(holds, what):
    if not holds:
        sys.exit(f"judge_copies: {what}")


def main(zefhost):
    with tempfile.TemporaryDirectory() as place:
        drawn, copy = pathlib.Path(place) / "drawn.dxf", pathlib.Path(place) / "copy.dxf"
        (pathlib.Path(place) / "draw.scr").write_text(script(copy), encoding="utf-8")
        subprocess.run([zefhost, "--profile", f"{place}/profile", SAMPLE, "-s", f"{place}/draw.scr", "-o", drawn],
                       check=True, stdout=subprocess.DEVNULL)
        before = len(list(ezdxf.readfile(SAMPLE).modelspace()))
        pieces = 0
        for path in (drawn, copy):
            drawing = ezdxf.readfile(path)
            check(not drawing.audit().errors, f"{path.name}: {drawing.audit().errors}")
            ours = [entity for entity in drawing.modelspace() if entity.dxftype().startswith("ZEF_")]
            if path == drawn:
                for entity in ours:
                    seen = list(entity.__virtual_entities__())
                    check(bool(seen) != (entity.dxftype() == "ZEF_PIPENODE"), f"{entity}: {seen}")
                    pieces += len(seen)
            else:
                check(not ours, f"{copy.name}: {ours}")
                check(len(list(drawing.modelspace())) == before + pieces, f"{copy.name}: not {pieces} pieces")
        if shutil.which("librecad"):
            subprocess.run(["librecad", "dxf2pdf", "-a", "-o", f"{place}/copy.pdf", copy], check=True, timeout=120,
                           env=os.environ | {"QT_QPA_PLATFORM": "offscreen"}, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            check(os.path.getsize(f"{place}/copy.pdf") > 1000, "LibreCAD plotted nothing")
        print(f"{len(SYSTEMS)} systems, {pieces} pieces: ezdxf" + (" and LibreCAD" if shutil.which("librecad") else ""))


if __name__ == "__main__":
    main(sys.argv[1])
