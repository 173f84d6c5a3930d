#!/usr/bin/python3
"""torture_dwg.py ZEFHOST [N [SEED]]: flips one bit of a DWG drawing, N times (1000), and opens what comes of it.

The drawings are those of the folder $ZEF_DWG; each gets its share of the flips, at random places. zefhost must open the
drawing, or refuse it with a word, within a minute. What it opened must be what the sound drawing is, or something of the
damage must be told. Prints how many of each there were and names those that break a rule, by drawing, byte and bit;
status 1 when one does.
"""
import collections
import os
import pathlib
import random
import subprocess
import sys
import tempfile

REFUSED = 3
SECONDS = 60


def open_drawing(zefhost, drawing, out):
    """The exit status (None: it did not end), what was told, and the drawing as it is saved."""
    out.unlink(missing_ok=True)
    try:
        done = subprocess.run([zefhost, "--no-module", drawing, "-c", "", "-o", out], capture_output=True,
                              timeout=SECONDS, check=False)
    except subprocess.TimeoutExpired:
        return None, b"", b""
    # What is told of the file; its name differs.
    told = done.stderr.replace(os.fsencode(drawing), b"")
    return done.returncode, told, out.read_bytes() if out.exists() else b""


def main():
    zefhost = pathlib.Path(sys.argv[1]).resolve()
    wanted = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.SystemRandom().randrange(2**32)
    chance = random.Random(seed)
    folder = os.environ.get("ZEF_DWG")
    drawings = sorted(pathlib.Path(folder).glob("*.dwg")) if folder else []
    if not drawings:
        print("no folder with DWG drawings (ZEF_DWG): nothing is tried")
        return 1
    ends, broken = collections.Counter(), []
    with tempfile.TemporaryDirectory() as name:
        damaged, out = pathlib.Path(name) / "damaged.dwg", pathlib.Path(name) / "out.dxf"
        for number, drawing in enumerate(drawings):
            sound = drawing.read_bytes()
            damaged.write_bytes(sound)
            _, told_of_sound, saved_of_sound = open_drawing(zefhost, damaged, out)
            for _ in range(wanted * (number + 1) // len(drawings) - wanted * number // len(drawings)):
                at, bit = chance.randrange(len(sound)), chance.randrange(8)
                bytes_now = bytearray(sound)
                bytes_now[at] ^= 1 << bit
                damaged.write_bytes(bytes_now)
                status, told, saved = open_drawing(zefhost, damaged, out)
                if status is None:
                    end = "did not end"
                elif status == REFUSED and told:
                    end = "refused"
                elif status != 0:
                    end = f"ended with {status}"
                elif told != told_of_sound:
                    end = "told"
                else:
                    end = "the same" if saved == saved_of_sound else "changed, and not told"
                ends[end] += 1
                if end not in ("refused", "told", "the same"):
                    broken.append(f"{drawing.name}: byte {at}, bit {bit}: {end}")
    print(*broken, sep="\n", end="\n" if broken else "")
    print(f"{sum(ends.values())} flips (seed {seed}): " + ", ".join(f"{count} {end}" for end, count in ends.most_common()))
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
