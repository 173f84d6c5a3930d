"""Time and memory as the drawing grows: per megabyte they should stay the same.
"""
from bench import size_of


def run(bench):
    print(f"    {'MB':>8}{'median s':>10}  {'spread s':<15}{'ms per MB':>10}{'peak MB':>9}{'per MB':>8}")
    for megabytes in (25, 50, 100, 200):
        drawing = bench.drawing(megabytes)
        sample = bench.compare({"zefhost": bench.zefhost(drawing, "--no-module", "-c", "QUIT")})["zefhost"]
        size = size_of(drawing)
        print(f"    {size:>8.1f}{sample.time:>10.3f}  {sample.spread():<15}{sample.time / size * 1000:>10.2f}"
              f"{sample.memory:>9.1f}{sample.memory / size:>8.2f}")
