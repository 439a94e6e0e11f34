"""The whole of the app through the accessibility interface alone, with neither pointer nor keys: from the first start
to both films closed. What changes is told to whoever listens."""

import time

from journey import FILM_A, FILM_B, Journey

QUESTION = '"Quillop" would like to access your media library'
HINT = "Click on this and select your videos"

NAME_CHANGED = "object:property-change:accessible-name"
DESCRIPTION_CHANGED = "object:property-change:accessible-description"
VALUE_CHANGED = "object:property-change:accessible-value"
FOCUSED = "object:state-changed:focused"
SHOWING = "object:state-changed:showing"
CAME = "object:children-changed:add"
WENT = "object:children-changed:remove"

SURELY_SHOWN = 4.0  # seconds; controls that nobody uses leave after 7


class ScreenReaderAlone(Journey):
    def setUp(self):
        super().setUp()
        self.screen.point_at(0, 0)  # out of the window
        self.reader = self.surroundings.screen_reader
        self.shown = {}  # by the numbers of films: when their controls were brought forward

    def begin_reading(self, home):
        self.reader.mark()
        self.begin_anew(home)
        self.root = self.reader.program(self.program.process_id)

    def there(self, name, role=None):
        """What is called so, once it is to be seen."""
        return self.reader.until(lambda: self.root.find(name, role), lambda: f"{name}, but there is\n{self.root.outline()}")

    def wait_until_gone(self, name):
        self.reader.until(lambda: self.root.find(name) is None, f"{name} to leave the tree")

    def press(self, name, role="push button"):
        self.assertTrue(self.there(name, role).do("Press"), name)

    def press_until(self, name, is_done, what):
        """Presses until it works: a screen that still moves takes no presses."""
        def pressed():
            if is_done():
                return True
            item = self.root.find(name)
            if item is not None:
                item.do("Press")
            return is_done()

        self.reader.until(pressed, what)

    def test_from_the_first_start_to_both_films_closed(self):
        self.begin_reading(self.surroundings.new_home(FILM_A.title, FILM_B.title))
        self.answer_the_question()
        self.pass_the_tutorial()
        self.hear_of_the_hint()
        self.choose(self.film1, FILM_A, FILM_B)
        self.choose(self.film2, FILM_B, FILM_A)
        self.pause_and_resume(self.film1, FILM_A)
        self.seek(self.film2, FILM_B)
        self.change_the_volume(self.film2, FILM_B)
        self.hide_and_show_controls(self.film1)
        for film in (self.film1, self.film2):
            self.close(film)

    def answer_the_question(self):
        question = self.there(QUESTION, "dialog")
        self.assertIn("focused", question.states)
        self.assertIn("videos folder", question.description)
        self.assertEqual(self.names_in_reach(), {"Don't Allow", "Allow"})
        self.reader.wait_until_told(FOCUSED, QUESTION, number=1)
        self.press("Allow")

    def names_in_reach(self):
        """Of everything that can be used or is read out on its own."""
        roles = ("push button", "slider", "list", "notification", "label", "menu item")
        return {item.name for item in self.root.descendants if item.role in roles and item.name}

    def pass_the_tutorial(self):
        self.there("next", "push button")
        self.assertNotIn("Choose videos", self.names_in_reach())
        self.press_until("next", lambda: self.root.find("start"), "the second page")
        self.there("Page 2 of 2")
        self.press_until("start", lambda: self.root.find("Choose videos"), "the main screen")

    def hear_of_the_hint(self):
        hint = self.there(HINT, "notification")
        self.reader.wait_until_told(SHOWING, HINT, number=1)
        _, _, width, height = hint.box
        self.assertLess(width * height, 300 * 200, "the balloon, not the window")

    def choose(self, film, clip, other):
        place = self.reader.mark()
        self.press("Choose videos")
        self.there("Choose a video", "dialog")
        table = self.there(f"Videos for film {film.number}", "list")
        row = self.reader.until(lambda: next((row for row in table.children if row.name == f"{clip.title}, 00:00:30"), None),
                                lambda: f"{clip.title} in\n{table.outline()}")
        self.assertEqual(table.description, "2 items")
        self.assertEqual([child.name for child in table.children if child.role == "list item"],
                         [f"{title}, 00:00:30" for title in sorted((clip.title, other.title))])
        self.assertEqual(row.description, f"{1 if clip.title < other.title else 2} of 2")
        self.assertLessEqual({"selectable", "showing"}, row.states)
        self.reader.wait_until_told(FOCUSED, f"{FILM_A.title}, 00:00:30", place, number=1)
        self.assertEqual(self.names_in_reach() & {"Choose videos", "Info", "Film 1", "Film 2", HINT}, set())
        self.reader.until(lambda: self.press_row(row, film), f"film {film.number} to be chosen")
        film.wait_for_clip(clip)
        self.hear(film, clip)

    def press_row(self, row, film):
        place = self.program.mark()
        row.do("Press")
        self.reader.listen()
        return f"tabella {film.number}" in self.program.lines[place:] or self.root.find("Choose videos")

    def show_controls(self, film):
        """So that they stay for seconds."""
        if self.is_told_of_controls(film):
            self.leave_controls(film)
        return self.bring_controls(film)

    def is_told_of_controls(self, film):
        """Whether they are there as far as anybody was told, which is a moment behind the screen. Who presses in that
        moment, when they have just left, brings them back before anybody was told that they went, so that nothing at
        all is told."""
        self.reader.listen()
        kinds = [told.kind for told in self.reader.told
                 if told.kind in (CAME, WENT) and told.name == f"Film {film.number}"]
        return kinds[-1:] == [CAME]

    def bring_controls(self, film):
        place = self.reader.mark()
        self.press(f"Film {film.number}")
        self.shown[film.number] = time.monotonic()
        self.there(film.closing)
        self.reader.wait_until_told(CAME, f"Film {film.number}", place)
        return place

    def leave_controls(self, film):
        """Those that have been there for seconds may leave by themselves at any moment, and a press would bring them
        back."""
        if time.monotonic() - self.shown.get(film.number, 0.0) < SURELY_SHOWN:
            self.press(f"Film {film.number}")
        self.wait_until_gone(film.closing)
        self.reader.until(lambda: not self.is_told_of_controls(film), f"to be told that the controls of {film} went")

    def pause_and_resume(self, film, clip):
        place = self.show_controls(film)
        self.press(film.playing)
        self.reader.wait_until_told(NAME_CHANGED, film.paused, place)
        self.hear_nothing(film)
        self.assert_stands_still(film)
        place = self.show_controls(film)
        self.press(film.paused)
        self.reader.wait_until_told(NAME_CHANGED, film.playing, place)
        self.hear(film, clip)

    def seek(self, film, clip):
        place = self.show_controls(film)
        slider = self.there(film.position, "slider")
        self.assertEqual(slider.least_and_most, (0, 30))
        slider.value = 16
        self.hear_the_segment_that_is_seen(film, clip)
        self.reader.wait_until_told(VALUE_CHANGED, film.position, place)
        self.reader.wait_until_told(DESCRIPTION_CHANGED, film.position, place)
        self.assertRegex(slider.description, r"^(1[6-9]|2\d) seconds of 30 seconds$")
        self.assertGreaterEqual(slider.value, 16)
        self.show_controls(film)
        self.there(film.position, "slider").value = 0
        self.hear_the_beginning(film, clip)

    def change_the_volume(self, film, clip):
        place = self.show_controls(film)
        slider = self.there(film.volume, "slider")
        self.assertEqual((slider.value, slider.least_and_most, slider.description), (1, (0, 1), "100 percent"))
        slider.value = 0
        self.hear_nothing(film)
        self.reader.wait_until_told(VALUE_CHANGED, film.volume, place)
        self.assertEqual(slider.description, "0 percent")
        slider.value = 1
        self.hear(film, clip)

    def hide_and_show_controls(self, film):
        controls = {film.position, film.volume, film.closing, film.playing}
        self.show_controls(film)
        self.leave_controls(film)
        self.assertEqual(self.names_in_reach() & controls, set())
        self.bring_controls(film)
        self.assertLessEqual(controls, self.names_in_reach())

    def close(self, film):
        self.show_controls(film)
        self.press(film.closing)
        film.wait_for_view(lambda view: view.border is None, "an empty view")
        self.hear_nothing(film)

    def test_the_menu_of_the_window_and_the_settings(self):
        home = self.surroundings.new_home(FILM_A.title)
        home.know_the_app()
        self.begin_reading(home)
        self.press("Allow")
        self.press_until("Quillop menu", lambda: self.root.find("Settings", "menu item"), "the menu")
        self.there("Quillop menu", "popup menu")
        self.assertEqual(self.names_in_reach(), {"Settings", "Full screen", "Quit"})
        self.press("Settings", "menu item")
        switch = self.there("Access to the media library", "check box")
        self.assertIn("checked", switch.states)
        place = self.reader.mark()
        self.assertTrue(switch.do("Toggle"))
        self.reader.wait_until_told("object:state-changed:checked", switch.name, place, number=0)
        self.assertNotIn("checked", switch.states)
        self.press("Close")
        self.there("Choose videos")
