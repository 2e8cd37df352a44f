#!/bin/sh
# receiver_c.sh BUILD PREFIX: a receiver in C, which knows of the messaging what docs/messaging.md and docs/formats.md
# say, is told of jobs when it is the first of the machine to listen, and when it is the second. It spoils nothing for
# the other one, and leaves nothing behind. Another one, which uses QuillonReceiver64.dll, gets the files of jobs.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
printf '%%!PS\n%%%%EOF\n' >"$scratch/job"

# listen_in_c NAME FOLDER COUNT: for so many jobs.
listen_in_c() {
    wine "$build/$2/PrinterProcessorWin.exe" "$3" >"$scratch/$1.out" 2>"$scratch/$1.err" &
    in_c=$!
    children="$children $in_c"
    wait_for "the receiver in C" grep -q '^Listening' "$scratch/$1.err"
}

nobody_listens() {
    expect "the listeners that are left" 'Listeners:   none' \
        "$(wine "$bin/quillonctl.exe" status | tr -d '\r' | grep '^Listeners')"
}

# both_told TITLE: one job, and both receivers end after it.
both_told() {
    print_raw "$1" "$scratch/job" || fail "'$1' was refused"
    wait "$in_c" || fail "the receiver in C ended with $?"
    wait "$listener" || fail "the listener ended with $?"
    expect_line "$scratch/c.out" '"JobPath" "C:\\users\\anna\\Temp\\anna\\Proof\\'"$1.ps\""
    expect_line "$scratch/other.out" "\\\\Proof\\\\$1.ps\""
    nobody_listens
}

listen_in_c c receiver-c 1
listen other --json --once
both_told "first to start"

listen other --json --once
listen_in_c c receiver-c 1
both_told "second to start"

rm -rf "$jobs"
print_raw "from before" "$scratch/job"
listen_in_c library receiver-c-with-library 3
for title in "Grüße 1" "Grüße 2"; do print_raw "$title" "$scratch/job"; done
wait "$in_c" || fail "the receiver with the library ended with $?: $(cat "$scratch/library.err")"
expect "the documents" 'from before,Grüße 1,Grüße 2,' \
    "$(tr -d '\r' <"$scratch/library.out" | sed -n 's/^Document: //p' | tr '\n' ',')"
tr -d '\r' <"$scratch/library.out" | sed -n 's/^Job file: //p' >"$scratch/files"
while read -r file; do
    expect_same "the file that was handed out" "$scratch/job" "$(wine_host_path "$file")"
done <"$scratch/files"
expect "the job files" 3 "$(ls "$jobs" | grep -c ' (taken [0-9]*-[0-9]*).ps$')"
nobody_listens

# Nobody would tell a program of another name.
folder=$build/receiver-c-with-library
cp "$folder/PrinterProcessorWin.exe" "$folder/Receiver.exe"
! wine "$folder/Receiver.exe" 2>"$scratch/name.err" || fail "a program of another name listens"
expect_line "$scratch/name.err" 'not called PrinterProcessorWin.exe'
