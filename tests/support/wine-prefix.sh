# Private Wine prefixes for tests, demonstration and benchmarks; a prefix is a Windows machine of its own,
# with its own registry, spooler and kernel objects. To be sourced; needs $root, the top of the source tree.
#
#     wine_use build/win64/wine       points this shell and its children at that prefix (a path from $root or /)
#     wine_new                        makes it afresh and starts its server
#     wine_start                      starts its server, making the prefix only when there is none
#     wine_stop                       ends the server and whatever still runs in the prefix

wine_use() {
    case $1 in
        /*) WINEPREFIX=$1 ;;
        *) WINEPREFIX=$root/$1 ;;
    esac
    WINEDEBUG=-all
    # Without the first two Wine offers to download things when a prefix is made. The debugger takes over programs
    # that crash, and now and then ends them with the exit code 0.
    WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"
    # The logon name that Windows programs see; it stands in the job files' paths.
    USER=anna
    LOGNAME=anna
    # Arguments reach Windows programs through the locale's character set.
    LC_ALL=C.UTF-8
    # What programs put into the trash stays within the prefix.
    XDG_DATA_HOME=$WINEPREFIX/data
    export XDG_DATA_HOME WINEPREFIX WINEDEBUG WINEDLLOVERRIDES USER LOGNAME LC_ALL
    unset DISPLAY WAYLAND_DISPLAY
}

# Making a prefix takes ten seconds, copying one takes two.
wine_template() {
    template=$root/build/wine-template
    [ ! -f "$template/system.reg" ] || return 0
    mkdir -p "$root/build"
    fresh=$(mktemp -d "$root/build/wine-template.XXXXXX")
    (
        WINEPREFIX=$fresh
        wine wineboot -i >"$fresh.log" 2>&1 || { cat "$fresh.log" >&2; exit 1; }
        wineserver -w
    ) || return 1
    rm -f "$fresh.log"
    # Of two that make it at once, one wins.
    mv -T "$fresh" "$template" 2>/dev/null || rm -rf "$fresh"
}

wine_new() {
    wine_stop
    wine_template || return 1
    rm -rf "$WINEPREFIX"
    mkdir -p "$(dirname "$WINEPREFIX")"
    cp -a --reflink=auto "$root/build/wine-template" "$WINEPREFIX"
    wine_start
}

# A persistent server: a program then starts in 30 ms instead of 400. It and the services that come up with the
# first program outlive the caller, so they must not hold on to its output.
wine_start() {
    [ -f "$WINEPREFIX/system.reg" ] || { wine_new; return; }
    # A server that is there already says so with the exit code 2.
    wineserver -p </dev/null >/dev/null 2>&1 || [ $? -eq 2 ] || return 1
    wine cmd /c exit </dev/null >/dev/null 2>&1
}

wine_stop() {
    [ ! -d "$WINEPREFIX" ] || wineserver -k 2>/dev/null || true
}

# wine_host_path 'C:\x' is that file's path outside Wine.
wine_host_path() {
    winepath -u "$1" 2>/dev/null | tr -d '\r'
}
