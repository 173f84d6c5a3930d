# What the scripts share. Sourced after `set -euo pipefail`; sets `root`, the folder of the project.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Whatever the scripts themselves tell goes to standard error: standard output belongs to the program.
say() { printf '%s\n' "$*" >&2; }
fail() { say "$*"; exit 1; }

# build PRESET LOG [TARGET...]: configures when needed and builds, telling only how far it is. The whole log is
# in LOG; when it fails, what matters of the log is shown and the status is 1.
build() {
    local preset=$1 log=$2 started=$SECONDS line
    shift 2
    mkdir -p "$(dirname "$log")"
    # What the tests lacked when the build was configured may be there by now; the product lacks nothing.
    if [ "${1:-}" != product ] && grep -qs -e '-NOTFOUND$' "$root/build/$preset/CMakeCache.txt"; then
        rm -f "$root/build/$preset/build.ninja"
    fi
    if [ ! -e "$root/build/$preset/build.ninja" ] && ! (cd "$root" && cmake --preset "$preset") >"$log" 2>&1; then
        say "The build could not be configured ($log ends with):"
        tail -n 15 "$log" >&2
        return 1
    fi
    if ! (cd "$root" && cmake --build --preset "$preset" ${1:+--target "$@"}) 2>&1 | tee "$log" | show_progress "$preset"; then
        say "The build failed; the whole log is $log:"
        grep -A 4 -E '(error|undefined reference|CMake Error|FAILED)' "$log" | cut -c 1-240 | head -n 40 >&2 || tail -n 15 "$log" >&2
        return 1
    fi
    if ! grep -q 'no work to do' "$log"; then
        say "built $preset in $((SECONDS - started)) s"
    fi
}

# Reads a build's log; on a terminal keeps one line up to date, elsewhere tells every half minute how far it is.
show_progress() {
    local line told= next=0
    while IFS= read -r line; do
        case $line in
        '[0/'*) ;; # looking for new sources
        '['*/*']'*)
            if [ -t 2 ]; then
                printf '\rbuilding %s %s ' "$1" "${line%%]*}]" >&2
            elif [ $SECONDS -ge $next ]; then
                say "building $1 ${line%%]*}]"
                next=$((SECONDS + 30))
            fi
            told=yes
            ;;
        esac
    done
    if [ -t 2 ] && [ -n "$told" ]; then
        printf '\r\033[K' >&2
    fi
}
