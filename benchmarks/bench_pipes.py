"""100,000 pipes are read, and follow a changed standard: all four updates of each, beside opening the drawing.

Material and line width, diameters, risers, layers. The standard has other layers, materials and widths than the one by
which the pipes were drawn. Memory is what the updates add to the peak, per pipe and beside the drawing's size.
"""
import re
import statistics
import subprocess

from bench import BIN, PLACE, ROOT, size_of

PIPES = 100_000
# 2.5 and 7 times what opening the drawing took at commit 9be9b03, which was 0.081 of dime's (measured on 2026-11-22).
READ_GOAL, UPDATE_GOAL = 0.20, 0.57


def changed_standard():
    """The shipped one with other names of pipe layers, materials of two groups swapped, and wider lines."""
    text = (ROOT / "share/kol.vrsl").read_text(encoding="utf-8")
    text = text.replace("PIPE-", "P-").replace("DIM_", "D_").replace("FLOW_", "F_")
    text = re.sub(r"<LineWidth>[^<]*<", "<LineWidth>0.9<", text)
    text = re.sub(r"<Material>[^<]*<", "<Material>球墨铸铁管<", text)
    changed = PLACE / "changed.vrsl"
    changed.write_text(text, encoding="utf-8")
    return changed


def make_drawing():
    drawing = PLACE / "pipes.dxf"
    subprocess.run([BIN / "pipe_speed", "make", ROOT / "samples/storey.dxf", drawing, str(PIPES)], check=True)
    return drawing


def change(what, drawing, standard):
    """Seconds, and the megabytes that memory grew by."""
    told = subprocess.run([BIN / "pipe_speed", what, drawing, standard], capture_output=True, text=True, check=True)
    pipes, seconds, kib = told.stdout.split()
    assert int(pipes) == PIPES
    return float(seconds), int(kib) * 1024 / 1e6


def run(bench):
    standard = changed_standard()
    drawing = make_drawing()
    rows = []
    peers = bench.peers(drawing)
    opening = bench.compare({"zefhost": bench.zefhost(drawing, "--no-module", "-c", "QUIT"), **peers})
    reading = []
    for _ in range(bench.rounds):
        reading.append(change("read", drawing, standard)[0])
        rows.append(change("update", drawing, standard))
    seconds = statistics.median(row[0] for row in rows)
    memory = statistics.median(row[1] for row in rows)
    print(f"    {size_of(drawing):.0f} MB; the updates take {seconds:.3f} s "
          f"({min(row[0] for row in rows):.3f}..{max(row[0] for row in rows):.3f}), "
          f"{seconds / PIPES * 1e6:.2f} us a pipe, and {memory:.0f} MB more")
    print(f"    reading them takes {statistics.median(reading):.3f} s ({min(reading):.3f}..{max(reading):.3f})")
    for name, sample in opening.items():
        print(f"    {name} opens the drawing in {sample.time:.3f} s ({sample.spread()}): "
              f"the updates take {seconds / sample.time:.2f} times that")
    if "dime" in opening:
        bench.goal("reading, of dime's opening", statistics.median(reading) / opening["dime"].time, most=READ_GOAL)
        bench.goal("updates, of dime's opening", seconds / opening["dime"].time, most=UPDATE_GOAL)
