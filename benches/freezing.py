"""Measures of whether the app answers while it works: its main loop is asked all the time."""

import math
import os
import socket
import statistics
import tempfile
import time

import films
from ours import TITLES
from pinging import Pings
from results import Check, Result
from track import SEEK_TARGETS, Track
from watching import wait_for_pictures

AFTERMATH = 1.0  # seconds for which an operation's consequences are looked at
LONGEST_WAIT = 0.016  # of one picture of a screen of 60 a second
DEAD_SERVER = "dead sound server"


class DeafSoundServer:
    """Lets programs connect and then says nothing, which is the worst that a sound server can do."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-deaf-")
        self.address = "unix:" + os.path.join(self._folder.name, "native")
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._socket.bind(self.address.removeprefix("unix:"))
        self._socket.listen(32)

    def close(self):
        self._socket.close()
        self._folder.cleanup()


class Operations:
    """Things done with film 1, each with the waits of the main loop meanwhile."""

    def __init__(self, ground, ours):
        self._ground = ground
        self._ours = ours
        self.waits = {}

    def _pinged(self, name, act):
        """The app is asked from just before the act until its consequences are over; what asks for them would be in the
        way, so the app is not driven by its accessibility meanwhile."""
        with Pings(self._ground.stage.screen.display, self._ours.program.window) as pings:
            time.sleep(0.1)
            act()
            time.sleep(AFTERMATH)
        self.waits.setdefault(name, []).extend(wait for _, wait in pings.waits)

    def load(self, name="loading"):
        self._ours.program.open_list()
        row = self._ours.program.row(self._ours.films[0], TITLES[0]).at(0.5, 0.5)
        place = self._ours.program.mark()
        self._pinged(name, lambda: self._ground.display.tap(row))
        self._ours.program.lines_up_to("setSlider", place, 30.0)
        wait_for_pictures(self._ground.stage.screen, self._ours.boxes[:1])

    def seek(self):
        track = Track(self._ground, self._ours)
        for target in SEEK_TARGETS:
            begin, finish = track.show(), track.place_of(target)
            self._pinged("seeking", lambda begin=begin, finish=finish: self._ground.display.drag(begin, finish))

    def close(self, name="closing"):
        self._ours.films[0].show_controls()
        button = self._ours.program.wait_for(self._ours.films[0].closing).at(0.5, 0.5)
        self._pinged(name, lambda: self._ground.display.tap(button))
        self._ours.program.wait_until_gone(self._ours.films[0].closing, 30.0)


def _stalls(ground, film, waits):
    ours = ground.ours()
    try:
        ours.start(film.pair(ground.films_folder))
        operations = Operations(ground, ours)
        operations.load()
        operations.seek()
        operations.close()
        _extend(waits, operations.waits)
    finally:
        ours.end()


def _stalls_without_sound(ground, film, waits):
    server = DeafSoundServer()
    ours = ground.ours()
    ours.environment = {"PULSE_SERVER": server.address}
    try:
        ours.start(film.pair(ground.films_folder))
        operations = Operations(ground, ours)
        operations.load(DEAD_SERVER)
        operations.close(DEAD_SERVER)
        _extend(waits, operations.waits)
    finally:
        ours.end()
        server.close()


def _extend(waits, more):
    for name, own in more.items():
        waits.setdefault(name, []).extend(own)


def percentile(values, part):
    """The least of the values that so many of them do not exceed."""
    return sorted(values)[max(0, math.ceil(len(values) * part) - 1)]


def stalls(ground):
    """The longest that 99 of 100 questions to the main loop wait while a film is loaded, sought in and closed"""
    film = films.rare_key_frames(ground.film_seconds)
    waits = {}
    for number in range(ground.rounds):
        _stalls(ground, film, waits)
        _stalls_without_sound(ground, film, waits)
        print(f"  round {number + 1}: " + ", ".join(f"{name} {percentile(own, 0.99) * 1000:.1f} ms"
                                                    for name, own in waits.items()), flush=True)
    checks = [Check(f"{name}, s", percentile(own, 0.99), LONGEST_WAIT) for name, own in waits.items()]
    details = {name: {"questions": len(own), "median": round(statistics.median(own), 5), "longest": round(max(own), 5)}
               for name, own in waits.items()}
    return Result("stalls", stalls.__doc__, "s", max(check.value for check in checks), checks=checks, details=details)
