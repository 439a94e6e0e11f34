"""Whether the picture and the sound of a film come together: flashes on the screen against clicks at the sound device, both
by the monotonic clock. No player is asked where it is."""

import statistics
import time
from dataclasses import dataclass, field

import numpy

import films
from listening import Listener
from metronome import Metronome
from ours import TITLES
from processes import until
from results import Check, Result
from rivals import Mpv
from watching import BOXES, Looks

MEDIAN_TARGET, WORST_TARGET = 0.020, 0.040  # seconds
TICKS = 12  # of the metronome
FLASHES = 6  # of each film that a situation is judged by
LONGEST_GAP = 0.010  # between two looks: what was seen after a longer one is not judged
LONG_PLAY = 600  # seconds
BRIGHT, DARK = "bright", "dark"


def _row_reader(screen, box):
    """Whether the row of a film flashes; None where neither its white nor its black is to be seen."""
    left, top, width, height = box
    row = top + height * (films.ROW_TOP + films.ROW_HEIGHT / 2)
    look = screen.brightness_at([(left + width * part, row) for part in (0.2, 0.35, 0.5, 0.65, 0.8)])

    def read():
        levels = look()
        if min(levels) > 200:
            return BRIGHT
        return DARK if max(levels) < 60 else None

    return read


@dataclass
class Offsets:
    """Seconds by which the click of each flash was heard after the flash was seen."""

    found: list = field(default_factory=list)
    unheard: int = 0
    unjudged: int = 0

    def add(self, other):
        self.found += other.found
        self.unheard += other.unheard
        self.unjudged += other.unjudged

    @property
    def median(self):
        return statistics.median(map(abs, self.found))

    @property
    def worst(self):
        """Of 95 in 100."""
        return float(numpy.percentile(numpy.abs(self.found), 95))

    @property
    def report(self):
        return {"median": round(self.median, 4), "95 of 100": round(self.worst, 4),
                "median with sign": round(statistics.median(self.found), 4), "flashes": len(self.found),
                "unheard": self.unheard, "unjudged": self.unjudged,
                "each": [round(offset, 4) for offset in self.found]}


class Witness:
    """Sees the films in the boxes and hears them, from its beginning to its end."""

    def __init__(self, ground, boxes):
        self._listener = Listener(ground.stage.sound_server)
        self._looks = [Looks(_row_reader(ground.stage.screen, box)) for box in boxes]
        self._clicks = None

    def close(self):
        for looks in self._looks:
            looks.stop()
        self._listener.close()
        self._clicks = [self._listener.sounds(side, films.FLASH_PERIOD / 2) for side in range(len(self._looks))]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def watch(self, side, flashes=FLASHES):
        """Until so many flashes of the film were seen from now on; answers from when to when that was."""
        seen = self._looks[side].seen
        first, since = len(seen), time.monotonic()
        until(lambda: sum(what == BRIGHT for _, _, what in seen[first:]) >= flashes, f"{flashes} flashes", 30 + 2 * flashes)
        return side, since, time.monotonic()

    def offsets(self, side, since, end):
        """Of the flashes within this time; once it was closed."""
        offsets = Offsets()
        for (_, _, before), (moment, gap, what) in zip(self._looks[side].seen, self._looks[side].seen[1:]):
            if before != DARK or what != BRIGHT or not since <= moment <= end:
                continue
            click = min(self._clicks[side], key=lambda click: abs(click - moment), default=None)
            if gap > LONGEST_GAP:
                offsets.unjudged += 1
            elif click is None or abs(click - moment) > films.FLASH_PERIOD / 2:
                offsets.unheard += 1
            else:
                offsets.found.append(click - (moment - gap / 2))
        return offsets


def own_error(ground):
    """What is found where flash and click are known to come at one instant."""
    begin = time.monotonic() + 1.0
    with Witness(ground, BOXES[:1]) as witness:
        metronome = Metronome(ground, BOXES[0], [begin + tick for tick in range(TICKS)])
        metronome.close()
    return witness.offsets(0, begin - 0.5, begin + TICKS)


class OurSituations:
    """What a user does with this program, and how the films fare after it."""

    def __init__(self, ground, ours, witness):
        self._ground = ground
        self._ours = ours
        self._witness = witness

    def each(self):
        """Names of situations, and when the flashes of which film belong to them."""
        for side, (film, title) in enumerate(zip(self._ours.films, TITLES)):
            self._ours.choose(film, title)
            yield "start", self._witness.watch(side)
        for side, film in enumerate(self._ours.films):
            self._ours.pause(film)
            self._ours.resume(film)
            yield "pause", self._witness.watch(side)
        for side, film in enumerate(self._ours.films):
            for place in (0.3, 0.15):
                self._slide(film, place)
                yield "seek", self._witness.watch(side, FLASHES // 2)
        self._leave_and_return()
        for side, film in enumerate(self._ours.films):
            self._ours.resume(film)
            yield "background", self._witness.watch(side)
        if self._ground.is_full:
            time.sleep(LONG_PLAY)
            for side in (0, 1):
                yield "ten minutes", self._witness.watch(side, 2 * FLASHES)

    def _slide(self, film, place):
        """Moves the film by its slider, which is shown when the film is tapped, and hides itself again and again."""
        slider = until(lambda: self._ours.program.find(film.position) or film.tap(), f"'{film.position}'", 30.0, pause=0.5)
        self._ground.display.drag(slider.at(0.5, 0.5), slider.at(place, 0.5))

    def _leave_and_return(self):
        window, screen = self._ours.program.window, self._ground.stage.screen
        screen.minimise(window)
        until(lambda: not self._ours.program.is_in_sight, "the window to be minimised")
        time.sleep(1.0)
        screen.bring_back(window)
        until(lambda: self._ours.program.is_in_sight, "the window to be shown again")


class MpvSituations:
    def __init__(self, mpv, paths, witness):
        self._mpv = mpv
        self._paths = paths
        self._witness = witness

    def each(self):
        for side, path in enumerate(self._paths):
            self._mpv.open(side, path)
            yield "start", self._witness.watch(side)
        for side in (0, 1):
            control = self._mpv.remote_control(side)
            control.command("set_property", "pause", True)
            time.sleep(1.0)
            control.command("set_property", "pause", False)
            yield "pause", self._witness.watch(side)
            for target in (30, 15):
                control.command("seek", target, "absolute+exact")
                yield "seek", self._witness.watch(side, FLASHES // 2)
            control.close()


def _judged(ground, boxes, situations_with):
    """The offsets of each situation."""
    with Witness(ground, boxes) as witness:
        found = list(situations_with(witness).each())
        time.sleep(films.FLASH_PERIOD)
    offsets = {}
    for name, stretch in found:
        offsets.setdefault(name, Offsets()).add(witness.offsets(*stretch))
    return offsets


def _ours(ground, paths):
    ours = ground.ours()
    try:
        ours.start(paths)
        return _judged(ground, ours.boxes, lambda witness: OurSituations(ground, ours, witness))
    finally:
        ours.end()


def _mpv(ground, paths):
    mpv = Mpv(ground)
    try:
        return _judged(ground, BOXES, lambda witness: MpvSituations(mpv, paths, witness))
    finally:
        mpv.end()


def sync(ground):
    """Offset of sound to picture after start, pause, seek and background, beside mpv's"""
    paths = films.flashing_pair(ground.films_folder, 100 + (LONG_PLAY if ground.is_full else 0))
    error = own_error(ground)
    print(f"  own error: {_in_words(error)}", flush=True)
    runs = {"ours": {}, "mpv": {}}
    for number in range(ground.rounds):
        for name, take in (("ours", _ours), ("mpv", _mpv)):
            for situation, offsets in take(ground, paths).items():
                runs[name].setdefault(situation, Offsets()).add(offsets)
                print(f"  round {number + 1}, {name}, {situation}: {_in_words(offsets)}", flush=True)
    checks = []
    for situation, offsets in runs["ours"].items():
        checks.append(Check(f"{situation}, median", offsets.median, MEDIAN_TARGET))
        checks.append(Check(f"{situation}, 95 of 100", offsets.worst, WORST_TARGET))
    medians = {name: statistics.median(abs(offset) for offsets in own.values() for offset in offsets.found)
               for name, own in runs.items()}
    details = {name: {situation: offsets.report for situation, offsets in own.items()} for name, own in runs.items()}
    return Result("sync", sync.__doc__, "s", medians["ours"], None, {"mpv": medians["mpv"]}, checks,
                  dict(details, **{"own error": error.report}))


def _in_words(offsets):
    if not offsets.found:
        return f"nothing found, {offsets.unheard} unheard, {offsets.unjudged} unjudged"
    each = " ".join(f"{1000 * offset:.0f}" for offset in offsets.found)
    return (f"median {1000 * offsets.median:.1f} ms, 95 of 100 {1000 * offsets.worst:.1f} ms; {each}; {offsets.unheard} unheard, "
            f"{offsets.unjudged} unjudged")
