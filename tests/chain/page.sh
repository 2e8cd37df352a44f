#!/bin/sh
# page.sh BUILD PREFIX: a page printed through GDI arrives as the driver made it, with its text and ink, and
# a program in another process is told of it.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
redirections='HKCU\Software\Wine\Printing\Spooler'
title='Grüße aus Köln'

# The same pages with the port replaced by a file: what the driver produces for them.
wine reg add "$redirections" /v QuillonPDFPort: /d "$scratch/driver.ps" /f >/dev/null
print_page "$title" 2
wine reg delete "$redirections" /v QuillonPDFPort: /f >/dev/null

listen one --json --once
print_page "$title" 2
wait "$listener" || fail "the listener ended with $?"
job=$(taken one)
expect_same "the job file" "$scratch/driver.ps" "$job"

expect "the notification" \
    '{"JobPath":"C:\\users\\anna\\Temp\\anna\\Proof\\Grüße aus Köln.ps","JobFile":"C:\\users\\anna\\Temp\\anna\\Proof\\Grüße aus Köln (taken).ps","JobBytes":'"$(wc -c <"$job")"',"Complete":true,"Title":"Grüße aus Köln","Pages":2,"UserName":"anna","PrinterName":"Proof","PortName":"QuillonPDFPort:","CopyCount":1}' \
    "$(tr -d '\r' <"$scratch/one.out" | grep '^{' | sed 's/(taken [0-9]*-[0-9]*)/(taken)/')"

expect "the first line" '%!PS-Adobe-3.0' "$(head -n 1 "$job" | tr -d '\r')"
to_text "$job" >"$scratch/text"
expect_line "$scratch/text" 'Grüße aus Köln: Äpfel, Öl, Übermut und Straße.'
expect_line "$scratch/text" 'Total: 1.234,56 €'
expect_line "$scratch/text" 'Page 1 of 2'
expect_line "$scratch/text" 'Page 2 of 2'
ink "$job" >"$scratch/ink"
expect "the number of pages" 2 "$(wc -l <"$scratch/ink")"
if grep -q '^ 0.00000' "$scratch/ink"; then fail "a page is blank"; fi
