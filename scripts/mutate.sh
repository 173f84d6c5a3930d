#!/usr/bin/env bash
# mutate.sh [FLOOR] [N]: seeds N (100) single faults into FLOOR, or into each floor, and tells which its tests let pass.
# It takes minutes a floor. More in scripts/mutate.py.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
"$root/scripts/setup.sh" build test mutate
for floor in ${1:-base sys ui host siblings module clients}; do
    "$root/scripts/mutate.py" "$floor" "${2:-100}"
done
