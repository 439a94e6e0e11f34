"""Measures of two films that play: what it costs, and whether all of it is seen and heard."""

import os
import shutil
import statistics
import time
from dataclasses import dataclass

import films
from accounting import proportional_set_size
from floors import decoding_floor, memory_floor
from listening import Listener
from processes import until
from results import Check, Result, better, median_share, share
from watching import Watch

SETTLING = 2  # seconds


@dataclass
class Run:
    """One contestant, playing for a while."""

    own_cores: float
    server_cores: float
    mebibytes: float
    dropped_share: float
    longest_silences: list
    pictures: dict

    @property
    def cores(self):
        return self.own_cores + self.server_cores

    @property
    def report(self):
        return {"cores of its own": round(self.own_cores, 3), "cores of the X and the sound server": round(self.server_cores, 3),
                "MiB": round(self.mebibytes, 1), "dropped share": round(self.dropped_share, 5),
                "longest silences": [round(silence, 4) for silence in self.longest_silences], "pictures": self.pictures}


def check_sides(ground):
    """Until the first film is heard on the left and the second on the right, each loudest there."""
    heard = []

    def each_on_its_side():
        with Listener(ground.stage.sound_server) as listener:
            time.sleep(0.4)
            heard.append(listener.sound())
        return all(abs(heard[-1].strongest(side) - tone) < 6 for side, tone in enumerate(films.TONES))

    until(each_on_its_side, lambda: f"each film on its side; heard last: {heard[-1]}", 20.0)


def perform(ground, contestant, film, is_listening=False):
    """Lets the contestant play both films and answers what that was like. Fails where nothing is shown or heard. One that
    is listened to is asked for too much, and may stop showing pictures once it has begun."""
    paths = film.pair(ground.films_folder)
    try:
        contestant.play(paths)
        check_sides(ground)
        boxes = contestant.boxes
        time.sleep(SETTLING)
        if not is_listening:
            run = _measured(ground, contestant, film, boxes)
            if min(run.pictures["shown"]) < 2:
                raise RuntimeError(f"{contestant.name} stopped showing pictures: {run.pictures}")
            return run
        with Listener(ground.stage.sound_server) as listener:
            run = _measured(ground, contestant, film, boxes)
            run.longest_silences = [listener.longest_silence(side) for side in (0, 1)]
        return run
    finally:
        contestant.end()


def _measured(ground, contestant, film, boxes):
    own, servers = ground.meters(contestant)
    with own, servers, Watch(ground.stage.screen, boxes, film) as watch:
        time.sleep(ground.seconds)
    return Run(own.cores, servers.cores, proportional_set_size(contestant.processes()), watch.dropped_share, [],
               watch.report)


def rounds_of(ground, film, floors=None, is_listening=False):
    """All contestants in turns; the runs of each by name. `floors`, if given, gets the floor of each round."""
    runs = {}
    for number in range(ground.rounds):
        if floors is not None:
            floors.append(decoding_floor(film.pair(ground.films_folder), ground.seconds))
        for contestant in ground.contestants(number):
            run = perform(ground, contestant, film, is_listening)
            runs.setdefault(contestant.name, []).append(run)
            print(f"  round {number + 1}, {contestant.name}: {run.cores:.2f} cores, {run.mebibytes:.0f} MiB, "
                  f"{run.dropped_share:.2%} dropped", flush=True)
    return runs


def values_of(runs, what):
    """One number of each run: that of ours, and by name those of the rivals."""
    values = {name: [getattr(run, what) for run in own] for name, own in runs.items()}
    return values.pop("ours"), values


def reports_of(runs):
    return {name: [run.report for run in own] for name, own in runs.items()}


def _cpu(ground, measure, what, film, limits):
    floors = []
    runs = ground.runs[film.name] = rounds_of(ground, film, floors)
    ours, rivals = values_of(runs, "cores")
    limit_to_floor, limit_to_rival, limit_of_dropped = limits
    checks = [Check(f"to {better(rivals)}", median_share(ours, rivals[better(rivals)]), limit_to_rival)]
    if limit_to_floor is not None:
        checks.insert(0, Check("to the floor", median_share(ours, floors), limit_to_floor))
    if limit_of_dropped is not None:
        checks.append(Check("dropped share", statistics.median(run.dropped_share for run in runs["ours"]), limit_of_dropped))
    return Result(measure, what, "cores", statistics.median(ours), statistics.median(floors),
                  _medians(rivals), checks, reports_of(runs))


def _medians(values):
    return {name: statistics.median(own) for name, own in values.items()}


def cpu_30(ground):
    """CPU of two films of 1080p30, H.264 and AAC, in two views of 640x360"""
    return _cpu(ground, "cpu30", cpu_30.__doc__, films.full_hd(ground.film_seconds), (1.10, 0.8, 0.005))


def cpu_60(ground):
    """CPU of two films of 1080p60"""
    return _cpu(ground, "cpu60", cpu_60.__doc__, films.full_hd_60(ground.film_seconds), (None, 0.85, None))


def overload(ground):
    """Two films of 4K30 in HEVC: the share of pictures dropped, and whether the sound goes on"""
    film = films.ultra_hd(ground.film_seconds, 2 if ground.is_smoke else 10)
    runs = rounds_of(ground, film, is_listening=True)
    ours, rivals = values_of(runs, "dropped_share")
    own, others = statistics.median(ours), _medians(rivals)
    silence = max(max(run.longest_silences) for run in runs["ours"])
    checks = [Check(f"to {name}", share(own, value), 1.0, is_strict=True) for name, value in others.items()]
    return Result("overload", overload.__doc__, "dropped share", own, None, others,
                  checks + [Check("longest silence, s", silence, 0.020)], reports_of(runs))


class Indexing:
    """Ours, whose library gets many new films as soon as two of them play."""

    name = "ours, indexing"
    _FILMS = 4000  # of which each takes some milliseconds

    def __init__(self, ours, new_film):
        self._ours = ours
        self._new_film = new_film

    def play(self, paths):
        self._ours.play(paths)
        hidden = os.path.join(self._ours.home.videos, ".new")
        os.mkdir(hidden)
        for number in range(self._FILMS):
            shutil.copy(self._new_film, os.path.join(hidden, f"{number}.mp4"))
        os.rename(hidden, os.path.join(self._ours.home.videos, "new"))

    def end(self):
        known = len(os.listdir(os.path.join(self._ours.home.environment["XDG_CACHE_HOME"], "thumbnails", "large")))
        self._ours.end()
        if known <= 2 or known >= self._FILMS:
            raise RuntimeError(f"the films were not looked into while the others played: {known} of them are")

    def __getattr__(self, name):
        return getattr(self._ours, name)


def indexing(ground):
    """Pictures dropped by two films of 1080p30 while new films are looked into"""
    film = films.full_hd(ground.film_seconds + 20)
    new_film = films.one_of_many(ground.films_folder)
    runs = {}
    for _ in range(ground.rounds):
        for contestant in (ground.ours(), Indexing(ground.ours(), new_film)):
            run = perform(ground, contestant, film)
            runs.setdefault(contestant.name, []).append(run)
            print(f"  {contestant.name}: {run.cores:.2f} cores, {run.dropped_share:.2%} dropped", flush=True)
    alone, busy = (statistics.median(run.dropped_share for run in runs[name]) for name in ("ours", Indexing.name))
    return Result("indexing", indexing.__doc__, "dropped share", busy, None, {"without indexing": alone},
                  [Check("dropped share", busy, 0.005)], reports_of(runs))


def memory(ground):
    """Memory (proportional set size of all its processes) while two films of 1080p30 play"""
    film = films.full_hd(ground.film_seconds)
    runs = ground.runs.get(film.name) or rounds_of(ground, film)
    ours, rivals = values_of(runs, "mebibytes")
    best = better(rivals)
    return Result("memory", memory.__doc__, "MiB", statistics.median(ours),
                  memory_floor(film.pair(ground.films_folder)), _medians(rivals),
                  [Check(f"to {best}", median_share(ours, rivals[best]), 0.7)], reports_of(runs))
