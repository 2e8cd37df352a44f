#!/bin/sh
# wine-to-file.sh PROGRAM [ARGUMENT...]: runs a Windows program and shows its output once it has ended. A console host
# that Wine leaves behind then holds a file open, and not the pipe that the caller waits for.
set -u
output=$(mktemp)
wine "$@" >"$output" 2>&1
status=$?
cat "$output"
rm -f "$output"
exit "$status"
