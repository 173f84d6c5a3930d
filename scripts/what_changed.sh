#!/usr/bin/env bash
# what_changed.sh [--picture OUT] OLD NEW: compares two drawings (DXF, text form). Prints a table of the layers whose state or number
# of entities differs, then whether anything else differs. Status 0 when both could be read. OUT (.png, .svg or .pdf)
# becomes a picture of NEW: what went is red, what came green, what changed blue, and the rest grey.
set -euo pipefail
picture=
if [ "${1:-}" = --picture ] && [ $# -gt 1 ]; then
    picture=$2
    shift 2
fi
[ $# = 2 ] || { echo "usage: what_changed.sh [--picture OUT] OLD NEW" >&2; exit 2; }

place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export LC_ALL=C

# Splits a drawing into its layers (name, on, frozen, locked, colour, number of entities), its code page, and the
# rest: all lines with the values that the table tells about blanked out.
take_apart() {
    awk -v layers="$2.layers" -v rest="$2.rest" -v page="$2.page" '
        function end_layer() {
            if (record == "LAYER" && name != "") {
                order[++count] = name
                state[name] = (colour < 0 ? "off" : "on") "\t" (int(flags) % 2 ? "frozen" : "thawed") "\t" \
                    (int(flags / 4) % 2 ? "locked" : "free") "\t" (colour < 0 ? -colour : colour + 0)
            }
            name = ""
        }
        FNR % 2 == 1 { code = $0 + 0; print > rest; next }
        {
            value = $0
            sub(/\r$/, "", value)
            masked = 0
            if (code == 0) {
                end_layer()
                record = value
                placed = 0
                flags = colour = 0
                if (value == "SECTION") section = "?"
            } else if (code == 2 && section == "?") {
                section = value
            } else if (section == "TABLES" && record == "LAYER") {
                if (code == 2) name = value
                if (code == 70) { flags = value + 0; masked = 1 }
                if (code == 62) { colour = value + 0; masked = 1 }
            } else if (code == 8 && !placed && (section == "ENTITIES" || section == "BLOCKS")) {
                placed = masked = 1
                if (record !~ /^(BLOCK|ENDBLK|VERTEX|SEQEND)$/) entities[value]++
            } else if (section == "HEADER" && code == 9) {
                variable = value
            } else if (section == "HEADER" && variable == "$ACADVER") {
                version = value; variable = ""
            } else if (section == "HEADER" && variable == "$DWGCODEPAGE") {
                codepage = value; variable = ""
            }
            print (masked ? "*" : $0) > rest
        }
        END {
            end_layer()
            printf "" > layers
            for (i = 1; i <= count; i++) print order[i] "\t" state[order[i]] "\t" entities[order[i]] + 0 > layers
            sub(/^ANSI_/, "CP", codepage)
            print (version >= "AC1021" || codepage == "" ? "UTF-8" : codepage) > page
        }' "$1"
    # Text is read by its bytes first; only when it is no UTF-8 is the code page of the drawing believed.
    if ! iconv -f UTF-8 -t UTF-8 "$2.layers" >/dev/null 2>&1; then
        iconv -c -f "$(cat "$2.page")" -t UTF-8 "$2.layers" >"$2.utf8"
        mv "$2.utf8" "$2.layers"
    fi
}

take_apart "$1" "$place/old"
take_apart "$2" "$place/new"

# The layers that differ; unchanged cells stay empty. Four or more layers that changed alike share one row, and their
# names stand below. Widths count a CJK character as two.
awk -F '\t' '
    function cell(was, is) { return was == is ? "" : (was == "" ? "(none)" : was) " -> " (is == "" ? "(none)" : is) }
    function width(text,    copy) {
        copy = text
        return length(text) - gsub(/[\300-\337]/, "&", copy) - gsub(/[\340-\357]/, "&", copy)
    }
    function put(line, column, text) {
        table[line, column] = text
        if (text != "" && line > 0) filled[column] = 1
        if (width(text) > widest[column]) widest[column] = width(text)
    }
    function put_row(name, change,    cells, i) {
        put(++lines, 1, name)
        split(change, cells, "\t")
        for (i = 2; i <= 6; i++) put(lines, i, cells[i - 1])
    }
    FILENAME == ARGV[1] { for (i = 2; i <= 6; i++) old[$1, i] = $i; names[++known] = $1; had[$1]; next }
    { for (i = 2; i <= 6; i++) new[$1, i] = $i; if (!($1 in had)) names[++known] = $1 }
    END {
        split("layer\tvisible\tfrozen\tlocked\tcolour\tentities", title, "\t")
        for (i = 1; i <= 6; i++) put(0, i, title[i])
        for (k = 1; k <= known; k++) {
            change = cell(old[names[k], 2], new[names[k], 2])
            for (i = 3; i <= 6; i++) change = change "\t" cell(old[names[k], i], new[names[k], i])
            if (change == "\t\t\t\t") continue
            if (!(change in alike)) changes[++kinds] = change
            alike[change] = alike[change] (alike[change] == "" ? "" : "\t") names[k]
        }
        if (!kinds) { print "no layer changed"; exit }
        for (c = 1; c <= kinds; c++) {
            n = split(alike[changes[c]], same, "\t")
            if (n >= 4) put_row(n " layers", changes[c])
            else for (k = 1; k <= n; k++) put_row(same[k], changes[c])
        }
        for (k = 0; k <= lines; k++) {
            text = ""
            for (i = 1; i <= 6; i++)
                if (i == 1 || filled[i])
                    text = text table[k, i] sprintf("%" (widest[i] - width(table[k, i]) + 2) "s", "")
            sub(/ +$/, "", text)
            print text
        }
        for (c = 1; c <= kinds; c++) {
            n = split(alike[changes[c]], same, "\t")
            if (n < 4) continue
            text = n " layers:"
            for (k = 1; k <= n; k++) {
                if (width(text) + width(same[k]) > 96) { print text; text = "   " }
                text = text " " same[k] (k < n ? "," : "")
            }
            print text
        }
    }' "$place/old.layers" "$place/new.layers"

if cmp -s "$1" "$2"; then
    echo "the drawings are the same, byte for byte"
elif cmp -s "$place/old.rest" "$place/new.rest"; then
    echo "everything else is the same, byte for byte ($(wc -c <"$2") bytes)"
else
    diff "$place/old.rest" "$place/new.rest" | awk '
        /^</ { gone++ }
        /^>/ { come++ }
        END { printf "elsewhere %d lines went and %d came; all others are the same, byte for byte\n", gone, come }'
fi

[ -n "$picture" ] || exit 0
host=${ZEFHOST:-$(dirname "$0")/../build/release/bin/zefhost}
[ -x "$host" ] || { echo "what_changed.sh: no picture without zefhost; ./run builds it" >&2; exit 1; }
"$host" "$2" --readonly --no-module --profile "$place/profile" -c '' --since "$1" --picture "$picture" >/dev/null
echo "$picture: red went, green came, blue changed"
