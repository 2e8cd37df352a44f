#!/bin/sh
# raw.sh BUILD PREFIX: what a program sends raw is, byte for byte, what stands in the job file.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"

# print_and_compare TITLE FILE [NAME]: the job file is NAME.ps; without it, TITLE.ps.
print_and_compare() {
    print_raw "$1" "$2" || fail "'$1' was refused"
    expect_same "the job file of '$1'" "$2" "$jobs/${3:-$1}.ps"
}

every_byte_value() {
    for high in 0 1 2 3; do
        for middle in 0 1 2 3 4 5 6 7; do
            for low in 0 1 2 3 4 5 6 7; do printf "\\$high$middle$low"; done
        done
    done
}

: >"$scratch/nothing"
printf 'x' >"$scratch/byte"
every_byte_value >"$scratch/values"
# The spooler hands data over in blocks of 4096 bytes: one less, exactly, and one more.
head -c 4095 /dev/urandom >"$scratch/below"
head -c 4096 /dev/urandom >"$scratch/block"
head -c 4097 /dev/urandom >"$scratch/above"
head -c 3000000 /dev/urandom >"$scratch/large"

expect "the number of byte values" 256 "$(wc -c <"$scratch/values")"
print_and_compare "no byte" "$scratch/nothing"
print_and_compare "one byte" "$scratch/byte"
print_and_compare "every byte value" "$scratch/values"
print_and_compare "below a block" "$scratch/below"
print_and_compare "a block" "$scratch/block"
print_and_compare "above a block" "$scratch/above"
print_and_compare "many blocks" "$scratch/large"

# A shorter document of the same name leaves nothing of the longer one behind.
print_and_compare "same name" "$scratch/large"
print_and_compare "same name" "$scratch/byte"

# Titles of every script become file names, and none leaves the printer's folder.
for title in 'Grüße, 5 € & 100 %' '日本語の文書' '😀 smile'; do print_and_compare "$title" "$scratch/byte"; done
print_and_compare 'Microsoft Word - Q3 report.docx' "$scratch/byte" 'Q3 report'
print_and_compare '..\..\outside.txt' "$scratch/byte" '.._.._outside'
print_and_compare 'nul.txt' "$scratch/byte" '_nul'
if print_raw "" "$scratch/byte" 2>/dev/null; then fail "a document without a name was printed"; fi
print_and_compare "after the refusal" "$scratch/block"
