#!/usr/bin/env bash
# torture_save.sh [N]: kills zefhost N times (1000) at random moments while it changes a drawing and saves it over the
# old one. After each kill the file must be the old or the new drawing, whole, and so must the backup beside it. Every
# second kill falls at any time of the run, the others while it saves. What else a killed program leaves beside the
# drawing is counted; the next save that is not disturbed must clear it away. Status 1 when a drawing was harmed or
# litter stays.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
shopt -s nullglob dotglob
rounds=${1:-1000}
"$root/scripts/setup.sh" build
build release "$root/build/torture.log" product grow_drawing
bin=$root/build/release/bin
place=$root/build/torture_save
rm -rf "$place"
mkdir -p "$place/saved"
target=$place/saved/drawing.dxf
backup=$place/saved/drawing.bak
"$bin/grow_drawing" "$root/samples/storey.dxf" "$place/old.dxf" 20

# change [-o FILE]: what is killed; it ends with another drawing than it began with.
change() {
    exec "$bin/zefhost" "$target" --no-module --profile "$place/profile" -c '-LAYER\nNew\nTORTURE\n\n' "$@"
}

# pause MICROSECONDS, without the time that starting a program would take.
exec {silence}<> <(:)
pause() {
    local seconds
    printf -v seconds '%d.%06d' $(($1 / 1000000)) $(($1 % 1000000))
    read -r -t "$seconds" -u "$silence" || true
}

now() { echo "${EPOCHREALTIME/[.,]/}"; } # in microseconds

# time_of [-o FILE]: the shortest of five runs.
time_of() {
    local best=999999999 started spent
    for _ in 1 2 3 4 5; do
        cp "$place/old.dxf" "$target"
        started=$(now)
        (change "$@") >"$place/told" 2>&1 || fail "torture: zefhost failed: $(tail -n 1 "$place/told")"
        spent=$(($(now) - started))
        ((spent >= best)) || best=$spent
    done
    echo "$best"
}

unsaved=$(time_of)
whole=$(time_of -o "$target")
cp "$target" "$place/new.dxf"
! cmp -s "$place/old.dxf" "$place/new.dxf" || fail 'torture: the saved drawing does not differ from the old one'

# harms FILE: whether it is neither the old drawing nor the new one.
harms() { ! cmp -s "$1" "$place/old.dxf" && ! cmp -s "$1" "$place/new.dxf"; }

old=0 new=0 harmed=0 ended=0 littered=0
for ((round = 1; round <= rounds; round++)); do
    cp "$place/old.dxf" "$target"
    rm -f "$backup"
    files=("$place"/saved/*)
    before=${#files[@]}
    earliest=$((round % 2 ? 0 : unsaved))
    delay=$((earliest + RANDOM * (whole - earliest) / 32768))
    (change -o "$target") >/dev/null 2>&1 &
    child=$!
    pause $delay
    kill -KILL $child 2>/dev/null || ended=$((ended + 1))
    wait $child 2>/dev/null || true
    if cmp -s "$target" "$place/old.dxf"; then
        old=$((old + 1))
    elif cmp -s "$target" "$place/new.dxf"; then
        new=$((new + 1))
    else
        harmed=$((harmed + 1))
        cp "$target" "$place/harmed_$round.dxf"
    fi
    if [ -e "$backup" ]; then
        ! harms "$backup" || { harmed=$((harmed + 1)) && cp "$backup" "$place/harmed_$round.bak"; }
        rm -f "$backup"
    fi
    files=("$place"/saved/*)
    [ ${#files[@]} -le "$before" ] || littered=$((littered + 1))
done

cp "$place/old.dxf" "$target"
(change -o "$target") >"$place/told" 2>&1 || harmed=$((harmed + 1))
! harms "$backup" || harmed=$((harmed + 1))
rm -f "$backup"
files=("$place"/saved/*)
left=$((${#files[@]} - 1))
say "$rounds kills ($ended came after the end): $old left the old drawing, $new the new one, $harmed harmed one"
say "$littered kills left a file behind; after one undisturbed save $left remain"
[ $harmed = 0 ] && [ $left = 0 ]
