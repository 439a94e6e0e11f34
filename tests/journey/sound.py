"""A sound server of one's own that plays to nobody, and everything it plays as numbers."""

import math
import os
import subprocess
import tempfile
import threading
import time

import numpy

from processes import end, start, until

RATE = 48000
LEFT, RIGHT = 0, 1


class SoundServer:
    """PulseAudio with one device that swallows everything: two channels of floating-point samples."""

    def __init__(self, log=subprocess.DEVNULL):
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-sound-")
        socket = os.path.join(self._folder.name, "socket")
        # Clients are not to start a server of their own when this one is not there.
        client_configuration = os.path.join(self._folder.name, "client.conf")
        with open(client_configuration, "w", encoding="ascii") as file:
            file.write("autospawn = no\n")
        self.environment = {
            "PULSE_SERVER": f"unix:{socket}",
            "PULSE_CLIENTCONFIG": client_configuration,
            "PULSE_RUNTIME_PATH": self._folder.name,
            "PULSE_STATE_PATH": self._folder.name,
        }
        self._server = start(
            ["pulseaudio", "--system=false", "-n", "--daemonize=no", "--exit-idle-time=-1", "--realtime=no"]
            + ["--high-priority=no", "--use-pid-file=no", "--log-target=stderr"]
            + ["-L", f"module-null-sink sink_name=swallow format=float32le rate={RATE} channels=2 "
                     "channel_map=front-left,front-right"]
            + ["-L", f"module-native-protocol-unix auth-anonymous=1 socket={socket}"],
            env=dict(os.environ, HOME=self._folder.name, **self.environment), stdout=log, stderr=log,
        )
        # The socket is there before the server listens to it.
        until(lambda: self._ask("info").returncode == 0, "the sound server", pause=0.1)

    def streams(self):
        """The numbers of the sound streams that the server plays now."""
        done = self._ask("list", "short", "sink-inputs")
        done.check_returncode()
        return [line.split("\t")[0] for line in done.stdout.splitlines()]

    def _ask(self, *words):
        return subprocess.run(["pactl", *words], env=dict(os.environ, **self.environment), stdin=subprocess.DEVNULL,
                              timeout=20, text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)

    @property
    def process_id(self):
        return self._server.pid

    @property
    def environment_without_server(self):
        """For a program that is to find no sound server at all."""
        return dict(self.environment, PULSE_SERVER=f"unix:{self._folder.name}/nobody")

    def close(self):
        end(self._server)
        self._folder.cleanup()


class Recorder:
    """Takes down, from now on, all that the server plays."""

    BYTES_PER_FRAME = 8  # two channels of four bytes

    def __init__(self, server):
        self._samples = bytearray()  # the newest, as far back as somebody waits for
        self._forgotten = 0  # bytes before them
        self._takers = 0
        self._grown = threading.Condition()
        self._process = start(
            ["parec", "--device=swallow.monitor", "--format=float32le", f"--rate={RATE}", "--channels=2", "--raw"]
            + ["--channel-map=front-left,front-right", "--latency-msec=20"],
            env=dict(os.environ, **server.environment), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        )
        self._thread = threading.Thread(target=self._read, daemon=True)
        self._thread.start()
        self.take(0.05)

    def close(self):
        end(self._process)
        self._thread.join()
        self._process.stdout.close()

    def _read(self):
        while True:
            piece = os.read(self._process.stdout.fileno(), 65536)
            if not piece:
                return
            with self._grown:
                if self._takers == 0:
                    self._forgotten += len(self._samples)
                    self._samples.clear()
                self._samples += piece
                self._grown.notify_all()

    def take(self, seconds):
        """The next `seconds` of sound."""
        with self._grown:
            first = -(-self._heard() // self.BYTES_PER_FRAME) * self.BYTES_PER_FRAME
            last = first + int(seconds * RATE) * self.BYTES_PER_FRAME
            deadline = time.monotonic() + seconds * 2 + 10
            self._takers += 1
            try:
                while self._heard() < last:
                    if not self._grown.wait(max(0.0, deadline - time.monotonic())):
                        raise RuntimeError("the recorder of the sound server stands still")
            finally:
                self._takers -= 1
            taken = bytes(self._samples[first - self._forgotten:last - self._forgotten])
        return Sound(numpy.frombuffer(taken, numpy.float32).reshape(-1, 2))

    def _heard(self):
        """How many bytes there have been."""
        return self._forgotten + len(self._samples)

    def until(self, condition, what, deadline=10.0, seconds=0.25):
        """The first piece of sound that fulfils `condition`."""
        last = [None]

        def heard():
            last[0] = self.take(seconds)
            return last[0] if condition(last[0]) else None

        return until(heard, lambda: f"{what}; heard last: {last[0]}", deadline, pause=0)


class Sound:
    """A piece of stereo sound, full scale 1."""

    def __init__(self, samples):
        self.samples = samples

    def peak(self, channel):
        return float(numpy.abs(self.samples[:, channel]).max())

    def level(self, channel):
        """Root mean square."""
        return float(numpy.sqrt(numpy.mean(self.samples[:, channel].astype(numpy.float64) ** 2)))

    def is_silent(self, channel):
        """Exact zeros, every one."""
        return not self.samples[:, channel].any()

    def _spectrum(self, channel):
        # Blackman-Harris: what leaks from a loud tone to elsewhere is 92 dB below it.
        count = len(self.samples)
        turn = 2 * numpy.pi * numpy.arange(count) / count
        window = 0.35875 - 0.48829 * numpy.cos(turn) + 0.14128 * numpy.cos(2 * turn) - 0.01168 * numpy.cos(3 * turn)
        return numpy.abs(numpy.fft.rfft(self.samples[:, channel] * window)) / window.sum() * 2

    def strongest(self, channel):
        """The frequency of the loudest tone in hertz, 0 in silence."""
        spectrum = self._spectrum(channel)
        return float(numpy.argmax(spectrum)) * RATE / len(self.samples) if spectrum.any() else 0.0

    def tone(self, channel, frequency):
        """The amplitude of what sounds at `frequency`, give or take four steps of the spectrum."""
        spectrum = self._spectrum(channel)
        middle = int(round(frequency * len(self.samples) / RATE))
        return float(spectrum[max(middle - 4, 0) : middle + 5].max())

    def share_in_decibels(self, channel, foreign, own):
        """How far the tone `foreign` stays below the tone `own`; minus infinity where there is nothing of it."""
        amplitudes = self.tone(channel, foreign), self.tone(channel, own)
        if not all(amplitudes):
            return -math.inf if amplitudes[1] else math.inf
        return 20 * math.log10(amplitudes[0] / amplitudes[1])

    def __str__(self):
        return ", ".join(
            f"{name} {self.strongest(channel):.0f} Hz with a peak of {self.peak(channel):.4f}"
            for name, channel in (("left", LEFT), ("right", RIGHT))
        )
