"""Two people and a phone: everything by finger, in a Wayland session."""

from journey import FILM_A, FILM_B, Journey
from processes import until
from program import Program
from touch import TouchScreen


class Touch(Journey):
    def test_two_films_by_finger_on_a_phone_that_is_turned(self):
        self.take_phone(390, 844)
        self.choose_by_finger()
        self.drag_both_volumes_at_once()
        self.turn()
        self.turn()

    def test_two_films_by_finger_on_a_small_phone_that_is_turned(self):
        self.take_phone(360, 640)
        self.choose_by_finger()
        self.turn()
        self.drag_both_volumes_at_once()

    def take_phone(self, width, height):
        self.screen = TouchScreen(self.surroundings.touch_screen, self.stage, width, height)
        self.addCleanup(self.screen.close)
        home = self.surroundings.new_home(FILM_A.title, FILM_B.title)
        home.know_the_app()
        self.program = Program(self.surroundings.program_path, self.screen.stage_of(self.stage), home)
        self.addCleanup(self._check_complaints, self.program)
        self.addCleanup(self.program.end)
        self._meet_films()
        self.tap("Allow")
        self.program.wait_until_gone("Allow")

    def tap(self, name):
        self.program.tap(self.program.wait_for(name))

    def choose_by_finger(self):
        for film, clip in ((self.film1, FILM_A), (self.film2, FILM_B)):
            self.tap("Choose videos")
            self.program.tap(self.program.row(film, clip.title))
            film.wait_for_clip(clip)
            self.hear(film, clip)

    def turn(self):
        """Both films go on, each in its half."""
        self.screen.turn()
        for film, clip in ((self.film1, FILM_A), (self.film2, FILM_B)):
            film.wait_for_clip(clip)
            self.assert_still_plays(film, clip)
        first, second = (self.program.wait_for(f"Film {film.number}").box for film in (self.film1, self.film2))
        beside = 0 if self.screen.size[0] > self.screen.size[1] else 1
        self.assertAlmostEqual(first[beside] + first[beside + 2], second[beside], delta=1)
        self.assertAlmostEqual(second[beside] + second[beside + 2], self.screen.size[beside], delta=1)

    def drag_both_volumes_at_once(self):
        """Each of the two people has a finger on their own slider."""
        for film in (self.film1, self.film2):
            film.show_controls()
        sliders = [self.program.wait_for(film.volume) for film in (self.film1, self.film2)]
        self.screen.drag_together(*((slider.at(0.9, 0.5), slider.at(0.4, 0.5)) for slider in sliders))
        for film, slider in zip((self.film1, self.film2), sliders):
            until(lambda slider=slider: 0.2 < slider.value < 0.6, lambda: f"film {film.number} to be softer")
