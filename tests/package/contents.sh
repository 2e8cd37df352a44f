#!/bin/sh
# contents.sh BUILD FOLDER: what is in the packages: the same each time, complete, accounted for, and signed when asked.
set -eu
build=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)
scratch=$folder/contents
first=$folder/first
rm -rf "$scratch"
mkdir -p "$scratch"

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# refused TEXT COMMAND...: the command fails and says so.
refused() {
    text=$1
    shift
    if "$@" >"$scratch/out" 2>&1; then fail "it went well: $*"; fi
    grep -qF -- "$text" "$scratch/out" || { cat "$scratch/out" >&2; fail "it did not say: $text"; }
}

pack() {
    python3 -B "$here/../../package/package.py" "$1" "$scratch/packed"
}

msi=$(basename "$first"/*.msi)
zip=$(basename "$first"/*.zip)
for name in "$msi" "$zip" SHA256SUMS; do
    cmp "$first/$name" "$folder/second/$name" || fail "two packings of one build differ"
done
(cd "$first" && sha256sum --quiet -c SHA256SUMS)

mkdir "$scratch/msi" "$scratch/zip"
msiextract -C "$scratch/msi" "$first/$msi" >/dev/null
python3 -m zipfile -e "$first/$zip" "$scratch/zip"
diff -r "$first/files" "$scratch/zip/${zip%-x64.zip}" || fail "the ZIP holds other files"
diff -r "$first/files" "$(dirname "$(find "$scratch/msi" -name quillonctl.exe)")" || fail "the MSI holds other files"
python3 -B "$here/check_spdx.py" "$first/files"

# What does not fit together is not packed.
cp -a "$folder/later/product.json" "$folder/copy/product.json"
refused 'is of version' pack "$folder/copy"
cp -a "$build/product.json" "$folder/copy/product.json"
rm "$folder/copy/bin/quillonctl.exe"
refused 'quillonctl.exe: there is no' pack "$folder/copy"
refused 'accounts for' python3 -B -c "
import pathlib, sys
sys.path.insert(0, '$here/../../package')
import spdx
try:
    spdx.check_headers(spdx.used_headers('$build', ['bin/quillonctl.exe']), [])
except spdx.Problem as problem:
    sys.exit(str(problem))"

# Signed by a certificate of our own, the key behind a password.
printf 'secret' >"$scratch/password"
openssl req -x509 -newkey rsa:2048 -days 2 -subj '/CN=Package Test' -addext extendedKeyUsage=codeSigning \
    -passout "file:$scratch/password" -keyout "$scratch/key.pem" -out "$scratch/cert.pem" 2>/dev/null
export SIGN_CERT="$scratch/cert.pem"
refused 'SIGN_KEY is needed' pack "$build"
export SIGN_KEY="$scratch/key.pem" SIGN_PASSWORD_FILE="$scratch/password"
pack "$build" >/dev/null
verify() {
    osslsigncode verify -CAfile "$scratch/cert.pem" -in "$1"
}
for file in "$scratch/packed/$msi" "$scratch"/packed/files/*.exe "$scratch"/packed/files/*.dll; do
    verify "$file" >"$scratch/out" || { cat "$scratch/out" >&2; fail "the signature of $file does not hold"; }
done
refused 'No signature found' verify "$first/files/quillonctl.exe"
printf 'x' | dd of="$scratch/packed/files/quillonctl.exe" bs=1 seek=4096 conv=notrunc 2>/dev/null
refused 'MISMATCH' verify "$scratch/packed/files/quillonctl.exe"
