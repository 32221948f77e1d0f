#!/usr/bin/env bash
# lint.sh [ROOT]: rules of the house that a machine can see. Names each breach and answers 1 if there is any.
set -u
shopt -s lastpipe # Report notes its finding in this shell
cd "${1:-$(dirname "$0")/../..}" || exit 2
faults=0

# Report RULE: the lines on standard input break it.
Report()
{
    local lines
    lines=$(cat)
    [ -n "$lines" ] || return 0
    printf '%s:\n%s\n\n' "$1" "$lines"
    faults=1
}

# Files below the given folders that have one of the endings after "--", as a NUL-separated list.
FilesIn()
{
    local folders=() tests=()
    while [ "$1" != -- ]; do
        [ ! -e "$1" ] || folders+=("$1")
        shift
    done
    shift
    for ending in "$@"; do tests+=(-o -name "*$ending"); done
    [ ${#folders[@]} -eq 0 ] || find "${folders[@]}" -type f \( "${tests[@]:1}" \) -print0 | sort -z
}

# Includes point down the floors only. Each row: a folder of src and the folders that it may include.
while read -r folder allowed; do
    FilesIn "src/$folder" -- .cpp .h | xargs -0 -r grep -HnE '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' |
        grep -vE "\"(${allowed// /|})/|\"ui_[A-Za-z0-9_]+\.h\"|\.moc\"" |
        Report "$folder includes what does not lie below it (from the root of src: $allowed)"
done <<'FLOORS'
state     state
platform  platform
document  document platform state
editing   editing document platform state
forms     forms editing document platform state
imagemap  imagemap editing document platform state
site      site document platform state
shell     shell editing forms imagemap site document platform state
FLOORS

FilesIn src -- .cpp .h .js .ui | xargs -0 -r wc -l | awk '$2 != "total" && $1 > 500 { print $2 ": " $1 " lines" }' |
    Report "Over 500 lines: two things in one file"

FilesIn tests -- .cpp .h | xargs -0 -r grep -HnE '\b(qWait|msleep|sleep_for|usleep)[[:space:]]*\(' |
    Report "A test waits for what happens (QTRY_..., QSignalSpy), not for a time"

FilesIn src -- .cpp .h | xargs -0 -r grep -HnE '\bvoid[[:space:]]+on_[A-Za-z0-9]+_[A-Za-z]+\(' |
    Report "Handlers are connected in code, never by name"

# Words of a workshop, and paths of one machine, mean nothing to the reader. The brackets keep this file out.
FilesIn src tests bench cmake docs help packaging README.md CONTRIBUTING.md CMakeLists.txt run test .ci \
    -- .cpp .h .js .ui .txt .md .sh .cmake .py .json .htm .html .xml run test |
    xargs -0 -r grep -HnE '[s]pec\.md|\b[P]art [1-7]\.[1-9]|/[w]ork/|/[r]oot/' |
    Report "Say why, in this system's own words, and name no path of one machine"

exit $faults
