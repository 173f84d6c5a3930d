"""Opening a drawing of 200 MB, and with one core alone.

zefhost reads the file and indexes every object, and reads an object's groups when it is asked for; dime reads all of
it into objects; dxflib tells each entity to a listener and keeps nothing; cp is what the disc and the system take.
"""
from bench import PLACE, size_of


def run(bench):
    drawing = bench.drawing(200)
    programs = {"zefhost": bench.zefhost(drawing, "--no-module", "-c", "QUIT"), **bench.peers(drawing),
                "cp": ["cp", str(drawing), str(PLACE / "copy.dxf")],
                "one core": ["taskset", "-c", "0", *bench.zefhost(drawing, "--no-module", "-c", "QUIT")]}
    samples = bench.compare(programs)
    bench.table(samples, size_of(drawing))
    ours = samples["zefhost"]
    if "dime" in samples:
        bench.goal("dime's time, of ours", samples["dime"].time / ours.time, least=15)
        bench.goal("dime's time, of ours with one core", samples["dime"].time / samples["one core"].time, least=10)
    bench.goal("memory, of the file", ours.memory / size_of(drawing), most=1.25)
