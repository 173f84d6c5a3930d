#!/usr/bin/env bash
# torture_registry.sh [ROUNDS]: eight programs at once write a hundred values each to the registry of one profile, and
# none may be lost. In every second round one of them is killed: what the others wrote must be there all the same.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
rounds=${1:-10}
"$root/scripts/setup.sh" build
build release "$root/build/torture.log" registry_writer
writer=$root/build/release/bin/registry_writer
place=$root/build/torture_registry
failures=0
for ((round = 1; round <= rounds; round++)); do
    rm -rf "$place"
    mkdir -p "$place"
    writers=()
    for name in a b c d e f g h; do
        "$writer" "$place" $name 100 &
        writers+=($!)
    done
    checked='a b c d e f g h'
    if ((round % 2 == 0)); then
        sleep "0.0$((RANDOM % 10))"
        kill -KILL "${writers[0]}" 2>/dev/null || true
        wait "${writers[0]}" 2>/dev/null || true
        checked='b c d e f g h'
    fi
    for child in "${writers[@]:round % 2 == 0}"; do
        wait "$child" || failures=$((failures + 1))
    done
    for name in $checked; do
        "$writer" --check "$place" $name 100 || failures=$((failures + 1))
    done
done
say "$rounds rounds of eight programs and a hundred values each: $failures failures"
[ $failures = 0 ]
