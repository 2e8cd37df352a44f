#!/bin/sh
# print.sh BUILD PREFIX: prints jobs through the spooler onto our port and into a file. BUILD is a build folder
# for Windows. The product is installed as its user would, with the test's monitor before it, which makes up for
# what Wine's spooler does not pass on.
set -eu
build=$1
. "$(dirname "$0")/../../tests/chain/chain.sh"
wine_use "$2"
wine_new
trap wine_stop EXIT
chain_install >/dev/null
file='C:\into-a-file.prn'
wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\Ports' /v "$file" /d '' /f >/dev/null
[ -z "${BENCH_ROWS:-}" ] || BENCH_ROWS=$(winepath -w "$BENCH_ROWS")
wine "$build/benchmarks/spooler/SpoolBench.exe" "$printer" "$file"
