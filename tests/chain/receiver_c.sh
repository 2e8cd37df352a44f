#!/bin/sh
# receiver_c.sh BUILD PREFIX: a receiver in C, which knows of the messaging what docs/messaging.md says, is told
# of jobs when it is the first of the machine to listen, and when it is the second. It spoils nothing for the
# other one, and leaves nothing behind.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
printf '%%!PS\n%%%%EOF\n' >"$scratch/job"

# listen_in_c NAME: for one job.
listen_in_c() {
    wine "$build/receiver-c/PrinterProcessorWin.exe" 1 >"$scratch/$1.out" 2>"$scratch/$1.err" &
    in_c=$!
    children="$children $in_c"
    wait_for "the receiver in C" grep -q '^Listening' "$scratch/$1.err"
}

# both_told TITLE: one job, and both receivers end after it.
both_told() {
    print_raw "$1" "$scratch/job" || fail "'$1' was refused"
    wait "$in_c" || fail "the receiver in C ended with $?"
    wait "$listener" || fail "the listener ended with $?"
    expect_line "$scratch/c.out" '"JobPath" "C:\\users\\anna\\Temp\\anna\\Proof\\'"$1.ps\""
    expect_line "$scratch/other.out" "\\\\Proof\\\\$1.ps\""
    expect "the listeners that are left" 'Listeners:   none' \
        "$(wine "$bin/quillonctl.exe" status | tr -d '\r' | grep '^Listeners')"
}

listen_in_c c
listen other --json --once
both_told "first to start"

listen other --json --once
listen_in_c c
both_told "second to start"
