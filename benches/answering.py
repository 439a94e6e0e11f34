"""Measures of how long the user waits."""

import statistics
import time

import films
from floors import seeking_floor
from ground import GREY
from listening import Listener
from ours import TITLES
from processes import until
from program import LIBRARY_IS_OPEN
from results import Check, Result, median_share
from rivals import Mpv
from track import SEEK_TARGETS, Track
from watching import BOXES, Jumps, Looks, number_reader, picture_in, wait_for_pictures

PATIENCE = 30.0  # seconds
TIMES_IN_A_ROUND = 3
GREY_LEVEL = GREY & 0xFF  # the brightness of the bare screen
OUT_OF_THE_WAY = (1200, 880)  # for the pointer: no window is there


def _times(ground):
    return range(1 if ground.is_smoke else TIMES_IN_A_ROUND)


def _compared(measure, what, ours, mpv, limit, details, floor=None):
    """A result of two lists of seconds."""
    return Result(measure, what, "s", statistics.median(ours), floor, {"mpv": statistics.median(mpv)},
                  [Check("to mpv", median_share(ours, mpv), limit)], details)


def _first_picture_and_sound(ground, reader, act):
    """How long after the moment that `act` answers a picture is seen, and something heard on the left."""
    with Listener(ground.stage.sound_server) as listener, Looks(reader) as looks:
        time.sleep(0.3)
        moment = act()
        until(lambda: any(seen[0] > moment for seen in looks.seen), "a picture", PATIENCE)
        heard = until(lambda: listener.first_sound(0, moment), "a sound", PATIENCE, pause=0.1)
    return next(seen[0] for seen in looks.seen if seen[0] > moment) - moment, heard - moment


def _taps(ground, paths):
    """Taps on a row, each from an empty film on: seconds to the picture and to the sound."""
    ours = ground.ours()
    found = []
    try:
        ours.start(paths)
        film = ours.films[0]
        reader = number_reader(ground.stage.screen, ours.boxes[0])
        for _ in _times(ground):
            ours.program.open_list()
            row = ours.program.row(film, TITLES[0])
            found.append(_first_picture_and_sound(ground, reader, lambda: ground.display.tap(row.at(0.5, 0.5))))
            ours.close(film)
    finally:
        ours.end()
    return found


def _mpv_starts(ground, paths):
    found = []
    for _ in _times(ground):
        mpv = Mpv(ground)
        try:
            def act(mpv=mpv):
                moment = time.monotonic()
                mpv.open(0, paths[0])
                return moment

            found.append(_first_picture_and_sound(ground, number_reader(ground.stage.screen, BOXES[0]), act))
        finally:
            mpv.end()
    return found


def tap(ground):
    """From a tap on a row to both picture and sound, beside mpv from its start to its first picture"""
    paths = films.full_hd(ground.film_seconds).pair(ground.films_folder)
    ours, mpv = [], []
    for number in range(ground.rounds):
        ours += _taps(ground, paths)
        mpv += _mpv_starts(ground, paths)
        print(f"  round {number + 1}: picture and sound of ours {ours[-1]}, of mpv {mpv[-1]}", flush=True)
    details = {"ours": _each(ours), "mpv": _each(mpv)}
    return _compared("tap", tap.__doc__, [max(both) for both in ours], [picture for picture, _ in mpv], 0.5, details)


def _each(pairs):
    return [{"picture": round(picture, 4), "sound": round(sound, 4)} for picture, sound in pairs]


def _slider_seeks(ground, film, paths):
    ours = ground.ours()
    found = []
    try:
        ours.start(paths)
        ours.choose(ours.films[0], TITLES[0])
        reader = number_reader(ground.stage.screen, ours.boxes[0])
        wait_for_pictures(ground.stage.screen, ours.boxes[:1])
        track = Track(ground, ours)
        for target in SEEK_TARGETS[: len(_times(ground))]:
            begin, finish = track.show(), track.place_of(target)
            with Looks(reader) as looks:
                moment = ground.display.drag(begin, finish)
                found.append(max(0.0, Jumps(film, target).arrival(looks) - moment))
    finally:
        ours.end()
    return found


def _mpv_seeks(ground, film, paths):
    mpv = Mpv(ground)
    found = []
    try:
        mpv.open(0, paths[0])
        wait_for_pictures(ground.stage.screen, BOXES[:1])
        control = mpv.remote_control(0)
        for target in SEEK_TARGETS[: len(_times(ground))]:
            time.sleep(1)
            with Looks(number_reader(ground.stage.screen, BOXES[0])) as looks:
                time.sleep(0.1)
                moment = time.monotonic()
                control.command("seek", target, "absolute+exact")
                found.append(Jumps(film, target).arrival(looks) - moment)
        control.close()
    finally:
        mpv.end()
    return found


def seek(ground):
    """From letting the slider go to the accurate picture, key frames 8 s apart, beside mpv's absolute+exact"""
    film = films.rare_key_frames(ground.film_seconds)
    paths = film.pair(ground.films_folder)
    ours, mpv, floors = [], [], []
    for number in range(ground.rounds):
        floors += [seeking_floor(paths[0], target) for target in SEEK_TARGETS[: len(_times(ground))]]
        ours += _slider_seeks(ground, film, paths)
        mpv += _mpv_seeks(ground, film, paths)
        print(f"  round {number + 1}: ours {ours[-1]:.3f} s, mpv {mpv[-1]:.3f} s", flush=True)
    details = {"ours": ours, "mpv": mpv, "floors": floors}
    return _compared("seek", seek.__doc__, ours, mpv, 0.5, details, statistics.median(floors))


def _grid(box, columns, rows):
    left, top, width, height = box
    return [(left + width * (column + 0.5) / columns, top + height * (row + 0.5) / rows)
            for column in range(columns) for row in range(rows)]


class Appearance:
    """How the app looks once it has started: its window as a whole, and the button that opens the list."""

    def __init__(self, ground, window, button):
        self._look = ground.stage.screen.brightness_at(_grid(button, 24, 8) + _grid(window, 40, 12))
        self._button_points = 24 * 8
        self._whole = self._look()

    def __call__(self):
        """Whether that is what is to be seen now."""
        now = self._look()
        differing = [place for place, level in enumerate(now) if level != self._whole[place]]
        return not any(place < self._button_points for place in differing) and len(differing) < len(now) / 50


def _learn_appearance(ground, ours):
    """Starts it once as a new user does, so that later starts have no questions, and once more to see how it looks."""
    ours.launch()
    ours.program.wait_until_ready()
    ours.program.open_list()
    ours.program.end()
    ours.launch()
    ours.program.wait_until_ready()
    button = ours.program.wait_for("Choose videos")
    boxes = [picture_in(ours.program.wait_for(f"Film {number}").box) for number in (1, 2)]
    window = (0, 0, boxes[1][0] + boxes[1][2], boxes[1][1] + boxes[1][3])
    ground.display.move(OUT_OF_THE_WAY)
    time.sleep(1.5)
    appearance, place = Appearance(ground, window, button.box), button.at(0.5, 0.5)
    ours.program.end()
    return appearance, place


def _our_start(ground, ours, looks_started, button_place):
    """Seconds to the moment at which everything is drawn and the library is open; that it is operable then, is tried."""
    ground.display.move(OUT_OF_THE_WAY)
    time.sleep(0.5)
    moment = time.monotonic()
    ours.launch()
    try:
        lines = ours.program.lines

        def is_ready():
            return "viewDidAppear" in lines and LIBRARY_IS_OPEN in lines and looks_started()

        until(is_ready, lambda: f"the screen to look as it did; the console has {lines}", PATIENCE, pause=0.002)
        seconds = time.monotonic() - moment
        ground.display.tap(button_place)
        ours.program.lines_up_to("listaVideo", 0)
        return seconds
    finally:
        ours.program.end()


def _mpv_start(ground):
    ground.display.move(OUT_OF_THE_WAY)
    look = ground.stage.screen.brightness_at(_grid(BOXES[0], 40, 12))
    until(lambda: all(level == GREY_LEVEL for level in look()), "an empty screen", PATIENCE)
    time.sleep(0.5)
    mpv = Mpv(ground)
    try:
        moment = time.monotonic()
        mpv.open(0, None)
        until(lambda: not any(level == GREY_LEVEL for level in look()), "mpv's window", PATIENCE, pause=0.002)
        return time.monotonic() - moment
    finally:
        mpv.end()


def start(ground):
    """From the start of the app to a screen that can be operated, beside mpv's start to its empty window"""
    ours = ground.ours()
    own, mpv = [], []
    try:
        ours.settle_in(films.full_hd(ground.film_seconds).pair(ground.films_folder))
        appearance, button_place = _learn_appearance(ground, ours)
        for number in range(ground.rounds):
            for _ in _times(ground):
                own.append(_our_start(ground, ours, appearance, button_place))
                mpv.append(_mpv_start(ground))
            print(f"  round {number + 1}: ours {own[-1]:.3f} s, mpv {mpv[-1]:.3f} s", flush=True)
    finally:
        ours.end()
    return _compared("start", start.__doc__, own, mpv, 1.0, {"ours": own, "mpv": mpv})
