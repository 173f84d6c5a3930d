"""100,000 pipes get diameter labels, beside the updates by which they follow a changed standard.

Labels tell the prefix of the layer, outer diameter and wall, and are placed anew. Rounds of both take turns.
"""
import statistics
import subprocess

import bench_pipes
from bench import BIN, PLACE, ROOT


def run(bench):
    drawing = bench_pipes.make_drawing()
    standards = {"update": bench_pipes.changed_standard(), "label": ROOT / "share/kol.vrsl"}
    seconds = {"update": [], "label": []}
    for _ in range(bench.rounds):
        for what, standard in standards.items():
            seconds[what].append(bench_pipes.change(what, drawing, standard)[0])
    median = {what: statistics.median(times) for what, times in seconds.items()}
    for what, times in seconds.items():
        print(f"    {what:7} {median[what]:.3f} s ({min(times):.3f}..{max(times):.3f}), "
              f"{median[what] / bench_pipes.PIPES * 1e6:.2f} us a pipe")
    print(f"    labels take {median['label'] / median['update']:.2f} times what updates take")
