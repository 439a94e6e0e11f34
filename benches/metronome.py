"""Flashes and clicks at instants that are known beforehand: what a measurement of the two makes of them is its own error."""

import ctypes
import threading
import time

import numpy

from sound import RATE

BLACK, WHITE = 0x000000, 0xFFFFFF
BLOCK = RATE // 200  # frames that are written at a time
HELD_BY_THE_SERVER = 0.03  # seconds
LASTING = 0.05
BYTES_PER_FRAME = 8  # two channels of four bytes
PLAYBACK, FLOAT32LE = 1, 5  # of pa_stream_direction_t and pa_sample_format_t


class _SampleSpec(ctypes.Structure):
    """pa_sample_spec."""

    _fields_ = [("format", ctypes.c_int), ("rate", ctypes.c_uint32), ("channels", ctypes.c_uint8)]


class _BufferAttributes(ctypes.Structure):
    """pa_buffer_attr: in bytes, and -1 for what the server likes."""

    _fields_ = [(name, ctypes.c_uint32) for name in ("maxlength", "tlength", "prebuf", "minreq", "fragsize")]


class _Playing:
    """A stream that plays on, of which every sample's instant is asked of the server before it is written."""

    def __init__(self, server):
        self._simple = ctypes.CDLL("libpulse-simple.so.0")
        self._simple.pa_simple_new.restype = ctypes.c_void_p
        self._simple.pa_simple_get_latency.restype = ctypes.c_uint64
        self._simple.pa_simple_get_latency.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
        self._simple.pa_simple_write.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_size_t, ctypes.c_void_p]
        self._simple.pa_simple_free.argtypes = [ctypes.c_void_p]
        spec = _SampleSpec(FLOAT32LE, RATE, 2)
        held = _BufferAttributes(-1, int(HELD_BY_THE_SERVER * RATE) * BYTES_PER_FRAME, -1, -1, -1)
        self._stream = self._simple.pa_simple_new(
            server.environment["PULSE_SERVER"].encode(), b"metronome", PLAYBACK, None, b"clicks", ctypes.byref(spec), None,
            ctypes.byref(held), None)
        if not self._stream:
            raise RuntimeError("the sound server takes no stream")

    def instant_of_next(self):
        return time.monotonic() + self._simple.pa_simple_get_latency(self._stream, None) / 1e6

    def write(self, samples):
        stereo = numpy.repeat(samples.astype(numpy.float32), 2).tobytes()
        self._simple.pa_simple_write(self._stream, stereo, len(stereo), None)

    def close(self):
        self._simple.pa_simple_free(self._stream)


class Metronome:
    """Flashes in the box of the screen and clicks on both sides at `instants` (monotonic)."""

    def __init__(self, ground, box, instants):
        self._display = ground.display
        self._window = ground.display.open_window(box)
        self._instants = instants
        self._playing = _Playing(ground.stage.sound_server)
        self._threads = [threading.Thread(target=run, daemon=True) for run in (self._flash, self._click)]
        for thread in self._threads:
            thread.start()

    def _flash(self):
        for instant in self._instants:
            for moment, colour in ((instant, WHITE), (instant + LASTING, BLACK)):
                time.sleep(max(0.0, moment - time.monotonic()))
                self._display.paint_window(self._window, colour)

    def _click(self):
        waiting = list(self._instants)
        clicked = RATE  # frames since the newest click began
        while waiting or clicked < RATE:
            first = self._playing.instant_of_next()
            while waiting and waiting[0] < first:
                waiting.pop(0)  # the server was too late for this one
            counters = clicked + numpy.arange(BLOCK)
            if waiting and waiting[0] < first + BLOCK / RATE:
                begin = int((waiting.pop(0) - first) * RATE)
                counters[begin:] = numpy.arange(BLOCK - begin)
            self._playing.write(numpy.where(counters < LASTING * RATE, 0.8 * numpy.cos(2 * numpy.pi * 1000 / RATE * counters), 0))
            clicked = counters[-1] + 1

    def close(self):
        """Returns once the last instant is over."""
        for thread in self._threads:
            thread.join()
        self._playing.close()
        self._display.close_window(self._window)
