"""Measures zefhost beside its peers. ./bench builds what is needed and calls this.

Each bench_NAME.py in this folder is a subject: a docstring whose first line is its title, and run(bench). Every
measurement is a fresh process, timed by build/release/bin/measure; the programs compared take turns, round by round,
after one round that does not count.
"""
import argparse
import importlib
import pathlib
import platform
import re
import statistics
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
BIN = ROOT / "build/release/bin"
PLACE = ROOT / "build/bench"  # everything that is written lies here


class Sample:
    """What the rounds of one program gave: seconds and peak memory in megabytes (of 1 000 000 bytes)."""

    def __init__(self):
        self.seconds, self.megabytes = [], []

    time = property(lambda self: statistics.median(self.seconds))
    memory = property(lambda self: statistics.median(self.megabytes))

    def spread(self):
        return f"{min(self.seconds):.3f}..{max(self.seconds):.3f}"


class Bench:
    def __init__(self, drawing, rounds, megabytes=None):
        self.source = drawing
        self.rounds = rounds
        self.megabytes = megabytes  # of the drawing, for subjects that take one of any size; None for their own

    def zefhost(self, *arguments):
        return [str(BIN / "zefhost"), "--profile", str(PLACE / "profile"), *map(str, arguments)]

    def peers(self, drawing):
        """The programs to open a drawing with, by name; a peer that is not installed is left out."""
        found = {}
        for name in ("dime", "dxflib"):
            if (BIN / f"peer_{name}").exists():
                found[name] = [str(BIN / f"peer_{name}"), str(drawing)]
            else:
                print(f"{name} is not installed and left out")
        return found

    def drawing(self, megabytes):
        """A drawing of about that size, grown from the source."""
        grown = PLACE / f"{self.source.stem}_{megabytes}.dxf"
        grower = BIN / "grow_drawing"
        newest = max(self.source.stat().st_mtime, grower.stat().st_mtime)
        if not grown.exists() or grown.stat().st_mtime < newest:
            subprocess.run([grower, self.source, grown, str(megabytes)], check=True)
        return grown

    def compare(self, programs, rounds=None, before_each=None):
        """Runs each of {name: command} in turn; gives {name: Sample}. A command that fails ends the benchmark."""
        samples = {name: Sample() for name in programs}
        for turn in range((rounds or self.rounds) + 1):
            for name, command in programs.items():
                if before_each:
                    before_each()
                seconds, megabytes = measure(command)
                if turn > 0:
                    samples[name].seconds.append(seconds)
                    samples[name].megabytes.append(megabytes)
        return samples

    def goal(self, what, reached, most=None, least=None):
        """Prints a figure beside the one that is asked for: at most, or at least, so many times something."""
        asked = f"at most {most:g}" if least is None else f"at least {least:g}"
        met = reached <= most if least is None else reached >= least
        print(f"    goal: {what:42}{reached:>8.3g}, {asked} asked{'' if met else ': not reached'}")

    def table(self, samples, size):
        """Prints the samples, each against the first; `size` is the drawing's, in megabytes."""
        first = next(iter(samples.values()))
        print(f"    {'':14}{'median s':>10}  {'spread s':<15}{'MB/s':>8}{'peak MB':>9}{'per MB':>8}"
              f"{'time':>9}{'memory':>8}   (of the first's)")
        for name, sample in samples.items():
            print(f"    {name:14}{sample.time:>10.3f}  {sample.spread():<15}{size / sample.time:>8.0f}"
                  f"{sample.memory:>9.1f}{sample.memory / size:>8.2f}"
                  f"{sample.time / first.time:>8.2f}x{sample.memory / first.memory:>7.2f}x")


def measure(command):
    """Seconds and peak megabytes of one run."""
    told, shown = PLACE / "measured", PLACE / "shown"
    with open(shown, "wb") as out:
        subprocess.run([BIN / "measure", told, *command], stdin=subprocess.DEVNULL, stdout=out, stderr=out, check=True)
    seconds, kib, status = told.read_text().split()
    if status != "0":
        sys.exit(f"bench: status {status} from {' '.join(command)}\n" + shown.read_text(errors="replace")[-2000:])
    return float(seconds), int(kib) * 1024 / 1e6


def size_of(path):
    return path.stat().st_size / 1e6


def first_line(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, cwd=ROOT).stdout.split("\n")[0]
    except OSError:
        return ""


def print_machine():
    cpu = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "?")
    cores = sum(line.startswith("processor") for line in open("/proc/cpuinfo"))
    memory = int(open("/proc/meminfo").readline().split()[1]) * 1024 / 1e9
    cache = dict(re.findall(r"^(\w+):\w+=(.*)$", (ROOT / "build/release/CMakeCache.txt").read_text(), re.MULTILINE))
    compiler = first_line(cache["CMAKE_CXX_COMPILER"], "--version")
    print(f"machine   {cpu}, {cores} cores, {memory:.0f} GB, {platform.system()} {platform.release()}")
    print(f"build     {compiler}; {cache['CMAKE_BUILD_TYPE']}, {cache['CMAKE_CXX_FLAGS_RELEASE']}")
    print(f"version   {first_line(str(BIN / 'zefhost'), '--version')}, {first_line('git', 'describe', '--always', '--dirty')}")


def main():
    subjects = sorted(path.stem.removeprefix("bench_") for path in HERE.glob("bench_*.py"))
    parser = argparse.ArgumentParser(prog="bench", description=f"Subjects: {', '.join(subjects)}.")
    parser.add_argument("names", nargs="*", metavar="NAME", help="subjects to run; all when none is named")
    parser.add_argument("--drawing", type=pathlib.Path, default=ROOT / "samples/storey.dxf",
                        help="the drawing to grow, instead of the sample")
    parser.add_argument("--rounds", type=int, default=5, help="rounds that count (5)")
    parser.add_argument("--megabytes", type=int, help="size of the drawing of `checks`, instead of 200")
    arguments = parser.parse_args()
    for name in arguments.names:
        if name not in subjects:
            parser.error(f"no subject named {name}; there are {', '.join(subjects)}")
    if not arguments.drawing.exists():
        parser.error(f"no drawing {arguments.drawing}")

    sys.stdout.reconfigure(line_buffering=True)
    PLACE.mkdir(parents=True, exist_ok=True)
    print_machine()
    print(f"drawing   {arguments.drawing}, grown by repeating its model space; {arguments.rounds} rounds each, medians")
    bench = Bench(arguments.drawing.resolve(), arguments.rounds, arguments.megabytes)
    for name in arguments.names or subjects:
        subject = importlib.import_module(f"bench_{name}")
        print(f"\n{name}: {subject.__doc__.strip()}")
        subject.run(bench)


if __name__ == "__main__":
    main()
