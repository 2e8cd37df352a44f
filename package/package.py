#!/usr/bin/env -S python3 -B
"""package.py BUILD OUTPUT: makes the packages of what stands in a build folder for Windows: an MSI, a ZIP with the same
files, and the list of what is inside. `./dev package` calls it.

Environment:
  SOURCE_DATE_EPOCH   seconds since 1970: the time of all that is written; else that of the newest commit
  SIGN_CERT           the certificate that the programs and the MSI are signed with: a file with the chain in PEM, or
                      PKCS #12 with the key (.p12, .pfx)
  SIGN_KEY            the key in PEM, for a certificate in PEM
  SIGN_PASSWORD_FILE  a file that holds the password of the key
  SIGN_TIMESTAMP      the address of a time stamp service (RFC 3161), so that signatures outlive the certificate
"""
import hashlib
import json
import os
import pathlib
import sys
import time
import zipfile

import contents
import msi
import spdx
from contents import Problem, files_of, run

SOURCES = pathlib.Path(__file__).resolve().parent.parent
LISTS = SOURCES / "package"


def get_epoch():
    if "SOURCE_DATE_EPOCH" in os.environ:
        return int(os.environ["SOURCE_DATE_EPOCH"])
    return int(run(["git", "-C", SOURCES, "log", "-1", "--format=%ct"]))


def signing_options():
    """osslsigncode's options for the certificate, or None where nothing is to be signed."""
    certificate = os.environ.get("SIGN_CERT")
    if not certificate:
        return None
    key = os.environ.get("SIGN_KEY")
    if certificate.endswith((".p12", ".pfx")):
        options = ["-pkcs12", certificate]
    elif key:
        options = ["-certs", certificate, "-key", key]
    else:
        raise Problem("SIGN_KEY is needed for a certificate in PEM")
    for variable, option in (("SIGN_PASSWORD_FILE", "-readpass"), ("SIGN_TIMESTAMP", "-ts")):
        if os.environ.get(variable):
            options += [option, os.environ[variable]]
    return options


def sign(path, name, options):
    signed = path.with_name(path.name + ".signed")
    run(["osslsigncode", "sign", *options, "-h", "sha256", "-n", name, "-in", path, "-out", signed])
    signed.replace(path)


def write_zip(path, folder, top, epoch):
    """The files below a folder of the archive's own name: in order, with the same time and rights."""
    made = time.gmtime(max(epoch, 315532800))[:6]  # the format begins with 1980
    with zipfile.ZipFile(path, "w") as archive:
        for file in files_of(folder):
            entry = zipfile.ZipInfo(f"{top}/{file.relative_to(folder).as_posix()}", made)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, file.read_bytes())


def write_sums(path, files):
    path.write_text("".join(f"{hashlib.sha256(file.read_bytes()).hexdigest()}  {file.name}\n" for file in files))


def make(build, output):
    """Makes everything; returns what to tell of it."""
    product = json.loads((build / "product.json").read_text())
    epoch = get_epoch()
    signing = signing_options()
    output.mkdir(parents=True, exist_ok=True)
    staged = output / "files"
    contents.stage(contents.read_list(LISTS / "files.txt"), staged, build, SOURCES)
    contents.check_versions(staged, product["version"])
    for program in contents.programs_of(staged) if signing else []:
        sign(program, product["name"], signing)

    base = f"{product['file']}-{product['version']}"
    bill = staged / f"{product['file']}.spdx.json"
    spdx.write(bill, product, staged, build, LISTS / "libraries.txt", epoch)
    for file in files_of(staged):
        os.utime(file, (epoch, epoch))
    package, archive = output / f"{base}-x64.msi", output / f"{base}-x64.zip"
    msi.make(package, staged, product, LISTS / "product.wxs", epoch)
    if signing:
        sign(package, product["name"], signing)
    write_zip(archive, staged, base, epoch)
    write_sums(output / "SHA256SUMS", [package, archive])
    return [package, archive, f"Product code of the MSI: {msi.product_code(product)}"]


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    try:
        print(*make(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()), sep="\n")
    except Problem as problem:
        sys.exit(f"package.py: {problem}")
