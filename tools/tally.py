"""Adds up JUnit files: names what failed and ends on the line "N passed, N failed" (", N skipped").

Usage: tally.py FILE...    (fails when a test failed, and when a file is missing, broken or without a test)
"""

import sys
import xml.etree.ElementTree as ElementTree


def outcome(case):
    # ctest marks a failed test by its status too, also where the test died without a word.
    if case.find("failure") is not None or case.find("error") is not None or case.get("status") == "fail":
        return "failed"
    if case.find("skipped") is not None or case.get("status") in ("notrun", "disabled"):
        return "skipped"
    return "passed"


def main():
    counts = {"passed": 0, "failed": 0, "skipped": 0}
    for path in sys.argv[1:]:
        try:
            cases = list(ElementTree.parse(path).iter("testcase"))
        except (OSError, ElementTree.ParseError) as error:
            print(f"FAILED  {path}: {error}")
            counts["failed"] += 1
            continue
        if not cases:
            print(f"FAILED  {path}: no test ran")
            counts["failed"] += 1
        for case in cases:
            result = outcome(case)
            counts[result] += 1
            if result != "passed":
                print(f"{result.upper():7} {case.get('name')}")
    skipped = f", {counts['skipped']} skipped" if counts["skipped"] else ""
    print(f"{counts['passed']} passed, {counts['failed']} failed{skipped}")
    sys.exit(counts["failed"] > 0)


if __name__ == "__main__":
    main()
