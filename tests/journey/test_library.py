"""The list is right about what is on the disk, each time it is shown."""

import os
import shutil

from journey import FILM_A, FILM_B, PROTECTED_FILM, SHORT_FILM, Journey
from processes import until

COUNT = "numero video : "


class Library(Journey):
    def setUp(self):
        super().setUp()
        self.home = self.surroundings.new_home(FILM_A.title)
        self.start(self.home)

    def video(self, name):
        return os.path.join(self.home.videos, name + ".mp4")

    def shown_titles(self):
        """What the list shows; the list is closed again."""
        place = self.program.mark()
        self.program.open_list()
        count = until(lambda: self._count_since(place), "the number of videos")
        titles = until(lambda: self._titles_of(count), "the rows of the list")
        self.program.press_until("Close", lambda: self.program.find("Videos for film 2") is None)
        return titles

    def _count_since(self, place):
        told = [line for line in self.program.lines[place:] if line.startswith(COUNT)]
        return int(told[0][len(COUNT):]) if told else None

    def _titles_of(self, count):
        rows = self.program.wait_for("Videos for film 1").children()
        titles = [row.name.rsplit(", ", 1)[0] for row in rows if ", " in row.name]
        return titles if len(titles) == count else None

    def assert_lists(self, *titles):
        seen = []

        def is_listed():
            seen.append(self.shown_titles())
            return seen[-1] == list(titles)

        until(is_listed, lambda: f"the list to show {titles}, but it showed {seen}")

    def test_it_follows_what_happens_to_the_files(self):
        clip = self.surroundings.clip_path(FILM_B.title)
        self.play(self.film1, FILM_A)
        self.assert_lists(FILM_A.title)

        shutil.copy(clip, self.video("Zoo"))
        self.assert_lists(FILM_A.title, "Zoo")

        os.rename(self.video("Zoo"), self.video("Alba"))
        self.assert_lists("Alba", FILM_A.title)

        os.mkdir(os.path.join(self.home.videos, "Mare"))
        os.rename(self.video("Alba"), self.video("Mare/Alba 2"))
        shutil.copy(clip, self.video("Mare/Alba 10"))
        self.assert_lists("Alba 2", "Alba 10", FILM_A.title)
        self.program.choose(self.film2, "Alba 10")
        self.film2.wait_for_clip(FILM_B)
        self.hear(self.film2, FILM_B)

        os.remove(self.video("Mare/Alba 2"))
        self.assert_lists("Alba 10", FILM_A.title)

        self.assert_still_plays(self.film1, FILM_A)

    def test_a_film_that_was_made_protected_is_still_listed_and_refused(self):
        shutil.copy(self.surroundings.clip_path(SHORT_FILM.title), self.video("Zoo"))
        self.assert_lists(FILM_A.title, "Zoo")
        shutil.copy(self.surroundings.clip_path(PROTECTED_FILM.title), self.video("Zoo"))
        self.assert_lists(FILM_A.title, "Zoo")
        self.program.choose(self.film1, "Zoo")
        self.program.wait_for("Attenction")
        self.program.press_until("OK", lambda: self.program.find("Attenction") is None)

    def test_a_file_name_may_be_any_bytes(self):
        name = b'-caff\xe8 "al mare"\n100% #1?.mp4'
        shutil.copy(self.surroundings.clip_path(FILM_B.title), os.path.join(os.fsencode(self.home.videos), name))
        title = '-caff\ufffd "al mare" 100% #1?'
        self.assert_lists(title, FILM_A.title)
        self.program.choose(self.film2, title)
        self.film2.wait_for_clip(FILM_B)
        self.hear(self.film2, FILM_B)

    def test_a_film_that_is_being_copied_appears_when_it_is_whole(self):
        with open(self.surroundings.clip_path(FILM_B.title), "rb") as file:
            whole = file.read()
        with open(self.video("Zoo"), "wb") as copy:
            copy.write(whole[: len(whole) // 2])
            copy.flush()
            shutil.copy(self.surroundings.clip_path(SHORT_FILM.title), self.video("Alba"))
            self.assert_lists("Alba", FILM_A.title)
            copy.write(whole[len(whole) // 2 :])
        self.assert_lists("Alba", FILM_A.title, "Zoo")
