"""What a large library costs: benches/library.py [--build FOLDER] [--rounds N] [NAME...]

Prints, as ratios against another program in the same run, and as figures where there is nothing to compare with:

query   every row of 100,000, beside the sqlite3 program printing the same rows of the same file
list    the app's list of 100,000 videos: how soon its first rows are filled in, and the memory that it takes
rescan  a search of 100,000 files that have not changed, beside `find` printing the facts of each file
index   files per second of the first look, picture included, beside one ffmpegthumbnailer per file
start   the app's start with 100,000 videos, beside its start with 10

Builds what it needs in FOLDER (build/release unless told otherwise). Without a NAME, all of them.
"""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "journey"))

from accounting import proportional_set_size  # noqa: E402
from processes import until  # noqa: E402
from program import Home, Program  # noqa: E402
from stage import Stage  # noqa: E402

LARGE, SMALL = 100_000, 10
TARGETS = ["quillop", "quillop-indexer", "quillop-library-bench", "quillop-library-fill", "quillop-scan-bench"]


def known_home(build, folder, files):
    """The home of somebody who knows the app and has that many videos, all of them looked into."""
    home = Home(folder)
    own = os.path.join(home.environment["XDG_CONFIG_HOME"], "quillop")
    os.makedirs(own, mode=0o700)
    for name, contents in (("defaults", '{"primoAvvio": "2", "primoAvvio2": "2"}'), ("library", '{"access": "authorised"}')):
        with open(os.path.join(own, name + ".json"), "w", encoding="ascii") as file:
            file.write(contents)
    index = os.path.join(home.environment["XDG_DATA_HOME"], "quillop", "library.db")
    subprocess.run([os.path.join(build, "benches/quillop-library-fill"), index, home.videos, str(files)], check=True)
    return home


def start_seconds(program_path, stage, home):
    """From starting the app to a screen that can be used: it has appeared, and its button takes presses."""
    begin = time.monotonic()
    program = Program(program_path, stage, home)
    try:
        program.lines_up_to("viewDidAppear", 0, deadline=60.0)
        program.wait_for("Choose videos", deadline=60.0)
        return time.monotonic() - begin
    finally:
        program.end()


def memory_of(program):
    return proportional_set_size([program.process_id])


def list_figures(program_path, stage, home):
    """Seconds from the query's answer to the first rows, and MiB that the list takes."""
    program = Program(program_path, stage, home)
    try:
        program.lines_up_to("posso accedere alla libreria", 0, deadline=60.0)
        time.sleep(5.0)  # the search at the start is over
        before = memory_of(program)
        place = program.mark()
        program.press("Choose videos")
        program.lines_up_to(f"numero video : {LARGE}", place, deadline=60.0)
        answered = time.monotonic()
        until(lambda: any(line.startswith("durataVideo") for line in program.lines[place:]), "the first rows", pause=0.001)
        first_rows = time.monotonic() - answered
        time.sleep(2.0)
        return first_rows, memory_of(program) - before
    finally:
        program.end()


def in_stage(measure):
    os.makedirs(os.path.join(ROOT, "out", "bench"), exist_ok=True)
    with Stage(os.path.join(ROOT, "out", "bench", "stage.log")) as stage, tempfile.TemporaryDirectory() as folder:
        measure(stage, folder)


def measure_list(options):
    def measure(stage, folder):
        home = known_home(options.build, os.path.join(folder, "large"), LARGE)
        figures = [list_figures(options.program, stage, home) for _ in range(options.rounds)]
        rows, memory = (statistics.median(values) for values in zip(*figures))
        print(f"list of {LARGE:,}: first rows {rows * 1000:.0f} ms after the query's answer, {memory:.0f} MiB "
              "(target: under 60 MiB)")

    in_stage(measure)


def measure_start(options):
    def measure(stage, folder):
        homes = {files: known_home(options.build, os.path.join(folder, str(files)), files) for files in (LARGE, SMALL)}
        seconds = {LARGE: [], SMALL: []}
        for _ in range(3 * options.rounds):
            for files, home in homes.items():
                seconds[files].append(start_seconds(options.program, stage, home))
        large, small = (statistics.median(seconds[files]) for files in (LARGE, SMALL))
        print(f"start with {LARGE:,} videos {large:.2f} s, with {SMALL} {small:.2f} s, ratio {large / small:.2f} "
              "(target: at most 1.10)")

    in_stage(measure)


def program_of(name):
    def measure(options):
        subprocess.run([os.path.join(options.build, "benches", name)], check=True)

    return measure


def measure_index(options):
    subprocess.run([sys.executable, os.path.join(ROOT, "benches/indexing.py"), "--rounds", str(options.rounds), "--program",
                    os.path.join(options.build, "hosts/desktop/quillop-indexer")], check=True)


MEASURES = {
    "query": program_of("quillop-library-bench"),
    "list": measure_list,
    "rescan": program_of("quillop-scan-bench"),
    "index": measure_index,
    "start": measure_start,
}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("names", nargs="*", metavar="NAME", help=", ".join(MEASURES))
    parser.add_argument("--build", default=os.path.join(ROOT, "build/release"))
    parser.add_argument("--rounds", type=int, default=3)
    options = parser.parse_args()
    unknown = set(options.names) - set(MEASURES)
    if unknown:
        parser.error(f"no measure is called {', '.join(sorted(unknown))}")
    options.program = os.path.join(options.build, "hosts/desktop/quillop")
    subprocess.run(["cmake", "--build", options.build, "--target", *TARGETS], check=True, stdout=subprocess.DEVNULL)
    for name in options.names or MEASURES:
        MEASURES[name](options)
        sys.stdout.flush()


if __name__ == "__main__":
    main()
