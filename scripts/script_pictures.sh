#!/usr/bin/env bash
# script_pictures.sh: makes the README's pictures of the sample's scripts, docs/scripts/NAME.png: the sample before a script
# and after it side by side, and what changed between them, red what went, green what came, blue what changed.
set -euo pipefail
cd "$(dirname "$0")/.."
host=${ZEFHOST:-build/release/bin/zefhost}
[ -x "$host" ] || { echo "script_pictures.sh: no zefhost; ./run builds it" >&2; exit 1; }
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
mkdir -p docs/scripts
cp samples/storey.dxf samples/storey_base.dxf "$place/"
picture() { "$host" "$@" --readonly --profile "$place/profile" -c '' >/dev/null; }
picture "$place/storey.dxf" --picture "$place/before.png"
for name in convert draw_pipes isolate label_pipes main_job thaw; do # a lock is not seen
    "$host" samples/storey.dxf --profile "$place/profile" -s "samples/scripts/$name.scr" -o "$place/$name.dxf" >/dev/null
    picture "$place/$name.dxf" --picture "$place/after.png"
    picture "$place/$name.dxf" --picture "$place/changes.png" --since "$place/storey.dxf"
    /usr/bin/python3 - "$place"/{before,after,changes}.png "docs/scripts/$name.png" <<'PYTHON'
import sys

import matplotlib.image
import numpy

SMALLER = 7  # times, in few colours, so that the file is small; what is drawn stays visible


def small(file):
    dots = (matplotlib.image.imread(file)[:, :, :3] * 255).astype(int)
    rows, columns = dots.shape[0] // SMALLER, dots.shape[1] // SMALLER
    tiles = dots[:rows * SMALLER, :columns * SMALLER].reshape(rows, SMALLER, columns, SMALLER, 3)
    tiles = tiles.transpose(0, 2, 1, 3, 4).reshape(rows, columns, SMALLER**2, 3)
    darkest = numpy.take_along_axis(tiles, tiles.sum(axis=3).argmin(axis=2)[:, :, None, None], axis=2)[:, :, 0]
    mixed = (numpy.round((darkest + tiles.mean(axis=2)) / 2 / 32) * 32).clip(0, 255)
    mixed[:, -2:] = 160  # a line between the pictures
    return mixed


shown = numpy.concatenate([small(file) for file in sys.argv[1:4]], axis=1)
matplotlib.image.imsave(sys.argv[4], shown[:, :-2].astype(numpy.uint8))
PYTHON
done
