"""The list of what is inside a package, in SPDX 2.3: our files, and the libraries of others in our programs."""
import hashlib
import json
import os
import time
import uuid

from contents import PROGRAMS, Problem, files_of, run

KINDS = {".exe": "BINARY", ".dll": "BINARY", ".lib": "ARCHIVE", ".h": "SOURCE"}
COMPILER = "x86_64-w64-mingw32-g++-posix"


class Library:
    """A row of libraries.txt, with the package of the distribution that it comes from."""

    def __init__(self, row):
        words = row.split()
        self.name, self.licence, source = words[0], " ".join(words[1:-1]), words[-1]
        self.package, self.version = None, source[1:]
        if not source.startswith("="):
            path = source if source.startswith("/") else run([COMPILER, f"-print-file-name={source}"]).strip()
            self.package = run(["dpkg-query", "-S", os.path.realpath(path)]).split(":")[0]
            self.version = run(["dpkg-query", "-W", "-f", "${Version}", self.package])


def read_libraries(path):
    return [Library(row) for row in path.read_text().splitlines() if row and not row.startswith("#")]


def used_headers(build, programs):
    """The files from outside the project and its build folder that the objects of the programs were made from."""
    inputs = run(["ninja", "-C", build, "-t", "inputs", *programs]).split()
    objects = [name for name in inputs if name.endswith(".obj")]
    lines = run(["ninja", "-C", build, "-t", "deps", *objects]).splitlines()
    found = {os.path.realpath(os.path.join(build, line.strip())) for line in lines if line.startswith(" ")}
    return {path for path in found if path.startswith("/usr/")}


def check_headers(headers, libraries):
    packages = {library.package for library in libraries if library.package}
    # The compiler's headers are its libraries'; dpkg lists them with these.
    owned = set()
    for package in packages | {"mingw-w64-common"}:
        owned.update(os.path.realpath(path) for path in run(["dpkg-query", "-L", package]).splitlines())
    foreign = sorted(headers - owned)
    if foreign:
        raise Problem(f"no row of libraries.txt accounts for {foreign[0]}, and {len(foreign) - 1} others")


def describe_file(path, folder, number):
    data = path.read_bytes()
    return {
        "SPDXID": f"SPDXRef-File-{number}",
        "fileName": "./" + path.relative_to(folder).as_posix(),
        "fileTypes": [KINDS.get(path.suffix, "DOCUMENTATION")],
        "checksums": [{"algorithm": "SHA1", "checksumValue": hashlib.sha1(data).hexdigest()},
                      {"algorithm": "SHA256", "checksumValue": hashlib.sha256(data).hexdigest()}],
        "licenseConcluded": "NOASSERTION",
        "licenseInfoInFiles": ["NOASSERTION"],
        "copyrightText": "NOASSERTION",
    }


def describe_library(library):
    origin = f"package {library.package} of the distribution" if library.package else "tables made from its files"
    return {
        "SPDXID": "SPDXRef-" + library.name.replace("+", "x"),
        "name": library.name,
        "versionInfo": library.version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": library.licence,
        "licenseDeclared": library.licence,
        "copyrightText": "NOASSERTION",
        "sourceInfo": origin,
    }


def describe_product(product, files):
    sums = sorted(file["checksums"][0]["checksumValue"] for file in files)
    return {
        "SPDXID": "SPDXRef-Product",
        "name": product["name"],
        "versionInfo": product["version"],
        "supplier": f"Organization: {product['maker']}",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": True,
        "packageVerificationCode": {"packageVerificationCodeValue": hashlib.sha1("".join(sums).encode()).hexdigest()},
        "licenseConcluded": "Apache-2.0",
        "licenseDeclared": "Apache-2.0",
        "licenseInfoFromFiles": ["NOASSERTION"],
        "copyrightText": "NOASSERTION",
    }


def describe(product, folder, libraries, epoch):
    """The whole document. Of the same files and libraries it is the same."""
    files = [describe_file(path, folder, number) for number, path in enumerate(files_of(folder), 1)]
    programs = [file for file in files if file["fileTypes"] == ["BINARY"]]
    parts = [describe_library(library) for library in libraries]
    relations = [("SPDXRef-DOCUMENT", "DESCRIBES", "SPDXRef-Product")]
    relations += [("SPDXRef-Product", "CONTAINS", file["SPDXID"]) for file in files]
    relations += [(file["SPDXID"], "STATIC_LINK", part["SPDXID"]) for file in programs for part in parts]
    packages = [describe_product(product, files), *parts]
    identity = uuid.uuid5(uuid.NAMESPACE_OID, json.dumps([packages, files], sort_keys=True))
    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"{product['file']}-{product['version']}",
        "documentNamespace": f"urn:uuid:{identity}",
        "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(epoch)),
                         "creators": [f"Organization: {product['maker']}", "Tool: package.py"]},
        "packages": packages,
        "files": files,
        "relationships": [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
                          for one, kind, other in relations],
    }


def write(path, product, folder, build, libraries_list, epoch):
    libraries = read_libraries(libraries_list)
    programs = ["bin/" + file.name for file in files_of(folder) if file.suffix in PROGRAMS]
    check_headers(used_headers(build, programs), libraries)
    path.write_text(json.dumps(describe(product, folder, libraries, epoch), indent=1, ensure_ascii=False) + "\n")
