"""The controls of one film, by pointer and by keyboard, while the other film plays on undisturbed."""

from journey import FILM_A, FILM_B, Journey


class Controls(Journey):
    def setUp(self):
        super().setUp()
        self.share()
        self.play(self.film1, FILM_A)
        self.play(self.film2, FILM_B)

    def test_pausing_and_resuming(self):
        self.film1.show_controls()
        self.program.tap(self.program.wait_for(self.film1.playing))
        self.program.wait_for(self.film1.paused)
        self.hear_nothing(self.film1)
        self.assert_stands_still(self.film1)
        self.assert_still_plays(self.film2, FILM_B)
        stood_at = self.film1.view().time

        self.film1.key_on(self.film1.paused, "space")
        self.program.wait_for(self.film1.playing)
        self.hear(self.film1, FILM_A)
        resumed = self.film1.wait_for_view(lambda view: view.time is not None and view.time > stood_at, "the film to go on")
        self.assertLess(resumed.time, stood_at + 5, "the film goes on where it stood")

        self.film2.key_on(self.film2.playing, "Return")
        self.program.wait_for(self.film2.paused)
        self.hear_nothing(self.film2)
        self.assert_stands_still(self.film2)
        self.assert_still_plays(self.film1, FILM_A)

    def test_volume(self):
        before = self.sound.take(0.5)
        self.film1.show_controls()
        slider = self.program.wait_for(self.film1.volume)
        self.program.tap(slider, 0.5, 0.5)
        full = before.level(self.film1.channel)
        self.sound.until(lambda sound: 0.25 * full < sound.level(self.film1.channel) < 0.75 * full, "half the volume")
        self.assert_as_loud_as(self.film2, before)

        self.film1.key_on(self.film1.volume, "Home")
        self.hear_nothing(self.film1)
        self.assert_as_loud_as(self.film2, before)
        self.wait_until_it_moves(self.film1)

        self.film1.key_on(self.film1.volume, "End")
        self.hear(self.film1, FILM_A)
        self.assert_as_loud_as(self.film1, before)

    def assert_as_loud_as(self, film, before):
        expected = before.level(film.channel)
        self.sound.until(lambda sound: abs(sound.level(film.channel) - expected) < 0.03 * expected,
                         f"film {film.number} as loud as before ({expected:.4f})", seconds=0.5)

    def test_seeking(self):
        self.film1.show_controls()
        slider = self.program.wait_for(self.film1.position)
        place = self.program.mark()
        self.screen.drag(slider.at(0.2, 0.5), slider.at(0.7, 0.5))
        self.assertIn("muovitiDentroIlFilm", self.program.lines_up_to("muovitiDentroIlFilm", place))
        there = self.film1.wait_for_view(lambda view: view.time is not None and view.time > 17, "the end of the drag")
        self.assertLess(there.time, 27)
        self.hear_the_segment_that_is_seen(self.film1, FILM_A)
        self.assert_still_plays(self.film2, FILM_B)

        self.film1.key_on(self.film1.position, "Home")
        self.film1.wait_for_view(lambda view: view.time is not None and view.time < 4, "the beginning")
        self.hear_the_beginning(self.film1, FILM_A)
        self.assert_still_plays(self.film2, FILM_B)

    def test_seeking_while_paused_shows_the_place_and_stays_silent(self):
        self.film2.show_controls()
        self.program.press(self.film2.playing)
        self.program.wait_for(self.film2.paused)
        self.hear_nothing(self.film2)
        slider = self.program.wait_for(self.film2.position)
        self.screen.drag(slider.at(0.2, 0.5), slider.at(0.5, 0.5))
        self.film2.wait_for_view(lambda view: view.time is not None and 11 < view.time < 20, "the place")
        self.hear_nothing(self.film2)
        self.assert_stands_still(self.film2)
