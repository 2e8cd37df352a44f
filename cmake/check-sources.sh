#!/bin/sh
# Rules of the house that no compiler checks. Prints every place that breaks one; takes a second.
set -u
cd "$(dirname "$0")/.." || exit 1
found=0

# forbid WHAT PATTERN PATHSPEC...: no line of those files matches the extended pattern.
forbid() {
    what=$1
    pattern=$2
    shift 2
    if git grep -nIE -e "$pattern" -- "$@"; then
        printf '^ %s\n\n' "$what"
        found=1
    fi
}

# require WHAT PATTERN PATHSPEC...: each of those files has such a line.
require() {
    what=$1
    pattern=$2
    shift 2
    lacking=$(git grep -LIE -e "$pattern" -- "$@")
    if [ -n "$lacking" ]; then
        printf '%s\n^ %s\n\n' "$lacking" "$what"
        found=1
    fi
}

tab=$(printf '\t')
return=$(printf '\r')
forbid "a tab" "$tab" '*.h' '*.cpp' '*.cmake' 'CMakeLists.txt' '*.sh' '*.md'
forbid "blanks at the end of a line" ' +$' '*.h' '*.cpp' '*.cmake' 'CMakeLists.txt' '*.sh'
forbid "a CR at the end of a line" "$return\$" '*.h' '*.cpp' '*.cmake' 'CMakeLists.txt' '*.sh' '*.md'
forbid "unfinished work" '\b(TODO|FIXME|XXX)\b' ':!cmake/check-sources.sh'
forbid "a platform switch in portable code" '\b(_WIN32|__linux__)\b' 'framework/' 'monitor/'
forbid "Windows outside its folder" '#include <(windows|winspool|winsplp|winbase)\.h>' 'framework/' 'examples/' ':!examples/receiver-c/'
forbid "an own include of windows.h" '#include <windows\.h>' '*.h' '*.cpp' ':!platform/win32/base/PWin32Api.h'
forbid "code that turns with the C locale or loads it" '#include <(iostream|regex|locale)>' 'framework/' 'monitor/' 'platform/'
forbid "a download" '(curl|wget|https?://)' 'dev' '.ci/run' '*.sh' '*.cmake' ':!cmake/check-sources.sh'
require "a header without #pragma once" '^#pragma once$' '*.h'

# These pages name what shows that they are true, in the tables' column "shown by": test suites, fuzzers, and scripts of
# end-to-end tests.
is_test() {
    git grep -qE -e "^TEST(_F)?\($1," -- 'tests/' || [ -f "fuzz/$1.cpp" ] || [ -f "tests/${1%%_*}/${1#*_}.sh" ]
}
for page in docs/security.md docs/complaints.md; do
    for test in $(awk -F' [|]' '/shown by [|]$/ { on = 1 } !/^[|]/ { on = 0 } on { print $(NF - 1) }' "$page" |
        grep -o '`[A-Za-z0-9_]*`' | tr -d '`' | sort -u); do
        is_test "$test" && continue
        printf '%s: %s\n^ a test that is not there\n\n' "$page" "$test"
        found=1
    done
done
# In a group with a title the reference would give a member without words those of the first one.
git ls-files 'framework/*.h' 'monitor/*.h' | xargs awk '
    FNR == 1 || /\/\/\/ ?@}/ { titled = 0 }
    /\/\/\/ @name/ { titled = 1 }
    titled && /^    [A-Za-z]/ && !/\/\/\/</ && before !~ /^    (\/\/\/|template)/ {
        print FILENAME ":" FNR ":" $0
        bad = 1
    }
    { before = $0 }
    END { exit bad }' || {
    printf '^ a member without words\n\n'
    found=1
}
# Links between pages lead to files; what stands behind a '#' is not looked at.
for page in $(git ls-files '*.md'); do
    for link in $(sed 's/`[^`]*`//g' "$page" | grep -oE '\]\([^) ]+\)' | sed 's/^](//; s/)$//; s/#.*//'); do
        case $link in *://* | mailto:*) continue ;; esac
        [ -e "$(dirname "$page")/$link" ] && continue
        printf '%s: %s\n^ a link that leads nowhere\n\n' "$page" "$link"
        found=1
    done
done
# Classes that pages name are there.
names='[GP][A-Z][A-Za-z0-9]*[a-z][A-Za-z0-9]*'
sources=$(git grep -ohE "\\b$names" -- '*.h' '*.cpp' | sort -u)
for name in $(git ls-files '*.md' | xargs grep -ohE "\\b$names\\b" | sort -u | grep -vx PWin32); do
    printf '%s\n' "$sources" | grep -qx "$name" && continue
    git grep -nwF "$name" -- '*.md'
    printf '^ a class that is not there\n\n'
    found=1
done
# Every room of the reference has a page, which its start page names.
for room in $(grep -E '^(platform/base|framework|monitor/handoff|receiver)' cmake/rooms.txt); do
    grep -qF "| [$room](" docs/reference/README.md && continue
    printf 'docs/reference/README.md: %s\n^ a room without a page\n\n' "$room"
    found=1
done
sh cmake/check-rooms.sh || found=1
exit "$found"
