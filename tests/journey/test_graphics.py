"""The films drawn by OpenGL, as on every device with a graphics processor. Here Mesa's rasteriser stands in for one."""

import numpy

from journey import FILM_A, FILM_B, Journey
from processes import until

SOFTWARE = {"QT_QUICK_BACKEND": "software"}
OPENGL = {"QSG_RHI_BACKEND": "opengl"}
PHONE = (390, 844)
ASIDE = (1270, 890)


class Graphics(Journey):
    def test_opengl_shows_both_films_to_the_pixel_as_drawing_without_it_does(self):
        expected = self.all_looks(SOFTWARE)
        self.assertFalse(self.is_drawn_by_opengl())
        self.program.end()
        looks = self.all_looks(OPENGL)
        self.assertTrue(self.is_drawn_by_opengl())
        for what, look in looks.items():
            with self.subTest(what):
                self.assertEqual(look.shape, expected[what].shape)
                self.assertEqual(int((look != expected[what]).sum()), 0)

    def test_opengl_lets_go_of_a_film_that_is_closed(self):
        program = self.start(self.surroundings.new_home(FILM_A.title, FILM_B.title), QSG_INFO="1", **OPENGL)
        self.play(self.film1, FILM_A)
        self.play(self.film2, FILM_B)
        self.assert_still_plays(self.film1, FILM_A)
        self.film1.show_controls()
        program.press(self.film1.closing)
        self.film1.wait_for_view(lambda view: view.is_black, "an empty view")
        self.hear_nothing(self.film1)
        self.assert_still_plays(self.film2, FILM_B)
        self.play(self.film1, FILM_B)
        self.assert_still_plays(self.film2, FILM_B)
        program.terminate()
        self.assertEqual(program.exit_status(), 0)
        self.assertTrue(self.is_drawn_by_opengl())

    def all_looks(self, environment):
        """The pixels of both films' views, both paused at the same place: in the window as it opens, and as on a phone."""
        program = self.start(self.surroundings.new_home(FILM_A.title, FILM_B.title), QSG_INFO="1", **environment)
        looks = {}
        for film, clip in ((self.film1, FILM_A), (self.film2, FILM_B)):
            self.play(film, clip)
            self.stand_at_the_middle(film)
        self.screen.point_at(*ASIDE)
        for name, size in (("as it opens", None), ("as on a phone", PHONE)):
            if size is not None:
                self.screen.resize(program.window, *size)
                until(lambda: program.wait_for("Film 1").box[2] == size[0], "the window to be as narrow as a phone")
            for film in (self.film1, self.film2):
                looks[f"{name}, film {film.number}"] = self.steady_look(film)
        return looks

    def stand_at_the_middle(self, film):
        film.show_controls()
        self.program.press(film.playing)
        self.program.wait_for(film.paused)
        slider = self.program.wait_for(film.position)
        self.screen.drag(slider.at(0.2, 0.5), slider.at(0.5, 0.5))
        film.wait_for_view(lambda view: view.time is not None and 11 < view.time < 20, "the place")
        film.hide_controls()

    def steady_look(self, film):
        """Once nothing changes any more: controls fade away, and a picture is made anew for another size."""
        looks = []

        def is_steady():
            looks.append(film.view().picture.pixels)
            return len(looks) > 5 and all(numpy.array_equal(look, looks[-1]) for look in looks[-5:])

        until(is_steady, f"film {film.number} to stand still", pause=0.1)
        return looks[-1]

    def is_drawn_by_opengl(self):
        return any("Using QRhi with backend OpenGL" in line for line in self.program.errors)
