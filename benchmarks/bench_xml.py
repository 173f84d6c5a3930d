"""Documents of markup: a pipe-system standard of 20 MB and one of 200 KB, beside three XML libraries.

Each act is timed inside the process: "fresh" is the first time in a new process, "warm" the median of the times after it
in the same one. walk looks at every element's name, text and attributes; edit goes to every element and gives a thousand
of them (in 20 MB) a new text; build makes that many elements and the text of it all. pugixml is built from Debian's
source with wide characters, as ours are; "all text" is pugixml told to keep blanks between elements and to tell all of an
element's text, as MarkupDoc does; the other two hold UTF-8. Of GBK, pugixml and tinyxml2 know nothing: there the
system's converter stands before them.
"""
import re
import shutil
import statistics
import subprocess

from bench import BIN, HERE, PLACE, ROOT

PEERS = {"pugixml": [], "tinyxml2": ["-ltinyxml2"], "libxml2": ["-I/usr/include/libxml2", "-lxml2"]}
ROUNDS = 7


def fetch_pugixml():
    """The folder of its sources; None, said why, when they cannot be had."""
    place = PLACE / "pugixml"
    found = sorted(place.glob("pugixml-*/src"))
    if found:
        return found[0]
    if not shutil.which("apt-get") or not shutil.which("dpkg-source"):
        print("    pugixml is left out: it takes apt-get and dpkg-source to fetch it")
        return None
    # Lists of sources of our own: the system's configuration stays as it is.
    (place / "lists/partial").mkdir(parents=True, exist_ok=True)
    (place / "cache/archives/partial").mkdir(parents=True, exist_ok=True)
    told = subprocess.run(["apt-get", "indextargets", "--format", "$(REPO_URI) $(CODENAME) $(COMPONENT)",
                           "Created-By: Packages"], capture_output=True, text=True).stdout
    (place / "sources.list").write_text("".join(f"deb-src {line}\n" for line in sorted(set(told.splitlines()))))
    options = ["-o", f"Dir::Etc::SourceList={place}/sources.list", "-o", "Dir::Etc::SourceParts=-",
               "-o", f"Dir::State::lists={place}/lists", "-o", f"Dir::Cache={place}/cache"]
    for command in (["update"], ["source", "pugixml"]):
        done = subprocess.run(["apt-get", *options, *command], cwd=place, capture_output=True, text=True)
        if done.returncode != 0:
            print("    pugixml is left out:", (done.stderr.strip().splitlines() or ["no reason told"])[-1])
            return None
    return sorted(place.glob("pugixml-*/src"))[0]


def compile_program(name, *arguments, variant=""):
    """Builds benchmarks/NAME.cpp as the release is built; its path, or None when a library is missing."""
    cache = dict(re.findall(r"^(\w+):\w+=(.*)$", (ROOT / "build/release/CMakeCache.txt").read_text(), re.MULTILINE))
    program = PLACE / (name + variant)
    done = subprocess.run([cache["CMAKE_CXX_COMPILER"], *cache["CMAKE_CXX_FLAGS_RELEASE"].split(), "-std=c++20", "-iquote",
                           ROOT, "-I", ROOT / "host/include", HERE / f"{name}.cpp", *arguments, "-o", program],
                          capture_output=True, text=True)
    if done.returncode != 0:
        print(f"    {name} cannot be built and is left out: {(done.stderr.strip().splitlines() or ['?'])[0]}")
        return None
    return program


def build_programs():
    applications = [str(BIN / "zef_pipeSystem.arx"), str(BIN / "libzef_sys.so"), f"-Wl,-rpath,{BIN}",
                    f"-Wl,-rpath-link,{BIN}"]
    programs = {"MarkupDoc": compile_program("xml_markup", *applications)}
    for name, libraries in PEERS.items():
        if name == "pugixml":
            source = fetch_pugixml()
            libraries = source and ["-DPUGIXML_WCHAR_MODE", "-I", source, source / "pugixml.cpp"]
        programs[name] = compile_program(f"xml_{name}", *libraries) if libraries else None
        if name == "pugixml" and libraries:
            programs["all text"] = compile_program("xml_pugixml", *libraries, "-DALL_TEXT", variant="_all")
    return {name: program for name, program in programs.items() if program}


def make_files():
    grow = compile_program("grow_standard")
    files = {"20 MB": PLACE / "standard_20000.vrsl", "200 KB": PLACE / "standard_200.vrsl"}
    for size, file in files.items():
        subprocess.run([grow, file, file.stem.split("_")[1]], check=True)
    gbk = PLACE / "standard_gbk.vrsl"
    text = files["20 MB"].read_text("utf-8").replace('encoding="utf-8"', 'encoding="gbk"')
    gbk.write_bytes(text.encode("gbk"))
    return files, gbk


def seconds(program, *arguments):
    told = subprocess.run([program, *map(str, arguments)], capture_output=True, text=True, check=True).stdout
    return [float(line) for line in told.split()]


def compare(title, programs, *arguments, rounds=ROUNDS):
    """Milliseconds of an act, the programs taking turns, and how much faster the first one is than the second."""
    fresh = {name: [] for name in programs}
    warm = {name: [] for name in programs}
    for turn in range(rounds + 1):
        for name, program in programs.items():
            first, *others = seconds(program, *arguments, 6)
            if turn > 0:
                fresh[name].append(first)
                warm[name].extend(others)
    for kind, samples in (("fresh", fresh), ("warm", warm)):
        cells = {name: statistics.median(times) * 1000 for name, times in samples.items()}
        ours = next(iter(cells.values()))
        print(f"    {title:22}{kind:6}" + "".join(f"{cell:>11.3f}" for cell in cells.values()) +
              "".join(f"{cell / ours:>9.2f}x" for cell in list(cells.values())[1:]))


def run(bench):
    programs = build_programs()
    files, gbk = make_files()
    print(f"    {'milliseconds':28}" + "".join(f"{name:>11}" for name in programs) +
          "".join(f"{'/' + name:>10}" for name in list(programs)[1:]) + "   (how many times our time)")
    for size, file in files.items():
        compare(f"load {size}", programs, "load", file)
        compare(f"walk {size}", programs, "walk", file)
        compare(f"edit {size}", programs, "edit", file)
    compare("load 18 MB of GBK", programs, "load_gbk", gbk)
    for count in (25_000, 50_000, 100_000, 200_000):
        compare(f"build {count}", programs, "build", count)
    print(f"    {'memory kept, of the file':28}" + "".join(
        f"{seconds(program, 'keep', files['20 MB'])[0] / files['20 MB'].stat().st_size:>10.2f}x" for program in programs.values()))
