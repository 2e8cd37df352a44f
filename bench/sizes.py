#!/usr/bin/env python3
"""What each room of the source tree takes in the library, from the linker's map.

    sizes.py MAP LIBRARY

Counted is what the linker put into the file, by the object that it came from. What is in none, as headers and
the gaps between sections, is the rest of the file.
"""
import collections
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# Sections that are in memory, but not in the file, or not in the product.
NOT_IN_FILE = re.compile(r"\.(bss|tbss|debug|stab|comment)")
INPUT = re.compile(r"^ (\.\S+)\s+0x[0-9a-f]+\s+0x([0-9a-f]+) (\S.*)$", re.MULTILINE)
OURS = re.compile(r"(\S*?)CMakeFiles/[^/]+\.dir/(\S+)")
ARCHIVE = re.compile(r"([^/]+)\.a\(")


def room_of(path, rooms):
    """The longest room that holds the source, or the library that is not ours."""
    ours = OURS.search(path)
    if ours:
        # A source outside its target's folder has a "__" for each step up.
        source = re.sub(r"[^/]+/__/", "", ours.group(1) + ours.group(2))
        return max((room for room in rooms if source.startswith(room + "/")), key=len, default="other objects")
    if path == "dll stuff":  # the linker's own
        return "exports and relocations"
    archive = ARCHIVE.search(path)
    name = archive.group(1) if archive else ""
    if name in ("libstdc++", "libgcc", "libgcc_eh"):
        return "C++ run-time"
    return "C run-time and imports"


def kind_of(section):
    if section.startswith(".text"):
        return "code"
    if re.match(r"\.(pdata|xdata)", section):
        return "unwinding"
    return "data"


def read(map_file, library):
    """Bytes by room and kind: {room: {"code": n, "data": n, "unwinding": n}}."""
    rooms = (ROOT / "cmake" / "rooms.txt").read_text().split()
    text = map_file.read_text(errors="replace")
    text = text[text.index("Linker script and memory map"):]
    sizes = collections.defaultdict(lambda: dict(code=0, data=0, unwinding=0))
    for section, size, path in INPUT.findall(text):
        if int(size, 16) and not NOT_IN_FILE.match(section):
            sizes[room_of(path, rooms)][kind_of(section)] += int(size, 16)
    known = sum(sum(kinds.values()) for kinds in sizes.values())
    sizes["headers and gaps"]["data"] = library.stat().st_size - known
    return dict(sizes)


def show(sizes):
    print(f"{'room':34}{'code':>9}{'data':>9}{'unwinding':>11}{'all':>10}")
    for room, kinds in sorted(sizes.items(), key=lambda item: -sum(item[1].values())):
        print(f"{room:34}{kinds['code']:9}{kinds['data']:9}{kinds['unwinding']:11}{sum(kinds.values()):10}")
    print(f"{'the library':34}{sum(sum(kinds.values()) for kinds in sizes.values()):39}")


if __name__ == "__main__":
    show(read(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])))
