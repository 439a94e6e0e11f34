"""What all measures share: the stage, the program to be measured, where films are kept, and how long to measure."""

import os

from accounting import Meter
from display import Display
from ours import Ours
from rivals import RIVALS
from stage import Stage

GREY = 0x808080  # of the bare screen, which no window is at its start


class Ground:
    def __init__(self, program_path, films_folder, out_folder, rounds, seconds, is_smoke=False, is_full=False):
        self.program_path = os.path.abspath(program_path)
        self.films_folder = films_folder
        self.rounds = rounds
        self.seconds = seconds
        self.is_smoke = is_smoke
        self.is_full = is_full
        self.runs = {}  # by the film's name, what a measure left for another one that would let the same play again
        self._out_folder = out_folder
        self._logs = {}
        self.stage = Stage(os.path.join(out_folder, "stage.log"))
        # Players that run as another user are to reach the sound server too.
        os.chmod(self.stage.environment["PULSE_RUNTIME_PATH"], 0o711)
        # Listening costs the sound server something; who wants to listen does so for as long as necessary.
        self.stage.sound.close()
        self.display = Display(self.stage.screen.display)
        self.display.paint_root(GREY)

    def close(self):
        self.display.close()
        self.stage.close()
        for log in self._logs.values():
            log.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def log(self, name):
        """A file for what a program says."""
        if name not in self._logs:
            self._logs[name] = open(os.path.join(self._out_folder, f"{name}.log"), "w", encoding="utf-8")
        return self._logs[name]

    def ours(self):
        return Ours(self.program_path, self)

    def contestants(self, number):
        """Those who play in the round `number`, in an order that changes from round to round, so that none of them
        always follows the same other one."""
        makers = [self.ours] + [lambda kind=kind: kind(self) for kind in RIVALS]
        first = number % len(makers)
        return [make() for make in makers[first:] + makers[:first]]

    @property
    def film_seconds(self):
        """How long films have to be to be still playing when a measurement that begins late is over, and to have every
        second that a finger on a slider comes to."""
        return max(50, -(-(28 + self.seconds) // 10) * 10)

    def servers(self):
        """The X server and the sound server: what they do, they do for the one who plays."""
        return {self.stage.screen.process_id, self.stage.sound_server.process_id}

    def meters(self, contestant):
        """For the CPU of a contestant alone, and for that of the servers."""
        return Meter(contestant.processes), Meter(self.servers)
