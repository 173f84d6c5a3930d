"""The layer control bar in a drawing of 200,000 entities on 400 layers.

Showing the bar, and what each toggle of a family takes, beyond opening the drawing: as a share of our own opening and
of dime's. About half of the entities are the architecture's. The drawing is opened anew for each and not saved.
"""
import re
import subprocess

from bench import PLACE

PRESSES = {
    "architecture's entities": "2028",
    "drainage's entities": "2029",
    "other entities": "2030",
    "architecture's layers off": "2031",
    "drainage's layers frozen": "2035",
    "architecture's layers locked": "2036",
    "a system off": "给水管线 ON",
}
LAYERS = 400


def with_layers(bench, drawing):
    """The drawing with as many layers more as 400 lack, a third of each family."""
    made = PLACE / f"{drawing.stem}_bar.dxf"
    if not made.exists() or made.stat().st_mtime < drawing.stat().st_mtime:
        names = [f"{family}{n}" for n in range(LAYERS // 3) for family in ("A-层", "P-层", "X-层")]
        tables = drawing.read_bytes().replace(b"\r\n", b"\n").split(b"\nENTITIES\n")[0]
        there = len(re.findall(rb"\n  0\nLAYER\n", tables))
        script = f"-LAYER N {','.join(names[:LAYERS - there])}" + r"\n\n"
        subprocess.run(bench.zefhost(drawing, "-c", script, "-o", made), check=True, capture_output=True)
    return made


def run(bench):
    drawing = with_layers(bench, bench.drawing(40))
    entities = drawing.read_bytes().replace(b"\r\n", b"\n").split(b"\nENTITIES\n")[1].count(b"\n  8\n")
    programs = {"opening": bench.zefhost(drawing, "-c", "QUIT"),
                "the bar": bench.zefhost(drawing, "-c", r"tckz\nQUIT")}
    for name, button in PRESSES.items():
        programs[name] = bench.zefhost(drawing, "-c", rf"tckz\nBAR {button}\nQUIT")
        programs[name + ", back"] = bench.zefhost(drawing, "-c", rf"tckz\nBAR {button}\nBAR {button}\nQUIT")
    samples = bench.compare(programs | bench.peers(drawing))
    opening = samples.pop("opening")
    dime = samples.pop("dime", None)
    samples.pop("dxflib", None)
    print(f"    {entities} entities; opening takes {opening.time:.3f} s ({opening.spread()})" +
          (f", dime's {dime.time:.3f} s ({dime.spread()})" if dime else ""))
    print(f"    {'':32}{'more s':>8}{'of opening':>12}{'of dimes':>10}")
    before = {", back": 0.0}
    for name, sample in samples.items():
        more = sample.time - opening.time
        cost = more - before.get(name.removesuffix(", back"), 0.0) if name.endswith(", back") else more
        before[name] = more
        print(f"    {name:32}{cost:>8.3f}{cost / opening.time:>11.2f}x" +
              (f"{cost / dime.time:>9.2f}x" if dime else ""))
