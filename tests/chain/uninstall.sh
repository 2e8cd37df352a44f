#!/bin/sh
# uninstall.sh BUILD PREFIX: takes the product off the tests' machine again, sees that nothing of it is left,
# and switches the machine off.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
trap wine_stop EXIT
chain_uninstall
if wine reg query "$monitor_key" >/dev/null 2>&1; then fail "the monitor is still registered"; fi
library=$WINEPREFIX/drive_c/windows/system32/QuillonPortMonitor64.dll
[ ! -e "$library" ] || fail "the library is still there: $library"
if print_raw anything "$0" 2>/dev/null; then fail "the printer is still there"; fi
