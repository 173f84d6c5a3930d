#!/usr/bin/env bash
# check_tidy.sh: runs clang-tidy on the sources of the house, as the release preset compiles them. A source that was
# found clean is looked at again only when it, or something that it includes, has changed.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"
export LC_ALL=C
[ -e build/release/build.ninja ] || told=$(cmake --preset release 2>&1) || fail "$told"
# Takes in new sources.
told=$(cmake --build --preset release --target build.ninja 2>&1) || fail "$told"

clean=build/tidy
mkdir -p $clean
find $clean -type f -mtime +30 -delete
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

sed -n 's|^ *"file": "'"$root"'/\(.*\)"|\1|p' build/release/compile_commands.json |
    grep -E '^(base|sys|ui|host|siblings|module|clients|apps)/' | sort -u >"$work/sources" || exit 0
find . -path ./build -prune -o \( -name '*.h' -o -name '*.cpp' \) -print | sed 's|^[.]/||' | sort >"$work/files"
rules=$({ clang-tidy --version; cat .clang-tidy cmake/zef.cmake CMakePresets.json; } | sha1sum | cut -c 1-40)

# A source's key: the contents of all that it may include. An include counts for every file that it may mean.
tr '\n' '\0' <"$work/files" | xargs -0 sha1sum >"$work/sums"
tr '\n' '\0' <"$work/files" | xargs -0 grep -HE '^[ \t]*#[ \t]*include' >"$work/includes" || true
awk '
    FILENAME ~ /sums$/ {
        sum[$2] = $1
        tail = $2
        do { named[tail] = named[tail] " " $2 } while (sub(/^[^\/]*\//, "", tail))
        next
    }
    FILENAME ~ /includes$/ {
        file = substr($0, 1, index($0, ":") - 1)
        if (match($0, /[<"][^>"]*/)) uses[file] = uses[file] named[substr($0, RSTART + 1, RLENGTH - 1)]
        next
    }
    {
        split("", seen)
        count = 1; queue[1] = $0; seen[$0]
        key = ""
        for (i = 1; i <= count; i++) {
            key = key sum[queue[i]]
            n = split(uses[queue[i]], next_files, " ")
            for (k = 1; k <= n; k++) if (!(next_files[k] in seen)) { seen[next_files[k]]; queue[++count] = next_files[k] }
        }
        print $0, key
    }' "$work/sums" "$work/includes" "$work/sources" |
    while read -r source key; do
        key=$(sha1sum <<<"$rules$key" | cut -c 1-40)
        [ -e "$clean/$key" ] || printf '%s\0%s\0' "$source" "$clean/$key"
    done >"$work/wanted"

# shellcheck disable=SC2016
xargs -0 -r -n 2 -P "$(nproc)" bash -c '
    if told=$(clang-tidy --quiet -p build/release "$0" 2>&1); then
        : >"$1"
    else
        printf "%s\n" "$told" | grep -vE "^([0-9]+ (warning|error).* generated|Suppressed|Error while processing)"
        exit 1
    fi' <"$work/wanted" >"$work/found" || status=$?

# What a header is blamed for comes from every source that includes it: told once.
awk '/^\/[^ ]*: (error|warning):/ { told = seen[$0]++ } !told' "$work/found" >&2
exit "${status:-0}"
