"""Out of sight, both films are paused and silent, and stay so; while one plays, the display stays lit."""

from desktop import StandInDesktop
from journey import FILM_A, FILM_B, SHORT_FILM, Journey
from processes import until

BACKGROUND = ["applicationDidEnterBackground", "viewWillDisappear metto in pausa i due player"]


class OnADesktop(Journey):
    """A program that has the services of a desktop around it."""

    def setUp(self):
        super().setUp()
        self.desktop = StandInDesktop(self.surroundings.stand_in_desktop, self.stage)
        self.addCleanup(self.desktop.close)
        home = self.surroundings.new_home(FILM_A.title, FILM_B.title, SHORT_FILM.title)
        home.know_the_app()
        self.start(home, **self.desktop.environment)
        self.desktop.wait_until_followed()


class Background(OnADesktop):
    def play_both(self):
        for film, clip in ((self.film1, FILM_A), (self.film2, FILM_B)):
            self.play(film, clip)
            film.hide_controls()

    def resume_both(self):
        for film in (self.film1, self.film2):
            film.show_controls()
            self.program.press(film.paused)
            self.program.wait_for(film.playing)
            film.hide_controls()

    def check_entry(self, place):
        """One entry into the background: the lines of one, and both films silent."""
        self.program.lines_up_to(BACKGROUND[-1], place)
        self.hear_nothing_of_both()
        self.assertEqual(self.program.lines[place:], BACKGROUND)

    def hear_nothing_of_both(self):
        channels = self.film1.channel, self.film2.channel
        self.sound.until(lambda sound: all(map(sound.is_silent, channels)), "silence of both films")
        later = self.sound.take(0.5)
        self.assertTrue(all(map(later.is_silent, channels)), str(later))

    def check_still_paused(self):
        """In sight again, and nothing goes on by itself."""
        self.hear_nothing_of_both()
        for film in (self.film1, self.film2):
            self.assert_stands_still(film)
            film.show_controls()
            self.program.wait_for(film.paused)

    def test_minimised_it_pauses_both_films_and_shown_again_it_leaves_them_paused(self):
        self.play_both()
        window, place = self.program.window, self.program.mark()
        self.minimise(window)
        self.check_entry(place)
        self.desktop.tell("lock")
        self.assert_nothing_is_said_for_a_while(self.program, 1.0)  # it is in the background already
        self.desktop.tell("unlock")
        self.assert_nothing_is_said_for_a_while(self.program, 1.0)
        self.show(window)
        self.assert_nothing_is_said_for_a_while(self.program, 1.0)
        self.check_still_paused()

    def minimise(self, window):
        self.screen.minimise(window)
        until(lambda: not self.program.is_in_sight, "the window to be minimised")

    def show(self, window):
        self.screen.bring_back(window)
        until(lambda: self.program.is_in_sight, "the window to be shown again")

    def test_lock_screen_saver_and_sleep_are_one_entry_each(self):
        self.play_both()
        for begins, ends in (("lock", "unlock"), ("blank", "unblank"), ("sleep", "wake")):
            with self.subTest(begins):
                place = self.program.mark()
                self.desktop.tell(begins)
                self.check_entry(place)
                place = self.program.mark()
                self.desktop.tell(ends)
                self.assert_nothing_is_said_for_a_while(self.program, 0.5)
                for film in (self.film1, self.film2):
                    self.assert_stands_still(film)
                self.resume_both()

    def test_sleep_waits_until_the_films_are_paused(self):
        self.play_both()
        said = self.desktop.mark()
        self.desktop.tell("sleep")
        self.desktop.wait_for("sleep delays 0", said)
        self.program.lines_up_to(BACKGROUND[-1], 0)  # said before, but through another pipe
        self.assertEqual([line for line in self.program.lines if line in BACKGROUND], BACKGROUND)
        self.desktop.tell("wake")
        self.desktop.wait_for("sleep delays 1", said)  # asked for again, for the next time


class Blanking(OnADesktop):
    def test_the_display_is_kept_lit_exactly_while_a_film_plays(self):
        self.assertNotIn("awake 1", self.desktop.said())
        self.play(self.film1, FILM_A)
        self.desktop.wait_for("awake 1")
        said = self.desktop.mark()
        self.program.choose(self.film2, SHORT_FILM.title)
        self.film2.wait_for_clip(SHORT_FILM)
        self.film2.wait_for_view(lambda view: view.border is None, "the end of the short film")
        self.assertEqual(self.desktop.said(said), [], "one promise, as long as any film plays")
        self.film1.show_controls()
        self.program.press(self.film1.playing)
        self.desktop.wait_for("awake 0", said)
        self.program.press(self.film1.paused)
        self.desktop.wait_for("awake 1", said)
        said = self.desktop.mark()
        self.program.terminate()
        self.assertEqual(self.program.exit_status(), 0)
        self.desktop.wait_for("awake 0", said)
