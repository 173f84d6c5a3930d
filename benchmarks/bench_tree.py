"""Loading a pipe-system standard of 20 MB into an attributed tree.

CVRbTree is the module's way, through its own XML engine; pugixml loads the same file and a plain tree is made of what it
holds: nodes that own their children, wide texts, attributes in a std::map. Both end with the tree alone in memory.
"""
import subprocess

from bench import BIN, PLACE, size_of


def run(bench):
    standard = PLACE / "standard_20.vrsl"
    subprocess.run([BIN / "grow_standard", standard, "20000"], check=True)
    programs = {"CVRbTree": [str(BIN / "load_tree"), str(standard)]}
    if (BIN / "peer_pugixml_tree").exists():
        programs["pugixml + tree"] = [str(BIN / "peer_pugixml_tree"), str(standard)]
    else:
        print("pugixml is not installed and left out")
    bench.table(bench.compare(programs), size_of(standard))
