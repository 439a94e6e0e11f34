"""Which pictures of a film are really on the screen, and when: the numbers written on them, read from the frame buffer.

Looking costs the programs looked at nothing: the X server's frame buffer is a file in memory. It is done often enough to
miss no picture of a film of 60 pictures a second, and says so where the machine kept it from looking.
"""

import os
import threading
import time

from films import BLOCKS, ROW_HEIGHT, ROW_TOP, number_in
from processes import until

VIEW_WIDTH, VIEW_HEIGHT = 640, 360
BOXES = ((0, 0, VIEW_WIDTH, VIEW_HEIGHT), (VIEW_WIDTH, 0, VIEW_WIDTH, VIEW_HEIGHT))
PAUSE = 0.002  # seconds between two looks
NEARNESS = 1.5  # seconds: a slider has whole seconds and pixels only, and the film plays on
ARRIVAL_WITHIN = 30.0  # seconds


def hurry():
    """Where that is permitted, this thread comes before all others: a late look would blame the program looked at."""
    try:
        os.sched_setscheduler(0, os.SCHED_FIFO, os.sched_param(1))
    except PermissionError:
        pass


class Looks:
    """Looks at points of the screen until it is stopped. `seen` has (time, gap, what) for each change of what they
    showed; the gap is the time since the look before that."""

    def __init__(self, look, pause=PAUSE):
        self.seen = []
        self.longest_gap = 0.0
        self._look = look
        self._pause = pause
        self._stopped = False
        self.began = time.monotonic()
        self.ended = None
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()

    def _run(self):
        hurry()
        last, before = None, time.monotonic()
        while not self._stopped:
            now = time.monotonic()
            what = self._look()
            if what is not None and what != last:
                self.seen.append((now, now - before, what))
                last = what
            self.longest_gap = max(self.longest_gap, now - before)
            before = now
            time.sleep(self._pause)

    def stop(self):
        self._stopped = True
        self._thread.join()
        self.ended = time.monotonic()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()


def picture_in(box):
    """Where a picture of 16:9 is shown in a view."""
    left, top, width, height = box
    scale = min(width / 16, height / 9)
    return left + (width - 16 * scale) / 2, top + (height - 9 * scale) / 2, 16 * scale, 9 * scale


def number_reader(screen, box):
    """A function that reads the number of the picture in the view `box` (left, top, width, height), None without one."""
    left, top, width, height = box
    row = top + height * (ROW_TOP + ROW_HEIGHT / 2)
    look = screen.brightness_at([(left + width * (block + 0.5) / BLOCKS, row) for block in range(BLOCKS)])
    return lambda: number_in(look())


def wait_for_pictures(screen, boxes, deadline=60.0):
    """Until a numbered picture is to be seen in each of the views, and after it another one."""
    for box in boxes:
        read = number_reader(screen, box)
        numbers = set()
        until(lambda read=read, numbers=numbers: numbers.add(read()) or len(numbers - {None}) > 1,
              f"a moving picture at {tuple(box)}", deadline, pause=0.01)


class Jumps:
    """Waits for the picture of another place of a film."""

    def __init__(self, film, target):
        self._film = film
        self._target = target

    def _is_there(self, number):
        return abs(number / self._film.rate - self._target) < NEARNESS

    def arrival(self, looks):
        """When the first picture of the place was seen: the one after which there is no jump any more. A picture of a
        key frame before the place, which a player may show for a moment, is not it."""
        until(lambda: looks.seen and self._is_there(looks.seen[-1][2]),
              lambda: f"the picture of second {self._target}, but saw at the end {looks.seen[-3:]}", ARRIVAL_WITHIN)
        time.sleep(0.7)
        seen = list(looks.seen)
        jumps = [later for (_, _, last), later in zip(seen, seen[1:])
                 if (later[2] - last) % self._film.numbers > self._film.rate / 2]
        if not jumps or not self._is_there(jumps[-1][2]):
            raise RuntimeError(f"the picture of second {self._target} did not come at once: {seen}")
        return jumps[-1][0]


class Showing:
    """What of a film was shown in one view while it was watched."""

    def __init__(self, looks, film):
        self.seconds = looks.ended - looks.began
        self.due = self.seconds * film.rate
        self.shown = len(looks.seen)
        self._skipped = 0
        self.unjudged = 0
        progress = self._advance(looks, film)
        # The first and the last picture are seen in part only.
        behind = max(0.0, self.due - 2 - progress) if looks.seen else self.due
        self.dropped = self._skipped + behind

    def _advance(self, looks, film):
        """Counts the numbers left out; how far the film came in all."""
        progress = 0
        for (_, _, last), (_, gap, number) in zip(looks.seen, looks.seen[1:]):
            step = (number - last) % film.numbers
            if step > film.numbers / 2:
                continue  # one back: two pictures were being exchanged
            progress += step
            unseen = min(step - 1, int(gap * film.rate + 0.5))
            self.unjudged += unseen
            self._skipped += step - 1 - unseen
        return progress

    @property
    def dropped_share(self):
        return self.dropped / self.due


class Watch:
    """Watches several views at once: `with Watch(...) as watch: ...`, then `watch.showings`."""

    def __init__(self, screen, boxes, film):
        self._film = film
        self._looks = [Looks(number_reader(screen, box)) for box in boxes]
        self.showings = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for looks in self._looks:
            looks.stop()
        self.showings = [Showing(looks, self._film) for looks in self._looks]

    @property
    def dropped_share(self):
        return sum(showing.dropped for showing in self.showings) / sum(showing.due for showing in self.showings)

    @property
    def report(self):
        return {"shown": [showing.shown for showing in self.showings],
                "due": [round(showing.due, 1) for showing in self.showings],
                "dropped": [round(showing.dropped, 1) for showing in self.showings],
                "unjudged": [showing.unjudged for showing in self.showings],
                "longest gap between looks": round(max(looks.longest_gap for looks in self._looks), 4)}
