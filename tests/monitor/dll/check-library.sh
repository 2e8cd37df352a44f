#!/bin/sh
# check-library.sh LIBRARY TOOL-PREFIX SOURCE-ROOT: what the delivered library exports, imports and is made of.
set -eu
library=$1
objdump=${2}objdump
filt=${2}c++filt
root=$3
failed=0

complain() {
    printf 'FAILED: %s\n' "$*" >&2
    failed=1
}

headers=$("$objdump" -p "$library")
exports=$(printf '%s\n' "$headers" |
    sed -n '/Ordinal\/Name Pointer/,/^$/s/.*\[ *[0-9]*\] \([^ ]*\)$/\1/p')
names=$(printf '%s\n' "$exports" | "$filt")

for entry in InitializePrintMonitor2 DllMain; do
    printf '%s\n' "$exports" | grep -qx "$entry" || complain "$entry is not exported"
done

# Everything else is the framework's: decorated, and none of the run-time library's names.
plain=$(printf '%s\n' "$exports" | grep -v '^_Z' | grep -vx -e InitializePrintMonitor2 -e DllMain || true)
[ -z "$plain" ] || complain "exported without a decorated name:" $plain
foreign=$(printf '%s\n' "$names" |
    grep -E '^((non-)?virtual thunk to |typeinfo (name )?for |vtable for |VTT for |guard variable for )?(std::|__gnu_cxx|__cxxabiv1|operator (new|delete)|boost::)' || true)
[ -z "$foreign" ] || complain "exported from a library: $foreign"

# Each class that a header marks for export has a function or table among the exports.
for class in $(sed -n 's/^\(class\|struct\) QUILLON_EXPORT\(_INLINE\)\? \([A-Za-z0-9]*\).*/\3/p' \
    $(find "$root/framework" "$root/platform/win32" "$root/monitor/handoff" -name "*.h")); do
    # All of this one is inline.
    [ "$class" != GFastAllocatable ] || continue
    printf '%s\n' "$exports" | grep -q "${#class}$class" || complain "nothing of $class is exported"
done

# Only what every Windows has.
for import in $(printf '%s\n' "$headers" | sed -n 's/.*DLL Name: //p' | tr 'A-Z' 'a-z'); do
    case $import in
        advapi32.dll | bcrypt.dll | dbghelp.dll | iphlpapi.dll | kernel32.dll | msvcrt.dll | ntdll.dll) ;;
        ole32.dll | psapi.dll | secur32.dll | shell32.dll | user32.dll | winspool.drv | wtsapi32.dll) ;;
        *) complain "imports $import" ;;
    esac
done

for property in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
    printf '%s\n' "$headers" | grep -qw "$property" || complain "$property is not set"
done
printf '%s\n' "$headers" | grep -q '^Entry 5 [0-9a-f]* 0*[1-9a-f][0-9a-f]* ' || complain "it cannot be relocated"
"$objdump" -h "$library" | grep -A1 -E '^ *[0-9]+ \.' | grep CODE | grep -vq READONLY &&
    complain "a section is writable and executable"
printf '%s\n' "$headers" | grep -q '^Time/Date.*1970' || complain "it carries the time of its build"
! grep -qaF "$root" "$library" || complain "it names the folder where it was built"

exit "$failed"
