"""What is said in more than one place, because each reader looks in another one, is the same everywhere: the version,
the app's name on the desktop, its home page, the maintainers' address, and the packages that the app needs.

Usage: release.py    (in the repository root; prints what differs, fails if anything does)
"""

import glob
import json
import os
import re
import sys
import xml.etree.ElementTree as ElementTree

METAINFO = "packaging/desktop/quillop.metainfo.xml.in"
CONTROL = "packaging/debian/control"
COPYRIGHT = "packaging/debian/copyright"
CHANGELOG = "packaging/debian/changelog"


def text(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def found(pattern, path):
    """What the pattern's group is in the file's first match; the pattern itself where nothing matches."""
    match = re.search(pattern, text(path), re.MULTILINE)
    return match[1] if match else f"nothing like {pattern}"


def versions():
    """Where the newest version is stated, and as what."""
    newest = ElementTree.parse(METAINFO).find("releases/release")
    yield "CMakeLists.txt", found(r"^project\(quillop VERSION (\S+)", "CMakeLists.txt")
    yield METAINFO, newest.get("version")
    yield CHANGELOG, found(r"^quillop \(([^-)]+)-", CHANGELOG)
    yield "CHANGELOG.md", found(r"^## (\S+)", "CHANGELOG.md")


def names():
    yield "CMakeLists.txt", found(r"^set\(QUILLOP_APPLICATION_ID (\S+)\)", "CMakeLists.txt")
    for manifest in glob.glob("packaging/flatpak/*.json"):
        yield manifest, json.loads(text(manifest))["id"]
        yield f"the name of {manifest}", os.path.basename(manifest).removesuffix(".json")
    yield "tests/journey/test_launcher.py", found(r'^NAME = "(.*)"', "tests/journey/test_launcher.py")


def home_pages():
    yield "CMakeLists.txt", found(r"^set\(QUILLOP_HOMEPAGE (\S+)\)", "CMakeLists.txt")
    yield CONTROL, found(r"^Homepage: (.*)", CONTROL)
    yield COPYRIGHT, found(r"^Source: (.*)", COPYRIGHT)


def addresses():
    yield "CMakeLists.txt", found(r"^set\(QUILLOP_SUPPORT_ADDRESS (\S+) ", "CMakeLists.txt")
    yield CONTROL, found(r"^Maintainer: .*<(.*)>", CONTROL)
    yield COPYRIGHT, found(r"^Upstream-Contact: .*<(.*)>", COPYRIGHT)
    yield CHANGELOG, found(r"^ -- .*<(.*)>", CHANGELOG)


def field(name):
    """The packages of a field of the control file, without versions and what the build puts in."""
    content = found(rf"^{name}: *((?:.*\n)(?: .*\n)*)", CONTROL)
    packages = {entry.split("(")[0].strip() for entry in content.split(",")}
    return {package for package in packages if package and "$" not in package}


def needed_for(use):
    lines = (line.split() for line in text("packaging/packages.txt").splitlines())
    return {words[1] for words in lines if len(words) == 2 and words[0] == use}


def complaints():
    for statements in map(list, (versions(), names(), home_pages(), addresses())):
        if len({value for _, value in statements}) > 1:
            yield ", but ".join(f"{path} says {value}" for path, value in statements)
    run = needed_for("run")
    for package in sorted(run ^ field("Depends")):
        yield f"{package} is only in {'packaging/packages.txt' if package in run else CONTROL}"
    for package in sorted(field("Build-Depends") - needed_for("build") - {"debhelper-compat"}):
        yield f"{package} of {CONTROL} is not in packaging/packages.txt"


def main():
    found_any = False
    for complaint in complaints():
        found_any = True
        print(complaint)
    sys.exit(found_any)


if __name__ == "__main__":
    main()
