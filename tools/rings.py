"""Which ring includes what: platform/ knows nothing, the app's folders may know platform/, and so may each host, which
may know hosts/probe besides. hosts/desktop may know every host.

Usage: rings.py FILE...    (paths relative to the repository root; prints what breaks a rule, fails if anything does)
"""

import re
import sys
from pathlib import PurePosixPath

APP = ("app", "playback", "library", "info", "tutorial")

# A header of the C++20 library has neither a slash nor an ending; so has hardly anything else.
STANDARD = re.compile(r"[a-z_0-9]+")
QT = re.compile(r"Q[A-Za-z0-9]+|Qt[A-Za-z0-9]*/.+")
TEST_LIBRARY = re.compile(r"(gtest|gmock)/.+")
POSIX = re.compile(r"(sys/)?[a-z]+\.h")

INCLUDE = re.compile(r'\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
DIRECTIVE = re.compile(r"\s*#\s*(\w+)\s*(.*)")


def ring_of(path):
    """The ring or host that a file belongs to: "platform", "app", "hosts/qtquick", "tests/unit"..."""
    parts = PurePosixPath(path).parts
    if parts[0] in APP:
        return "app"
    if parts[0] in ("hosts", "tests") and len(parts) > 2:
        return "/".join(parts[:2])
    return parts[0]


def own_rings_known_to(ring):
    """The rings whose headers a file of `ring` may include, or None where there is no limit."""
    if ring == "platform":
        return {"platform"}
    if ring == "app":
        return {"platform", "app"}
    if ring == "hosts/desktop":
        return {"platform"} | {"hosts/" + host for host in ("desktop", "gstreamer", "medialibrary", "probe", "qtquick")}
    if ring.startswith("hosts/"):
        return {"platform", "hosts/probe", ring}
    if ring in ("tests/unit", "tests/support"):
        return {"platform", "app", "tests/support", "tests/unit"}
    return None


def foreign_headers_known_to(ring, path):
    """What kinds of header from outside a file of `ring` may include, or None where there is no limit."""
    if ring == "platform":
        # The interface resource is the one thing the platform parses.
        return (STANDARD, re.compile(r"pugixml\.hpp")) if path == "platform/uikit/UIStoryboard.cpp" else (STANDARD,)
    if ring == "app":
        return (STANDARD,)
    if ring in ("tests/unit", "tests/support"):
        return (STANDARD, TEST_LIBRARY, POSIX)
    return None


def complaints_about(path, text):
    ring = ring_of(path)
    own = own_rings_known_to(ring)
    foreign = foreign_headers_known_to(ring, path)
    for number, line in enumerate(text.splitlines(), 1):
        included = INCLUDE.match(line)
        if included:
            quoted, angled = included.groups()
            if quoted and "/" not in quoted and own is not None:
                yield number, f'"{quoted}": own headers are included by their path from the repository root'
            elif quoted and own is not None and ring_of(quoted) not in own:
                yield number, f"{ring} must not know {ring_of(quoted)}"
            elif angled and foreign is not None and not any(kind.fullmatch(angled) for kind in foreign):
                yield number, f"{ring} must not include <{angled}>"
            continue
        directive = DIRECTIVE.match(line)
        if directive and ring == "app" and (directive[1], directive[2].strip()) != ("pragma", "once"):
            yield number, f"#{directive[1]} in the app: what differs between systems belongs into a host"


def main():
    found = False
    for path in sys.argv[1:]:
        with open(path, encoding="utf-8") as file:
            for number, complaint in complaints_about(path, file.read()):
                found = True
                print(f"{path}:{number}: {complaint}")
    sys.exit(found)


if __name__ == "__main__":
    main()
