#!/bin/sh
# demo.sh BUILD FOLDER: prints one page from a Windows program and shows everything that comes of it. The
# machine and the picture of the page are left in FOLDER.
set -eu
build=$1
folder=$2
. "$(dirname "$0")/chain.sh"
title='Microsoft Word - Hello from Windows.docx'

say() {
    printf '\n==> %s\n' "$*"
}

say "Making a Windows machine of its own: a Wine prefix in ${folder#"$root"/}/wine"
rm -rf "$folder"
mkdir -p "$folder"
wine_use "$folder/wine"
wine_new
chain_use "$folder/wine"
trap wine_stop EXIT

say "Installing the port monitor and the printer '$printer' on it: quillonctl install"
chain_install

say "Starting a processing application: PrinterProcessorWin --once"
listen notification --once

say "Printing '$title' from a Windows program, through GDI and a PostScript driver"
print_page "$title"
wait "$listener" || fail "the processing application ended with $?"

say "The notification that the processing application received"
tr -d '\r' <"$scratch/notification.out"

job=$(wine_host_path "$(sed -n 's/^Job file: //p' "$scratch/notification.out" | tr -d '\r')")
say "The job file: $(wc -c <"$job") bytes"
printf '%s\n' "$job"
head -n 8 "$job" | tr -d '\r' | sed 's/^/    /'

say "The text that Ghostscript reads on the page"
to_text "$job" | sed '/^ *$/d'

gs -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=png16m -r96 -dTextAlphaBits=4 -dGraphicsAlphaBits=4 \
    -sOutputFile="$folder/page.png" "$job"
say "The page as a picture: $folder/page.png"
