"""Starting on a tiny drawing: with the siblings and the module, without them, and a program that does nothing.
"""
from bench import PLACE

TINY = "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\n0\n 10\n0.0\n 20\n0.0\n 11\n1.0\n 21\n1.0\n  0\nENDSEC\n  0\nEOF\n"


def run(bench):
    drawing = PLACE / "tiny.dxf"
    drawing.write_text(TINY)
    programs = {"with module": bench.zefhost(drawing, "-c", "QUIT"),
                "without": bench.zefhost(drawing, "--no-module", "-c", "QUIT"), "true": ["true"]}
    print(f"    {'':14}{'median ms':>10}  {'spread ms':<15}{'peak MB':>9}")
    samples = bench.compare(programs, rounds=20)
    for name, sample in samples.items():
        spread = f"{min(sample.seconds) * 1000:.1f}..{max(sample.seconds) * 1000:.1f}"
        print(f"    {name:14}{sample.time * 1000:>10.1f}  {spread:<15}{sample.memory:>9.1f}")
    bench.goal("milliseconds with the module", samples["with module"].time * 1000, most=7)
