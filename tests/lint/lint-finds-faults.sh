#!/usr/bin/env bash
# A lint that finds nothing looks like a clean tree. So: a clean small tree passes, and each breach by itself is found.
set -u
lint=$(cd "$(dirname "$0")" && pwd)/lint.sh
tree=$(mktemp -d) || exit 2
trap 'rm -rf "$tree"' EXIT
failed=0

# Expect OUTCOME NAME FILE TEXT: what the lint says to a tree that holds but this file.
Expect()
{
    rm -rf "${tree:?}"/*
    mkdir -p "$tree/$(dirname "$3")"
    printf '%b' "$4" >"$tree/$3"
    bash "$lint" "$tree" >"$tree.out" 2>&1
    local outcome=$?
    [ "$outcome" = "$1" ] || {
        printf 'FAILED: %s: answered %s, not %s\n' "$2" "$outcome" "$1"
        cat "$tree.out"
        failed=1
    }
    rm -f "$tree.out"
}

Expect 0 "downward include" src/document/A.cpp '#include "platform/B.h"\n#include "document/A.h"\n'
Expect 1 "include that climbs" src/platform/A.cpp '#include "document/B.h"\n'
Expect 1 "include that climbs, with blanks" src/state/A.h '  #  include "platform/B.h"\n'
Expect 1 "include across" src/site/A.cpp '#include "editing/B.h"\n'
Expect 0 "the one include across" src/forms/A.cpp '#include "editing/FormGraphic.h"\n#include "ui_A.h"\n#include "A.moc"\n'
Expect 1 "include from the folder" src/document/A.cpp '#include "B.h"\n'
Expect 0 "500 lines" src/shell/A.cpp "$(printf '//\\n%.0s' {1..500})"
Expect 1 "501 lines" src/shell/A.cpp "$(printf '//\\n%.0s' {1..501})"
Expect 1 "501 lines of script" src/platform/surface/a.js "$(printf '//\\n%.0s' {1..501})"
Expect 1 "waiting for a time" tests/x/A.cpp "QTest::q""Wait(50);\n"
Expect 1 "handler found by name" src/shell/A.h 'void on_OKButton_clicked();\n'
Expect 1 "foreign document named" src/document/A.h "// see sp""ec.md\n"
Expect 1 "chapter named" docs/a.md "as Pa""rt 2.3 says\n"
Expect 1 "path of one machine" cmake/A.cmake "set(X /wo""rk/x)\n"
exit $failed
