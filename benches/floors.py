"""What ffmpeg alone takes for the same films, showing nothing: the floors beside which players are measured."""

import os
import resource
import subprocess
import time

from accounting import proportional_set_size
from processes import start


def decoding_floor(films, seconds):
    """The processor cores that decoding all the films for that long in real time takes, nothing shown."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    _finish(_decode(films, seconds), 10 * seconds + 60)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) / seconds


def memory_floor(films):
    """The MiB that decoding all the films in real time holds, nothing shown, each on one thread, since each further one
    holds frames of its own."""
    seconds = 8
    decoders = _decode(films, seconds, "-threads", "1")
    time.sleep(seconds / 2)
    mebibytes = proportional_set_size([decoder.pid for decoder in decoders])
    _finish(decoders, 60)
    return mebibytes


def _decode(films, seconds, *options):
    return [start(["ffmpeg", "-nostdin", "-loglevel", "error", *options, "-re", "-t", str(seconds), "-i", film, "-f", "null", "-"])
            for film in films]


def _finish(decoders, patience):
    for decoder in decoders:
        if decoder.wait(patience) != 0:
            raise RuntimeError("ffmpeg could not decode a film")


def seeking_floor(film, seconds):
    """How long decoding takes from the key frame before that place to the place itself, on all cores and without what no
    other picture needs."""
    began = time.monotonic()
    command = ["ffmpeg", "-nostdin", "-loglevel", "error", "-threads", str(os.cpu_count() + 1), "-skip_frame", "noref",
               "-ss", str(seconds), "-i", film, "-an", "-frames:v", "1", "-f", "null", "-"]
    subprocess.run(command, check=True, timeout=60, stdin=subprocess.DEVNULL)
    return time.monotonic() - began
