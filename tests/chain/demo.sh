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

# There is no Ghostscript under Wine: gs.exe hands its arguments to the one of this machine.
command="\"$(winepath -w "$support/gs.exe")\" -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=pdfwrite \
    \"-sOutputFile=$(winepath -w "$folder")\\%JobName%.pdf\" %JobPath%"
say "Starting a processing application that makes a PDF of each job: PrinterProcessorWin --once --run"
printf '%s\n' "$command"
listen notification --once --run "$command"

say "Printing '$title' from a Windows program, through GDI and a PostScript driver"
print_page "$title"
wait "$listener" || fail "the processing application ended with $?"

say "The notification that the processing application received, and what became of its program"
tr -d '\r' <"$scratch/notification.out"

job=$(wine_host_path "$(sed -n 's/^Job file: //p' "$scratch/notification.out" | tr -d '\r' | head -n 1)")
say "The job file: $(wc -c <"$job") bytes"
printf '%s\n' "$job"
head -n 8 "$job" | tr -d '\r' | sed 's/^/    /'

say "The text that Ghostscript reads on the page"
to_text "$job" | sed '/^ *$/d'

gs -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=png16m -r96 -dTextAlphaBits=4 -dGraphicsAlphaBits=4 \
    -sOutputFile="$folder/page.png" "$job"
say "The page as a picture: $folder/page.png"
pdf="$folder/Hello from Windows.pdf"
[ -s "$pdf" ] || fail "there is no $pdf"
say "The page as a PDF, made by the processing application: $pdf"
