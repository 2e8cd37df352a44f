#!/usr/bin/env python3
"""Writes case.tsv and classes.tsv from the Unicode data that Python carries (3.11: Unicode 14.0.0).

Run it by hand when the version of Unicode is to change; generate_tables.py turns the result into
the tables that are compiled.
"""
import pathlib
import sys
import unicodedata

FOLDER = pathlib.Path(__file__).resolve().parent
VERSION = "14.0.0"


def simple_lower(char):
    # The one lower-case letter whose full mapping is longer: I with a dot above.
    return "i" if char == "\u0130" else char.lower()


def simple_upper(char):
    # Greek letters with iota subscript: the full mapping has two letters, the title-case one, which
    # is the simple mapping, has one.
    return char.upper() if len(char.upper()) == 1 else char.title()


def counterpart(char, mapped):
    return mapped if len(mapped) == 1 and ord(mapped) <= 0xFFFF else char


def bmp():
    return [chr(unit) for unit in range(0x10000) if not 0xD800 <= unit <= 0xDFFF]


def write_case():
    with open(FOLDER / "case.tsv", "w", newline="\n") as out:
        out.write(f"# unit\tlower\tupper (hex, BMP). Unicode {VERSION} simple case mappings.\n")
        for char in bmp():
            lower = counterpart(char, simple_lower(char))
            upper = counterpart(char, simple_upper(char))
            if lower != char or upper != char:
                out.write(f"{ord(char):04X}\t{ord(lower):04X}\t{ord(upper):04X}\n")


def ranges(belongs):
    first = last = None
    for char in bmp():
        if not belongs(unicodedata.category(char)):
            continue
        if last is not None and ord(char) == last + 1:
            last += 1
            continue
        if last is not None:
            yield first, last
        first = last = ord(char)
    yield first, last


def write_classes():
    with open(FOLDER / "classes.tsv", "w", newline="\n") as out:
        out.write(f"# class\tfirst\tlast (hex, BMP). Unicode {VERSION} general categories: "
                  "letter (L*), digit (Nd).\n")
        for name, belongs in (("letter", lambda c: c[0] == "L"), ("digit", lambda c: c == "Nd")):
            for first, last in ranges(belongs):
                out.write(f"{name}\t{first:04X}\t{last:04X}\n")


if unicodedata.unidata_version != VERSION:
    sys.exit(f"this Python carries Unicode {unicodedata.unidata_version}, not {VERSION}")
write_case()
write_classes()
