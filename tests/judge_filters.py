#!/usr/bin/python3
"""An independent reader judges the layer filters that the module makes for groups of pipe systems.

On each drawing a script makes layers of two groups, with the sorting of layers turned on. Then the drawing's layer
table must have the filters, python3-ezdxf must find the layers behind their handles, its audit nothing that it did
not find before, and after U the drawing must be what it was.

    judge_filters.py ZEFHOST [DRAWING...]
"""
import pathlib
import subprocess
import sys
import tempfile

from judging import audit, drawings, judge_all, opened

SCRIPT = "-LAYER N DIM_压力污水\n\n-LAYER N VPIPE-给水\n\n-LAYER OFF DIM_压力污水\n\n"


def filters(drawing):
    """The groups among the drawing's filters: the layers' names by the group's."""
    found = {}
    table = drawing.layers.head
    if not table.has_extension_dict:
        return found
    dictionary = table.get_extension_dict().dictionary.get("ACLYDICTIONARY")
    for _, record in dictionary.items() if dictionary is not None else []:
        tags = [(tag.code, tag.value) for tag in record.tags]
        if tags[0] != (1, "AcLyLayerGroup"):
            continue
        if tags[1] != (90, 1) or tags[2][0] != 300 or record.dxf.owner != dictionary.dxf.handle:
            return {"bad": {str(tags)}}
        found[tags[2][1]] = {drawing.entitydb[value].dxf.name for code, value in tags[3:] if code == 330}
    return found


def judge(zefhost, path, folder):
    """Why a drawing fails; an empty text when it does not, None when it can not be judged."""
    before = opened(path)
    if before is None or before.dxfversion <= "AC1009":
        return None
    made = [name for name in ("DIM_压力污水", "VPIPE-给水") if name not in before.layers]
    if len(made) < 2:
        return None
    had = filters(before)
    found = audit(before)
    for script, wanted in ((SCRIPT, {"排水系统": {"DIM_压力污水"}, "给水系统": {"VPIPE-给水"}}),
                           (SCRIPT + "U\nU\nU\n", {})):
        out = folder / "out.dxf"
        done = subprocess.run([zefhost, path, "--profile", folder / "profile", "-o", out], input=script,
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            return f"exit status {done.returncode}: {done.stderr.strip()}"
        after = opened(out)
        if after is None:
            return "it can not be opened any more"
        if filters(after) != had | wanted:
            return f"the filters are {filters(after)}"
        if audit(after) != found:
            return "the audit finds something else than before"
    return ""


def main():
    zefhost = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        subprocess.run([zefhost, "--profile", folder / "profile"], input="", check=False, capture_output=True)
        config = folder / "profile" / "sys" / "CmdConfig.xml"
        text = config.read_text(encoding="utf-8")
        config.write_text(text.replace('"图层自动分组">0', '"图层自动分组">1'), encoding="utf-8")
        return judge_all(drawings(sys.argv[2:]), lambda path: judge(zefhost, path, folder))


if __name__ == "__main__":
    sys.exit(main())
