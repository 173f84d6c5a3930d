#!/usr/bin/python3
"""An independent reader judges what new objects the host puts into drawings.

make_objects adds a layer, a block with a reference to it, a circle to each space, an extension dictionary. Then
python3-ezdxf must find them where they belong, and its audit nothing that it did not find before.

    judge_new_objects.py MAKE_OBJECTS [DRAWING...]

Without drawings: the tests' own, some that lack most of what a drawing has, and when ZEF_CORPUS names a folder of
drawings those in it.
"""
import pathlib
import subprocess
import sys
import tempfile

from judging import audit, drawings, judge_all, opened

BARE = {
    "entities": "0 SECTION|2 ENTITIES|0 LINE|8 0|10 0|20 0|11 1|21 1|0 ENDSEC|0 EOF",
    "header": "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 EOF",
    "handles": "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|9 $HANDLING|70 1|9 $HANDSEED|5 20|0 ENDSEC|"
               "0 SECTION|2 ENTITIES|0 LINE|5 10|8 0|10 0|20 0|11 1|21 1|0 ENDSEC|0 EOF",
}


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
    make_objects = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for bare, groups in BARE.items():
            (folder / f"{bare}.dxf").write_text("".join(group.replace(" ", "\n", 1) + "\n" for group in groups.split("|")))
        bare = sorted(folder.glob("*.dxf"))
        return judge_all(drawings(sys.argv[2:], more=bare), lambda path: judge(make_objects, path, folder))


if __name__ == "__main__":
    sys.exit(main())
