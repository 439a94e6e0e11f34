"""Runs the journeys: run.py --program PATH [--root FOLDER] [--junit FILE] [PATTERN...]

Each PATTERN is a part of the names of the tests to run. What a failed test left to see (the screen, the console, the
accessibility tree) is put into out/journey/failed.

With --root, the program is that of another system, which has its root in this folder; PATH is the program's there. That
system has to see /tmp and out/journey of this one under the same names.
"""

import argparse
import faulthandler
import os
import pathlib
import shutil
import sys
import time
import unittest
import xml.etree.ElementTree as ElementTree

from journey import Journey, Surroundings
from stage import Stage

LONGEST_RUN = 900  # seconds, after which something must be hanging
HERE = pathlib.Path(__file__).parent
OUT = HERE.parent.parent / "out" / "journey"


class Result(unittest.TestResult):
    """Tells each outcome as it comes, and remembers it for the report."""

    def __init__(self):
        super().__init__()
        self.cases = []

    def startTest(self, test):
        super().startTest(test)
        self._started = time.monotonic()
        self._troubles = []

    def _note(self, error, test):
        self._troubles.append(self._exc_info_to_string(error, test))
        if len(self._troubles) > 1:
            return  # the second one is a consequence
        try:
            test.report(OUT / "failed")
        except Exception as unreportable:  # pylint: disable=broad-except
            self._troubles.append(f"Nothing is left to see of it: {unreportable}\n")

    def addError(self, test, err):
        super().addError(test, err)
        self._note(err, test)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self._note(err, test)

    def stopTest(self, test):
        super().stopTest(test)
        seconds = time.monotonic() - self._started
        name = test.id().split(".", 1)[-1]
        trouble = "\n".join(self._troubles)
        print(f"{'FAILED' if trouble else 'ok    '}  {name} ({seconds:.1f} s)", flush=True)
        if trouble:
            print(trouble, flush=True)
        self.cases.append((name, seconds, trouble))

    def write_junit(self, path):
        suite = ElementTree.Element("testsuite", name="journey", tests=str(len(self.cases)))
        for name, seconds, trouble in self.cases:
            case = ElementTree.SubElement(suite, "testcase", name=name, time=f"{seconds:.1f}")
            if trouble:
                ElementTree.SubElement(case, "failure").text = trouble
        os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
        ElementTree.ElementTree(suite).write(path, encoding="utf-8", xml_declaration=True)


def chosen(suite, patterns):
    for test in suite:
        if isinstance(test, unittest.TestSuite):
            yield from chosen(test, patterns)
        elif not patterns or any(pattern in test.id() for pattern in patterns):
            yield test


def main():
    parser = argparse.ArgumentParser(description="Runs the journeys.")
    parser.add_argument("--program", required=True)
    parser.add_argument("--root")
    parser.add_argument("--junit")
    parser.add_argument("patterns", nargs="*")
    options = parser.parse_args()

    faulthandler.dump_traceback_later(LONGEST_RUN, exit=True)
    shutil.rmtree(OUT / "failed", ignore_errors=True)
    tests = unittest.TestLoader().discover(str(HERE), pattern="test_*.py")
    result = Result()
    with Stage(OUT / "stage.log") as stage:
        Journey.surroundings = Surroundings(options.program, stage, str(OUT), options.root)
        try:
            unittest.TestSuite(chosen(tests, options.patterns)).run(result)
        finally:
            Journey.surroundings.close()
    if options.junit:
        result.write_junit(options.junit)
    sys.exit(not result.wasSuccessful())


if __name__ == "__main__":
    main()
