#!/bin/sh
# sdk.sh BUILD PREFIX: what `cmake --install` puts in place is enough to build on: outside this source tree the
# examples are compiled and linked, with the static library and with the DLL, and run; a processing application of
# thirty lines is told of a job. C is content with one header. Nobody else gets our warnings.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
chain_use "$2"
outside=$(mktemp -d)
trap 'kill $children 2>/dev/null || true; rm -rf "$outside"' EXIT
sdk=$outside/sdk
compiler=x86_64-w64-mingw32-g++-posix
# The same sources are at another place each time.
CCACHE_BASEDIR=$outside
CCACHE_NOHASHDIR=1
export CCACHE_BASEDIR CCACHE_NOHASHDIR

# quietly COMMAND...
quietly() {
    "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log" >&2; fail "$*"; }
}

configure() {
    quietly cmake -S "$outside/$1" -B "$outside/$1/build" -G Ninja -DCMAKE_PREFIX_PATH="$sdk" \
        -DCMAKE_TOOLCHAIN_FILE="$outside/mingw-w64.cmake" -DCMAKE_C_COMPILER_LAUNCHER=ccache \
        -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
}

build_example() {
    cp -r "$root/examples/$1" "$outside/"
    configure "$1"
    quietly cmake --build "$outside/$1/build" -j 2
}

cp "$root/cmake/mingw-w64.cmake" "$outside/"
quietly cmake --install "$build" --component Sdk --prefix "$sdk"

# Each header finds what it includes.
(cd "$sdk/include/quillon" && find . -name '*.h' | sed 's/.*/#include "&"/') >"$outside/all.cpp"
quietly $compiler -std=c++20 -fsyntax-only -Wall -Wextra -Werror "-DQUILLON_EXPORT=__declspec(dllimport)" \
    -I "$sdk/include/quillon" -I "$sdk/include/quillon/platform/win32" "$outside/all.cpp"

build_example FrameworkTour
cp "$sdk/bin/QuillonPortMonitor64.dll" "$outside/FrameworkTour/build/"
for program in FrameworkTour FrameworkTourOnDll; do
    wine "$outside/FrameworkTour/build/$program.exe" >"$scratch/tour" || fail "$program ended with $?"
    expect "$program" "$(cat "$root/examples/FrameworkTour/Expected.txt")" "$(tr -d '\r' <"$scratch/tour")"
done

build_example minimal-receiver
printf '%%!PS\n%%%%EOF\n' >"$scratch/job"
for way in Framework FrameworkDll; do
    wine "$outside/minimal-receiver/build/$way/PrinterProcessorWin.exe" 1 >"$scratch/$way.out" 2>"$scratch/$way.err" &
    receiver=$!
    children="$children $receiver"
    wait_for "the receiver on Quillon::$way" grep -q '^Listening' "$scratch/$way.err"
    print_raw "on $way" "$scratch/job" || fail "the job was refused"
    wait "$receiver" || fail "the receiver on Quillon::$way ended with $?: $(cat "$scratch/$way.err")"
    expect "what it was told" 'C:\users\anna\Temp\anna\Proof\on '"$way.ps" "$(tr -d '\r' <"$scratch/$way.out")"
done

# A program in C; it is told that its name is not the one that the monitor looks for.
mkdir "$outside/c"
cp "$root/examples/receiver-c/with_library.c" "$outside/c/"
cat >"$outside/c/CMakeLists.txt" <<'TEXT'
cmake_minimum_required(VERSION 3.25)
project(c LANGUAGES C)
find_package(Quillon 0.1 REQUIRED)
add_executable(Receiver with_library.c)
target_link_libraries(Receiver PRIVATE Quillon::Receiver)
TEXT
configure c
quietly cmake --build "$outside/c/build"
cp "$sdk/bin/QuillonReceiver64.dll" "$outside/c/build/"
! wine "$outside/c/build/Receiver.exe" 2>"$scratch/c.err" || fail "a program of another name listens"
expect_line "$scratch/c.err" 'not called PrinterProcessorWin.exe'

# As a folder of another project it makes nobody else's warnings errors.
mkdir "$outside/inside"
cat >"$outside/inside/CMakeLists.txt" <<TEXT
cmake_minimum_required(VERSION 3.25)
project(inside LANGUAGES C CXX)
add_subdirectory("$root" quillon EXCLUDE_FROM_ALL)
add_executable(static user.cpp)
target_link_libraries(static PRIVATE Quillon::Framework)
add_executable(dll user.cpp)
target_link_libraries(dll PRIVATE Quillon::FrameworkDll)
TEXT
: >"$outside/inside/user.cpp"
configure inside
grep '"command".*user.cpp' "$outside/inside/build/compile_commands.json" >"$scratch/commands"
expect "the ways that are there" 2 "$(grep -c -- "-I$root" "$scratch/commands")"
! grep -E -- ' -(W|ffile-prefix-map)' "$scratch/commands" || fail "our warnings are on"
