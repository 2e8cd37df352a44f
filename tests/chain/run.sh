#!/bin/sh
# run.sh BUILD PREFIX: PrinterProcessorWin --run makes a PDF of a printed page whatever its title; jobs that wait when
# it is ended are left, and handed out by --pending.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
rm -rf "$jobs"
gs=$(winepath -w "$support/gs.exe")
folder=$(winepath -w "$scratch")
peer=$(winepath -w "$bin/ProcessPeer.exe")

for title in 'Letter' '100%d & "calc" %JobPath% ^x'; do
    listen pdf --once --run \
        "\"$gs\" -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=pdfwrite \"-sOutputFile=$folder\\%JobName%.pdf\" %JobPath%"
    print_page "$title"
    wait "$listener" || fail "the program failed: $(cat "$scratch/pdf.out" "$scratch/pdf.err")"
    expect_line "$scratch/pdf.out" 'gs.exe succeeded with exit code 0 after'
    name=$(printf '%s' "$title" | tr '%"' '__')
    to_text "$scratch/$name.pdf" >"$scratch/text"
    expect_line "$scratch/text" 'Page 1 of 1'
done

# Ctrl-C leaves what waits, waits for what runs, and leaves that, too, when it comes again.
printf '%%!PS\n%%%%EOF\n' >"$scratch/job"
listen queue --json --run "\"$peer\" wait never"
for title in first second third; do print_raw "$title" "$scratch/job"; done
third_waits() {
    ls "$jobs"/third*waiting*.ps
}
wait_for "two that wait" third_waits
kill -INT "$listener"
wait_for "the wait for the program" grep -q '^Waiting for programs' "$scratch/queue.err"
expect "those left" 2 "$(grep -c '^Not handed out, left for --pending: .*(waiting ' "$scratch/queue.err")"
kill -INT "$listener"
wait "$listener" || fail "the listener ended with $?"
expect_line "$scratch/queue.err" 'Left running, process '
expect "what was handed out" 1 "$(grep -c '"UserName"' "$scratch/queue.out")"
for title in second third; do
    wine "$bin/PrinterProcessorWin.exe" --json --pending --once >"$scratch/pending.out" || fail "--pending: $?"
    expect "the job handed out" 1 "$(grep -c "$title (waiting .*\"JobFile\".*$title (taken " "$scratch/pending.out")"
done
expect "those that are left" '' "$(find "$jobs" -name '*waiting*')"
