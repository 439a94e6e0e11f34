"""Measures of a finger that moves over the progress slider."""

import math
import statistics
import time
from dataclasses import dataclass

import films
from ours import TITLES
from results import Check, Result
from track import Track
from watching import Looks, number_reader, wait_for_pictures

# Seconds of the film, out and back: the finger moves forwards and backwards, nine seconds of the film in each second.
TURNS = (25, 40, 10)
DRAG_SECONDS = 5.0
SHOWN_WITHIN = 0.1
REST = 2.0  # seconds after which a film that was let go plays again
HALF_A_SECOND = 0.5  # for which a film may have played on meanwhile


@dataclass
class Target:
    """A whole second that the finger came to, and when."""

    second: int
    moment: float


def _route():
    """Each whole second on the way."""
    route = [TURNS[0]]
    for turn in TURNS[1:]:
        step = 1 if turn > route[-1] else -1
        route += range(route[-1] + step, turn + step, step)
    return route[1:]


class Drag:
    """A finger on the slider of film 1 that moves from one whole second to the next, and what is seen meanwhile."""

    def __init__(self, ground, film, track, reader):
        self._film = film
        begin = track.show()
        with Looks(reader) as looks:
            ground.display.move(begin)
            ground.display.press()
            self.targets = list(self._moved(ground, track))
            self.released = ground.display.release()
            time.sleep(REST)
        self._seen = [(moment, number) for moment, _, number in looks.seen]

    @staticmethod
    def _moved(ground, track):
        route = _route()
        pause = DRAG_SECONDS / len(route)
        began = time.monotonic()
        for place, second in enumerate(route):
            time.sleep(max(0.0, began + place * pause - time.monotonic()))
            ground.display.move(track.place_of(second))
            yield Target(second, time.monotonic())
        time.sleep(max(0.0, began + len(route) * pause - time.monotonic()))

    def _is_right(self, number, second):
        """Whether a picture will do for a second while the finger moves: it is not beyond the key frames around it."""
        wanted, group = second * self._film.rate, self._film.key_frame_every
        key_frame = wanted // group * group
        if wanted == key_frame:
            return wanted <= number < wanted + HALF_A_SECOND * self._film.rate
        return key_frame <= number < key_frame + group + HALF_A_SECOND * self._film.rate

    def delays(self):
        """Of each target: seconds until a picture was seen that does for it, or for one that the finger came to after it."""
        return [self._delay(place) for place in range(len(self.targets))]

    def _delay(self, place):
        moment = self.targets[place].moment
        shown = [(moment, number) for seen, number in self._seen if seen <= moment][-1:]
        for seen, number in shown + [entry for entry in self._seen if entry[0] > moment]:
            if any(self._is_right(number, later.second) for later in self.targets[place:] if later.moment <= seen):
                return seen - moment
        return math.inf

    def pictures(self):
        """How many different ones were seen while the finger moved."""
        return len({number for moment, number in self._seen if self.targets[0].moment < moment <= self.released})

    def rest(self):
        """Seconds from letting go to the very picture of the last second, which may have been there by then."""
        wanted = self.targets[-1].second * self._film.rate
        arrivals = [moment for moment, number in self._seen if moment >= self.targets[-1].moment
                    and wanted <= number < wanted + HALF_A_SECOND * self._film.rate]
        return max(0.0, arrivals[0] - self.released) if arrivals else math.inf

    def arrears(self):
        """Pictures of other places than the last, seen once the finger had been lifted for a moment."""
        last = self.targets[-1].second
        playing = range(last * self._film.rate, round((last + REST) * self._film.rate) + 1)
        return sum(moment > self.released + SHOWN_WITHIN and number not in playing and not self._is_right(number, last)
                   for moment, number in self._seen)


def _drag(ground, film):
    ours = ground.ours()
    try:
        ours.start(film.pair(ground.films_folder))
        ours.choose(ours.films[0], TITLES[0])
        wait_for_pictures(ground.stage.screen, ours.boxes[:1])
        return Drag(ground, film, Track(ground, ours), number_reader(ground.stage.screen, ours.boxes[0]))
    finally:
        ours.end()


def drag(ground):
    """From each whole second that a finger on the slider comes to until a picture of about there is seen"""
    delays, arrears, details = [], 0, {}
    for film in (films.full_hd(ground.film_seconds), films.rare_key_frames(ground.film_seconds)):
        for number in range(ground.rounds):
            drawn = _drag(ground, film)
            own = drawn.delays()
            delays += own
            arrears += drawn.arrears()
            found = {"median": round(statistics.median(own), 4), "longest": round(max(own), 4), "targets": len(own),
                     "different pictures": drawn.pictures(), "rest": round(drawn.rest(), 4), "arrears": drawn.arrears()}
            details.setdefault(film.name, []).append(found)
            print(f"  round {number + 1}, {film.name}: {found}", flush=True)
    return Result("drag", drag.__doc__, "s", max(delays),
                  checks=[Check("longest, s", max(delays), SHOWN_WITHIN), Check("pictures in arrears", arrears, 0)],
                  details=details)
