"""The whole of the app with nothing but the keyboard: from the first start to both films closed. Where the focus is can
always be seen."""

from journey import FILM_A, FILM_B, Journey
from processes import until

QUESTION = '"Quillop" would like to access your media library'
HINT = "Click on this and select your videos"
SWITCH = "Access to the media library"

FOCUSED = "object:state-changed:focused"


class KeyboardAlone(Journey):
    def setUp(self):
        super().setUp()
        self.screen.point_at(0, 0)  # out of the window
        self.reader = self.surroundings.screen_reader
        self.place = self.reader.mark()

    def test_from_the_first_start_to_both_films_closed(self):
        self.begin_anew(self.surroundings.new_home(FILM_A.title, FILM_B.title))
        self.answer_the_question()
        self.pass_the_tutorial()
        self.choose_the_second_film_of_the_list(self.film1)
        self.choose_by_typing(self.film2, "film a", FILM_A)
        self.pause_and_resume(self.film1, FILM_B)
        self.seek(self.film2, FILM_A)
        self.change_the_volume(self.film2, FILM_A)
        for film in (self.film1, self.film2):
            self.close(film)

    def test_the_menu_of_the_window_leads_to_the_settings(self):
        home = self.surroundings.new_home(FILM_A.title)
        home.know_the_app()
        program = self.start(home)
        program.wait_for("Choose videos")
        for keys in ("Menu", "shift+F10"):
            self.screen.key(keys)
            self.go_to("Settings")
            self.assertIsNone(program.find("Choose videos"), "nothing beneath the menu is in reach")
            self.screen.key("Escape")
            program.wait_for("Choose videos")
        self.screen.key("Menu")
        program.wait_for("Quit")
        self.screen.key("Return")
        program.wait_for(SWITCH)
        self.screen.key("Escape")
        program.wait_for("Choose videos")
        self.screen.key("Menu")
        self.go_to("Quit")
        self.screen.key("space")
        self.assertEqual(program.exit_status(), 0)

    @property
    def focused(self):
        """The name of what was told last to have the focus."""
        self.reader.listen()
        told = [each.name for each in self.reader.told[self.place :] if each.kind == FOCUSED and each.number == 1]
        return told[-1] if told else None

    def focus(self, name):
        """Moves the focus with the Tab key until it is on the control of that name."""
        passed = []
        while self.focused != name:
            if len(passed) > 30:
                raise AssertionError(f"the Tab key never comes to '{name}', only to {passed}")
            passed.append(self.focused)
            place = self.reader.mark()
            self.screen.key("Tab")
            self.reader.until(lambda: any(each.kind == FOCUSED and each.number == 1 for each in self.reader.told[place:]),
                              f"the focus to leave '{passed[-1]}'")

    def go_to(self, name):
        """The same, and looks for it."""
        self.focus(name)
        self.see_the_focus_on(name)

    def see_the_focus_on(self, name):
        node = self.program.wait_for(name)
        until(lambda: self.screen.picture().has_frame(node.box), f"the focus to be seen on '{name}'")

    def answer_the_question(self):
        self.program.wait_for(QUESTION)
        self.go_to("Don't Allow")
        self.go_to("Allow")
        self.screen.key("space")

    def pass_the_tutorial(self):
        self.program.wait_for("next")
        self.go_to("next")
        self.screen.key("space")
        self.program.wait_for("start")
        self.see_the_focus_on("start")
        self.screen.key("Return")
        self.program.wait_for(HINT)

    def open_the_list(self, film):
        self.go_to("Choose videos")
        self.screen.key("Return")
        self.program.row(film, FILM_A.title)
        self.program.focus_table(film)

    def choose_the_second_film_of_the_list(self, film):
        self.open_the_list(film)
        self.screen.key("Down")
        self.see_the_focus_on_row(film, FILM_B)
        self.screen.key("Return")
        film.wait_for_clip(FILM_B)
        self.hear(film, FILM_B)

    def choose_by_typing(self, film, beginning, clip):
        self.open_the_list(film)
        self.screen.key("End")
        self.screen.key(*("space" if letter == " " else letter for letter in beginning))
        self.see_the_focus_on_row(film, clip)
        self.screen.key("Return")
        film.wait_for_clip(clip)
        self.hear(film, clip)

    def see_the_focus_on_row(self, film, clip):
        row = self.program.row(film, clip.title)
        until(lambda: row.is_focused, f"the focus to be on '{clip.title}'")
        until(lambda: self.screen.picture().has_frame(row.box), f"the focus to be seen on '{clip.title}'")

    def press_on(self, film, name, *keys):
        """Presses keys on one of the film's controls, which are shown just before, so that they stay for seconds."""
        self.focus(f"Film {film.number}")
        if self.program.find(film.closing) is not None:
            self.screen.key("space")
            self.program.wait_until_gone(film.closing)
        self.screen.key("space")
        self.program.wait_for(film.closing)
        self.focus(name)
        self.screen.key(*keys)

    def pause_and_resume(self, film, clip):
        self.press_on(film, film.playing, "space")
        self.program.wait_for(film.paused)
        self.hear_nothing(film)
        self.assert_stands_still(film)
        self.press_on(film, film.paused, "Return")
        self.program.wait_for(film.playing)
        self.hear(film, clip)

    def seek(self, film, clip):
        self.press_on(film, film.position, "Page_Up")
        film.wait_for_view(lambda view: view.time is not None and view.time > 10, "a later place")
        self.hear_the_segment_that_is_seen(film, clip)
        self.press_on(film, film.position, "Home")
        self.hear_the_beginning(film, clip)

    def change_the_volume(self, film, clip):
        self.press_on(film, film.volume, "Home")
        self.hear_nothing(film)
        self.press_on(film, film.volume, "End")
        self.hear(film, clip)

    def close(self, film):
        self.press_on(film, film.closing, "Return")
        film.wait_for_view(lambda view: view.border is None, "an empty view")
        self.hear_nothing(film)
