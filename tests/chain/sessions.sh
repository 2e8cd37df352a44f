#!/bin/sh
# sessions.sh BUILD PREFIX: a job printed in session 0 is told once to the listener of every session; none
# that has ended or died disturbs the next job.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
WINEDLLOVERRIDES="$WINEDLLOVERRIDES;wtsapi32=n,b"
WTS_TEST_SESSIONS=0,1,2
export WINEDLLOVERRIDES WTS_TEST_SESSIONS WTS_TEST_SESSION

# The names of session 2 last as long as this program, and this as long as its input.
mkfifo "$scratch/input"
wine "$support/SessionNames.exe" 2 <"$scratch/input" >"$scratch/names" &
children=$!
exec 3>"$scratch/input"
wait_for "the names of session 2" grep -q ready "$scratch/names"

# listen_in SESSION [OPTION...]
listen_in() {
    WTS_TEST_SESSION=$1
    shift
    listen "session$WTS_TEST_SESSION" --json "$@"
}

listen_in 0 --once
first=$listener
listen_in 1 --once
second=$listener
listen_in 2 --once
third=$listener

# That they are where they were told to be is what makes the rest worth testing.
WTS_TEST_SESSION=0
wine "$bin/quillonctl.exe" status >"$scratch/status" || true
for session in 0 1 2; do
    expect_line "$scratch/status" "session $session: process"
done

# What an administrator switches on to see where a job goes.
debug=$WINEPREFIX/drive_c/users/$USER/Temp/QuillonDebug
mkdir -p "$debug"
printf '#BEGINPREFS\n"Defaults"\n#BEGINDICT\n"Log" "1"\n#ENDDICT\n#ENDPREFS\n' \
    >"$debug/QuillonPortMonitor64.tpr"
printf 'told to everybody\n' >"$scratch/job"
print_raw "to all sessions" "$scratch/job"
mv "$debug/QuillonPortMonitor64.tra" "$scratch/trace"
rm -r "$debug"
for listener in "$first" "$second" "$third"; do
    wait "$listener" || fail "a listener ended with $?"
done
for session in 0 1 2; do
    expect "the notifications in session $session" 1 \
        "$(grep -c '"PrinterName":"Proof"' "$scratch/session$session.out")"
    expect_line "$scratch/session$session.out" '\\Proof\\to all sessions.ps"'
done

expect_line "$scratch/trace" '\Proof\to all sessions.ps'
expect_line "$scratch/trace" 'of 3 PrinterProcessorWin 3 told, 0 could not be reached'
expect "the listeners that have taken the message" 3 "$(grep -c 'has taken the message after' "$scratch/trace")"
expect "the content of the job in the trace log" 0 "$(grep -c 'everybody$' "$scratch/trace" || true)"

print_raw "to nobody" "$scratch/job"
expect_same "the job that nobody is told of" "$scratch/job" "$jobs/to nobody.ps"

# One that dies leaves its entries and queues behind; the next one hears all the same.
listen_in 1
kill -9 "$listener"
wait "$listener" || true
print_raw "to a dead listener" "$scratch/job"
expect_same "the job of a dead listener" "$scratch/job" "$jobs/to a dead listener.ps"
expect "the notifications of a dead listener" 0 "$(grep -c Proof "$scratch/session1.out" || true)"

listen_in 1 --once
WTS_TEST_SESSION=2
print_raw "from session 2" "$scratch/job"
wait "$listener" || fail "the listener ended with $?"
expect_line "$scratch/session1.out" '\\Proof\\from session 2.ps"'
exec 3>&-
