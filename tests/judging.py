"""What the judges of drawings have in common: which drawings they read, how the independent reader opens one, what its
auditor says of it, and the count at the end."""
import logging
import os
import pathlib
import re

import ezdxf
from ezdxf import recover

ROOT = pathlib.Path(__file__).resolve().parent.parent


def drawings(arguments, *, more=()):
    """Those that are named; else the sample, the tests' own, `more`, and when ZEF_CORPUS names a folder those in it that
    are whole and ASCII."""
    if arguments:
        return [pathlib.Path(argument) for argument in arguments]
    found = [ROOT / "samples" / "storey.dxf", *sorted((ROOT / "tests" / "drawings").glob("*.dxf")), *more]
    corpus = os.environ.get("ZEF_CORPUS")
    if corpus:
        found += sorted(path for path in pathlib.Path(corpus).rglob("*.dxf")
                        if path.parent.name not in ("broken", "binary"))
    return found


def opened(path):
    """The drawing; None when it can not be opened."""
    try:
        return ezdxf.readfile(path)
    except (ezdxf.DXFError, UnicodeDecodeError, ValueError, AttributeError):
        try:
            return recover.readfile(path)[0]
        except (ezdxf.DXFError, UnicodeDecodeError, ValueError, AttributeError):
            return None


def audit(drawing):
    """What the auditor finds, without the addresses and handles that its messages carry."""
    auditor = drawing.audit()
    return sorted((entry.code, re.sub(r"0x[0-9a-f]+|#[0-9A-F]+", "", entry.message))
                  for entry in auditor.errors + auditor.fixes)


def judge_all(paths, judge):
    """Calls judge(path) for each drawing: why it fails, empty when it does not, None when it can not be judged. Tells
    how many failed, and gives the program's status."""
    logging.disable()  # the reader tells of every value that it repairs
    failed = judged = 0
    for path in paths:
        fault = judge(path)
        judged += fault is not None
        if fault:
            failed += 1
            print(f"{path.name}: {fault}")
    print(f"{judged} drawings judged, {failed} failed")
    return 1 if failed or not judged else 0
