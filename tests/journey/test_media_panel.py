"""The films in the desktop's media panel, and the media keys where no desktop takes them."""

import os
import urllib.parse

from journey import FILM_A, FILM_B, Journey
from media import Crowd, MediaPanel
from processes import until


class MediaPanels(Journey):
    """Each film is a player of its own, and what is done to one leaves the other alone."""

    def setUp(self):
        super().setUp()
        self.share()
        self.panel = MediaPanel(self.stage)
        self.play(self.film1, FILM_A)
        self.play(self.film2, FILM_B)
        self.player1, self.player2 = (self.panel.player_of(film) for film in (self.film1, self.film2))

    def test_it_lists_both_films_and_pauses_and_closes_one_of_them(self):
        self.assertEqual(self.panel.players(), ["quillop.film1", "quillop.film2"])
        for player, clip in ((self.player1, FILM_A), (self.player2, FILM_B)):
            self.check_what_it_shows(player, clip)
        self.player1.do("pause")
        self.assertEqual(self.player1.status, "Paused")
        self.hear_nothing(self.film1)
        self.assert_stands_still(self.film1)
        self.assert_still_plays(self.film2, FILM_B)
        self.player1.do("play-pause")
        self.hear(self.film1, FILM_A)
        self.player1.do("stop")
        self.film1.wait_for_view(lambda view: view.border is None, "an empty view")
        until(lambda: self.panel.players() == ["quillop.film2"], "the player of film 1 to be gone")
        self.hear_nothing(self.film1)
        self.assert_still_plays(self.film2, FILM_B)

    def check_what_it_shows(self, player, clip):
        self.assertEqual(player.status, "Playing")
        self.assertEqual(player.metadata("xesam:title"), clip.title)
        self.assertAlmostEqual(int(player.metadata("mpris:length")) / 1e6, clip.seconds, delta=0.2)
        for key in ("xesam:url", "mpris:artUrl"):
            path = urllib.parse.unquote(urllib.parse.urlparse(player.metadata(key)).path)
            self.assertTrue(os.path.exists(path), path)

    def test_it_moves_a_film_and_sets_its_volume(self):
        loud = self.sound.take(0.5)
        self.player2.do("volume", "0.5")
        self.sound.until(lambda sound: self.is_half_as_loud(sound, loud), "half the volume")
        until(lambda: self.player2.volume == 0.5, "the volume that it was given")

        self.player1.do("pause")
        following = self.player1.follow("position")
        self.addCleanup(following.close)
        following.wait_for(bool, "where it is")
        self.player1.do("position", "20.4")
        following.wait_for(lambda line: float(line) == 20, "the move")
        self.film1.wait_for_view(lambda view: view.time is not None and abs(view.time - 20) < 0.2, "the place")
        self.player1.do("position", "5-")
        following.wait_for(lambda line: float(line) == 15, "the move back")
        self.film1.wait_for_view(lambda view: view.time is not None and abs(view.time - 15) < 0.2, "the place")
        self.hear_nothing(self.film1)
        self.assert_still_plays(self.film2, FILM_B)

    def test_one_who_calls_without_end_stops_neither_the_app_nor_the_other_film(self):
        crowd = Crowd(self.stage, self.player1.name, "PlayPause")
        self.addCleanup(crowd.close)
        until(lambda: crowd.calls > 5000, "many calls")
        self.assert_still_plays(self.film2, FILM_B)
        self.film2.show_controls()
        self.program.press(self.film2.playing)
        self.hear_nothing(self.film2)
        crowd.close()
        # What the crowd sent before is refused until its share is done with, and so may be whoever asks meanwhile.
        until(lambda: self.player1.does("pause"), "an end of the crowd")
        self.hear_nothing(self.film1)
        self.player1.do("play")
        self.hear(self.film1, FILM_A)

    def is_half_as_loud(self, sound, loud):
        levels = [each.level(self.film2.channel) for each in (sound, loud)]
        return abs(levels[0] - levels[1] / 2) < 0.05 * levels[1]


class MediaKeys(Journey):
    """The keyboard's media keys, which the window manager of the stage leaves alone."""

    def setUp(self):
        super().setUp()
        self.share()
        self.play(self.film1, FILM_A)
        self.play(self.film2, FILM_B)

    def test_they_work_the_film_that_was_used_last(self):
        self.film1.show_controls()
        for now, then in ((self.film1.playing, self.film1.paused), (self.film1.paused, self.film1.playing)):
            self.program.press(now)
            self.program.wait_for(then)
        self.hear(self.film1, FILM_A)
        self.screen.key("XF86AudioPlay")
        self.hear_nothing(self.film1)
        self.assert_still_plays(self.film2, FILM_B)
        self.screen.key("XF86AudioPlay")
        self.hear(self.film1, FILM_A)
        self.screen.key("XF86AudioStop")
        self.film1.wait_for_view(lambda view: view.border is None, "an empty view")
        self.screen.key("XF86AudioPause")
        self.hear_nothing(self.film2)
