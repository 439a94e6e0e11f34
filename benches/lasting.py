"""Measures of an app that stays open: what it takes while nothing plays, and what is left of films that are closed."""

import statistics
import time

import films
from accounting import Meter, descriptors, own_memory, proportional_set_size, threads, wake_ups
from results import Check, Result
from watching import wait_for_pictures

SETTLING = 3  # seconds
# The app's own timer runs once a second for each film; of each run there may be a question to somebody, and its answer.
WAKES_OF_OWN_TIMERS = 4
LOADS, LOADS_IN_FULL, LOADS_IN_SMOKE = 100, 500, 5
STAGES = 5
FIRST_LOADS = 5  # after them whatever is kept for later use is there
LARGEST_GROWTH = 1.05
LARGEST_GROWTH_OF_A_LOAD = 2  # KiB


def _rest(ground, ours):
    """Per cent of a core, and how often in a second the thread is woken that is woken most often."""
    time.sleep(SETTLING)
    before = wake_ups(ours.processes())
    with Meter(ours.processes) as meter:
        time.sleep(ground.seconds)
    after = wake_ups(ours.processes())
    busiest = max(count - before.get(thread, 0) for thread, count in after.items())
    return meter.cores * 100, busiest / ground.seconds


def idle(ground):
    """CPU without films, and with both paused; and that nothing runs more often than the app's own timer"""
    empty, paused, wakes = [], [], []
    paths = films.full_hd(ground.film_seconds).pair(ground.films_folder)
    for number in range(ground.rounds):
        ours = ground.ours()
        try:
            ours.start(paths)
            _note(_rest(ground, ours), empty, wakes)
            ours.choose_both()
            for film in ours.films:
                ours.pause(film)
            _note(_rest(ground, ours), paused, wakes)
        finally:
            ours.end()
        print(f"  round {number + 1}: {empty[-1]:.2f} % of a core without films, {paused[-1]:.2f} % paused, "
              f"woken {wakes[-2]:.2f} and {wakes[-1]:.2f} times a second", flush=True)
    checks = [Check("none loaded, %", statistics.median(empty), 0.3, is_strict=True),
              Check("both paused, %", statistics.median(paused), 0.3, is_strict=True),
              Check("woken a second", statistics.median(wakes), WAKES_OF_OWN_TIMERS)]
    return Result("idle", idle.__doc__, "% of a core", max(check.value for check in checks[:2]), checks=checks,
                  details={"none loaded": empty, "both paused": paused, "woken": wakes})


def _note(rest, percents, wakes):
    percents.append(rest[0])
    wakes.append(rest[1])


def _holdings(ours):
    time.sleep(SETTLING)
    processes = ours.processes()
    return {"threads": threads(processes), "descriptors": descriptors(processes),
            "MiB": round(proportional_set_size(processes), 1), "own MiB": round(own_memory(processes), 1)}


def _load_and_close(ground, ours, times):
    for _ in range(times):
        ours.choose_both()
        wait_for_pictures(ground.stage.screen, ours.boxes)
        for film in ours.films:
            ours.close(film)


def _growth_of_a_load(stages, loads):
    """How much more memory each load in each film leaves taken, in KiB: the slope over all stages, since each of them is
    off by a MiB or so, as free memory lies between what is taken. Fewer loads than the full ones are no measure of it."""
    loaded = [2 * loads * number // STAGES for number in range(STAGES + 1)]
    return statistics.linear_regression(loaded, [stage["own MiB"] * 1024 for stage in stages]).slope


def leaks(ground):
    """Threads, file descriptors and memory before and after many loads and closes in both films"""
    loads = LOADS_IN_SMOKE if ground.is_smoke else LOADS_IN_FULL if ground.is_full else LOADS
    ours = ground.ours()
    try:
        ours.start(films.full_hd(ground.film_seconds).pair(ground.films_folder))
        _load_and_close(ground, ours, 1 if ground.is_smoke else FIRST_LOADS)
        # What is looked at in between tells a leak, which grows on and on, from what is kept for later use.
        stages = [_holdings(ours)]
        for number in range(STAGES):
            _load_and_close(ground, ours, loads * (number + 1) // STAGES - loads * number // STAGES)
            stages.append(_holdings(ours))
            print(f"  after {loads * (number + 1) // STAGES} loads: {stages[-1]}", flush=True)
    finally:
        ours.end()
    before, after = stages[0], stages[-1]
    limits = {"threads": 1.0, "descriptors": 1.0, "MiB": LARGEST_GROWTH}
    checks = [Check(f"{name}, after to before", after[name] / before[name], limit) for name, limit in limits.items()]
    if ground.is_full:
        checks.append(Check("KiB of its own, each load", _growth_of_a_load(stages, loads), LARGEST_GROWTH_OF_A_LOAD))
    return Result("leaks", leaks.__doc__, "MiB", after["MiB"], checks=checks,
                  details={"loads in each film": loads, "before": before, "after each fifth": stages[1:]})
