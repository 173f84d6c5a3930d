"""Checking, putting right and merging in a drawing of 200 MB, about a million entities.

All pipes have a colour of their own and all walls are on a layer that is merged. Each command is timed with opening the
drawing, beside a peer that only opens it. Nothing is saved.
"""
from bench import size_of

COMMANDS = {
    "jcjk": r"jcjk\n\n",
    "gxfz": r"gxfz\nY\n",
    "hbtc": r"hbtc\nN\n墙体\nN\n轴线\nY\n",
    "xxyh": r"xxyh\nOK\n",
    "xxyh2": r"xxyh2\n\n\n",
}


def spoilt(bench):
    drawing = bench.drawing(bench.megabytes or 200)
    spoilt = drawing.with_name(drawing.stem + "_spoilt.dxf")
    if not spoilt.exists() or spoilt.stat().st_mtime < drawing.stat().st_mtime:
        spoilt.write_bytes(drawing.read_bytes().replace(b"\n  8\r\nPIPE-", b"\n 62\r\n5\r\n  8\r\nPIPE-"))
    return spoilt


def run(bench):
    drawing = spoilt(bench)
    # Findings are status 1.
    programs = {name: ["sh", "-c", '"$@"; [ $? -le 1 ]', "sh", *bench.zefhost(drawing, "-c", script)]
                for name, script in COMMANDS.items()}
    samples = bench.compare({"opening": bench.zefhost(drawing, "-c", "QUIT")} | programs | bench.peers(drawing))
    entities = drawing.read_bytes().replace(b"\r\n", b"\n").split(b"\nENTITIES\n")[1].count(b"\n  8\n")
    dime = samples.get("dime")
    print(f"    {entities} entities, {size_of(drawing):.0f} MB; seconds with opening")
    for name, sample in samples.items():
        print(f"    {name:10}{sample.time:>8.3f} s ({sample.spread()}), {sample.memory:>6.0f} MB" +
              (f", {sample.time / dime.time:.2f} of dime's" if dime else ""))
