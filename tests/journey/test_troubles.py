"""What goes wrong with one film leaves the other one alone."""

import os

from journey import (CUT_IN_ITS_HEADER, CUT_IN_ITS_MIDDLE, FILM_A, FILM_B, NO_FILM, PROTECTED_FILM, SHORT_FILM,
                     Journey)
from processes import until


class Troubles(Journey):
    def setUp(self):
        super().setUp()
        self.share()

    def test_a_protected_film_is_refused_and_the_one_that_plays_goes_on(self):
        self.play(self.film1, FILM_A)
        place = self.program.choose(self.film1, PROTECTED_FILM.title)
        self.program.wait_for("Attenction")
        self.assertEqual(self.program.lines_up_to("passoVideo video1 : true", place)[1:],
                         ["tabella 1", "finito", "passoVideo video1 : true"])
        self.hear(self.film1, FILM_A)
        self.wait_until_anything_moves(self.film1)
        self.program.press("OK")
        self.program.wait_until_gone("Attenction")
        self.assertNotIn("posso far partire il video", self.program.lines[place:])
        self.assert_still_plays(self.film1, FILM_A)

    def test_files_that_are_no_films_do_no_harm(self):
        self.play(self.film2, FILM_B)
        for title in (CUT_IN_ITS_HEADER, NO_FILM):
            self.program.open_list()
            self.program.row(self.film1, FILM_A.title)
            table = self.program.wait_for("Videos for film 1")
            row = next((row for row in table.children() if row.name.startswith(title)), None)
            if row is None:
                self.program.press("Close")
            else:
                place = self.program.mark()
                self.program.tap(row)
                self.program.lines_up_to("Error getting the audio file", place)
            self.program.wait_until_gone("Videos for film 1")
            self.assert_still_plays(self.film2, FILM_B)
            self.assertIsNone(self.film1.view().border)

    def test_a_film_that_breaks_off_leaves_the_other_alone(self):
        self.play(self.film2, FILM_B)
        self.program.choose(self.film1, CUT_IN_ITS_MIDDLE)
        self.film1.wait_for_clip(FILM_A)
        self.hear(self.film1, FILM_A)
        self.hear_nothing(self.film1)
        self.assert_still_plays(self.film2, FILM_B)

    def test_the_end_of_a_film_closes_it(self):
        self.play(self.film1, FILM_A)
        place = self.program.choose(self.film2, SHORT_FILM.title)
        self.film2.wait_for_clip(SHORT_FILM)
        started = self.program.lines.index("faccio partire video 2", place)
        self.film2.wait_for_view(lambda view: view.border is None, "the film to be closed")
        self.program.lines_up_to("rimuovo il video 1", place)
        lines = self.program.lines[self.program.lines.index("setSlider", started) :]
        self.assertEqual([line for line in lines if line != "------------------------ Done"], [
            "setSlider", "toccatoFilm2", "2     la vista non è stata rimossa",
            "ChiudiFilm2", "-------------- chiudiFilm chiudo il film ",
            "blocco timer", "blocco tutto", "rimuovo il video 1",
        ])
        self.hear_nothing(self.film2)
        self.assert_still_plays(self.film1, FILM_A)

    def test_without_a_sound_server_the_picture_plays(self):
        program = self.start(self.surroundings.new_home(FILM_A.title), **self.stage.sound_server.environment_without_server)
        program.choose(self.film1, FILM_A.title)
        self.film1.wait_for_clip(FILM_A)
        self.wait_until_it_moves(self.film1)
        self.film1.show_controls()
        program.press(self.film1.playing)
        program.wait_for(self.film1.paused)
        self.assert_stands_still(self.film1)
        program.terminate()
        self.assertEqual(program.exit_status(), 0)


class StartAndEnd(Journey):
    def setUp(self):
        super().setUp()
        self.foreign_streams = set(self.stage.sound_server.streams())
        self.home = self.surroundings.new_home(FILM_A.title, FILM_B.title)
        self.start(self.home)
        self.play(self.film1, FILM_A)

    def test_a_second_start_brings_the_first_window_forward(self):
        window = self.program.window
        cover = self.screen.cover()
        self.addCleanup(cover.close)
        self.film1.wait_for_view(lambda view: view.border is None, "the cover")

        second = self.surroundings.start(self.home)
        self.addCleanup(second.end)
        self.assertEqual(second.exit_status(), 0)
        self.assertEqual(second.lines, [])
        until(lambda: self.screen.active_window() == window, "the first window to come forward")
        self.assert_still_plays(self.film1, FILM_A)

    def test_closing_the_window_while_both_films_play_ends_the_program(self):
        self.play(self.film2, FILM_B)
        self.assertNotEqual(self.own_streams(), set())
        self.screen.close_window(self.program.window)
        self.check_the_end(self.program)

    def test_a_termination_signal_while_both_films_play_ends_the_program(self):
        self.play(self.film2, FILM_B)
        self.program.terminate()
        self.check_the_end(self.program)

    def own_streams(self):
        return set(self.stage.sound_server.streams()) - self.foreign_streams

    def check_the_end(self, program):
        """Nothing is left but what the next start needs."""
        self.assertEqual(program.exit_status(), 0)
        until(lambda: not program.left_running(), lambda: f"no process left, but {commands(program.left_running())}")
        self.assertEqual(self.own_streams(), set())
        for film in (self.film1, self.film2):
            self.hear_nothing(film)
        self.assertEqual(self.home.defaults, {"primoAvvio": "2", "primoAvvio2": "2"})


def commands(process_ids):
    found = []
    for process_id in process_ids:
        try:
            with open(os.path.join("/proc", str(process_id), "cmdline"), "rb") as file:
                found.append(file.read().replace(b"\0", b" ").decode())
        except OSError:
            continue
    return found
