# What the end-to-end tests and the demonstration share. To be sourced with $build set, a build folder for
# Windows with an absolute path; the prefix is chosen by chain_use.

root=$(cd "$(dirname "$0")/../.." && pwd)
. "$root/tests/support/wine-prefix.sh"

bin=$build/bin
support=$build/test-support
monitor_key='HKLM\System\CurrentControlSet\Control\Print\Monitors\Quillon Port Monitor'
printer=Proof

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# expect WHAT EXPECTED ACTUAL
expect() {
    [ "$2" = "$3" ] || fail "$1
  expected: $2
  actual:   $3"
}

# expect_line FILE TEXT: one line of the file is exactly that text, or holds it.
expect_line() {
    tr -d '\r' <"$1" | grep -qF -- "$2" || { cat "$1" >&2; fail "$1 has no line with: $2"; }
}

# expect_same WHAT FILE FILE: the same bytes.
expect_same() {
    expect "$1" "$(sha256sum <"$2")" "$(sha256sum <"$3")"
}

# chain_use PREFIX: the machine to print on, and a folder for what the test writes.
chain_use() {
    wine_use "$1"
    wine_start
    jobs=$WINEPREFIX/drive_c/users/$USER/Temp/$USER/$printer
    scratch=$WINEPREFIX/scratch/$(basename "$0" .sh)
    rm -rf "$scratch"
    mkdir -p "$scratch"
    # ctest waits for all that hold its output, so nothing may outlive a test that has failed.
    children=
    trap 'kill $children 2>/dev/null || true' EXIT
}

# Installs the product as its user would, then puts the forwarding monitor in front of the library.
chain_install() {
    system=$WINEPREFIX/drive_c/windows/system32
    cp "$support/ForwardingMonitor.dll" "$support/wtsapi32.dll" "$system/"
    wine "$bin/quillonctl.exe" install --printer "$printer" \
        --ppd "$(winepath -w "$root/tests/support/TestDriver.ppd")" || return 1
    set_monitor_value RealDriver QuillonPortMonitor64.dll
    set_monitor_value Driver ForwardingMonitor.dll
}

# The other way round; `quillonctl uninstall` must leave nothing behind.
chain_uninstall() {
    wine reg delete "$monitor_key" /v RealDriver /f >/dev/null
    set_monitor_value Driver QuillonPortMonitor64.dll
    wine "$bin/quillonctl.exe" uninstall
}

set_monitor_value() {
    wine reg add "$monitor_key" /v "$1" /d "$2" /f >/dev/null
}

# Printing programs run in the session of $session, which is 1 unless a test plays several.
print_page() {
    wine "$support/PrintPage.exe" "$printer" "$@"
}

print_raw() {
    wine "$support/PrintRaw.exe" "$printer" "$@"
}

# listen NAME [OPTION...]: starts PrinterProcessorWin and waits until it listens. It writes its records to
# $scratch/NAME.out; its process number is in $listener.
listen() {
    records=$scratch/$1
    shift
    # Emptied here, not by the child: what an earlier listener wrote must not pass for this one's word.
    : >"$records.out"
    : >"$records.err"
    wine "$bin/PrinterProcessorWin.exe" "$@" >"$records.out" 2>"$records.err" &
    listener=$!
    children="$children $listener"
    wait_for "the listener" grep -q '^Listening' "$records.err"
}

# taken NAME: the file that the listener of that name has taken over, as its JSON output tells last.
taken() {
    windows_path=$(tr -d '\r' <"$scratch/$1.out" | sed -n '$s/.*"JobFile":"\([^"]*\)".*/\1/p' | sed 's/\\\\/\\/g')
    wine_host_path "$windows_path"
}

# wait_for WHAT COMMAND...: until the command succeeds, half a minute at most.
wait_for() {
    what=$1
    shift
    tries=0
    until "$@" >/dev/null 2>&1; do
        tries=$((tries + 1))
        [ "$tries" -lt 300 ] || fail "waited in vain for $what"
        sleep 0.1
    done
}

# to_text FILE: the text on its pages. ink FILE: a line a page, its share of each colour.
to_text() {
    gs -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=txtwrite -sOutputFile=- "$1"
}

ink() {
    gs -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=inkcov -o - "$1"
}
