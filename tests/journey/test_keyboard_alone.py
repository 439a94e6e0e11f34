"""The whole of the app with nothing but the keyboard: from the first start to both films closed. Where the focus is can
always be seen."""

from journey import FILM_A, FILM_B, Journey
from processes import NotInTime, until

QUESTION = '"Quillop" would like to access your media library'
HINT = "Click on this and select your videos"
SWITCH = "Access to the media library"


class KeyboardAlone(Journey):
    def test_from_the_first_start_to_both_films_closed(self):
        self.screen.point_at(0, 0)  # out of the window
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
        self.screen.point_at(0, 0)
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

    def go_to(self, name):
        """Moves the focus there with the Tab key, and looks for it."""
        self.program.focus(name)
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
        """Presses keys on one of the film's controls. Controls that have left the screen meanwhile are shown again."""
        for _ in range(4):
            try:
                if self.program.find(film.closing) is None:
                    self.program.focus(f"Film {film.number}")
                    self.screen.key("space")
                    self.program.wait_for(film.closing)
                self.program.focus(name)
            except NotInTime:
                continue
            self.screen.key(*keys)
            if self.program.find(film.closing) is not None:
                return
        raise AssertionError(f"the controls of film {film.number} always hide before the key is pressed")

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
        self.press_on_closing(film)
        film.wait_for_view(lambda view: view.border is None, "an empty view")
        self.hear_nothing(film)

    def press_on_closing(self, film):
        """The key that closes a film takes its controls away."""
        place = self.program.mark()
        while not any("chiudo il film" in line for line in self.program.lines[place:]):
            try:
                if self.program.find(film.closing) is None:
                    self.program.focus(f"Film {film.number}")
                    self.screen.key("space")
                    self.program.wait_for(film.closing)
                self.program.focus(film.closing)
            except NotInTime:
                continue
            self.screen.key("Return")
            self.sound.take(0.3)
