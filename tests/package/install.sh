#!/bin/sh
# install.sh BUILD FOLDER: the MSI on a fresh machine, silently: install, print, upgrade under a running job, repair,
# removal; and what fails in any step is taken back.
set -eu
build=$1
folder=$2
. "$(dirname "$0")/../chain/chain.sh"
wine_use "$build/wine-package"
wine_new
chain_use "$build/wine-package"
trap 'kill -CONT $children 2>/dev/null || true; kill $children 2>/dev/null || true; wine_stop' EXIT

msi=$(winepath -w "$folder"/first/*.msi)
later=$(winepath -w "$folder"/later/*.msi)
ppd=$(winepath -w "$root/tests/support/TestDriver.ppd")
drive=$WINEPREFIX/drive_c
files="$drive/Program Files/Quillon/Port Monitor"
system=$drive/windows/system32
installed=QuillonPortMonitor64.dll
print_key='HKLM\System\CurrentControlSet\Control\Print'

# msiexec EXPECTED ARGUMENT...: runs it silently; EXPECTED is "done" or "failed". What the engine says is in out.
msiexec() {
    expected=$1
    shift
    actual=done
    wine msiexec "$@" /qn >"$scratch/out" 2>&1 || actual=failed
    [ "$actual" = "$expected" ] || { cat "$scratch/out" >&2; fail "msiexec $*: $actual"; }
}

# All that the package may change. Not the keys that Wine makes with the first driver and the first package, and those
# of components that it leaves empty when it takes an installation back.
state() {
    (
        cd "$drive"
        find . ! -path './windows/Installer*' ! -path './users/*' -printf '%y %p\n'
        find . -type f -ipath '*quillon*' -exec sha256sum {} +
        wine reg query 'HKLM\Software'
        for key in "$print_key" 'HKLM\Software\Quillon' 'HKLM\Software\Classes\Installer' \
            'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall' \
            'HKLM\Software\Microsoft\Windows\CurrentVersion\Installer'; do
            wine reg query "$key" /s || true
        done
    ) 2>/dev/null | tr -d '\r' | grep -v -e '^$' -e '^reg: ' -e LastUsedSource -e REG_EXPAND_SZ \
        -e 'wineps.drv$' -e '\\Drivers$' -e '\\Version-3$' \
        -e '\\Installer\(\\[A-Z][A-Za-z]*\)*$' -e '\\S-1-5-18\(\\[A-Z][a-z]*\)*$' -e '\\Components\\[0-9A-F]*$' |
        sort
}

# same_as NAME WHAT: the state is that of the name again.
same_as() {
    state >"$scratch/now"
    diff "$scratch/$1" "$scratch/now" >&2 || fail "$2 left something changed"
}

# engine_part FILE: of a state, what printing needs.
engine_part() {
    grep -e system32 -e 'Control\\Print' -e '^    ' "$1" | grep -v -e DisplayName -e InstallDate
}

# with_failure MSI STEP: a copy of the package that fails behind that step of its sequence, as $failing.
with_failure() {
    failing=$scratch/failing.msi
    cp "$(winepath -u "$1")" "$failing"
    number=$(msiinfo export "$failing" InstallExecuteSequence | tr -d '\r' | sed -n "s/^$2\t.*\t//p")
    [ -n "$number" ] || fail "there is no step $2"
    msibuild "$failing" \
        -q "INSERT INTO \`CustomAction\` (\`Action\`, \`Type\`, \`Source\`, \`Target\`)
            VALUES ('Fail', 1058, 'TARGETDIR', 'cmd.exe /c exit 1')" \
        -q "INSERT INTO \`InstallExecuteSequence\` (\`Action\`, \`Condition\`, \`Sequence\`)
            VALUES ('Fail', '', $((number + 1)))"
    failing=$(winepath -w "$failing")
}

version_is() {
    # Its exit code tells of Wine's spooler, too, which prints through the forwarding monitor alone.
    wine "$files/quillonctl.exe" status >"$scratch/status" || true
    expect_line "$scratch/status" "version $1.0"
}

state >"$scratch/fresh"

# An installation that fails, in the engine or behind any step, leaves nothing.
msiexec failed /i "$msi" PPD="$ppd" PRINTER='a,b'
expect_line "$scratch/out" 'must not contain a comma'
msiexec failed /i "$msi" DRIVER='No such driver'
expect_line "$scratch/out" "There is no printer driver 'No such driver'."
same_as fresh "a wrong value"
for value in 'a" --log "C:\log' 'a\'; do
    msiexec failed /i "$msi" PPD="$ppd" PRINTER="$value"
    if grep -q 'Nothing to remove' "$scratch/out"; then fail "the engine was called with the printer $value"; fi
    same_as fresh "the refusal of the printer $value"
done
for step in InstallInitialize InstallFiles WriteRegistryValues Install PublishProduct; do
    with_failure "$msi" "$step"
    msiexec failed /i "$failing" PPD="$ppd"
    same_as fresh "an installation that failed behind $step"
done

# A whole one, and once more.
msiexec done /i "$msi" PRINTER="$printer" PPD="$ppd" LOGFILE='C:\users\install log.txt'
expect_line "$drive/users/install log.txt" "Added the printer '$printer' with the driver 'Quillon PostScript'."
version_is "$(msiinfo export "$folder"/first/*.msi Property | tr -d '\r' | sed -n 's/^ProductVersion\t//p')"
state >"$scratch/installed"
msiexec done /i "$msi"
same_as installed "a second installation"

# A removal that fails keeps all that printing needs. Wine forgets that there is a package, so it is installed again.
for step in InstallInitialize RemoveRegistryValues Remove; do
    with_failure "$msi" "$step"
    # The copy that the installer keeps is the one that it removes by.
    kept=$(echo "$drive"/windows/Installer/*.msi)
    cp "$scratch/failing.msi" "$kept"
    msiexec failed /x "$msi"
    [ ! -e "$kept" ] || cp "$folder"/first/*.msi "$kept"
    engine_part "$scratch/installed" >"$scratch/before"
    state >"$scratch/now"
    engine_part "$scratch/now" >"$scratch/after"
    diff "$scratch/before" "$scratch/after" >&2 || fail "a removal that failed behind $step took something away"
    msiexec done /i "$msi" PRINTER="$printer" PPD="$ppd"
    same_as installed "the installation after it"
done
wine reg delete 'HKLM\Software\Quillon\Port Monitor\Installed\Printers' /v "$printer" /f >/dev/null
msiexec failed /x "$msi"
expect_line "$scratch/out" 'These printers use the port and were not added by this program.'
wine reg add 'HKLM\Software\Quillon\Port Monitor\Installed\Printers' /v "$printer" /d 'Quillon PostScript' /f >/dev/null
msiexec done /i "$msi" PRINTER="$printer" PPD="$ppd"
same_as installed "a refused removal"

# A later version that fails leaves the installed one in the list, and the printer ready. Wine does not bring back the
# files that were replaced; the package does.
for step in InstallFiles Install; do
    with_failure "$later" "$step"
    msiexec failed /i "$failing"
    state >"$scratch/now"
    for kept in "\\Printers\\$printer$" "\\Monitors\\Quillon Port Monitor$" 'DisplayVersion' 'system32/Quillon'; do
        expect "what is kept of $kept" "$(grep -c -- "$kept" "$scratch/installed")" "$(grep -c -- "$kept" "$scratch/now")"
    done
    msiexec done /i "$msi" REINSTALL=ALL REINSTALLMODE=amus PRINTER="$printer" PPD="$ppd"
    same_as installed "an upgrade that failed behind $step, and the package again"
done

# The later version comes while a job is being written: the program that prints it is held in the middle.
cp "$support/ForwardingMonitor.dll" "$system/"
set_monitor_value RealDriver QuillonPortMonitor64.dll
set_monitor_value Driver ForwardingMonitor.dll
truncate -s 150M "$scratch/large"
print_raw large "$scratch/large" &
job=$!
children=$job
until [ -s "$jobs/large.ps" ]; do kill -0 "$job" || fail "the job has not begun"; done
kill -STOP "$job"
[ "$(stat -c %s "$jobs/large.ps")" -lt 157286400 ] || fail "the job was written before it could be held"
msiexec done /i "$later"
cmp "$files/QuillonPortMonitor64.dll" "$system/QuillonPortMonitor64.dll" || fail "the library was not replaced"
kill -CONT "$job"
wait "$job" || fail "the job that was being written failed"
children=
expect_same "the job that was being written" "$scratch/large" "$jobs/large.ps"
head -c 10000 /dev/urandom >"$scratch/small"
print_raw small "$scratch/small" || fail "nothing is printed after the upgrade"
expect_same "the job after the upgrade" "$scratch/small" "$jobs/small.ps"
set_monitor_value Driver QuillonPortMonitor64.dll
wine reg delete "$monitor_key" /v RealDriver /f >/dev/null
rm "$system/ForwardingMonitor.dll"
# The library that was in use goes with the next start of the machine.
wine_stop
wine_start
version_is "$(msiinfo export "$folder"/later/*.msi Property | tr -d '\r' | sed -n 's/^ProductVersion\t//p')"
state >"$scratch/upgraded"
expect "what lies in the system folder" "$installed" "$(ls "$system" | grep Quillon)"

# Going back is refused.
msiexec failed /i "$msi"
same_as upgraded "a refused downgrade"

# What was lost is repaired, printer and driver as they were.
rm "$system/QuillonPortMonitor64.dll" "$files/LICENSE.txt"
wine reg delete "$print_key\\Printers\\$printer" /f >/dev/null
wine reg delete "$monitor_key" /f >/dev/null
msiexec done /i "$later" REINSTALL=ALL REINSTALLMODE=omus
same_as upgraded "the repair"

# Removed with all that it brought, another printer, too.
msiexec done /i "$later" PRINTER=Second
expect_line "$scratch/out" "Added the printer 'Second' with the driver 'Quillon PostScript'."
msiexec done /x "$later"
same_as fresh "the removal"
