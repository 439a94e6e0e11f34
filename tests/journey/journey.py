"""What every journey starts from: the stage, the clips, and a program with two empty films."""

import os
import re
import tempfile
import unittest

import clips
from processes import until
from program import Film, Home, Program
from screenreader import ScreenReader

FILM_A = clips.Clip("Film A", "white", 300, 30)
FILM_B = clips.Clip("Film B", "orange", 1000, 30)
SHORT_FILM = clips.Clip("Film C, four seconds", "green", 2000, 4)
PROTECTED_FILM = clips.Clip("Film D, protected", "green", 2000, 30)
CUT_IN_ITS_HEADER = "Film E, cut off in its header"
NO_FILM = "Film F, no film at all"
CUT_IN_ITS_MIDDLE = "Film G, cut off in its middle"

STAND_IN_DESKTOP = "quillop-stand-in-desktop"
TOUCH_SCREEN = "quillop-touch-screen"

# What Qt Quick and GLib say on standard error when a program of theirs is wrong.
COMPLAINT = re.compile(r"TypeError|ReferenceError|Binding loop|-CRITICAL|-WARNING|Fatal error")


def make_clips(folder):
    """Writes the files that journeys play into this folder, those of them that are not there."""
    def path(title):
        return os.path.join(folder, "clips", title + ".mp4")

    for clip in (FILM_A, FILM_B, SHORT_FILM):
        clip.write(path(clip.title))
    PROTECTED_FILM.write(path(PROTECTED_FILM.title), *clips.ENCRYPTED)
    with open(path(FILM_A.title), "rb") as file:
        whole = file.read()
    for title, size in ((CUT_IN_ITS_HEADER, 3000), (CUT_IN_ITS_MIDDLE, len(whole) // 5)):
        with open(path(title), "wb") as file:
            file.write(whole[:size])
    with open(path(NO_FILM), "w", encoding="ascii") as file:
        file.write("This is a letter, not a film.\n" * 100)


class Surroundings:
    """What lasts over many journeys: where the program is, the stage, the clips in `folder`, and the program that many
    share."""

    def __init__(self, program_path, stage, folder, root=None):
        self.program_path = os.path.abspath(program_path)
        self.root = root
        self.stage = stage
        self.folder = folder
        self._homes = tempfile.TemporaryDirectory(prefix="quillop-homes-", dir=folder)
        self._shared = None
        self._screen_reader = None

    def close(self):
        if self._shared is not None:
            self._shared.end()
        if self._screen_reader is not None:
            self._screen_reader.close()
        self._homes.cleanup()

    def clip_path(self, title):
        return os.path.join(self.folder, "clips", title + ".mp4")

    def new_home(self, *titles):
        """A home with these films in its videos folder; without any named, all of them."""
        home = Home(tempfile.mkdtemp(dir=self._homes.name))
        whole = [clip.title for clip in (FILM_A, FILM_B, SHORT_FILM, PROTECTED_FILM)]
        for title in titles or whole + [CUT_IN_ITS_HEADER, NO_FILM, CUT_IN_ITS_MIDDLE]:
            home.add(self.clip_path(title), title + ".mp4")
        return home

    def start(self, home, **environment):
        return Program(self.program_path, self.stage, home, environment, self.root)

    def seen_from_here(self, path):
        """Where a file is that the program names by `path`."""
        return path if self.root is None else self.root + path

    @property
    def stand_in_desktop(self):
        """The path of the program that stands in for the desktop's services."""
        return self._beside_program(STAND_IN_DESKTOP, "desktop")

    @property
    def touch_screen(self):
        """The path of the program that is a screen to be touched."""
        return self._beside_program(TOUCH_SCREEN, "touch")

    def _beside_program(self, name, kind):
        """The path of a program that the tests bring: beside the app, or where it is built."""
        folder = os.path.dirname(self.program_path)
        places = (folder, os.path.join(folder, "..", "..", "tests", "host", kind))
        found = [place for place in places if os.path.exists(os.path.join(place, name))]
        if not found:
            raise FileNotFoundError(f"{name} is neither in {' nor in '.join(places)}")
        return os.path.join(found[0], name)

    @property
    def screen_reader(self):
        """The one client of the accessibility interface that all tests share."""
        if self._screen_reader is None:
            self._screen_reader = ScreenReader(self.stage.accessibility.address)
        return self._screen_reader

    def shared_program(self):
        """A program with all films in its list. Started anew when the last one is gone."""
        if self._shared is not None and not self._shared.is_running:
            self._shared.end()
            self._shared = None
        if self._shared is None:
            self._shared = self.start(self.new_home())
            self._shared.wait_until_ready()
        return self._shared


class Journey(unittest.TestCase):
    """One test. `surroundings` is set before the tests run."""

    surroundings = None
    maxDiff = None

    def setUp(self):
        self.stage = self.surroundings.stage
        self.screen = self.stage.screen
        self.sound = self.stage.sound
        self.program = None

    def start(self, home, **environment):
        """A program of the test's own, which ends with it, past all that a new user is asked."""
        self.begin_anew(home, **environment)
        self.program.wait_until_ready()
        return self.program

    def begin_anew(self, home, **environment):
        """A program of the test's own with nothing done to it yet: whatever a new user is asked is still open."""
        self.program = self.surroundings.start(home, **environment)
        self.addCleanup(self._check_complaints, self.program)
        self.addCleanup(self.program.end)
        self._meet_films()
        return self.program

    def share(self):
        """The program that many tests share, with empty films, which are empty again at the end."""
        self.program = self.surroundings.shared_program()
        self._meet_films()
        self.addCleanup(self._check_complaints, self.program)
        self.addCleanup(self._empty_films)

    def _check_complaints(self, program):
        complaints = [line for line in program.errors if COMPLAINT.search(line)]
        program.errors.clear()
        self.assertEqual(complaints, [])

    def _meet_films(self):
        self.film1, self.film2 = Film(self.program, 1), Film(self.program, 2)

    def _empty_films(self):
        if not self.program.is_running:
            return
        try:
            self._close_what_is_open()
        except BaseException:
            self.program.end()  # the next test gets a new one
            raise

    def _close_what_is_open(self):
        if self.program.find("OK") is not None:
            self.program.press("OK")
            self.program.wait_until_gone("OK")
        for film in (self.film1, self.film2):
            if film.view().border is not None:
                film.show_controls()
                self.program.press(film.closing)
                film.wait_for_view(lambda view: view.border is None, "an empty view")
            elif self.program.find(film.closing) is not None:
                film.tap()  # shown over an empty film, they would make the next load hide them
            self.program.wait_until_gone(film.closing)

    def play(self, film, clip):
        """Chooses a clip for a film and waits until it is seen and heard. Answers the console place of the choice."""
        place = self.program.choose(film, clip.title)
        film.wait_for_clip(clip)
        self.hear(film, clip)
        return place

    # What there is to hear

    def plays(self, sound, film, clip):
        """Whether the film's channel carries one of the clip's tones, loudest of all."""
        tones = [clip.tone_at(time) for time in range(0, clip.seconds, clips.SEGMENT_SECONDS)]
        heard = sound.strongest(film.channel)
        return any(abs(heard - tone) < 6 for tone in tones)

    def hear(self, film, clip):
        return self.sound.until(lambda sound: self.plays(sound, film, clip), f"{clip.title} to be heard")

    def hear_the_segment_that_is_seen(self, film, clip):
        def agrees(sound):
            segment = film.view().segment
            return segment is not None and abs(sound.strongest(film.channel) - clip.tone_at(5 * segment)) < 6

        self.sound.until(agrees, "the sound of the place that is seen")

    def hear_the_beginning(self, film, clip):
        self.sound.until(lambda sound: abs(sound.strongest(film.channel) - clip.tone_at(0)) < 6, "the beginning")

    def hear_nothing(self, film):
        """Until the film's channel is silent, and stays so: nothing but zeros."""
        self.sound.until(lambda sound: sound.is_silent(film.channel), f"silence of film {film.number}")
        later = self.sound.take(0.5)
        self.assertTrue(later.is_silent(film.channel), str(later))
        return later

    def assert_still_plays(self, film, clip):
        """It goes on to be heard, in its own channel, and its picture goes on to move."""
        self.hear(film, clip)
        self.wait_until_it_moves(film)
        self.assertEqual(film.view().border, clip.border)

    def wait_until_anything_moves(self, film):
        """The same where something that is over the film makes it unreadable."""
        first = film.view().picture.pixels
        until(lambda: (film.view().picture.pixels != first).any(), f"film {film.number} to show another picture")

    def wait_until_it_moves(self, film):
        first = film.wait_for_view(lambda view: view.time is not None, "a clip").time
        film.wait_for_view(lambda view: view.time is not None and view.time > first, "a moving picture")

    def assert_stands_still(self, film):
        """The picture does not change while the other film has the time to show several."""
        film.wait_for_view(lambda view: view.time is not None, "a clip")
        seen = [film.view().time for _ in range(3) if self.sound.take(0.2) is not None]
        self.assertEqual(len(set(seen)), 1, f"the picture moved: {seen}")

    def assert_nothing_is_said_for_a_while(self, program, seconds=2.0):
        """The console stays as it is while so much sound is played."""
        place = program.mark()
        self.sound.take(seconds)
        self.assertEqual(program.lines[place:], [])

    def report(self, folder):
        """Leaves what there is to see behind, for whoever looks into a failure."""
        os.makedirs(folder, exist_ok=True)
        base = os.path.join(folder, self.id().rsplit(".", 1)[-1])
        self.screen.picture().save(base + ".png")
        if self.program is None:
            return
        with open(base + ".txt", "w", encoding="utf-8") as file:
            file.write("Console:\n" + "\n".join(self.program.lines))
            file.write("\n\nStandard error:\n" + "\n".join(self.program.errors))
            if self.program.is_running:
                file.write("\n\nAccessibility tree:\n" + self.program.root.outline() + "\n")
