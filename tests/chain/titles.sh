#!/bin/sh
# titles.sh BUILD PREFIX: each document title of titles.tsv gives the job file that stands beside it, within
# the printer's folder. All jobs come from one process.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
rm -rf "$jobs"
tab=$(printf '\t')

set --
rows=0
while IFS=$tab read -r title name; do
    rows=$((rows + 1))
    printf 'job %s\n' "$rows" >"$scratch/$rows"
    set -- "$@" "$title" "$scratch/$rows"
done <"$root/tests/chain/titles.tsv"
print_raw "$@" || fail "a title was refused"

rows=0
while IFS=$tab read -r title name; do
    rows=$((rows + 1))
    [ -f "$jobs/$name" ] || fail "'$title' gave no file '$name'; there are:
$(ls "$jobs")"
    expect_same "the job file of '$title'" "$scratch/$rows" "$jobs/$name"
done <"$root/tests/chain/titles.tsv"
expect "the number of job files" "$rows" "$(find "$jobs" -type f | wc -l)"

if print_raw "" "$scratch/1" 2>/dev/null; then fail "a document without a name was printed"; fi
print_raw "after the refusal" "$scratch/1" || fail "the job after a refused one was refused, too"
expect_same "the job after a refused one" "$scratch/1" "$jobs/after the refusal.ps"
