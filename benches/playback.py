"""What two films cost: benches/playback.py [--program PATH] [--seconds N]

Plays two 1080p30 H.264 + AAC films of 6 Mbit/s in two 640x360 views and prints the CPU seconds (user and system) of the
program, and its memory, beside the floor measured in the same run: the same two files decoded at once in real time by
`ffmpeg -re -f null -`, nothing shown. The two alternate, so that whatever else the machine does meets both.
"""

import argparse
import os
import resource
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "journey"))

import clips  # noqa: E402
from program import Film, Home, Program  # noqa: E402
from stage import Stage  # noqa: E402

BAR_HEIGHT = 56
VIEW_WIDTH, VIEW_HEIGHT = 640, 360
TICKS = os.sysconf("SC_CLK_TCK")


def make_films(folder):
    """Two films that are as hard to decode as what a camera makes: noise on a moving picture."""
    films = []
    for title, tone in (("first", 440), ("second", 880)):
        path = os.path.join(folder, f"{title}.mp4")
        picture = "testsrc2=size=1920x1080:rate=30:duration=60,noise=alls=12:allf=t"
        clips.make(path, picture, f"sine=frequency={tone}:sample_rate=48000:duration=60,pan=stereo|c0=c0|c1=c0", 60,
                   "-preset", "veryfast", "-b:v", "6M", "-maxrate", "6M", "-bufsize", "12M")
        films.append(path)
    return films


def cpu_seconds(process_id):
    """User and system time of a process so far."""
    with open(f"/proc/{process_id}/stat", encoding="ascii", errors="replace") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def proportional_set_size(process_id):
    """The process's share of memory in MiB."""
    with open(f"/proc/{process_id}/smaps_rollup", encoding="ascii") as file:
        for line in file:
            if line.startswith("Pss:"):
                return int(line.split()[1]) / 1024
    raise RuntimeError("no memory figures")


def floor_seconds(films, seconds):
    """The CPU that decoding both films for that long takes."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    decoders = [subprocess.Popen(["ffmpeg", "-nostdin", "-loglevel", "error", "-re", "-t", str(seconds), "-i", film,
                                  "-f", "null", "-"]) for film in films]
    for decoder in decoders:
        decoder.wait()
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def home_with_window(folder, films):
    """A home whose videos are the films and whose window will show them in views of the size wanted."""
    home = Home(folder)
    for film in films:
        home.add(film, os.path.basename(film))
    state = os.path.join(home.environment["XDG_STATE_HOME"], "quillop")
    os.makedirs(state, exist_ok=True)
    with open(os.path.join(state, "window.ini"), "w", encoding="ascii") as file:
        file.write(f"[window]\ngeometry=@Rect(0 0 {2 * VIEW_WIDTH} {VIEW_HEIGHT + BAR_HEIGHT})\nfullScreen=false\n")
    return home


def program_figures(path, stage, films, seconds):
    """CPU seconds and memory of the program while both films play and nothing else is touched."""
    with tempfile.TemporaryDirectory() as folder:
        program = Program(path, stage, home_with_window(folder, films))
        try:
            program.wait_until_ready()
            for number, title in ((1, "first"), (2, "second")):
                program.choose(Film(program, number), title)
                program.lines_up_to("setSlider", program.mark() - 3)
            box = program.wait_for("Film 1").box
            time.sleep(9)  # the controls hide themselves after seven seconds
            process_id = program._process.pid  # pylint: disable=protected-access
            begin = cpu_seconds(process_id)
            time.sleep(seconds)
            return cpu_seconds(process_id) - begin, proportional_set_size(process_id), box
        finally:
            program.end()


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument("--program", default=os.path.join(ROOT, "build/release/hosts/desktop/quillop"))
    options.add_argument("--seconds", type=int, default=20)
    options.add_argument("--rounds", type=int, default=3)
    chosen = options.parse_args()
    films = make_films(os.path.join(ROOT, "out", "bench"))
    floors, ours, memory = [], [], []
    with Stage(os.path.join(ROOT, "out", "bench", "stage.log")) as stage:
        for _ in range(chosen.rounds):
            floors.append(floor_seconds(films, chosen.seconds))
            seconds, mebibytes, box = program_figures(chosen.program, stage, films, chosen.seconds)
            ours.append(seconds)
            memory.append(mebibytes)
            print(f"view {box}: floor {floors[-1]:.2f} s, ours {ours[-1]:.2f} s, {mebibytes:.0f} MiB", flush=True)
    floor, own = statistics.median(floors), statistics.median(ours)
    print(f"median of {chosen.rounds}: decoding floor {floor:.2f} s, ours {own:.2f} s, ratio {own / floor:.2f}, "
          f"PSS {statistics.median(memory):.0f} MiB")


if __name__ == "__main__":
    main()
