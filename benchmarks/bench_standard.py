"""The pipe-system standard: loading it, and asking it.

Loading one of 100 systems with 30 layers each, beside pugixml with wide characters and a plain tree of what it reads.
Then the questions that are asked of each pipe, about every layer of standards that grow: the time of one, and how many
times as long a walk through the records takes. The last lines are changes, beside an edit of the whole standard.
"""
import statistics
import subprocess

from bench import BIN, PLACE, size_of
from bench_xml import compile_program, fetch_pugixml, seconds

SYSTEMS = (10, 100, 1000)
LAYERS = 30
ROUNDS = 15


def grown(systems):
    standard = PLACE / f"standard_{systems}_systems.vrsl"
    subprocess.run([BIN / "grow_standard", standard, str(systems), str(LAYERS)], check=True)
    return standard


def load():
    standard = grown(100)
    programs = {"the standard": BIN / "standard_speed"}
    source = fetch_pugixml()
    if source:
        programs["pugixml + tree"] = compile_program(
            "peer_pugixml_tree", "-DPUGIXML_WCHAR_MODE", "-I", source, source / "pugixml.cpp", variant="_wide")
    samples = {name: [] for name in programs}
    first = {name: [] for name in programs}
    for _ in range(5):
        for name, program in programs.items():
            fresh, *warm = seconds(program, standard, ROUNDS)
            first[name].append(fresh)
            samples[name].extend(warm)
    ours, *others = ((name, statistics.median(first[name]), statistics.median(samples[name])) for name in programs)
    print(f"    {size_of(standard):.1f} MB{'':20}{'fresh ms':>10}{'warm ms':>10}")
    print(f"    {ours[0]:28}{ours[1] * 1e3:>10.2f}{ours[2] * 1e3:>10.2f}")
    for name, fresh, warm in others:
        print(f"    {name:28}{fresh * 1e3:>10.2f}{warm * 1e3:>10.2f}   "
              f"ours take {ours[1] / fresh:.2f} and {ours[2] / warm:.2f} times that")


def ask():
    rows = {}
    for systems in SYSTEMS:
        told = subprocess.run([BIN / "standard_speed", grown(systems)], capture_output=True, text=True,
                              check=True).stdout
        for line in told.splitlines():
            name, fast, slow = line.split("\t")
            rows.setdefault(name, []).append((float(fast), float(slow)))
    print(f"\n    {'nanoseconds, with systems':30}" + "".join(f"{systems:>9}{'walk':>9}" for systems in SYSTEMS))
    for name, cells in rows.items():
        print(f"    {name:30}" + "".join(f"{fast:>9.0f}{slow / fast:>8.0f}x" for fast, slow in cells))


def run(bench):
    load()
    ask()
