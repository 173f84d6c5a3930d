#!/usr/bin/python3
"""An independent eye judges our pictures.

python3-ezdxf's drawing add-on draws the model space of a drawing by matplotlib, zefhost draws the same window on the same paper. Both are
compared tile by tile: a tile agrees when there is ink in both or in neither, where ink may lie up to one tile away. Both draw a copy of the
drawing that python3-ezdxf writes, without what the two cannot draw alike (NOT_ALIKE says what, and why). Status 1 when a drawing has more
tiles that differ than ALLOWED. Then the sample becomes a PNG, an SVG and a PDF, which rsvg-convert and pdftoppm turn into dots again: all
of them show the same, and the names of rooms can be read in the PDF.

    judge_pictures.py [--show FOLDER] ZEFHOST [DRAWING...]

--show keeps both pictures of each drawing that differs. Without drawings: the sample and, when ZEF_CORPUS names a folder of drawings, those
in it.
"""
import argparse
import logging
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import matplotlib

matplotlib.use("Agg")
import matplotlib.image
import matplotlib.pyplot as plt
import numpy
from ezdxf import bbox, recover
from ezdxf.addons.drawing import Frontend, RenderContext
from ezdxf.addons.drawing.config import Configuration, LinePolicy
from ezdxf.addons.drawing.matplotlib import MatplotlibBackend

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAPER = (400.0, 300.0)  # millimetres
DOTS = 4  # to a millimetre
OURS = 2  # times as many in our pictures
TILE = 16  # dots
ALLOWED = 0.01  # of all tiles

# Types of entities that are taken out of both drawings.
NOT_ALIKE = {
    **dict.fromkeys(("TEXT", "MTEXT", "ATTRIB", "ATTDEF", "TOLERANCE", "MULTILEADER", "ACAD_TABLE"), "letters are those of other fonts"),
    **dict.fromkeys(("XLINE", "RAY"), "drawn there as far as a setting says"),
    **dict.fromkeys(("PDFUNDERLAY", "DWFUNDERLAY", "DGNUNDERLAY", "IMAGE", "WIPEOUT", "OLE2FRAME"), "frames are not drawn there"),
    **dict.fromkeys(("MLINE", "LEADER"), "drawn there by their points alone"),
    **dict.fromkeys(("3DSOLID", "BODY", "REGION", "SURFACE"), "not drawn there"),
    **dict.fromkeys(("ACAD_PROXY_ENTITY",), "drawn there without its colours and texts"),
    "SHAPE": "needs a file of shapes",
    "HATCH": "patterns are drawn there by matplotlib's own",
}


# Drawings that differ for a reason of their own.
EXPLAINED = {
    "gdal__frozen-off": "what stands in a block whose reference is frozen is drawn there",
    "gdal__block-hidden-entities": "the copy, of R12, has lost which entities are hidden",
    "netDxf__sample": "points, smoothed meshes and control frames are drawn there in a way of their own",
    "DXF-PostGIS-Converter__ex1": "lines with a width below that of a dot vanish there",
}


def window_of(document):
    """The window that shows all of model space, in the proportions of the paper."""
    box = bbox.extents(document.modelspace(), fast=True)
    if not box.has_data:
        return None
    x, y = box.center.x, box.center.y
    half = max(box.size.x / PAPER[0], box.size.y / PAPER[1], 1e-6) * 0.525
    return x - half * PAPER[0], y - half * PAPER[1], x + half * PAPER[0], y + half * PAPER[1]


def without_unlike(document):
    for block in document.blocks:
        for entity in list(block):
            clipped = entity.dxftype() == "INSERT" and entity.has_extension_dict  # clips are not followed there
            if entity.dxftype() in NOT_ALIKE or clipped:
                block.delete_entity(entity)
                continue
            if entity.dxftype() == "INSERT":
                entity.delete_all_attribs()
            entity.dxf.discard("linetype")  # dashes begin elsewhere
    for layer in document.layers:
        layer.dxf.linetype = "Continuous"


def theirs(document, window):
    plt.close("all")
    figure = plt.figure(figsize=(PAPER[0] / 25.4, PAPER[1] / 25.4), dpi=DOTS * 25.4)
    axes = figure.add_axes([0, 0, 1, 1])
    context = RenderContext(document)
    context.set_current_layout(document.modelspace())
    out = MatplotlibBackend(axes, adjust_figure=False)
    manner = Configuration.defaults().with_changes(line_policy=LinePolicy.SOLID, lineweight_scaling=1.0)
    properties = context.current_layout_properties
    properties.set_colors("#ffffff")
    Frontend(context, out, config=manner).draw_layout(document.modelspace(), finalize=False, layout_properties=properties)
    axes.set_xlim(window[0], window[2])
    axes.set_ylim(window[1], window[3])
    axes.set_aspect("auto")
    axes.axis("off")
    figure.set_facecolor("white")
    figure.canvas.draw()
    image = numpy.asarray(figure.canvas.buffer_rgba())[:, :, :3].astype(int)
    plt.close(figure)
    return image


def ours(zefhost, drawing, window, folder):
    out = pathlib.Path(folder) / "ours.png"
    answers = (f"MODEL\\nPICTURE {out} Window {window[0]!r},{window[1]!r} {window[2]!r},{window[3]!r} {PAPER[0]:.0f}x{PAPER[1]:.0f} "
               f"{PAPER[0] / (window[2] - window[0])!r} Colors\\n")
    done = subprocess.run([zefhost, drawing, "--readonly", "--no-module", "--profile", f"{folder}/profile", "-c", answers],
                          capture_output=True, text=True, timeout=300)
    if not out.exists():
        return None, done.stdout[-500:] + done.stderr[-500:]
    image = (matplotlib.image.imread(out)[:, :, :3] * 255).astype(int)
    return pooled(image), ""


def pooled(image):
    rows, columns = image.shape[0] // OURS, image.shape[1] // OURS
    return image[:rows * OURS, :columns * OURS].reshape(rows, OURS, columns, OURS, 3).min(axis=(1, 3))


def tiles(image):
    """How many dots of each tile have ink."""
    rows, columns = image.shape[0] // TILE, image.shape[1] // TILE
    cut = image[:rows * TILE, :columns * TILE].reshape(rows, TILE, columns, TILE, 3).transpose(0, 2, 1, 3, 4)
    darkness = 255 - cut.min(axis=4)
    return (darkness > 60).sum(axis=(2, 3))


def widened(ink):
    wide = ink.copy()
    for rows in (-1, 0, 1):
        for columns in (-1, 0, 1):
            wide |= numpy.roll(numpy.roll(ink, rows, 0), columns, 1)
    return wide


def differing(a, b):
    """The tiles with ink in one picture that have none near in the other."""
    size = min(a.shape[0], b.shape[0]), min(a.shape[1], b.shape[1])
    ink_a = tiles(a[:size[0], :size[1]]) > 2
    ink_b = tiles(b[:size[0], :size[1]]) > 2
    return (ink_a & ~widened(ink_b)) | (ink_b & ~widened(ink_a)), ink_a | ink_b


def judge(zefhost, drawing, show):
    try:
        document, _ = recover.readfile(drawing)
        window = window_of(document)
    except Exception as error:  # the other reader's own trouble
        return "passed over", f"not read there ({type(error).__name__})"
    if window is None:
        return "passed over", "nothing to see there"
    with tempfile.TemporaryDirectory() as folder:
        try:
            without_unlike(document)
            copy = f"{folder}/copy.dxf"
            document.saveas(copy)
            other = theirs(document, window)
        except Exception as error:
            return "passed over", f"not drawn there ({type(error).__name__})"
        mine, why = ours(zefhost, copy, window, folder)
    if mine is None:
        return "FAILED", why
    wrong, ink = differing(mine, other)
    share = wrong.sum() / max(ink.sum(), 1)
    reason = EXPLAINED.get(pathlib.Path(drawing).stem)
    verdict = "good" if share <= ALLOWED else "explained" if reason else "FAILED"
    if show and verdict != "good":
        name = pathlib.Path(show) / pathlib.Path(drawing).stem
        height = min(mine.shape[0], other.shape[0])
        mark = numpy.kron(wrong, numpy.ones((TILE, TILE), dtype=bool))[:height]
        marked = numpy.concatenate([mine[:height], other[:height]], axis=1)
        both = numpy.concatenate([mark, mark], axis=1)
        marked[:both.shape[0], :both.shape[1]][both] = (marked[:both.shape[0], :both.shape[1]][both] + [255, 0, 0]) // 2
        matplotlib.image.imsave(f"{name}.png", marked.astype(numpy.uint8))
    return verdict, reason if verdict == "explained" else f"{wrong.sum()} of {ink.sum()} tiles with ink differ"


def as_dots(command, file):
    """The picture that a program makes of one of ours, as dark as its darkest dots."""
    subprocess.run(command, check=True, capture_output=True)
    return pooled((matplotlib.image.imread(file)[:, :, :3] * 255).astype(int))


def judge_forms(zefhost):
    """What differs between the forms of one picture; nothing when they are alike."""
    drawing = ROOT / "samples/storey.dxf"
    with tempfile.TemporaryDirectory() as folder:
        for form in ("png", "svg", "pdf"):
            subprocess.run([zefhost, drawing, "--readonly", "--no-module", "--profile", f"{folder}/profile", "-c", "", "--picture",
                            f"{folder}/a.{form}"], check=True, capture_output=True, timeout=300)
        shown = {"png": as_dots(["true"], f"{folder}/a.png")}
        if shutil.which("rsvg-convert"):
            shown["svg"] = as_dots(["rsvg-convert", "-w", "3360", "-o", f"{folder}/svg.png", f"{folder}/a.svg"], f"{folder}/svg.png")
        if shutil.which("pdftoppm"):
            shown["pdf"] = as_dots(["pdftoppm", "-r", "203.2", "-png", "-singlefile", f"{folder}/a.pdf", f"{folder}/pdf"],
                                   f"{folder}/pdf.png")
        troubles = []
        for form, image in shown.items():
            wrong, ink = differing(image, shown["png"])
            if wrong.sum() > ALLOWED * ink.sum():
                troubles.append(f"the {form} differs from the PNG in {wrong.sum()} of {ink.sum()} tiles")
        if shutil.which("pdftotext"):
            said = subprocess.run(["pdftotext", f"{folder}/a.pdf", "-"], capture_output=True, text=True, check=True).stdout
            if "主卧室" not in said:
                troubles.append("no room is named in the text of the PDF")
        return troubles, sorted(shown)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("zefhost")
    parser.add_argument("--show")
    parser.add_argument("drawings", nargs="*")
    given = parser.parse_args()
    logging.disable(logging.CRITICAL)
    drawings = given.drawings or [str(ROOT / "samples/storey.dxf")]
    if not given.drawings and os.environ.get("ZEF_CORPUS"):
        drawings += sorted(str(path) for path in pathlib.Path(os.environ["ZEF_CORPUS"]).rglob("*.dxf"))
    counts = {}
    for drawing in drawings:
        verdict, told = judge(given.zefhost, drawing, given.show)
        counts[verdict] = counts.get(verdict, 0) + 1
        if verdict != "good" or given.drawings:
            print(f"{pathlib.Path(drawing).name}: {verdict}: {told}")
    if not given.drawings:
        troubles, forms = judge_forms(given.zefhost)
        for trouble in troubles:
            counts["FAILED"] = counts.get("FAILED", 0) + 1
            print(trouble)
        print("forms of the sample that are alike: " + ", ".join(forms) if not troubles else "")
    print("pictures: " + ", ".join(f"{count} {verdict}" for verdict, count in sorted(counts.items())))
    return 1 if "FAILED" in counts else 0


if __name__ == "__main__":
    sys.exit(main())
