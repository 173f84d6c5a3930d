"""Picking by point, and selecting a layer, in drawings that grow up to a million entities.
"""
# Of dime's opening of the same drawing: half of what it was at commit 9be9b03, measured on 2026-11-22.
FIRST_PICK_GOAL = 0.056

import statistics
import subprocess

from bench import BIN


def run(bench):
    print(f"    {'entities':>10}{'open ms':>10}{'first pick ms':>15}{'next pick ms':>14}{'slowest ms':>12}"
          f"{'a layer ms':>12}{'of entities':>13}")
    for megabytes in (50, 100, 200, 400):
        rounds = []
        for _ in range(bench.rounds):
            told = subprocess.run([BIN / "pick_speed", bench.drawing(megabytes)], capture_output=True, text=True,
                                  check=True).stdout
            rounds.append({key: float(value) for key, value in map(str.split, told.splitlines())})
        figure = {key: statistics.median(round[key] for round in rounds) for key in rounds[0]}
        print(f"    {figure['entities']:>10.0f}{figure['open']:>10.0f}{figure['first_pick']:>15.0f}"
              f"{figure['next_pick']:>14.2f}{figure['slowest_pick']:>12.2f}{figure['layer']:>12.2f}"
              f"{figure['of_layer']:>13.0f}")
        if megabytes == 200 and "dime" in (peers := bench.peers(bench.drawing(megabytes))):
            dime = bench.compare({"dime": peers["dime"]}, rounds=2)["dime"]
            bench.goal("first pick, of dime's opening", figure["first_pick"] / 1000 / dime.time, most=FIRST_PICK_GOAL)
