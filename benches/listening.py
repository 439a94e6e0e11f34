"""What the sound server plays, with the time at which it played it."""

import os
import subprocess
import threading
import time

import numpy

from processes import end, start, until
from sound import RATE, Sound

AUDIBLE = 1e-3  # of full scale
LOUD = 0.25  # of the loudest
NEAR = 5.0  # seconds around a sample whose arrivals tell its instant
PROMPT = 5  # in a hundred of them arrive at once


class Listener:
    """Takes down, from its beginning on, what the sound server plays."""

    BYTES_PER_FRAME = 8  # two channels of four bytes

    def __init__(self, server):
        self._chunks = []  # (time of arrival, bytes)
        self._process = start(
            ["parec", "--device=swallow.monitor", "--format=float32le", f"--rate={RATE}", "--channels=2", "--raw"]
            + ["--channel-map=front-left,front-right", "--latency-msec=10"],
            env=dict(os.environ, **server.environment), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        )
        self._thread = threading.Thread(target=self._read, daemon=True)
        self._thread.start()
        until(lambda: self._chunks, "the sound server to be heard")

    def _read(self):
        while True:
            piece = os.read(self._process.stdout.fileno(), 65536)
            if not piece:
                return
            self._chunks.append((time.monotonic(), piece))

    def close(self):
        end(self._process)
        self._thread.join()
        self._process.stdout.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def _samples(self):
        whole = b"".join(piece for _, piece in self._chunks)
        return numpy.frombuffer(whole[: len(whole) // self.BYTES_PER_FRAME * self.BYTES_PER_FRAME],
                                numpy.float32).reshape(-1, 2)

    def first_sound(self, channel, since):
        """When the channel was first heard in what arrived after `since` (of the monotonic clock), or None."""
        chunks = list(self._chunks)
        offset = 0
        samples = self._samples()
        for arrived, piece in chunks:
            first, offset = offset, offset + len(piece)
            if arrived <= since:
                continue
            part = samples[first // self.BYTES_PER_FRAME : offset // self.BYTES_PER_FRAME, channel]
            heard = numpy.flatnonzero(numpy.abs(part) > AUDIBLE)
            if len(heard):
                return arrived - (len(part) - heard[0]) / RATE
        return None

    def sounds(self, channel, silence):
        """The instants (of the monotonic clock) at which something loud was heard after at least `silence` seconds without.

        The null sink hands on samples when the first of them is due, together with those of the next moment. So pieces arrive
        at the instant of their first sample or later; hardly any come early, which is when the sink begins anew."""
        samples = numpy.abs(self._samples()[:, channel])
        loud = numpy.flatnonzero(samples > LOUD * max(samples.max(initial=0.0), AUDIBLE))
        begins = loud[numpy.diff(loud, prepend=-int(silence * RATE) - 1) > silence * RATE]
        arrivals = numpy.array([arrived for arrived, _ in self._chunks])
        lengths = [len(piece) / self.BYTES_PER_FRAME / RATE for _, piece in self._chunks]
        origins = arrivals - numpy.cumsum([0.0] + lengths[:-1])
        return [self._origin_near(index / RATE, arrivals, origins) + index / RATE for index in begins]

    @staticmethod
    def _origin_near(seconds, arrivals, origins):
        """When the first sample of all was due, as those say that arrived around this one."""
        about = numpy.median(origins) + seconds
        near = origins[numpy.abs(arrivals - about) < NEAR]
        return float(numpy.percentile(near if len(near) else origins, PROMPT))

    def longest_silence(self, channel):
        """The longest time for which nothing was heard in the channel, in seconds."""
        samples = self._samples()[:, channel]  # of this moment; more of them come meanwhile
        audible = numpy.flatnonzero(numpy.abs(samples) > AUDIBLE)
        edges = numpy.concatenate(([-1], audible, [len(samples)]))
        return float(numpy.diff(edges).max() - 1) / RATE

    def sound(self):
        """All that was heard so far."""
        return Sound(self._samples())
