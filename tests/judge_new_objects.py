#!/usr/bin/python3
"""An independent reader judges what new objects the host puts into drawings.

make_objects adds a layer, a block with a reference to it, a circle to each space, an extension dictionary. Then
python3-ezdxf must find them where they belong, and its audit nothing that it did not find before.

    judge_new_objects.py MAKE_OBJECTS [DRAWING...]

Without drawings: the tests' own, some that lack most of what a drawing has, and when ZEF_CORPUS names a folder of
drawings those in it.
"""
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
BARE = {
    "entities": "0 SECTION|2 ENTITIES|0 LINE|8 0|10 0|20 0|11 1|21 1|0 ENDSEC|0 EOF",
    "header": "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 EOF",
    "handles": "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|9 $HANDLING|70 1|9 $HANDSEED|5 20|0 ENDSEC|"
               "0 SECTION|2 ENTITIES|0 LINE|5 10|8 0|10 0|20 0|11 1|21 1|0 ENDSEC|0 EOF",
}


def opened(path):
    """The drawing; None when it can not be opened."""
    try:
        return ezdxf.readfile(path)
    except (ezdxf.DXFError, UnicodeDecodeError, ValueError, AttributeError):
        try:
            return recover.readfile(path)[0]
        except (ezdxf.DXFError, UnicodeDecodeError, ValueError, AttributeError):
            return None


def audit(drawing):
    """What the auditor finds, without the addresses and handles that its messages carry."""
    auditor = drawing.audit()
    return sorted((entry.code, re.sub(r"0x[0-9a-f]+|#[0-9A-F]+", "", entry.message))
                  for entry in auditor.errors + auditor.fixes)


def judge(make_objects, path, folder):
    """Why a drawing fails; an empty text when it does not, None when the reader can not open it."""
    before = opened(path)
    if before is None:
        return None
    out = folder / "out.dxf"
    done = subprocess.run([make_objects, path, out], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        return f"exit status {done.returncode}: {done.stderr.strip()}"
    circles = {layout.name: len(layout.query("CIRCLE")) for layout in before.layouts}
    found = audit(before)
    after = opened(out)
    if after is None:
        return "it can not be opened any more"
    if "ZEF_NEW" not in after.layers:
        return "the layer is missing"
    if [entity.dxftype() for entity in after.blocks.get("ZEF_NEW_BLOCK", [])] != ["LINE"]:
        return "the block is missing"
    for layout in after.layouts:
        new = layout.query('CIRCLE[layer=="ZEF_NEW"]')
        if len(layout.query("CIRCLE")) != circles[layout.name] + len(new) or len(new) > 1:
            return f"circles of {layout.name} differ"
        if layout.name == "Model" and len(new) != 1:
            return "the circle of model space is missing"
        if any(circle.get_xdata("ZEF_NEW")[0].value != "a pipe" for circle in new):
            return "extended data differ"
    references = after.modelspace().query('INSERT[name=="ZEF_NEW_BLOCK"]')
    if len(references) != 1:
        return "the reference is missing"
    if after.dxfversion > "AC1009" and "ZEF_NEW" not in references[0].get_extension_dict().dictionary:
        return "the extension dictionary is missing"
    if audit(after) != found:
        return f"the audit finds something else than before: {[entry for entry in audit(after) if entry not in found]}"
    return ""


def main():
    logging.disable()  # the reader tells of every value that it repairs
    make_objects = pathlib.Path(sys.argv[1]).resolve()
    failed = judged = 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        drawings = [pathlib.Path(argument) for argument in sys.argv[2:]]
        if not drawings:
            drawings = sorted((ROOT / "tests" / "drawings").glob("*.dxf"))
            for bare, groups in BARE.items():
                path = folder / f"{bare}.dxf"
                path.write_text("".join(group.replace(" ", "\n", 1) + "\n" for group in groups.split("|")))
                drawings.append(path)
            corpus = os.environ.get("ZEF_CORPUS")
            if corpus:
                drawings += sorted(path for path in pathlib.Path(corpus).rglob("*.dxf")
                                   if path.parent.name not in ("broken", "binary"))
        for drawing in drawings:
            fault = judge(make_objects, drawing, folder)
            judged += fault is not None
            if fault:
                failed += 1
                print(f"{drawing.name}: {fault}")
    print(f"{judged} drawings judged, {failed} failed")
    return 1 if failed or not judged else 0


if __name__ == "__main__":
    sys.exit(main())
