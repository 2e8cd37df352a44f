"""What is shipped: the list in files.txt, and a folder that holds it as it goes to the administrators."""
import os
import shutil
import struct
import subprocess

PROGRAMS = (".exe", ".dll")


class Problem(Exception):
    """What keeps a package from being made, in words."""


def run(arguments, folder=None):
    """What a program prints; that it fails, or warns, is a problem."""
    # Some write times as local ones.
    environment = dict(os.environ, TZ="UTC", LC_ALL="C.UTF-8")
    done = subprocess.run([str(argument) for argument in arguments], capture_output=True, text=True, cwd=folder,
                          env=environment)
    # wixl and msibuild tell of some failures by warnings alone.
    if done.returncode != 0 or "WARNING" in done.stderr or "CRITICAL" in done.stderr:
        raise Problem(f"{arguments[0]}: {done.stderr.strip() or done.stdout.strip()}")
    return done.stdout


def read_list(path):
    """The rows of files.txt: pairs of a path in the package and a source."""
    rows = [line.split() for line in path.read_text().splitlines() if line.strip() and not line.startswith("#")]
    for row in rows:
        if len(row) != 2:
            raise Problem(f"{path}: a row has two columns: {' '.join(row)}")
    return rows


def stage(rows, folder, build, sources):
    """Copies the files to a folder of their own. What is shipped is what is built: of one version, and no more."""
    shutil.rmtree(folder, ignore_errors=True)
    for target, source in rows:
        origin = build / source if source.startswith(("bin/", "lib/")) else sources / source
        if not origin.is_file():
            raise Problem(f"{target}: there is no {origin}")
        copy = folder / target
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(origin, copy)


def files_of(folder):
    """The files below a folder, in an order that no file system decides."""
    return sorted(path for path in folder.rglob("*") if path.is_file())


def programs_of(folder):
    return [path for path in files_of(folder) if path.suffix in PROGRAMS]


def version_of(program):
    """The file version of a program's version resource, as in "1.2.3.0"; None when it has none."""
    data = program.read_bytes()
    start = data.find(struct.pack("<II", 0xFEEF04BD, 0x00010000))
    if start < 0:
        return None
    high, low = struct.unpack_from("<II", data, start + 8)
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}"


def check_versions(folder, version):
    for program in programs_of(folder):
        found = version_of(program)
        if found is not None and found != version + ".0":
            raise Problem(f"{program.name} is of version {found}, the package of {version}")
