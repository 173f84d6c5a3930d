#!/usr/bin/env bash
# fuzz.sh NAME SECONDS: runs the fuzzer fuzz/fuzz_NAME.cpp. It starts from fuzz/seeds/NAME/, those of drawings from
# the tests' own and that of markup files from markup's, and keeps what it finds interesting in build/fuzzed/NAME/;
# an input that breaks something is written beside that. Status 1 when one does.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"
if [ $# != 2 ] || [ ! -e "fuzz/fuzz_$1.cpp" ]; then
    names=$(cd fuzz && ls fuzz_*.cpp 2>/dev/null | sed 's/fuzz_\(.*\)[.]cpp/\1/' | tr '\n' ' ') || true
    say "usage: fuzz.sh NAME SECONDS; NAME is one of: ${names:-none yet}"
    exit 2
fi
scripts/setup.sh build check
build fuzz build/fuzz.log "fuzz_$1"
mkdir -p "build/fuzzed/$1"
seeds=()
[ ! -d "fuzz/seeds/$1" ] || seeds=("fuzz/seeds/$1")
case $1 in
drawing | change) seeds+=(tests/drawings) ;;
markup_file) seeds+=(fuzz/seeds/markup) ;;
esac
UBSAN_OPTIONS=print_stacktrace=1 "build/fuzz/bin/fuzz_$1" "build/fuzzed/$1" "${seeds[@]}" -max_total_time="$2" \
    -timeout=10 -rss_limit_mb=2048 -artifact_prefix="build/fuzzed/$1-" -print_final_stats=1 -verbosity=1
