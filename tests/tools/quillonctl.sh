#!/bin/sh
# quillonctl.sh BUILD PREFIX: quillonctl on a fresh machine: what it installs works, what fails is taken
# back, and what it removes is all that it had installed.
set -eu
build=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
. "$root/tests/support/wine-prefix.sh"

bin=$build/bin
support=$build/test-support
wine_use "$2"
trap wine_stop EXIT
wine_new
system=$WINEPREFIX/drive_c/windows/system32
installed=$system/QuillonPortMonitor64.dll
library=$bin/QuillonPortMonitor64.dll
print_key='HKLM\System\CurrentControlSet\Control\Print'
monitor_key="$print_key\\Monitors\\Quillon Port Monitor"
record_key='HKLM\SOFTWARE\Quillon\Port Monitor\Installed'
ppd=$(winepath -w "$root/tests/support/TestDriver.ppd")
scratch=$WINEPREFIX/scratch
mkdir -p "$scratch"

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    [ ! -f "$scratch/out" ] || cat "$scratch/out" >&2
    exit 1
}

# Wine's spooler runs inside quillonctl, and a program loads what stands beside it first: so the program runs
# from a folder where it stands alone, and what it installs is what the spooler loads.
mkdir -p "$scratch/bin"
cp "$bin/quillonctl.exe" "$scratch/bin/"
delivered=$(winepath -w "$library")

# ctl EXIT-CODE ARGUMENT...: runs it; what it says is in $scratch/out.
ctl() {
    expected=$1
    shift
    actual=0
    wine "$scratch/bin/quillonctl.exe" "$@" >"$scratch/out" 2>&1 || actual=$?
    [ "$actual" = "$expected" ] || fail "quillonctl $*: exit code $actual instead of $expected"
}

# says TEXT: a line of the last run holds it.
says() {
    grep -qF -- "$1" "$scratch/out" || fail "it did not say: $1"
}

# All that an installation may change: the spooler's settings, the record, the files of the system. Without
# what Wine makes by itself when it is first asked for drivers, and never removes.
snapshot() {
    {
        wine reg query "$print_key" /s
        wine reg query 'HKLM\SOFTWARE\Quillon' /s || true
        cd "$system"
        sha256sum Quillon* || true
        ls spool/drivers/x64/3 || true
    } 2>/dev/null | tr -d '\r' | grep -v -e '^$' -e 'wineps.drv$' -e '\\Drivers$' -e '\\Version-3$'
}

# unchanged_since FILE WHAT
unchanged_since() {
    (snapshot) >"$scratch/now"
    diff "$1" "$scratch/now" >&2 || fail "$2 left something changed"
}

value_of() {
    wine reg query "$1" /v "$2" 2>/dev/null | tr -d '\r' | sed -n 's/.*REG_SZ *//p'
}

ctl 1 status
says 'not registered'
says 'QuillonPortMonitor64.dll is missing'
says 'none on the port'
says 'Not ready to print.'
(snapshot) >"$scratch/fresh"

ctl 0 uninstall
says 'Nothing to remove'
ctl 1 testpage
says 'No printer is on the port'
ctl 2 install --force
says "'--force' is not an option of install"
ctl 2
ctl 0 --help
says 'Exit codes:'
unchanged_since "$scratch/fresh" "looking and asking"

# Each of these stops one step later than the one before.
ctl 1 install --ppd "$ppd"
says 'scratch\bin\QuillonPortMonitor64.dll.'
ctl 1 install --dll 'C:\no\such.dll' --ppd "$ppd"
says 'There is no library'
unchanged_since "$scratch/fresh" "a missing library"
ctl 1 install --dll 'C:\windows\system32\version.dll' --ppd "$ppd"
says 'It is no print port monitor.'
printf 'MZ' >"$scratch/torn.dll"
ctl 1 install --dll "$(winepath -w "$scratch/torn.dll")" --ppd "$ppd"
says 'It cannot be loaded into a 64-bit program.'
ctl 1 install --dll "$(winepath -w "$support/ForwardingMonitor.dll")" --ppd "$ppd"
says 'It has no version.'
unchanged_since "$scratch/fresh" "a library that is no monitor"
ctl 1 install --dll "$delivered"
says 'No PostScript printer driver was found'
unchanged_since "$scratch/fresh" "the lack of a driver"
ctl 1 install --dll "$delivered" --driver 'No such driver'
says "There is no printer driver 'No such driver'"
unchanged_since "$scratch/fresh" "an unknown driver"
ctl 1 install --dll "$delivered" --ppd 'C:\no\such.ppd'
says 'Taking back the registered port monitor'
unchanged_since "$scratch/fresh" "a missing description"

# A whole installation, twice.
ctl 0 install --dll "$delivered" --ppd "$ppd"
says "Added the printer 'Quillon PDF' with the driver 'Quillon PostScript'"
says 'nothing can be printed yet'
cmp "$library" "$installed" || fail "the library in the system folder is another one"
[ "$(value_of "$monitor_key" Driver)" = QuillonPortMonitor64.dll ] || fail "the monitor's library is not registered"
wine reg query "$monitor_key\\Ports\\QuillonPDFPort:" >/dev/null || fail "the port has no key"
(snapshot) >"$scratch/installed"
ctl 0 install --dll "$delivered" --ppd "$ppd"
says "The printer 'Quillon PDF' is there already"
unchanged_since "$scratch/installed" "a second installation"
ctl 0 install --dll "$delivered"
unchanged_since "$scratch/installed" "a third one, which needs no driver"
ctl 1 install --dll "$delivered" --driver 'No such driver'
says "is there already, with the driver 'Quillon PostScript'"
cp "$scratch/torn.dll" "$scratch/other.ppd"
ctl 1 install --dll "$delivered" --ppd "$(winepath -w "$scratch/other.ppd")"
says "is there already, with the driver 'Quillon PostScript'"
ctl 1 install --dll "$(winepath -w "$bin/quillonctl.exe")"
says 'It is no print port monitor.'
unchanged_since "$scratch/installed" "what could not be met"
ctl 1 status
says 'registered, QuillonPortMonitor64.dll'
says ', version '
says 'Quillon PDF (driver Quillon PostScript)'
says 'Listeners:   none'
says 'users\anna\Temp\, '
says 'Not ready to print.'
says 'forwarding monitor'
ctl 1 testpage
says 'printing fails with error 6'

ctl 1 doctor
says 'FAULT  Monitor     Nothing can be printed through'
says 'FAULT  Listener    Nobody is told of jobs'

# A processing application is listed while it runs; Ctrl-C ends it in good order.
listen() {
    # Emptied here, not by the child: what an earlier one wrote must not pass for this one's word.
    : >"$scratch/application"
    wine "$1" >"$scratch/application" 2>&1 </dev/null &
    application=$!
    tries=0
    until grep -q '^Listening' "$scratch/application"; do
        tries=$((tries + 1))
        [ "$tries" -lt 300 ] || fail "$1 does not listen"
        sleep 0.1
    done
}
listen "$bin/PrinterProcessorWin.exe"
ctl 1 status
grep -q '^Listeners:   session [0-9]*: process [0-9]*$' "$scratch/out" || fail "the listener is not listed"
kill -INT "$application"
wait "$application" || fail "Ctrl-C ended PrinterProcessorWin with $?"
ctl 1 status
says 'Listeners:   none'

# The page comes out of the port; the forwarding monitor supplies the printer's name, as Windows does.
cp "$support/ForwardingMonitor.dll" "$system/"
wine reg add "$monitor_key" /v RealDriver /d QuillonPortMonitor64.dll /f >/dev/null
wine reg add "$monitor_key" /v Driver /d ForwardingMonitor.dll /f >/dev/null
ctl 0 status
says 'no page has been seen to arrive yet'
ctl 0 testpage --wait 0
says 'not waited for'
ctl 0 status
says 'no page has been seen to arrive yet'
ctl 0 testpage --printer 'quillon pdf'
says "' on 'Quillon PDF' as job "
job=$(wine_host_path "$(sed -n 's/^It has arrived: //p' "$scratch/out")")
[ "$(head -c 11 "$job")" = '%!PS-Adobe-' ] || fail "the job file is no PostScript"
tail -n 3 "$job" | grep -q '^%%EOF' || fail "the job file has no end"
ctl 0 jobs
grep -q "  1      -       complete  anna  Quillon PDF  $(basename "$job" .ps)\$" "$scratch/out" || fail "the job is not listed"
ctl 0 status
says ', last page seen to arrive 20'
says 'Ready to print.'
ctl 0 status --json
says '"ready": true'
ctl 0 install --dll "$delivered"
says "Ready: what is printed on 'Quillon PDF' becomes a job file. The last page seen to arrive: 20"
ctl 1 testpage --printer Nobody
says "There is no printer 'Nobody'"

# Each fault that can be made here is found, and nothing is found without one.
temp=$WINEPREFIX/drive_c/users/anna/Temp
listen "$bin/PrinterProcessorWin.exe"
ctl 0 doctor
says 'All is well.'
policies='HKLM\SOFTWARE\Policies\Microsoft\Windows NT\Printers'
deny() {
    wine reg add "$1" /v "$2" /t REG_DWORD /d 1 /f >/dev/null
    ctl 1 doctor
    says 'FAULT  Policy      '
    says '1 fault was found.'
    wine reg delete "$1" /f >/dev/null
}
deny "$policies\\WPP" WindowsProtectedPrintGroupPolicyState
deny "$policies\\WPP" WindowsProtectedPrintMode
deny "$policies" EnableDeviceControl
ctl 0 doctor --json
says '"well": true'
mv "$temp" "$temp.away"
: >"$temp"
ctl 1 doctor
says 'FAULT  Job folder  '
rm "$temp"
mv "$temp.away" "$temp"
cp "$library" "$scratch/kept.dll"
cp "$scratch/torn.dll" "$installed"
ctl 1 doctor
says "is not the monitor's library. It cannot be loaded into a 64-bit program."
rm "$installed"
ctl 1 doctor
says 'QuillonPortMonitor64.dll is missing.'
cp "$scratch/kept.dll" "$installed"
kill -INT "$application"
wait "$application"
cp "$bin/PrinterProcessorWin.exe" "$scratch/bin/Receiver.exe"
listen "$scratch/bin/Receiver.exe"
ctl 1 doctor
says '(Receiver.exe) listens, and is not told of jobs.'
kill -INT "$application"
wait "$application"

# The trace log is read when the library is loaded, here by the program that prints.
ctl 0 trace on
says 'The trace log is on.'
ctl 0 testpage
grep -q ' ends with ' "$temp/QuillonDebug/QuillonPortMonitor64.tra" || fail "the trace log knows of no job"
ctl 0 trace on
says 'on already'
ctl 0 trace off
ctl 0 trace off
says 'off already'
rm "$temp/QuillonDebug/QuillonPortMonitor64.tra"
ctl 0 testpage
[ ! -e "$temp/QuillonDebug/QuillonPortMonitor64.tra" ] || fail "the trace log is written though it is off"

# Old files go, whoever's they are; not through a link, and not those of another printer.
mkdir -p "$temp/bob/Quillon PDF" "$temp/bob/Other" "$temp/elsewhere/Quillon PDF"
for name in "bob/Quillon PDF/old.ps" bob/Other/old.ps "elsewhere/Quillon PDF/old.ps"; do
    printf 'x' >"$temp/$name"
    touch -d '8 days ago' "$temp/$name"
done
mv "$temp/elsewhere" "$WINEPREFIX/drive_c/elsewhere"
ln -s "$WINEPREFIX/drive_c/elsewhere" "$temp/carla"
ctl 0 clean --older 7d --dry-run
says 'Would remove 1 job file, 1 bytes.'
ctl 0 clean --older 7d
says 'Temp\bob\Quillon PDF\old.ps'
says 'Removed 1 job file, 1 bytes.'
[ -e "$temp/bob/Other/old.ps" ] || fail "another printer's file was removed"
[ -e "$temp/carla/Quillon PDF/old.ps" ] || fail "a link was followed"
ctl 0 clean --older 7d --printer Other
[ ! -e "$temp/bob/Other/old.ps" ] || fail "the named printer's file is left"

# What does not come out of the port, as from a printer that is paused, is not said to have arrived.
redirections='HKCU\Software\Wine\Printing\Spooler'
wine reg add "$redirections" /v QuillonPDFPort: /d "$scratch/elsewhere.ps" /f >/dev/null
ctl 1 testpage --wait 1
says 'No job file has come within 1 seconds.'
says 'users\anna\Temp\anna\Quillon PDF\Quillon test page '
wine reg delete "$redirections" /v QuillonPDFPort: /f >/dev/null
wine reg delete "$record_key\\Pages" /f >/dev/null
wine reg delete "$monitor_key" /v RealDriver /f >/dev/null
wine reg add "$monitor_key" /v Driver /d QuillonPortMonitor64.dll /f >/dev/null
rm -f "$system/ForwardingMonitor.dll"
unchanged_since "$scratch/installed" "the test page"

# A newer library takes the place of the one that was installed, but not when something goes wrong later.
cp "$library" "$scratch/newer.dll"
printf 'newer' >>"$scratch/newer.dll"
newer=$(winepath -w "$scratch/newer.dll")
ctl 1 install --dll "$newer" --printer Second --driver 'No such driver'
says 'Taking back the replaced library'
unchanged_since "$scratch/installed" "a failed replacement"
ctl 0 install --dll "$newer"
says 'Replaced the library'
cmp "$scratch/newer.dll" "$installed" || fail "the library was not replaced"
[ "$(find "$system" -name 'Quillon*' | wc -l)" -eq 1 ] || fail "a saved library is left"
ctl 0 install --dll "$delivered"
unchanged_since "$scratch/installed" "going back to the first library"

# A second printer; then one that this program did not add keeps it from removing anything.
ctl 0 install --dll "$delivered" --printer Second
says "Added the printer 'Second' with the driver 'Quillon PostScript'"
wine reg delete "$record_key\\Printers" /v Second /f >/dev/null
(snapshot) >"$scratch/foreign"
ctl 1 uninstall
says 'Second'
unchanged_since "$scratch/foreign" "a refused removal"
wine reg add "$print_key\\Printers\\Second" /v Port /d LPT1: /f >/dev/null
ctl 1 install --dll "$delivered" --printer Second
says "A printer 'Second' exists on another port"
ctl 0 uninstall
says "The printer driver 'Quillon PostScript' is used by another printer and stays."
says "Removed the library"
[ ! -e "$installed" ] || fail "the library is still there"
wine reg delete "$print_key\\Printers\\Second" /f >/dev/null
wine reg delete "$print_key\\Environments\\Windows x64\\Drivers\\Version-3\\Quillon PostScript" /f >/dev/null
rm -f "$system"/spool/drivers/x64/3/TestDriver.ppd
unchanged_since "$scratch/fresh" "removal with another's printer in the way"

# What was there before stays there, and another's library is not replaced.
cp "$scratch/newer.dll" "$installed"
ctl 1 install --dll "$delivered" --ppd "$ppd"
says 'which this program did not install'
cp "$library" "$installed"
(snapshot) >"$scratch/copied"
ctl 0 install --dll "$delivered" --ppd "$ppd"
says 'The library is in place'
ctl 0 uninstall
unchanged_since "$scratch/copied" "removal beside a library put there by hand"
rm "$installed"

# Things that went away behind its back are no obstacle.
ctl 0 install --dll "$delivered" --ppd "$ppd" --printer 'Büro €'
ctl 1 status
says 'Büro € (driver Quillon PostScript)'
wine reg delete "$print_key\\Printers\\Büro €" /f >/dev/null
rm "$installed"
ctl 1 status
says 'QuillonPortMonitor64.dll is missing'
# Put back as it was, driver included, though another would do; what nobody sees stands in a file, mistakes, too.
ctl 0 install --dll "$delivered" --ppd "$ppd" --driver 'Another PostScript' --printer 'Another'
ctl 0 install --dll "$delivered" --printer 'Büro €' --log 'C:\install.log'
ctl 2 install --printer 'a,b' --log 'C:\install.log'
grep -q "the printer 'Büro €' with the driver 'Quillon PostScript'" "$WINEPREFIX/drive_c/install.log" || fail "no log"
grep -q 'must not contain a comma' "$WINEPREFIX/drive_c/install.log" || fail "the log lacks the mistake"
wine reg delete "$print_key\\Printers\\Büro €" /f >/dev/null
rm "$installed"
ctl 0 uninstall
says "The printer 'Büro €' is gone already."
unchanged_since "$scratch/fresh" "removal of what was half gone"
ctl 0 uninstall
says 'Nothing to remove'
