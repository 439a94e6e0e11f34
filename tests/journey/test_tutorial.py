"""The tutorial, opened once more from the info screen: paged by button, keys and wheel, in windows of any size."""

import pathlib
import re

from journey import FILM_A, Journey
from processes import until
from tutorial import CLOSES, OPENS, TURNS

# Which the build puts into the interface.
SOURCES = pathlib.Path(__file__).parent.parent.parent
VERSION = re.search(r"^project\(quillop VERSION (\S+)", (SOURCES / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
PORTRAIT, LANDSCAPE = (390, 844), (844, 390)


class Tutorial(Journey):
    def setUp(self):
        super().setUp()
        home = self.surroundings.new_home(FILM_A.title)
        home.know_the_app()
        self.start(home)
        self.start_of_the_journey = self.program.mark()
        self.built_size = self.window_box()[2:]
        self.program.press("Info")
        self.program.wait_for(f"Version {VERSION}")
        self.program.press_until("Show the tutorial", lambda: self.program.find("next"))

    def check_the_way_back(self, lines):
        """Over the info screen the tutorial ends with these lines, and the main screen never hears of either."""
        self.program.lines_up_to("chiusoTutorial", self.start_of_the_journey)
        self.program.wait_for("Show the tutorial")
        self.program.press_until("Close", lambda: self.program.find("Choose videos"))
        expected = ["info", "prepare", "tutorial", *OPENS, *lines, "chiusoTutorial"]
        self.assertEqual(self.program.lines[self.start_of_the_journey :], expected)

    def test_its_button_turns_the_page_and_closes_it(self):
        self.program.press_until("next", lambda: TURNS[0] in self.program.lines)
        self.program.press("start")
        self.check_the_way_back([*TURNS, *CLOSES])

    def test_keys_and_wheel_turn_its_pages(self):
        self.program.focus("Pages")
        until(lambda: self.screen.key("Right") or self.program.find("start"), "the tutorial to take keys", pause=0.3)
        for key, button in (("Left", "next"), ("Right", "start"), ("Left", "next"), ("Next", "start"), ("Prior", "next"),
                            ("End", "start"), ("Home", "next")):
            self.screen.key(key)
            self.program.wait_for(button)
        pages = self.program.wait_for("Pages").at(0.5, 0.5)
        for notches, button in ((1, "start"), (-1, "next"), (1, "start")):
            # A notch that comes while a page is still on its way is taken for a part of that movement.
            until(lambda: self.screen.turn_wheel(*pages, notches) or self.program.find(button), f"'{button}'", pause=0.3)
        self.program.press("start")
        self.check_the_way_back(CLOSES)

    def test_its_button_stays_in_reach_when_the_window_is_turned(self):
        window = self.program.window
        place = self.program.mark()
        self.turn_to(window, PORTRAIT)
        self.screen.click(*self.middle_of_the_button_within("next", PORTRAIT))
        self.program.wait_for("start")
        self.turn_to(window, LANDSCAPE)
        self.middle_of_the_button_within("start", LANDSCAPE)
        self.turn_to(window, PORTRAIT)
        self.screen.click(*self.middle_of_the_button_within("start", PORTRAIT))
        self.program.lines_up_to("chiusoTutorial", place)
        self.program.wait_for("Show the tutorial")

    def turn_to(self, window, size):
        self.screen.resize(window, *size)
        until(lambda: self.window_box()[2:] == size, lambda: f"a window of {size}, which is {self.window_box()}")

    def window_box(self):
        return self.program.root.children()[0].box

    def middle_of_the_button_within(self, name, size):
        """Where the button is on the screen, once it lies still, all of it inside the window."""
        boxes = []

        def lies_still():
            node = self.program.find(name)
            boxes.append(node.box if node is not None else None)
            return node is not None and len(boxes) > 3 and len(set(boxes[-3:])) == 1

        until(lies_still, f"'{name}' to lie still", pause=0.1)
        # The tutorial is scaled as a whole; of what is scaled, the accessibility tree tells the size before that.
        scale = min(size[0] / self.built_size[0], size[1] / self.built_size[1])
        left, top, width, height = boxes[-1][0], boxes[-1][1], boxes[-1][2] * scale, boxes[-1][3] * scale
        x, y = self.window_box()[:2]
        self.assertGreaterEqual(left, x)
        self.assertGreaterEqual(top, y)
        self.assertLessEqual(left + width, x + size[0])
        self.assertLessEqual(top + height, y + size[1])
        return left + width / 2, top + height / 2
