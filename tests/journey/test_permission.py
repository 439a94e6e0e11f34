"""Who may read the media library: the system asks, the app tells what came of it, the settings page changes it."""

import json
import os

from journey import FILM_A, Journey

QUESTION = '"Quillop" would like to access your media library'
SWITCH = "Access to the media library"


class Permission(Journey):
    def setUp(self):
        super().setUp()
        self.home = self.surroundings.new_home(FILM_A.title)
        self.home.know_the_app()  # so that nothing but the question comes up

    def begin(self, **environment):
        """Starts the program and leaves it as its start does."""
        self.program = self.surroundings.start(self.home, **environment)
        self.addCleanup(self.program.end)
        self._meet_films()
        self.program.lines_up_to("viewDidAppear", 0, deadline=30.0)

    def restart(self):
        self.program.terminate()
        self.assertEqual(self.program.exit_status(), 0)
        self.begin()

    def policy(self, value):
        """The environment of a device whose administrator set this for the media library."""
        folder = os.path.join(self.home.path, "xdg")
        os.makedirs(os.path.join(folder, "quillop"), exist_ok=True)
        with open(os.path.join(folder, "quillop", "policy.json"), "w", encoding="ascii") as file:
            json.dump({"mediaLibrary": value}, file)
        return {"XDG_CONFIG_DIRS": folder}

    def check_alert(self, message):
        """The alert is there and says so; it is closed again."""
        self.assertEqual(self.program.wait_for("Error").description, message)
        self.program.press_until("OK", lambda: self.program.find("Error") is None)

    def check_list_is_refused(self, message):
        place = self.program.mark()
        self.program.press("Choose videos")
        self.assertEqual(self.program.lines_up_to("errore", place), ["listaVideo", "errore"])
        self.check_alert(message)

    def check_list_opens(self):
        place = self.program.mark()
        self.program.open_list()
        self.program.row(self.film1, FILM_A.title)
        self.assertIn("numero video : 1", self.program.lines[place:])
        self.program.press("Close")
        self.program.wait_until_gone("Videos for film 2")

    def open_settings(self):
        self.program.press("Choose videos")
        self.program.press_until("Open Settings", lambda: self.program.find(SWITCH) is not None)
        return self.program.wait_for(SWITCH)

    def test_allowed_access_is_remembered(self):
        self.begin()
        self.assertIn("videos folder", self.program.wait_for(QUESTION).description)
        self.assertIsNone(self.program.find("Choose videos"), "nothing beneath the question is in reach")
        self.program.press("Allow")
        self.program.lines_up_to("posso accedere alla libreria", 0)
        self.check_list_opens()
        self.restart()
        self.program.lines_up_to("posso accedere alla libreria", 0)
        self.assertIsNone(self.program.find(QUESTION))
        self.check_list_opens()

    def test_settings_open_by_their_keys_and_close_with_escape(self):
        self.begin()
        self.program.press("Allow")
        self.program.lines_up_to("posso accedere alla libreria", 0)
        self.program.wait_for("Choose videos")
        self.screen.key("ctrl+comma")
        self.program.wait_for(SWITCH)
        self.screen.key("ctrl+comma")
        self.screen.key("Escape")
        self.program.wait_until_gone(SWITCH)
        self.check_list_opens()

    def test_refused_access_is_told_remembered_and_changed_on_the_settings_page(self):
        self.begin()
        self.program.press("Don't Allow")
        self.check_alert("Media library access denied by user")
        self.check_list_is_refused("Media library access denied by user")
        self.restart()
        self.check_alert("Media library access denied by user")
        self.assertIsNone(self.program.find(QUESTION))
        self.open_settings()
        self.program.press(SWITCH)
        self.program.wait_for("1 video")
        self.program.press("Close")
        self.program.wait_until_gone(SWITCH)
        self.check_list_opens()
        self.assertNotIn("posso accedere alla libreria", self.program.lines)

    def test_question_that_is_closed_unanswered_is_asked_at_the_next_start(self):
        self.begin()
        self.program.wait_for(QUESTION)
        self.screen.key("Escape")
        self.program.wait_until_gone(QUESTION)
        self.check_alert("Unknown error")
        self.check_list_is_refused("Unknown error")
        self.restart()
        self.program.wait_for(QUESTION)
        self.screen.key("Tab", "Tab", "Return")
        self.program.lines_up_to("posso accedere alla libreria", 0)
        self.check_list_opens()

    def test_restricted_access_is_told_and_cannot_be_changed(self):
        self.begin(**self.policy("restricted"))
        self.check_alert("Media library access restricted by corporate or parental settings")
        self.assertIsNone(self.program.find(QUESTION))
        self.check_list_is_refused("Media library access restricted by corporate or parental settings")
        switch = self.open_settings()
        self.assertIn("administers this device", switch.description)
        self.program.tap(switch)
        self.screen.key("Escape")
        self.program.wait_until_gone(SWITCH)
        self.check_list_is_refused("Media library access restricted by corporate or parental settings")

    def test_policy_that_comes_later_takes_effect_at_once(self):
        self.begin(**self.policy("allowed"))
        self.program.press("Allow")
        self.check_list_opens()
        self.policy("restricted")
        self.check_list_is_refused("Media library access restricted by corporate or parental settings")
        self.policy("allowed")
        self.check_list_opens()
