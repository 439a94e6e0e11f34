"""Measures the app as a whole beside what people would use in its place: bench.py [OPTION]... [MEASURE]...

Prints what was measured as a table and writes it to out/bench.json. The exit status tells whether everything could be
measured, not whether everything was reached.
"""

import argparse
import faulthandler
import json
import os
import platform
import signal
import sys
import time
import traceback

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "journey"))

# pylint: disable=wrong-import-position
import answering  # noqa: E402
import freezing  # noqa: E402
import lasting  # noqa: E402
import moving  # noqa: E402
import playing  # noqa: E402
import together  # noqa: E402
from ground import Ground  # noqa: E402
from results import Result, table  # noqa: E402

MEASURES = {
    "cpu30": playing.cpu_30,
    "cpu60": playing.cpu_60,
    "overload": playing.overload,
    "memory": playing.memory,
    "indexing": playing.indexing,
    "tap": answering.tap,
    "seek": answering.seek,
    "drag": moving.drag,
    "start": answering.start,
    "stalls": freezing.stalls,
    "sync": together.sync,
    "idle": lasting.idle,
    "leaks": lasting.leaks,
}
ROUNDS, SECONDS = 3, 20
SMOKE_ROUNDS, SMOKE_SECONDS = 1, 2


def read_options():
    lines = "\n".join(f"  {name:9} {measure.__doc__}" for name, measure in MEASURES.items())
    parser = argparse.ArgumentParser(prog="tools/bench", description=__doc__.split(":", 1)[0] + ".",
                                     epilog="measures:\n" + lines, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default=os.path.join(ROOT, "build/release/hosts/desktop/quillop"))
    parser.add_argument("--rounds", type=int, help=f"how often each plays ({ROUNDS})")
    parser.add_argument("--seconds", type=int, help=f"how long each is looked at in each round ({SECONDS})")
    parser.add_argument("--smoke", action="store_true", help="shows that measuring works; the figures mean nothing")
    parser.add_argument("--full", action="store_true", help=f"{lasting.LOADS_IN_FULL} instead of {lasting.LOADS} loads, and sync after ten minutes, too")
    parser.add_argument("measures", nargs="*", metavar="MEASURE", help="all of them, if none is named")
    options = parser.parse_args()
    unknown = set(options.measures) - set(MEASURES)
    if unknown:
        parser.error(f"no such measure: {', '.join(sorted(unknown))}")
    options.rounds = options.rounds or (SMOKE_ROUNDS if options.smoke else ROUNDS)
    options.seconds = options.seconds or (SMOKE_SECONDS if options.smoke else SECONDS)
    return options


def take(name, ground):
    """One measure. Where it cannot be taken, the result says why."""
    print(f"{name}: {MEASURES[name].__doc__}", flush=True)
    try:
        return MEASURES[name](ground)
    except Exception as trouble:  # pylint: disable=broad-except
        traceback.print_exc()
        ground.stage.screen.picture().save(os.path.join(ROOT, "out", "bench", f"{name}-failed.png"))
        return Result(name, MEASURES[name].__doc__, error=f"{type(trouble).__name__}: {trouble}")


def main():
    options = read_options()
    # An end from outside takes the same way out as any other, so that nothing stays running.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    faulthandler.register(signal.SIGUSR1)
    out = os.path.join(ROOT, "out")
    results = []
    with Ground(options.program, os.path.join(ROOT, "build", "bench", "films"), os.path.join(out, "bench"),
                options.rounds, options.seconds, options.smoke, options.full) as ground:
        for name in options.measures or MEASURES:
            results.append(take(name, ground))
            write(os.path.join(out, "bench.json"), options, results)
    print(table(results))
    if options.smoke:
        print("Measured for a moment only, to show that it works: the figures mean nothing.")
    sys.exit(any(result.error for result in results))


def write(path, options, results):
    content = {"taken": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime()), "machine": platform.platform(),
               "processors": os.cpu_count(), "load": os.getloadavg(), "program": options.program,
               "rounds": options.rounds, "seconds": options.seconds, "smoke": options.smoke,
               "measures": [result.as_json() for result in results]}
    with open(path, "w", encoding="utf-8") as file:
        json.dump(content, file, indent=2)
        file.write("\n")


if __name__ == "__main__":
    main()
