#!/usr/bin/env python3
"""check_spdx.py FOLDER: holds the SPDX file in a folder against the other files there."""
import hashlib
import json
import pathlib
import sys

folder = pathlib.Path(sys.argv[1])
(bill,) = folder.glob("*.spdx.json")
document = json.loads(bill.read_text())
listed = {file["fileName"]: {sum["algorithm"]: sum["checksumValue"] for sum in file["checksums"]}
          for file in document["files"]}
present = {"./" + path.relative_to(folder).as_posix(): hashlib.sha256(path.read_bytes()).hexdigest()
           for path in folder.rglob("*") if path.is_file() and path != bill}
assert {name: sums["SHA256"] for name, sums in listed.items()} == present, "the files"

product, *libraries = document["packages"]
sums = "".join(sorted(sums["SHA1"] for sums in listed.values()))
assert product["packageVerificationCode"]["packageVerificationCodeValue"] == hashlib.sha1(sums.encode()).hexdigest()
names = {library["name"] for library in libraries}
assert names >= {"libstdc++", "libgcc", "mingw-w64", "winpthreads", "Boost", "CLI11"}, names
assert all(library["versionInfo"][0].isdigit() and library["licenseDeclared"] for library in libraries), "versions"
# Every identifier that a relation names is there.
known = {"SPDXRef-DOCUMENT"} | {item["SPDXID"] for item in document["packages"] + document["files"]}
for relation in document["relationships"]:
    assert {relation["spdxElementId"], relation["relatedSpdxElement"]} <= known, relation
linked = [relation for relation in document["relationships"] if relation["relationshipType"] == "STATIC_LINK"]
assert len(linked) == len(libraries) * sum(name.endswith((".exe", ".dll")) for name in present), "what is linked"
