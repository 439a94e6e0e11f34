"""Runs the journeys: run.py --program PATH [--root FOLDER] [--junit FILE] [--stages N] [PATTERN...]

Each PATTERN is a part of the names of the tests to run. They run on N stages at a time, each with a screen, a sound
server and buses of its own; a test case (a class) stays on one stage. What a failed test left to see (the screen, the
console, the accessibility tree) is put into out/journey/failed.

With --root, the program is that of another system, which has its root in this folder; PATH is the program's there. That
system has to see /tmp and out/journey of this one under the same names.
"""

import argparse
import faulthandler
import multiprocessing
import os
import pathlib
import queue
import shutil
import sys
import time
import unittest
import xml.etree.ElementTree as ElementTree

from journey import Journey, Surroundings, make_clips
from stage import Stage

LONGEST_RUN = 900  # seconds, after which something must be hanging
STAGES = 2
HERE = pathlib.Path(__file__).parent
OUT = HERE.parent.parent / "out" / "journey"


class Result(unittest.TestResult):
    """Tells each outcome as it comes: puts (name, seconds, trouble) into `outcomes`."""

    def __init__(self, outcomes):
        super().__init__()
        self._outcomes = outcomes

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

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err is not None:
            self._note(err, test)

    def stopTest(self, test):
        super().stopTest(test)
        self._outcomes.put((name_of(test), time.monotonic() - self._started, "\n".join(self._troubles)))


def name_of(test):
    return test.id().split(".", 1)[-1]


def load(patterns):
    """The tests to run, by the names of their cases."""
    found = {}

    def collect(suite):
        for test in suite:
            if isinstance(test, unittest.TestSuite):
                collect(test)
            elif not patterns or any(pattern in test.id() for pattern in patterns):
                found.setdefault(type(test).__qualname__, []).append(test)

    collect(unittest.TestLoader().discover(str(HERE), pattern="test_*.py"))
    return found


def play(number, options, cases, outcomes):
    """On one stage, in a process of its own: one test case after the other, until there is none any more."""
    faulthandler.dump_traceback_later(LONGEST_RUN, exit=True)
    tests = load(options.patterns)
    with Stage(OUT / f"stage-{number}.log") as stage:
        Journey.surroundings = Surroundings(options.program, stage, str(OUT), options.root)
        try:
            while True:
                unittest.TestSuite(tests[cases.get(timeout=1.0)]).run(Result(outcomes))
        except queue.Empty:
            pass
        finally:
            Journey.surroundings.close()


class Report:
    """Prints the outcomes, and keeps them."""

    def __init__(self):
        self._cases = {}

    def note(self, name, seconds, trouble):
        print(f"{'FAILED' if trouble else 'ok    '}  {name} ({seconds:.1f} s)", flush=True)
        if trouble:
            print(trouble, flush=True)
        self._cases[name] = seconds, trouble

    def expect(self, names):
        """Those of whose outcome nothing was heard count as failed."""
        for name in names:
            if name not in self._cases:
                self.note(name, 0.0, "Its stage ended before the test did.")

    @property
    def is_good(self):
        return bool(self._cases) and not any(trouble for _, trouble in self._cases.values())

    def write_junit(self, path):
        suite = ElementTree.Element("testsuite", name="journey", tests=str(len(self._cases)))
        for name, (seconds, trouble) in self._cases.items():
            case = ElementTree.SubElement(suite, "testcase", name=name, time=f"{seconds:.1f}")
            if trouble:
                ElementTree.SubElement(case, "failure").text = trouble
        os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
        ElementTree.ElementTree(suite).write(path, encoding="utf-8", xml_declaration=True)


def main():
    parser = argparse.ArgumentParser(description="Runs the journeys.")
    parser.add_argument("--program", required=True)
    parser.add_argument("--root")
    parser.add_argument("--junit")
    parser.add_argument("--stages", type=int, default=STAGES)
    parser.add_argument("patterns", nargs="*")
    options = parser.parse_args()

    shutil.rmtree(OUT / "failed", ignore_errors=True)
    make_clips(str(OUT))
    # A stage's process knows nothing of this one's tests: what they load must not be shared.
    processes = multiprocessing.get_context("spawn")
    cases, outcomes = processes.Queue(), processes.Queue()
    tests = load(options.patterns)
    for case in tests:
        cases.put(case)
    stages = [processes.Process(target=play, args=(number, options, cases, outcomes))
              for number in range(1, min(options.stages, len(tests)) + 1)]
    for stage in stages:
        stage.start()
    report = Report()
    while any(stage.is_alive() for stage in stages) or not outcomes.empty():
        try:
            report.note(*outcomes.get(timeout=0.5))
        except queue.Empty:
            pass
    report.expect(name_of(test) for case in tests.values() for test in case)
    if options.junit:
        report.write_junit(options.junit)
    sys.exit(not report.is_good or any(stage.exitcode for stage in stages))


if __name__ == "__main__":
    main()
