"""A phone's screen: a Wayland compositor that shows one window over all of it, and touches it."""

import copy
import os
import tempfile
import time

import numpy

from processes import Companion, until
from screen import Picture


class TouchScreen(Companion):
    """Takes the place of the virtual screen, with fingers for a pointer. Every touch passes through the Wayland socket."""

    def __init__(self, path, stage, width, height):
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-touch-")
        self._socket = os.path.join(self._folder.name, "wayland-0")
        self._pixels = os.path.join(self._folder.name, "pixels")
        super().__init__([path, "wayland-0", str(width), str(height)],
                         {**stage.environment, "XDG_RUNTIME_DIR": self._folder.name})
        until(lambda: "ready" in self.said(), "the touch screen")
        self.size = (width, height)

    def close(self):
        super().close()
        self._folder.cleanup()

    def stage_of(self, stage):
        """The same stage with this screen instead of its own."""
        other = copy.copy(stage)
        other.screen = self
        other.environment = {**stage.environment, "WAYLAND_DISPLAY": self._socket, "QT_QPA_PLATFORM": "wayland",
                             "XDG_SESSION_TYPE": "wayland"}
        del other.environment["DISPLAY"]
        return other

    def picture(self):
        """What the window shows now."""
        place = self.mark()
        self.tell("look", self._pixels)
        until(lambda: self.said(place)[-1:] and self.said(place)[-1].startswith("seen "), "a look at the screen", pause=0.005)
        width, height = (int(number) for number in self.said(place)[-1].split()[1:])
        pixels = numpy.fromfile(self._pixels, numpy.uint8).reshape(height, width, 4)
        return Picture(pixels[:, :, 2::-1].copy())  # in memory blue, green, red, unused

    def turn(self):
        """Turns the screen by a quarter."""
        self.size = self.size[::-1]
        self.tell("turn", *self.size)
        until(lambda: self.picture().pixels.shape[1::-1] == self.size, f"a window of {self.size}")

    def click(self, x, y):
        """A tap of one finger."""
        self.tell("down", 1, x, y)
        time.sleep(0.05)
        self.tell("up", 1)

    def drag_together(self, *ways, steps=8):
        """One finger for each of the ways ((x, y), (x, y)), all at once."""
        for finger, (begin, _) in enumerate(ways, 1):
            self.tell("down", finger, *begin)
        for step in range(1, steps + 1):
            time.sleep(0.02)
            for finger, (begin, finish) in enumerate(ways, 1):
                self.tell("move", finger, *(a + (b - a) * step / steps for a, b in zip(begin, finish)))
        for finger in range(1, len(ways) + 1):
            self.tell("up", finger)
