#!/usr/bin/env bash
# check_arrows.sh [FOLDER]: checks which file includes what, in FOLDER or in this project.
#   - The floors, from the ground up: base; sys, ui; host; siblings; module; clients; apps. A file includes from its
#     own floor or from those below, and of two folders on one floor neither includes the other.
#   - Inside the host each folder is a floor of its own (the list is below, from the ground up), host/include is below
#     all of them, and host/db/entities/ is a roof: nobody includes what lies there.
#   - Siblings, module and clients see of the host its interface alone: host/include.
#   - Systems and foreign libraries are met in sys/SYSTEM/ and in apps/ only; all others include the standard
#     library, and nobody but those asks which system it is.
#   - base/ reads and writes no files.
# tests/, benchmarks/ and fuzz/ may include anything. One line for each breach; status 1 when there is any.
# check_arrows.sh --self-test: plants breaches and sees that each is found.
set -euo pipefail
export LC_ALL=C

check() (
    cd "$1"
    folders=()
    for folder in base sys ui host siblings module clients apps; do
        [ ! -d $folder ] || folders+=($folder)
    done
    [ ${#folders[@]} -gt 0 ] || exit 0
    find "${folders[@]}" -name '*.h' -o -name '*.cpp' | sort >"$list"
    [ -s "$list" ] || exit 0
    # shellcheck disable=SC2046
    awk '
        function breach(text) { print FILENAME ":" FNR ": " text; breaches++ }
        function floor_of(path) { return path in known ? floors[substr(path, 1, index(path, "/") - 1)] : 0 }
        # The folder that counts as one on its floor: each sibling is one of its own.
        function house_of(path,    part) {
            split(path, part, "/")
            return part[1] == "siblings" ? part[1] "/" part[2] : part[1]
        }
        # The floor inside the host; 0 for a folder that nobody put in the list.
        function room_of(path) {
            sub(/^host\//, "", path)
            sub(/\/[^\/]*$/, "", path)
            return path ~ /^include/ ? -1 : rooms[path]
        }
        function resolve(name,    own) {
            own = FILENAME
            sub(/[^\/]*$/, "", own)
            if (own name in known) return own name
            if (name in known) return name
            if ("host/include/" name in known) return "host/include/" name
            return ""
        }
        function check_include(name, quoted,    target, mine, theirs) {
            target = resolve(name)
            if (target == "" || (!quoted && name in standard)) {
                if (name in standard) {
                    if (FILENAME ~ /^base\// && name ~ /^(fstream|iostream|filesystem)$/)
                        breach("base/ reads and writes no files: <" name ">")
                } else if (quoted)
                    breach("\"" name "\" is neither beside this file, nor below the root, nor in host/include")
                else if (FILENAME !~ /^(apps|sys\/[^\/]+)\//)
                    breach("<" name "> belongs to a system or a foreign library: only sys/SYSTEM/ and apps/ may include it")
                return
            }
            mine = floor_of(FILENAME)
            theirs = floor_of(target)
            if (theirs > mine)
                breach("an include that goes up: \"" name "\"")
            else if (theirs == mine && house_of(target) != house_of(FILENAME) && target !~ /^siblings\/zef_kernal\//)
                breach("an include across one floor: \"" name "\"")
            else if (theirs == floors["host"] && mine == theirs && room_of(target) > room_of(FILENAME))
                breach("an include that goes up inside the host: \"" name "\"")
            else if (target ~ /^host\/db\/entities\// && FILENAME !~ /^host\/db\/entities\//)
                breach("host/db/entities/ is a roof: \"" name "\"")
            else if (target ~ /^host\// && target !~ /^host\/include\// && FILENAME !~ /^(host|apps)\//)
                breach("the inside of the host: \"" name "\"; only host/include may be used here")
        }
        BEGIN {
            n = split("base sys ui host siblings module clients apps", name, " ")
            split("1 2 2 3 4 5 6 7", height, " ")
            for (i = 1; i <= n; i++) floors[name[i]] = height[i]
            n = split("ge rx dwg dxf gi db/core db/tables view db/custom db/xref db/creation db/entities version " \
                "picture ap ed", name, " ")
            for (i = 1; i <= n; i++) rooms[name[i]] = i
            n = split("algorithm any array atomic barrier bit bitset cassert ccomplex cctype cerrno cfenv cfloat " \
                "charconv chrono cinttypes climits clocale cmath codecvt compare complex concepts condition_variable " \
                "coroutine csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype " \
                "deque exception execution filesystem format forward_list fstream functional future initializer_list " \
                "iomanip ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource mutex " \
                "new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator semaphore set " \
                "shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view " \
                "strstream syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map " \
                "unordered_set utility valarray variant vector version " \
                "assert.h ctype.h errno.h float.h inttypes.h limits.h locale.h math.h setjmp.h signal.h stdarg.h " \
                "stddef.h stdint.h stdio.h stdlib.h string.h time.h wchar.h wctype.h " \
                "emmintrin.h",
                name, " ")
            for (i = 1; i <= n; i++) standard[name[i]]
        }
        FILENAME == ARGV[1] { known[$0]; next }
        FNR == 1 && floor_of(FILENAME) == floors["host"] && room_of(FILENAME) == 0 {
            breach("a folder of the host that has no place among the others")
        }
        /^[ \t]*#[ \t]*include[ \t]*[<"]/ {
            quoted = $0 ~ /include[ \t]*"/
            match($0, /[<"][^>"]*/)
            check_include(substr($0, RSTART + 1, RLENGTH - 1), quoted)
            next
        }
        /^[ \t]*#/ && FILENAME !~ /^(apps|sys)\// {
            if (match($0, /(_WIN32|_WIN64|WIN32|__MINGW|__CYGWIN|__linux|__unix|__APPLE__)/))
                breach("asks which system it is: " substr($0, RSTART, RLENGTH))
        }
        END { exit breaches > 0 }' "$list" $(cat "$list")
)

# Each line: a file, what it includes or asks, and a word that the answer must hold (ok: no answer).
self_test() {
    local place wrong=0 file line want got
    place=$(mktemp -d)
    while IFS='|' read -r file line want; do
        [ -n "$file" ] || continue
        rm -rf "$place/tree"
        for present in base/a.h sys/a.h sys/posix/a.h ui/a.h host/db/core/a.h host/db/entities/a.h host/ed/a.h host/gi/a.h host/include/dbmain.h host/include/windows.h \
            siblings/zef_kernal/k.h siblings/zef_public/p.h module/frame/m.h clients/c.h apps/zefhost/z.h; do
            mkdir -p "$place/tree/$(dirname $present)"
            : >"$place/tree/$present"
        done
        mkdir -p "$place/tree/$(dirname "$file")"
        printf '// first line\n%s\n' "$line" >"$place/tree/$file"
        got=$(check "$place/tree" 2>&1) && got=${got:-ok}
        case $got in
        ok) [ "$want" = ok ] ;;
        "$file:"[12]": "*"$want"*) [ "$want" != ok ] ;;
        *) false ;;
        esac || { echo "check_arrows: $file with $line: wanted $want, got: $got" >&2; wrong=1; }
    done <<'CASES'
base/b.cpp|#include "base/a.h"|ok
base/b.cpp|#include <vector>|ok
base/b.cpp|#include "a.h"|ok
base/b.cpp|#include "sys/a.h"|goes up
base/b.cpp|#include <fstream>|no files
base/b.cpp|# include <unistd.h>|belongs to a system
base/b.cpp|#include "base/none.h"|neither beside
sys/b.h|#include <fcntl.h>|belongs to a system
sys/posix/b.cpp|#include <fcntl.h>|ok
sys/posix/b.cpp|#include "host/db/core/a.h"|goes up
sys/b.h|#include "ui/a.h"|across one floor
sys/b.h|#ifdef _WIN32|ok
host/db/core/b.cpp|#include "dbmain.h"|ok
host/db/core/b.cpp|#include "sys/a.h"|ok
host/db/core/b.cpp|#include "module/frame/m.h"|goes up
host/db/core/b.cpp|#include "siblings/zef_kernal/k.h"|goes up
host/db/core/b.cpp|#include <sys/stat.h>|belongs to a system
host/db/core/b.cpp|#if defined(__linux__)|asks which system
host/db/core/b.cpp|#include <dlfcn.h>|belongs to a system
host/db/core/b.cpp|#include "host/gi/a.h"|ok
host/gi/b.cpp|#include "host/db/core/a.h"|up inside the host
host/db/core/b.cpp|#include "host/ed/a.h"|up inside the host
host/db/core/b.cpp|#include "host/db/entities/a.h"|up inside the host
host/ed/b.cpp|#include "host/db/entities/a.h"|a roof
host/include/b.h|#include "host/gi/a.h"|up inside the host
host/cellar/b.cpp|#include "dbmain.h"|no place among
siblings/zef_public/b.cpp|#include "siblings/zef_kernal/k.h"|ok
siblings/zef_kernal/b.cpp|#include "siblings/zef_public/p.h"|across one floor
siblings/zef_kernal/b.cpp|#include "module/frame/m.h"|goes up
module/frame/b.cpp|#include <windows.h>|ok
module/frame/b.cpp|#include "siblings/zef_public/p.h"|ok
module/frame/b.cpp|#include "host/include/dbmain.h"|ok
module/frame/b.cpp|#include "host/db/core/a.h"|inside of the host
module/frame/b.cpp|#include "clients/c.h"|goes up
module/frame/b.cpp|#include <iconv.h>|belongs to a system
clients/b.cpp|#include "module/frame/m.h"|ok
clients/b.cpp|#include "host/db/core/a.h"|inside of the host
apps/zefhost/b.cpp|#include "host/db/core/a.h"|ok
apps/zefhost/b.cpp|#include <histedit.h>|ok
CASES
    rm -rf "$place"
    return $wrong
}

list=$(mktemp)
trap 'rm -f "$list"' EXIT
if [ "${1:-}" = --self-test ]; then
    self_test
else
    check "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"
fi
