"""This program as one of those that play: two films in two views of the size that the others' have."""

import os
import tempfile

from gi.repository import GLib

from accounting import family
from films import link_or_copy
from processes import until
from program import Film, Home, Program
from watching import VIEW_HEIGHT, VIEW_WIDTH, picture_in, wait_for_pictures

BAR_HEIGHT = 56
TITLES = ("first", "second")


class Ours:
    """This program, driven as a user drives it."""

    name = "ours"

    def __init__(self, path, ground):
        self._ground = ground
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-bench-")
        self._path = path
        self.home = None
        self.environment = {}  # what the program is to find in it beside what any session has
        self.program = None
        self.films = []

    def start(self, paths):
        """Starts it with these films in its library, and waits until it is ready for its user."""
        self.settle_in(paths)
        self.launch()
        self.program.wait_until_ready()

    def settle_in(self, paths):
        """Makes the home: the films, and where the window was left."""
        self.home = Home(self._folder.name)
        for path, title in zip(paths, TITLES):
            link_or_copy(path, os.path.join(self.home.videos, title + ".mp4"))
        state = os.path.join(self.home.environment["XDG_STATE_HOME"], "quillop")
        os.makedirs(state, exist_ok=True)
        with open(os.path.join(state, "window.ini"), "w", encoding="ascii") as file:
            file.write(f"[window]\ngeometry=@Rect(0 0 {2 * VIEW_WIDTH} {VIEW_HEIGHT + BAR_HEIGHT})\nfullScreen=false\n")

    def launch(self):
        self.program = Program(self._path, self._ground.stage, self.home, self.environment)
        self.films = [Film(self.program, 1), Film(self.program, 2)]

    def play(self, paths):
        """Starts it and has both films played, until nothing but the films is to be seen."""
        self.start(paths)
        self.choose_both()
        wait_for_pictures(self._ground.stage.screen, self.boxes)
        for film in self.films:
            self.program.wait_until_gone(film.closing, 30.0)

    def choose(self, film, title):
        place = self.program.choose(film, title)
        self.program.lines_up_to("setSlider", place, 30.0)
        self.program.wait_until_gone("Videos for film 2")

    def choose_both(self):
        for film, title in zip(self.films, TITLES):
            self.choose(film, title)

    def pause(self, film):
        """Until nothing but the picture that stands still is to be seen."""
        self._press(film, film.playing)
        self.program.wait_for(film.paused)
        self.program.wait_until_gone(film.closing, 30.0)

    def resume(self, film):
        self._press(film, film.paused)

    def close(self, film):
        self._press(film, film.closing)
        self.program.wait_until_gone(film.closing, 30.0)

    def _press(self, film, name):
        """Presses one of the film's controls, which hide themselves again and again."""
        def pressed():
            node = self.program.find(name)
            if node is None:
                film.tap()
                return False
            try:
                node.press()
                return True
            except GLib.Error:
                return False  # it hid itself meanwhile

        until(pressed, f"'{name}'", 30.0, pause=0.5)

    @property
    def boxes(self):
        """Where the views are. They have to be of the size that the others' have."""
        found = [tuple(self.program.wait_for(f"Film {film.number}").box) for film in self.films]
        for box in found:
            if abs(box[2] - VIEW_WIDTH) > 2 or abs(box[3] - VIEW_HEIGHT) > 2:
                raise RuntimeError(f"a view is {box[2]}x{box[3]} instead of {VIEW_WIDTH}x{VIEW_HEIGHT}")
        return [picture_in(box) for box in found]

    def processes(self):
        return family(self.program.left_running())

    def end(self):
        if self.program is not None:
            self.program.end()
        self._folder.cleanup()
