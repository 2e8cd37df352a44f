#!/bin/sh
# vandal.sh BUILD PREFIX: while a program spoils the shared memory of the messaging at random for ten minutes, every
# job is printed within its bound, and a listener that starts afterwards, amid what is left, is told of every job.
# QUILLON_VANDAL_SECONDS and QUILLON_VANDAL_SEED choose another time, and repeat what a seed did.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
rm -rf "$jobs"
seconds=${QUILLON_VANDAL_SECONDS:-600}
seed=${QUILLON_VANDAL_SEED:-$(date +%s)}
# Five seconds for held locks and 3.3 for telling everybody; one for loading the library, which under Wine is part of
# every job, and for the spooler itself.
limit=9300
printf 'seed %s\n' "$seed"

mkdir "$scratch/vandal"
cp "$support/MessagingVandal.exe" "$scratch/vandal/PrinterProcessorWin.exe"
mkfifo "$scratch/input"
wine "$scratch/vandal/PrinterProcessorWin.exe" "$seconds" "$seed" <"$scratch/input" >"$scratch/vandal.out" &
children=$!
exec 3>"$scratch/input"
wait_for "the vandal" grep -q spoiling "$scratch/vandal.out"

printf '%%!PS\n%%%%EOF\n' >"$scratch/job"
count=0
slowest=0
until grep -q resting "$scratch/vandal.out"; do
    count=$((count + 1))
    print_raw "job $count" "$scratch/job" >"$scratch/printed" 2>&1 ||
        fail "job $count was refused, exit code $?: $(cat "$scratch/printed")"
    expect_same "job $count" "$scratch/job" "$jobs/job $count.ps"
    took=$(sed -n 's/slowest job: \([0-9]*\) ms.*/\1/p' "$scratch/printed")
    [ "$took" -le "$slowest" ] || slowest=$took
    [ "$took" -le "$limit" ] || fail "job $count took $took ms"
done
printf '%s jobs, the slowest in %s ms\n' "$count" "$slowest"
[ "$count" -ge 10 ] || fail "there were too few jobs to prove anything"

listen honest --json
for number in $(seq 1 20); do
    print_raw "afterwards $number" "$scratch/job" >/dev/null || fail "job $number afterwards was refused"
done
all_told() {
    [ "$(grep -c afterwards "$scratch/honest.out")" -ge 20 ]
}
wait_for "the last notification" all_told
expect "each job was told once" "$(seq 1 20)" \
    "$(sed -n 's/.*afterwards \([0-9]*\)\.ps".*/\1/p' "$scratch/honest.out" | sort -n)"
exec 3>&-
