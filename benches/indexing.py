"""What looking into films costs: benches/indexing.py [--program PATH] [--files N] [--rounds N]

Gives 1080p30 H.264 + AAC films of 8 s, each with an empty thumbnail cache, to quillop-indexer: facts and a thumbnail of
256 pixels for each. Prints the files per second of one process and of as many as there are processors, what a process
takes to start and to hold, and how many times faster that is than ffmpegthumbnailer, a program of its own for each file,
measured in the same run. They alternate, so that whatever else the machine does meets all. All files are in memory
before.

Two kinds of film: a drawn picture, which has small key frames, and the same with noise at 6 Mbit/s, whose key frames
are larger than most cameras'. Decoding the one key frame is nearly all of the work then.
"""

import argparse
import itertools
import os
import resource
import select
import shutil
import socket
import statistics
import struct
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SIDE = 256
MEMORY = 1 << 30
TASK, OPENING, ANSWER = 1, 2, 3
AHEAD = 4
KINDS = {
    "drawn": ([], []),
    "noisy": (["noise=alls=12:allf=t"], ["-preset", "veryfast", "-b:v", "6M", "-maxrate", "6M", "-bufsize", "12M"]),
}


def make_films(folder, kind, count):
    """`count` films, copies of four different ones."""
    filters, options = KINDS[kind]
    films = []
    for number in range(count):
        path = os.path.join(folder, f"{kind}{number}.mp4")
        if number < 4:
            picture = ",".join(["testsrc2=size=1920x1080:rate=30:duration=8", *filters, f"hue=h={number * 40}"])
            subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "lavfi", "-i", picture, "-f", "lavfi", "-i",
                            f"sine=frequency={440 + number}:duration=8", "-c:v", "libx264", "-pix_fmt", "yuv420p",
                            *options, "-c:a", "aac", path], check=True)
        else:
            shutil.copy(films[number % 4], path)
        films.append(path)
    return films


class Indexer:
    """One process of the program, spoken to as the app does."""

    def __init__(self, program, cache):
        self.connection, other = socket.socketpair()
        environment = {"HOME": cache, "XDG_CACHE_HOME": cache}
        self.process = subprocess.Popen([program, str(os.getpid()), str(MEMORY), "urgent"], stdin=other, stdout=other,
                                        env=environment)
        other.close()
        self.received = b""

    def fileno(self):
        return self.connection.fileno()

    def send(self, number, path):
        name = os.fsencode(path)
        body = struct.pack("=BqiI", TASK, number, SIDE, len(name)) + name
        self.connection.sendall(struct.pack("=I", len(body)) + body)

    def receive(self):
        """What has come in, as pairs of the kind and, for an answer, whether the file could be read."""
        piece = self.connection.recv(65536)
        if not piece:
            raise RuntimeError("the indexer has ended")
        self.received += piece
        while len(self.received) >= 4:
            length, = struct.unpack_from("=I", self.received)
            if len(self.received) < 4 + length:
                return
            body, self.received = self.received[4:4 + length], self.received[4 + length:]
            yield body[0], body[0] == ANSWER and body[9] == 1

    def peak_memory(self):
        """The most memory it has held so far, libraries included, in MiB."""
        with open(f"/proc/{self.process.pid}/status", encoding="ascii", errors="replace") as file:
            for line in file:
                if line.startswith("VmHWM:"):
                    return int(line.split()[1]) / 1024
        raise RuntimeError("no memory figures")

    def close(self):
        self.connection.close()
        self.process.wait()


def children_work():
    """Processor seconds of the children that have ended."""
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def first_answer(indexer, path):
    """Asks about something that is no film. Once a process has answered, it has started."""
    indexer.send(0, path)
    while not any(kind == ANSWER for kind, _ in indexer.receive()):
        pass


def started(program, cache, count):
    """So many processes that are ready."""
    indexers = [Indexer(program, cache) for _ in range(count)]
    for indexer in indexers:
        first_answer(indexer, cache)
    return indexers


def answers(indexers):
    """Who gave each answer that comes, and whether the file could be read."""
    while True:
        for indexer in select.select(indexers, [], [])[0]:
            for kind, is_readable in indexer.receive():
                if kind == ANSWER:
                    yield indexer, is_readable


def look_into(films, indexers):
    """Seconds for all films. Each process has a few of them waiting, so that it never waits itself."""
    waiting = list(enumerate(films))

    def feed(indexer):
        if waiting:
            indexer.send(*waiting.pop())

    begin = time.monotonic()
    for indexer in indexers * AHEAD:
        feed(indexer)
    for indexer, is_readable in itertools.islice(answers(indexers), len(films)):
        if not is_readable:
            raise RuntimeError("a film could not be read")
        feed(indexer)
    return time.monotonic() - begin


def check_thumbnails(cache, count):
    thumbnails = os.listdir(os.path.join(cache, "thumbnails", "large"))
    if len(thumbnails) != count:
        raise RuntimeError(f"{len(thumbnails)} thumbnails of {count} films")


def index(program, films, process_count, folder):
    """Seconds for all films, without starting the processes, and the most memory that one of them held."""
    with tempfile.TemporaryDirectory(dir=folder) as cache:
        indexers = started(program, cache, process_count)
        seconds = look_into(films, indexers)
        memory = max(indexer.peak_memory() for indexer in indexers)
        for indexer in indexers:
            indexer.close()
        check_thumbnails(cache, len(films))
    return seconds, memory


def start_seconds(program, folder):
    """From starting a process to its first answer, which is about a file that is not there."""
    begin = time.monotonic()
    indexer = Indexer(program, folder)
    first_answer(indexer, "/nowhere")
    seconds = time.monotonic() - begin
    indexer.close()
    return seconds


def thumbnailer_seconds(films, folder):
    """Seconds for all films, one after the other."""
    begin = time.monotonic()
    for film in films:
        subprocess.run(["ffmpegthumbnailer", "-s", str(SIDE), "-i", film, "-o", os.path.join(folder, "thumbnail.png")],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return time.monotonic() - begin


def measure(arguments, kind, folder):
    films = make_films(folder, kind, arguments.files)
    for film in films:
        with open(film, "rb") as file:
            file.read()
    processors = len(os.sched_getaffinity(0))
    alone, together, others, memory, work, other_work = [], [], [], [], [], []
    for _ in range(arguments.rounds):
        before = children_work()
        others.append(thumbnailer_seconds(films, folder) / len(films))
        other_work.append((children_work() - before) / len(films))
        for seconds, count in ((alone, 1), (together, processors)):
            before = children_work()
            taken, peak = index(arguments.program, films, count, folder)
            work.append((children_work() - before) / len(films))
            seconds.append(taken / len(films))
            memory.append(peak)
    other, one, several = (statistics.median(values) for values in (others, alone, together))
    print(f"{kind} films, {len(films)} of them, median of {arguments.rounds} rounds:")
    print(f"  ffmpegthumbnailer          {other * 1000:7.1f} ms a file")
    print(f"  quillop-indexer, 1 process {one * 1000:7.1f} ms a file, {1 / one:5.0f} files/s, ratio {other / one:5.1f}")
    print(f"  {processors} processes                {several * 1000:7.1f} ms a file, {1 / several:5.0f} files/s, "
          f"ratio {other / several:5.1f}")
    own_work, work_of_other = statistics.median(work), statistics.median(other_work)
    print(f"  processor time             {own_work * 1000:7.1f} ms a file beside {work_of_other * 1000:.1f} ms, "
          f"ratio {work_of_other / own_work:5.1f}")
    print(f"  peak memory of a process   {max(memory):7.1f} MiB")


def main():
    parser = argparse.ArgumentParser(description="What looking into films costs.")
    parser.add_argument("--program", default=os.path.join(ROOT, "build/release/hosts/desktop/quillop-indexer"))
    parser.add_argument("--files", type=int, default=40)
    parser.add_argument("--rounds", type=int, default=3)
    arguments = parser.parse_args()
    if shutil.which("ffmpegthumbnailer") is None:
        sys.exit("ffmpegthumbnailer is needed for comparison")
    with tempfile.TemporaryDirectory() as folder:
        starts = [start_seconds(arguments.program, folder) for _ in range(10)]
        print(f"start to first answer: {statistics.median(starts) * 1000:.1f} ms")
        for kind in KINDS:
            measure(arguments, kind, folder)


if __name__ == "__main__":
    main()
