#!/bin/sh
# make.sh BUILD FOLDER: makes the packages twice, from two folders, and those of a later version.
set -eu
build=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)

# copy_build NAME: a build folder that has the same programs, as one's own copies.
copy_build() {
    mkdir -p "$folder/$1"
    for entry in "$build"/* "$build"/.ninja_deps "$build"/.ninja_log; do ln -s "$entry" "$folder/$1/"; done
    rm "$folder/$1/bin" "$folder/$1/product.json"
    mkdir "$folder/$1/bin"
    for program in $(sed -n 's/^.* bin\///p' "$here/../../package/files.txt"); do
        cp "$build/bin/$program" "$folder/$1/bin/"
    done
    cp "$build/product.json" "$folder/$1/"
}

pack() {
    python3 -B "$here/../../package/package.py" "$1" "$folder/$2"
}

rm -rf "$folder"
copy_build copy
pack "$build" first
# The times of copies, and the names of folders, are others.
pack "$folder/copy" second
copy_build later
python3 -B "$here/later.py" "$folder/later/product.json" "$folder"/later/bin/*
pack "$folder/later" later
