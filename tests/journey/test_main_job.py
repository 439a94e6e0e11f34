"""A film for each ear, from the first start on, and every line of the console on the way."""

from journey import FILM_A, FILM_B, SHORT_FILM, Journey

LIST_OPENS = ["listaVideo", "posso caricare la lista :", "prepare", "segue"]
HINT = "Click on this and select your videos"
DONE = "------------------------ Done"


class MainJob(Journey):
    def test_only_the_first_start_shows_the_hint(self):
        home = self.surroundings.new_home(FILM_A.title)
        program = self.start(home)
        program.wait_for(HINT)
        self.assertEqual(program.lines[:2], ["viewDidAppear", "tutorial"])
        program.open_list()
        program.wait_until_gone(HINT)
        program.terminate()
        self.assertEqual(program.exit_status(), 0)

        again = self.start(home)
        again.wait_for("Choose videos")
        self.assertIsNone(again.find(HINT))
        self.assertCountEqual(again.lines, ["viewDidAppear", "posso accedere alla libreria"])

    def test_two_films_each_on_its_own_side(self):
        program = self.start(self.surroundings.new_home(FILM_A.title, FILM_B.title, SHORT_FILM.title))
        self.check_list_lines(program)
        self.check_film_1_alone(program)
        self.check_film_2_beside_it(program)
        self.check_closing(program)
        self.check_a_film_in_the_place_of_another(program)

    def check_list_lines(self, program):
        place = program.mark()
        program.open_list()
        program.row(self.film2, SHORT_FILM.title)
        lines = program.lines[place:]
        rows = ["durataVideo : 00:00:30", "durataVideo : 00:00:30", "durataVideo : 00:00:04"]
        self.assertEqual(lines, LIST_OPENS + ["numero video : 3"] + rows + rows)

    def check_film_1_alone(self, program):
        place = program.mark()
        program.tap(program.row(self.film1, FILM_A.title))
        self.film1.wait_for_clip(FILM_A)
        sound = self.hear(self.film1, FILM_A)
        self.assertTrue(sound.is_silent(self.film2.channel), str(sound))
        self.assertIsNone(self.film2.view().border)
        program.wait_for(self.film1.playing)
        self.assertEqual(program.lines_up_to(DONE, place), [
            "You tapped cell number 0.", "tabella 1", "finito",
            "passoVideo video1 : true", "posso far partire il video", "faccio partire video 1",
            "----- ChiudiFilm1", "-------------- chiudiFilm chiudo il film ",
            "setSlider", "toccatoFilm1", "1     la vista non è stata rimossa",
            DONE,
        ])
        program.wait_until_gone(self.film1.playing)

    def check_film_2_beside_it(self, program):
        place = program.choose(self.film2, FILM_B.title)
        self.film2.wait_for_clip(FILM_B)
        self.hear(self.film2, FILM_B)
        self.assert_still_plays(self.film1, FILM_A)
        together = self.sound.take(1.0)
        for film, other in ((self.film1, FILM_B), (self.film2, FILM_A)):
            foreign = max(together.tone(film.channel, other.tone_at(time)) for time in range(0, 30, 5))
            own = together.peak(film.channel)
            self.assertLess(foreign, own * 1e-4, f"film {film.number} is to be heard on one side only: {together}")
        self.assertEqual(program.lines_up_to(DONE, place), [
            "You tapped cell number 1.", "tabella 2", "finito",
            "passoVideo video1 : false", "posso far partire il video", "faccio partire video 2",
            "ChiudiFilm2", "-------------- chiudiFilm chiudo il film ",
            "setSlider", "toccatoFilm2", "2     la vista non è stata rimossa",
            DONE,
        ])

    def check_closing(self, program):
        self.film1.show_controls()
        place = program.mark()
        program.tap(program.wait_for(self.film1.closing))
        self.film1.wait_for_view(lambda view: view.border is None, "an empty view")
        program.wait_until_gone(self.film1.closing)
        self.assertEqual(program.lines[place:], [
            "-------------- chiudiFilm chiudo il film ", "blocco timer", "blocco tutto", "rimuovo il video 1",
        ])
        self.hear_nothing(self.film1)
        self.assert_still_plays(self.film2, FILM_B)
        program.lines_up_to(DONE, place)  # the timer of the controls was left running

    def check_a_film_in_the_place_of_another(self, program):
        place = program.choose(self.film2, FILM_A.title)
        self.film2.wait_for_clip(FILM_A)
        sound = self.hear(self.film2, FILM_A)
        self.assertTrue(sound.is_silent(self.film1.channel), str(sound))
        self.assertEqual(program.lines_up_to(DONE, place), [
            "You tapped cell number 0.", "tabella 2", "finito",
            "passoVideo video1 : false", "posso far partire il video", "faccio partire video 2",
            "ChiudiFilm2", "-------------- chiudiFilm chiudo il film ",
            "blocco timer", "blocco tutto", "rimuovo il video 1",
            "setSlider", "toccatoFilm2", "2     la vista non è stata rimossa",
            DONE,
        ])
