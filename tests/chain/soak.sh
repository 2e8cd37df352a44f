#!/bin/sh
# soak.sh BUILD PREFIX: a job of 300 MB arrives unchanged, and of a thousand jobs each is told exactly once.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
rm -rf "$jobs"

head -c 300000000 /dev/urandom >"$scratch/large"
print_raw "three hundred megabytes" "$scratch/large"
expect_same "the large job file" "$scratch/large" "$jobs/three hundred megabytes.ps"
rm -f "$scratch/large" "$jobs/three hundred megabytes.ps"

listen thousand --json
for hundred in 0 1 2 3 4 5 6 7 8 9; do
    set --
    for number in $(seq $((hundred * 100 + 1)) $((hundred * 100 + 100))); do
        printf 'this is job %s\n' "$number" >"$scratch/$number"
        set -- "$@" "job $number" "$scratch/$number"
    done
    print_raw "$@" || fail "a job after number $((hundred * 100)) was refused"
done

all_told() {
    [ "$(wc -l <"$scratch/thousand.out")" -ge 1000 ]
}
wait_for "the last notification" all_told
for number in $(seq 1 1000); do
    expect_same "job $number" "$scratch/$number" "$jobs/job $number (taken "*").ps"
done
kill "$listener"
sed 's/.*job \([0-9]*\)\.ps".*/\1/' "$scratch/thousand.out" | sort -n >"$scratch/told"
seq 1 1000 >"$scratch/expected"
cmp "$scratch/told" "$scratch/expected" || fail "not every job was told exactly once"
