#!/bin/sh
# Holds the order of the rooms (cmake/rooms.txt, the lowest first): a file includes its own room and lower ones, by the
# path from the root. Only the headers of aliases, which choose the platform, are included without a folder.
# Prints every include that breaks this.
set -eu
cd "$(dirname "$0")/.."
rooms=$(tr '\n' ' ' <cmake/rooms.txt)
git grep -nE '^#include "' -- $rooms | sed 's/#include "//; s/"$//' |
    awk -F: -v rooms="$rooms" '
        # The place in the order of the room that holds a file: the longest path that fits.
        function rank(path,  i, found, best) {
            for (i = 1; i <= count; i++)
                if (index(path, room[i] "/") == 1 && length(room[i]) > best) {
                    best = length(room[i])
                    found = i
                }
            return found
        }
        BEGIN { count = split(rooms, room, " ") }
        $3 ~ /^PPlatform(Types|Paths|Files|IPC)\.h$/ { next }
        {
            from = rank($1)
            to = rank($3)
            if (!to) print $1 ":" $2 ": " $3 " is in no room"
            else if (to > from) print $1 ":" $2 ": " $3 " is above " room[from]
            if (!to || to > from) bad = 1
        }
        END { exit bad }'
