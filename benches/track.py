"""The progress slider of film 1 as a finger finds it."""

import time

# Seconds, all a good way behind the last key frame of films whose key frames are at the multiples of eight seconds.
SEEK_TARGETS = (22.0, 6.0, 14.0)


class Track:
    """Where on the screen the seconds of film 1 are, to a pixel. Learnt by sliding, which moves the film to somewhere."""

    _SECONDS = (8, 42)

    def __init__(self, ground, ours):
        self._ours = ours
        begin = self.show()
        self._y = begin[1]
        ground.display.move(begin)
        ground.display.press()
        places = [self._slider.at(part, 0.5)[0] for part in (0.3, 0.7)]
        self._known = [(x, self._value_at(ground, x)) for x in places]
        self._known = [self._edge_before(ground, second) for second in self._SECONDS]
        ground.display.release()

    def _value_at(self, ground, x):
        ground.display.move((x, self._y))
        time.sleep(0.15)
        return self._slider.value

    def _edge_before(self, ground, second):
        """Where the slider, which has whole seconds only, comes to a second."""
        middle = self.place_of(second)[0]
        left, right = round(middle - 24), round(middle + 24)
        while right - left > 1:
            half = (left + right) // 2
            if self._value_at(ground, half) >= second:
                right = half
            else:
                left = half
        return right, second - 0.5

    def show(self):
        """Has the slider shown. Answers where its middle is."""
        self._ours.films[0].show_controls()
        self._slider = self._ours.program.wait_for(self._ours.films[0].position)
        return self._slider.at(0.5, 0.5)

    def place_of(self, seconds):
        (left, earlier), (right, later) = self._known
        return left + (right - left) * (seconds - earlier) / (later - earlier), self._y
