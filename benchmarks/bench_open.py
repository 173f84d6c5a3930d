"""Opening a drawing of 200 MB.

zefhost reads the file and indexes every object, and reads an object's groups when it is asked for; dime reads all of
it into objects; dxflib tells each entity to a listener and keeps nothing; cp is what the disc and the system take.
"""
from bench import PLACE, size_of


def run(bench):
    drawing = bench.drawing(200)
    programs = {"zefhost": bench.zefhost(drawing, "--no-module", "-c", "QUIT"), **bench.peers(drawing),
                "cp": ["cp", str(drawing), str(PLACE / "copy.dxf")]}
    bench.table(bench.compare(programs), size_of(drawing))
