#!/usr/bin/env python3
"""later.py PRODUCT PROGRAM...: makes a build the next minor version: its product.json and the version resources."""
import json
import pathlib
import struct
import sys

product = pathlib.Path(sys.argv[1])
facts = json.loads(product.read_text())
major, minor, patch = facts["version"].split(".")
product.write_text(json.dumps(facts | {"version": f"{major}.{int(minor) + 1}.{patch}"}))
for name in sys.argv[2:]:
    program = pathlib.Path(name)
    data = bytearray(program.read_bytes())
    place = data.find(struct.pack("<II", 0xFEEF04BD, 0x00010000))
    if place < 0:
        continue  # a file without a version
    struct.pack_into("<I", data, place + 8, struct.unpack_from("<I", data, place + 8)[0] + 1)
    program.write_bytes(data)
