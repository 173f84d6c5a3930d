"""Opening a drawing of 50 MB and saving it under another name.

zefhost flushes the new file to the disc before it takes its name; cp does not, so it stands here with and without.
"""
from bench import PLACE, size_of


def run(bench):
    drawing = bench.drawing(50)
    saved = PLACE / "saved.dxf"
    programs = {"zefhost -o": bench.zefhost(drawing, "--no-module", "-c", "QUIT", "-o", saved),
                "cp and flush": ["sh", "-c", 'cp "$0" "$1" && sync "$1"', str(drawing), str(saved)],
                "cp": ["cp", str(drawing), str(saved)]}
    bench.table(bench.compare(programs, before_each=lambda: saved.unlink(missing_ok=True)), size_of(drawing))
    bench.compare({"zefhost -o": programs["zefhost -o"]}, rounds=1)
    print("    the saved drawing is", "the same" if saved.read_bytes() == drawing.read_bytes() else "NOT the same",
          "as the one opened, byte for byte")
