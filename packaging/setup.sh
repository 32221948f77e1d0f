# shellcheck shell=bash
# What ./run and ./test share. Sourced by them from the root of the source tree; needs bash and a Debian 12.

ASSUME_YES=${CI:-}
[ "$ASSUME_YES" = true ] || ASSUME_YES=
CLEANUP_PIDS=()
CLEANUP_FOLDERS=()

say() { printf '%s\n' "$*"; }
die()
{
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# Ends what was started here, newest first, and removes the private folders. Set as the EXIT trap by Prepare.
Cleanup()
{
    local i pid
    for ((i = ${#CLEANUP_PIDS[@]} - 1; i >= 0; i--)); do
        pid=${CLEANUP_PIDS[i]}
        kill "$pid" 2>/dev/null || continue
        WaitUntil 5 Gone "$pid" || kill -KILL "$pid" 2>/dev/null
        wait "$pid" 2>/dev/null
    done
    CLEANUP_PIDS=()
    [ ${#CLEANUP_FOLDERS[@]} -eq 0 ] || rm -rf -- "${CLEANUP_FOLDERS[@]}"
}

# True when a process has ended. A child that nobody has waited for counts as ended, too.
Gone()
{
    local state
    state=$(sed -n 's/^State:[[:space:]]*\(.\).*/\1/p' "/proc/$1/status" 2>/dev/null)
    [ -z "$state" ] || [ "$state" = Z ]
}

# WaitUntil SECONDS COMMAND...: asks again and again, at most so long. False when it never came true.
WaitUntil()
{
    local until=$((SECONDS + $1))
    shift
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $until ] || return 1
        sleep 0.05
    done
}

# What every run needs: an own clean-up, UTF-8 for the messages of Qt, the engine's sandbox where it can work.
Prepare()
{
    trap Cleanup EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    [ "$(locale charmap 2>/dev/null)" = UTF-8 ] || export LC_ALL=C.UTF-8
    if [ "$(id -u)" = 0 ]; then
        export QTWEBENGINE_DISABLE_SANDBOX=1
        say "Running as root: the web engine's sandbox cannot work for root and is switched off. Better start as an ordinary user."
    fi
}

# Packages of the given lists that are not installed.
MissingPackages()
{
    local installed
    installed=$(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' 2>/dev/null | sed -n 's/^.i  *//p')
    sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$@" | grep -vxF "$installed"
}

InstallPackages()
{
    local as_root=() environment=(env DEBIAN_FRONTEND=noninteractive)
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || die "these packages are missing, and installing them needs root or sudo: $*"
        as_root=(sudo)
        [ -z "$ASSUME_YES" ] || as_root=(sudo -n)
    fi
    "${as_root[@]}" "${environment[@]}" apt-get update -q </dev/null ||
        say "The package lists could not be brought up to date; trying with what is there."
    "${as_root[@]}" "${environment[@]}" apt-get install -q -y --no-install-recommends "$@" </dev/null ||
        die "installing the packages failed; see above."
}

# RequirePackages LIST...: installs what is missing, after asking. A stamp newer than the lists spares the look.
RequirePackages()
{
    local lists=("${@/#/packaging/packages-}")
    lists=("${lists[@]/%/.txt}")
    local stamp=build/.packages list missing answer
    for list in "$@"; do stamp+=-$list; done
    if [ -e "$stamp" ]; then
        local fresh=1
        for list in "${lists[@]}" packaging/setup.sh; do [ "$stamp" -nt "$list" ] || fresh=; done
        [ -z "$fresh" ] || return 0
    fi
    command -v dpkg-query >/dev/null || die "this needs Debian 12: its packages are listed in packaging/packages-*.txt."
    mapfile -t missing < <(MissingPackages "${lists[@]}")
    if [ ${#missing[@]} -gt 0 ]; then
        say "Missing Debian packages: ${missing[*]}"
        if [ -z "$ASSUME_YES" ]; then
            read -r -p "Install them now? [y/N] " answer || answer=
            case $answer in
            [yYjJ]*) ;;
            *) die "nothing was installed. Answer y, start with -y, or install them yourself." ;;
            esac
        fi
        InstallPackages "${missing[@]}"
    fi
    mkdir -p build && touch "$stamp"
}

# Build PRESET [TARGET...]: configures once, then leaves it to ninja what is out of date.
Build()
{
    local preset=$1 targets=()
    shift
    [ $# -eq 0 ] || targets=(--target "$@")
    if [ ! -e "build/$preset/build.ninja" ] || [ ! -e "build/$preset/bin/inkloom.ini" ]; then
        cmake --preset "$preset" || return 1
    fi
    cmake --build --preset "$preset" "${targets[@]}"
}

# A folder of its own for settings, state and caches, so that neither a test nor the demonstration touches the user's.
UsePrivateFolders()
{
    local folder
    folder=$(mktemp -d "${TMPDIR:-/tmp}/inkloom-private.XXXXXX") || die "no temporary folder."
    CLEANUP_FOLDERS+=("$folder")
    mkdir -m 700 "$folder"/{config,state,data,cache,runtime}
    export XDG_CONFIG_HOME=$folder/config XDG_STATE_HOME=$folder/state XDG_DATA_HOME=$folder/data
    export XDG_CACHE_HOME=$folder/cache XDG_RUNTIME_DIR=$folder/runtime
}

# A private virtual display with a window manager. The server picks the number: two runs must never share a screen.
StartDisplay()
{
    local number_file
    number_file=$(mktemp "$XDG_RUNTIME_DIR/display.XXXXXX")
    unset WAYLAND_DISPLAY QT_QPA_PLATFORM
    # -noreset: else the server starts over, and drops who just came, whenever its last client leaves.
    Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$number_file" 2>/dev/null &
    CLEANUP_PIDS+=($!)
    WaitUntil 20 test -s "$number_file" || die "the virtual display (Xvfb) did not start."
    DISPLAY=:$(<"$number_file")
    export DISPLAY
    openbox >/dev/null 2>&1 &
    CLEANUP_PIDS+=($!)
    WaitUntil 20 WindowManagerRuns || die "the window manager (openbox) did not start."
}

WindowManagerRuns() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }
