#!/usr/bin/env bash
# setup.sh [GROUP...]: installs what is missing for the groups named (build when none is), asking nothing.
# It knows Debian's packages; elsewhere it says what is needed and goes on.
set -euo pipefail

# group    package             purpose
packages='
build      g++                 compiles everything
build      cmake               describes the build
build      ninja-build         runs the build
build      pkg-config          tells where libraries are
build      libedit-dev         line editing of the console program
build      libfontconfig-dev   finds the fonts of this machine
build      libfreetype-dev     reads what scripts a font has
build      libcairo2-dev       draws PNGs and SVGs
build      libjpeg-dev         reads images that drawings show
build      libpng-dev          reads images that drawings show
build      zlib1g-dev          packs PNGs and PDFs
build      hershey-fonts-data  letters made of strokes, for pictures
build      fonts-liberation    letters as wide as those of Arial, for pictures
build      fonts-arphic-uming  Chinese text: stands in for 宋体 and 仿宋
test       libgtest-dev        the tests
check      clang               second compiler, sanitizers
check      libclang-rt-14-dev  run time of the sanitizers and fuzzers
check      llvm                readable stack traces from the sanitizers
check      clang-format        style of the sources
check      clang-tidy          mistakes that compile
check      python3             runs the checks
mutate     rsync               copies the tree that faults are seeded into
mutate     python3-clang-14    finds the places for them
bench      libdime-dev         a peer to measure against
bench      libdxflib-dev       a peer to measure against
bench      libpugixml-dev      a peer to measure against
bench      libtinyxml2-dev     a peer to measure against
bench      libxml2-dev         a peer to measure against
bench      dpkg-dev            unpacks the sources of a peer, for wide characters
bench      python3             runs the measurements
judge      python3-ezdxf       judges the drawings that we write
judge      python3-matplotlib  draws pictures to set beside ours
judge      poppler-utils       shows the PDFs that we write
judge      librsvg2-bin        shows the SVGs that we write
judge      librecad            plots the copies that are taken apart
judge      libxml2-utils       judges how documents of markup are read
'

groups=${*:-build}
wanted=$(awk -v groups=" $groups " 'index(groups, " " $1 " ") { print $2 }' <<<"$packages")
if [ -z "$wanted" ]; then
    echo "setup: no group named $groups; groups are build, test, check, mutate, bench, judge" >&2
    exit 2
fi

# What is missing of the packages in $wanted.
missing() {
    local installed
    # shellcheck disable=SC2086
    installed=$(dpkg-query -W -f '${db:Status-Abbrev}${Package}\n' $wanted 2>/dev/null | sed -n 's/^ii *//p')
    grep -vxF -f <(printf '%s\n' "$installed" none) <<<"$wanted" || true
}

if ! command -v dpkg-query >/dev/null; then
    echo "setup: this is no Debian; it needs what these packages hold there:" $wanted >&2
    exit 0
fi
lacking=$(missing)
[ -n "$lacking" ] || exit 0

# give_up CAUSE: what can still be done by hand.
give_up() {
    echo "setup: $1; please run: apt-get update && apt-get install" $lacking >&2
    exit 1
}

as_root=
if [ "$(id -u)" != 0 ]; then
    as_root='sudo -n'
    command -v sudo >/dev/null || give_up 'not root, and there is no sudo here'
    sudo -n true 2>/dev/null || give_up 'not root, and sudo asks for a password'
fi

echo "installing" $lacking >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() {
    $as_root env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get -o Acquire::http::Timeout=20 "$@" >>"$log" 2>&1
}
install() {
    # shellcheck disable=SC2086
    apt install -y --no-install-recommends $lacking
}
# The lists of a fresh system are empty or old: fetched only when the first try failed. Without a network fetching them
# ends well, and what fails after it speaks of unknown packages: so the causes are looked for in all that was told.
if ! install; then
    apt update || true
    install || true
fi
lacking=$(missing)
if [ -n "$lacking" ]; then
    for cause in \
        'Temporary failure resolving|Could not resolve|Network is unreachable|Could not connect|Connection (failed|refused|timed out)|Cannot initiate the connection' \
        'Could not get lock|is held by process' 'No space left|enough free space' '^E: '; do
        if told=$(grep -m 1 -E "$cause" "$log" | sed -E 's/^ *([EW]: *)?//'); [ -n "$told" ]; then
            break
        fi
    done
    case $cause in
    Temporary*) give_up "the package server cannot be reached ($told)" ;;
    *) give_up "could not install them (${told:-no reason given})" ;;
    esac
fi
