#!/usr/bin/env bash
# check.sh [--changed]: judges the sources without running them: form, floors, clang-tidy. Status 1 when anything is found.
# --changed: form and clang-tidy only of what differs from main.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"
status=0
only=${1:-}

# check NAME COMMAND...: runs one check and tells its time.
check() {
    local name=$1 started=$SECONDS
    shift
    if "$@" >&2; then
        say "  $name: good, $((SECONDS - started)) s"
    else
        say "  $name: see above"
        status=1
    fi
}

# Sources of the given names, whether git knows them yet or not.
files() {
    if [ -n "$only" ]; then
        { git diff --name-only --diff-filter=d "$(git merge-base main HEAD)"; git ls-files --others --exclude-standard; } |
            while IFS= read -r file; do
                for name; do
                    # shellcheck disable=SC2254
                    case ${file##*/} in $name) printf '%s\0' "$file" ;; esac
                done
            done
        return
    fi
    local names=()
    for name; do names+=(-o -name "$name"); done
    find . \( -path ./build -o -path ./.git \) -prune -o -type f \( "${names[@]:1}" \) -print0
}

check_form() {
    local crooked
    crooked=$(files '*.h' '*.cpp' | xargs -0 -r -n 32 -P "$(nproc)" clang-format --dry-run 2>&1 |
        sed -n 's/^\([^ :]*\):.*\[-Wclang-format-violations\]$/\1/p' | sort -u)
    [ -z "$crooked" ] || { printf 'to be formatted: clang-format -i %s\n' "${crooked//$'\n'/ }"; return 1; }
}

check_words() {
    local found=0
    files '*.h' '*.cpp' '*.cmake' CMakeLists.txt '*.py' '*.sh' run test bench |
        xargs -0 -r grep -nE $'\\b(TODO|FIXME)\\b|[ \t]+$|\t|\r' /dev/null | grep -v '^./scripts/check.sh:' && found=1
    return $found
}

check 'self-test of the floors' scripts/check_arrows.sh --self-test
check 'floors' scripts/check_arrows.sh
check 'rooms' scripts/check_rooms.py
check 'words and blanks' check_words
check 'form' check_form
check 'list of the interface' scripts/api_list.py --check
check 'clang-tidy' scripts/check_tidy.py $only
exit $status
