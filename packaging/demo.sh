# shellcheck shell=bash
# The demonstration of ./run on a machine without a display: the real window, real keys, a saved page and a picture.
# Sourced after setup.sh.

# Id of the visible window whose title holds the given text; false while there is none.
WindowTitled() { xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1 | grep .; }

# Clicks into the middle of the window's design view.
ClickIntoPage()
{
    local x=0 y=0 width=0 height=0
    eval "$(xdotool getwindowgeometry --shell "$1" | sed -n -e 's/^X=/x=/p' -e 's/^Y=/y=/p' \
        -e 's/^WIDTH=/width=/p' -e 's/^HEIGHT=/height=/p')"
    xdotool mousemove $((x + width * 6 / 10)) $((y + height * 6 / 10)) click 1
}

Screenshot() { import -silent -window root "$1"; }

# Ends the demonstration with a picture of what was on the screen.
DemoFailed()
{
    Screenshot "$demo/failed.png"
    sed 's/^/    /' "$demo/inkloom.log" >&2
    die "$1 The screen as it was: $demo/failed.png"
}

# Demonstrate PAGE
Demonstrate()
{
    local page=$1 samples=$PWD/samples window dialog editor sentence saved
    UsePrivateFolders
    demo=$(mktemp -d "${TMPDIR:-/tmp}/inkloom-demo.XXXXXX") || die "no temporary folder."
    case $page in
    "$samples"/*) # The samples stay as they are: work on a copy of the site.
        cp -R "$samples" "$demo/site" && page=$demo/site/${page#"$samples"/}
        ;;
    esac
    saved=$demo/saved-by-demo.htm
    [ ! -d "$demo/site" ] || saved=${page%/*}/saved-by-demo.htm
    sentence="These words were typed with real keys, $(date '+%d %B %Y at %H:%M:%S')."

    StartDisplay
    build/release/bin/inkloom "$page" </dev/null >"$demo/inkloom.log" 2>&1 &
    editor=$!
    CLEANUP_PIDS+=("$editor")
    WaitUntil 60 WindowTitled "Inkloom HTML Editor - " || DemoFailed "The editor's window did not come up."
    window=$(WindowTitled "Inkloom HTML Editor - ")
    say "Opened    $page"

    xdotool windowactivate --sync "$window"
    ClickIntoPage "$window"
    xdotool key --clearmodifiers ctrl+End
    xdotool type --delay 12 " $sentence"
    say "Typed     $sentence"

    xdotool key --clearmodifiers ctrl+shift+s
    WaitUntil 20 WindowTitled "Save As" || DemoFailed "The Save As dialog did not come up."
    dialog=$(WindowTitled "Save As")
    xdotool windowactivate --sync "$dialog"
    xdotool key --clearmodifiers ctrl+a
    xdotool type --delay 12 "$saved"
    xdotool key Return
    WaitUntil 20 grep -qsF "$sentence" "$saved" || DemoFailed "The saved page does not hold the sentence."
    WaitUntil 20 WindowGone "Save As" || DemoFailed "The Save As dialog stayed open."
    Screenshot "$demo/screenshot.png"

    xdotool windowactivate --sync "$window"
    xdotool key --clearmodifiers alt+F4
    WaitUntil 20 Gone "$editor" || DemoFailed "The editor did not close."
    say "The saved page holds the sentence. Look at:"
    say "    $saved"
    say "    $demo/screenshot.png"
}

WindowGone() { ! WindowTitled "$1"; }
