"""What a new user meets: the question for the library, the hint, the tutorial; each once."""

from journey import FILM_A, Journey
from tutorial import LEAVES_FOR, OPENS, TURNS, CLOSES

QUESTION = '"Quillop" would like to access your media library'
HINT = "Click on this and select your videos"
LIBRARY_IS_OPEN = "posso accedere alla libreria"


class FirstStart(Journey):
    def setUp(self):
        super().setUp()
        self.home = self.surroundings.new_home(FILM_A.title)

    def test_question_then_tutorial_then_hint_and_none_of_them_at_the_second_start(self):
        program = self.begin_anew(self.home)
        self.check_tutorial_waits_for_the_answer(program)
        self.check_tutorial_follows_the_answer(program)
        self.check_tutorial_closes(program)
        self.check_hint(program)
        self.assertEqual(self.home.defaults, {"primoAvvio": "2", "primoAvvio2": "2"})
        program.terminate()
        self.assertEqual(program.exit_status(), 0)
        self.check_second_start()

    def test_a_refusal_is_told_after_the_tutorial(self):
        program = self.begin_anew(self.home)
        program.lines_up_to(OPENS[-1], 0)
        place = program.mark()
        program.press("Don't Allow")
        program.press_until("next", lambda: TURNS[0] in program.lines)
        self.assertIsNone(program.find("Error"))
        program.press("start")
        self.assertEqual(program.wait_for("Error").description, "Media library access denied by user")
        self.assertEqual(program.lines[place:], [LEAVES_FOR, *TURNS, *CLOSES, "viewDidAppear"])

    def check_tutorial_waits_for_the_answer(self, program):
        program.wait_for(QUESTION)
        started = ["viewDidAppear", "tutorial", *OPENS]
        self.assertEqual(program.lines_up_to(OPENS[-1], 0), started)
        self.assert_nothing_is_said_for_a_while(program)
        self.assertEqual(program.lines, started)
        self.assertIsNone(program.find("next"))
        self.assertIsNotNone(program.find(QUESTION))

    def check_tutorial_follows_the_answer(self, program):
        place = program.mark()
        program.press("Allow")
        program.wait_for("next")
        program.lines_up_to(LIBRARY_IS_OPEN, place)
        self.assertCountEqual(program.lines[place:], [LEAVES_FOR, LIBRARY_IS_OPEN])
        self.assertIsNone(program.find(QUESTION))
        program.wait_until_gone(HINT)  # the tutorial covers it

    def check_tutorial_closes(self, program):
        place = program.mark()
        program.press_until("next", lambda: TURNS[0] in program.lines)
        program.press("start")
        self.assertEqual(program.lines_up_to("viewDidAppear", place), [*TURNS, *CLOSES, "viewDidAppear"])

    def check_hint(self, program):
        hint, button = program.wait_for(HINT), program.wait_for("Choose videos")
        lower_edge = button.box[1] + button.box[3]
        self.assertGreaterEqual(hint.box[1] + hint.box[3], lower_edge, "the hint is below the button")
        below = self.screen.picture().crop((button.box[0], lower_edge + 9, button.box[2], 60))
        self.assertGreater(share_of_colour(below, (0x3D, 0xA9, 0xFC)), 0.5, "the balloon under the button")

    def check_second_start(self):
        again = self.begin_anew(self.home)
        again.lines_up_to(LIBRARY_IS_OPEN, 0, deadline=30.0)
        again.wait_for("Choose videos")
        self.assert_nothing_is_said_for_a_while(again)
        self.assertCountEqual(again.lines, ["viewDidAppear", LIBRARY_IS_OPEN])
        for name in (QUESTION, HINT, "next"):
            self.assertIsNone(again.find(name), name)


def share_of_colour(picture, colour):
    """Which part of the picture has nearly this colour."""
    near = abs(picture.pixels.astype(int) - colour).max(axis=2) < 12
    return float(near.mean())
