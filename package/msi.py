"""Makes the Windows Installer package of a staged folder, the same bytes whenever the content is the same."""
import hashlib
import time
import uuid
from xml.sax.saxutils import quoteattr

from contents import PROGRAMS, files_of, run, version_of

# The product line: every version is an upgrade of those before it. Never to be changed.
UPGRADE_CODE = uuid.UUID("C66F0CE4-4BAC-4B97-880B-876919E215CE")

# What wixl leaves out of a rollback action's type: that it is in the script, and runs for a rollback only.
ROLLBACK = 0x400 | 0x100
# A search in the 64-bit part of the registry for a value as it is.
TYPE_OF_SEARCH = 2 | 0x10
SECURE_PROPERTIES = ("PRINTER", "DRIVER", "PPD", "INSTALLEDPRINTER", "INSTALLEDDRIVER", "INSTALLEDPPD",
                     "INSTALLEDVERSION", "MONITORLIBRARY")


def guid(name):
    """An identity that follows from a name, in this product line."""
    return "{" + str(uuid.uuid5(UPGRADE_CODE, name)).upper() + "}"


def product_code(product):
    """The same for each build of one version."""
    return guid("version " + product["version"])


def file_id(path):
    return path.replace("/", ".").replace("-", "_")


class Folder:
    """The folders and files of the package as elements of the installer's description."""

    def __init__(self, name=""):
        self.name = name
        self.folders = {}
        self.files = []

    def add(self, parts, path):
        if len(parts) == 1:
            self.files.append(path)
        else:
            self.folders.setdefault(parts[0], Folder(self.name + parts[0] + "/")).add(parts[1:], path)

    def write(self, root):
        text = ""
        for path in self.files:
            name = path.relative_to(root).as_posix()
            text += (f'<Component Id="{file_id(name)}" Guid="{guid("file " + name)}" Win64="yes">'
                     f'<File Id="{file_id(name)}" Name={quoteattr(path.name)} Source={quoteattr(name)}'
                     f' KeyPath="yes"/></Component>\n')
        for name, folder in self.folders.items():
            text += f'<Directory Id="{file_id(folder.name)}Folder" Name="{name}">\n{folder.write(root)}</Directory>\n'
        return text


def write_parts(staged, folder):
    """The parts of the description that follow from the files."""
    tree = Folder()
    names = [path.relative_to(staged).as_posix() for path in files_of(staged)]
    for path, name in zip(files_of(staged), names):
        tree.add(name.split("/"), path)
    references = "".join(f'<ComponentRef Id="{file_id(name)}"/>\n' for name in names)
    for part, text in (("files.wxi", tree.write(staged)), ("components.wxi", references)):
        (folder / part).write_text(f"<Include>\n{text}</Include>\n")


def corrections(staged):
    """What wixl cannot write, as statements."""
    as_system_unchecked = 0x800 | 0x40
    for program, action in ((18, "TakeBackRemoval"), (18, "TakeBackUpgrade"), (2, "TakeBackInstall")):
        kind = program | as_system_unchecked | ROLLBACK
        yield f"UPDATE `CustomAction` SET `Type` = {kind} WHERE `Action` = '{action}'"
    yield "UPDATE `CustomAction` SET `Source` = 'Engine' WHERE `Action` = 'TakeBackInstall'"
    yield "UPDATE `CustomAction` SET `Type` = 51 WHERE `Type` = 2099"
    yield f"UPDATE `RegLocator` SET `Type` = {TYPE_OF_SEARCH}"
    secure = ";".join(("WIX_DOWNGRADE_DETECTED", "WIX_UPGRADE_DETECTED") + SECURE_PROPERTIES)
    yield f"UPDATE `Property` SET `Value` = '{secure}' WHERE `Property` = 'SecureCustomProperties'"
    # Without its version in the table a program is not replaced by a newer one.
    for path in files_of(staged):
        version = version_of(path) if path.suffix in PROGRAMS else None
        if version:
            name = file_id(path.relative_to(staged).as_posix())
            yield f"UPDATE `File` SET `Version` = '{version}', `Language` = '1033' WHERE `File` = '{name}'"
            yield f"DELETE FROM `MsiFileHash` WHERE `File_` = '{name}'"


def write_summary(package, product, code, epoch):
    """Replaces the summary: what wixl writes into it differs from one run to the next."""
    made = time.strftime("%Y/%m/%d %H:%M:%S", time.gmtime(epoch))
    title = f"{product['name']} {product['version']}"
    rows = {1: 1252, 2: "Installation Database", 3: title, 4: product["maker"], 5: "Installer",
            6: product["description"], 7: "x64;1033", 9: code, 12: made, 13: made, 14: 500, 15: 2, 18: "msitools",
            19: 2}
    lines = ["PropertyId\tValue", "i2\tl255", "_SummaryInformation\tPropertyId"]
    lines += [f"{number}\t{value}" for number, value in rows.items()]
    table = package.parent / "parts" / "_SummaryInformation.idt"
    table.write_text("".join(line + "\r\n" for line in lines), newline="")
    run(["msibuild", package, "-i", table])


def make(package, staged, product, description, epoch):
    """Writes the package. `description` is product.wxs; its includes are written beside the package."""
    folder = package.parent / "parts"
    folder.mkdir(exist_ok=True)
    write_parts(staged, folder)
    variables = {
        "ProductCode": product_code(product), "UpgradeCode": "{" + str(UPGRADE_CODE).upper() + "}",
        "ChoicesGuid": guid("choices"), "Name": product["name"], "Version": product["version"],
        "Maker": product["maker"], "Description": product["description"],
    }
    options = [option for name, value in variables.items() for option in ("-D", f"{name}={value}")]
    package.unlink(missing_ok=True)
    run(["wixl", "-a", "x64", "-I", folder, *options, "-o", package, description], staged)
    run(["msibuild", package, *(word for statement in corrections(staged) for word in ("-q", statement))])
    content = hashlib.sha256(description.read_bytes() + repr(sorted(variables.items())).encode())
    for path in files_of(staged):
        content.update(path.read_bytes())
    write_summary(package, product, guid("content " + content.hexdigest()), epoch)
