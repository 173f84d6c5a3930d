#!/usr/bin/env bash
# script_pictures.sh: makes the README's pictures of the sample's scripts, docs/scripts/NAME.png: what each changes of the
# sample, red what went, green what came, blue what changed.
set -euo pipefail
cd "$(dirname "$0")/.."
host=${ZEFHOST:-build/release/bin/zefhost}
[ -x "$host" ] || { echo "script_pictures.sh: no zefhost; ./run builds it" >&2; exit 1; }
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
mkdir -p docs/scripts
for name in convert draw_pipes isolate label_pipes main_job thaw; do # a lock is not seen
    script=samples/scripts/$name.scr
    "$host" samples/storey.dxf --profile "$place/profile" -s "$script" -o "$place/$name.dxf" >/dev/null
    cp samples/storey_base.dxf "$place/"
    "$host" "$place/$name.dxf" --readonly --profile "$place/profile" -c '' --picture "$place/after.png" \
        --since samples/storey.dxf >/dev/null
    /usr/bin/python3 - "$place/after.png" "docs/scripts/$name.png" <<'PYTHON'
import sys

import matplotlib.image
import numpy

# A fifth as wide and high, in few colours, so that the file is small; what is drawn stays visible.
dots = (matplotlib.image.imread(sys.argv[1])[:, :, :3] * 255).astype(int)
rows, columns = dots.shape[0] // 5, dots.shape[1] // 5
small = dots[:rows * 5, :columns * 5].reshape(rows, 5, columns, 5, 3).transpose(0, 2, 1, 3, 4).reshape(rows, columns, 25, 3)
darkest = numpy.take_along_axis(small, small.sum(axis=3).argmin(axis=2)[:, :, None, None], axis=2)[:, :, 0]
mixed = (darkest + small.mean(axis=2)) / 2
matplotlib.image.imsave(sys.argv[2], (numpy.round(mixed / 16) * 16).clip(0, 255).astype(numpy.uint8))
PYTHON
done
