"""Layer commands in a drawing of 200 MB, about a million entities.

What a command takes beyond opening the drawing, as a share of that; of what touches entities also for 100,000 of them.
The drawing is opened anew for each and not saved. The goals are shares of what dime takes to open the drawing.
"""

LAYER_COMMANDS = {
    "CloseSelLayer": r'CloseSelLayer\n(handent "C01")\n\n',
    "OpenSelLayer": r'OpenSelLayer\n(handent "C01")\n\n',
    "LockSelLayer": r'LockSelLayer\n(handent "C01")\n\n',
    "UnLockSelLayer, all": r"UnLockSelLayer\n\n",
    "sfxc": r'sfxc\n(handent "C01")\n\n',
    "FrozenLayer": r'FrozenLayer\n(handent "C01")\n\n',
    "UnFrozenAllLayer": r"UnFrozenAllLayer\n",
}
# With the layer that they go through; all entities for None.
ENTITY_COMMANDS = {
    "EraseSelLayer": (r'EraseSelLayer\n(handent "A01")\n\n', "墙体"),
    "ConvertLayer": (r'ConvertLayer\n(handent "A01")\n(handent "C01")\n', "墙体"),
    "SetAllPipeLayOpen": (r"SetAllPipeLayOpen\n", None),
}
# Before objects were made cheaper these took 0.24, 0.097 and 0.117 of dime's opening (commit 9be9b03, measured beside dime on
# 2026-11-22); 0.3, 0.4 and 0.4 of that is asked.
GOALS = {"ConvertLayer": 0.072, "EraseSelLayer": 0.039, "SetAllPipeLayOpen": 0.047}


def count(drawing, layer):
    """How many entities there are, on a layer or in all."""
    data = drawing.read_bytes().replace(b"\r\n", b"\n")
    wanted = layer.encode() + b"\n" if layer else b""
    return data.count(b"\n  8\n" + wanted, data.index(b"\nENTITIES\n"))


def run(bench):
    drawing = bench.drawing(200)
    scripts = LAYER_COMMANDS | {name: script for name, (script, _) in ENTITY_COMMANDS.items()}
    samples = bench.compare({"opening": bench.zefhost(drawing, "-c", "QUIT")} |
                            {name: bench.zefhost(drawing, "-c", script) for name, script in scripts.items()})
    opening = samples.pop("opening")
    peers = bench.peers(drawing)
    dime = bench.compare({"dime": peers["dime"]}, rounds=2)["dime"].time if "dime" in peers else None
    print(f"    opening takes {opening.time:.3f} s ({opening.spread()})")
    print(f"    {'':22}{'more s':>8}{'of opening':>12}{'entities':>11}{'of 100,000':>12}")
    for name, sample in samples.items():
        share = (sample.time - opening.time) / opening.time
        print(f"    {name:22}{sample.time - opening.time:>8.3f}{share:>11.2f}x", end="")
        if name in ENTITY_COMMANDS:
            entities = count(drawing, ENTITY_COMMANDS[name][1])
            print(f"{entities:>11}{share * 1e5 / entities:>11.2f}x", end="")
        print()
    for name, most in GOALS.items() if dime else ():
        bench.goal(f"{name}, of dime's opening", (samples[name].time - opening.time) / dime, most=most)
