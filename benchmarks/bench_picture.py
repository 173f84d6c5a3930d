"""A picture of a whole drawing, and of a storey of a large one.

zefhost opens the drawing and draws all of it as a PDF and as a PNG; LibreCAD plots it as a PDF (its dxf2pdf), ezdxf draws
it as a PNG by matplotlib. Both take minutes for large drawings and are asked for small ones only. Of a drawing of 200 MB:
opening it alone, with a picture of all of it, and with one and with eleven pictures of a storey, whose difference is ten.
"""
import shutil
import sys

from bench import PLACE, size_of

# The third one of the second row. Not the first: where it stands, the dimensions of all others are drawn too, whose copies
# share its blocks.
STOREY = "55580,13200 84080,32700"


def peers(drawing, megabytes):
    found = {}
    if shutil.which("librecad"):
        found["LibreCAD"] = ["env", "QT_QPA_PLATFORM=offscreen", "librecad", "dxf2pdf", "-a", str(drawing)]
    else:
        print("LibreCAD is not installed and left out")
    if megabytes == 1:
        found["ezdxf"] = [sys.executable, "-m", "ezdxf", "draw", "-o", str(PLACE / "ezdxf.png"), str(drawing)]
    return found


def run(bench):
    picture = ["--no-module", "--readonly", "-c", ""]
    for megabytes in (1, 20):
        drawing = bench.drawing(megabytes)
        print(f"  {megabytes} MB")
        programs = {f"zefhost {form}": bench.zefhost(drawing, *picture, "--picture", PLACE / f"all.{form}")
                    for form in ("pdf", "png")}
        samples = bench.compare({**programs, **peers(drawing, megabytes)}, rounds=1)
        bench.table(samples, size_of(drawing))
        if "LibreCAD" in samples:
            bench.goal("LibreCAD's time for a PDF, of ours", samples["LibreCAD"].time / samples["zefhost pdf"].time, least=20)
    drawing = bench.drawing(200)
    storey = f"PICTURE {PLACE / 'storey.png'} Window {STOREY} A3 Fit Colors\\n"
    programs = {"opening": bench.zefhost(drawing, *picture),
                "all, png": bench.zefhost(drawing, *picture, "--picture", PLACE / "all.png"),
                "1 storey": bench.zefhost(drawing, *picture[:3], storey),
                "11 storeys": bench.zefhost(drawing, *picture[:3], storey * 11)}
    print("  200 MB")
    samples = bench.compare(programs, rounds=min(bench.rounds, 3))
    bench.table(samples, size_of(drawing))
    bench.goal("a PNG of all, of the time of opening", samples["all, png"].time / samples["opening"].time, most=3)
    bench.goal("its memory, of the file's size", samples["all, png"].memory / size_of(drawing), most=2.5)
    bench.goal("a storey, ms", (samples["11 storeys"].time - samples["1 storey"].time) / 10 * 1000, most=50)
