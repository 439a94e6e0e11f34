"""What processes cost, by the kernel's own accounts: proc(5)."""

import os
import time

TICKS = os.sysconf("SC_CLK_TCK")


def _stat(process_id):
    """The fields of the file stat after the name; empty for a process that has ended."""
    try:
        with open(f"/proc/{process_id}/stat", encoding="ascii", errors="replace") as file:
            return file.read().rsplit(")", 1)[1].split()
    except OSError:
        return []


def family(process_ids):
    """These processes and all that descend from them."""
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            fields = _stat(entry)
            if fields:
                parents[int(entry)] = int(fields[1])
    found = {process_id for process_id in process_ids if process_id in parents}
    while True:
        more = {child for child, parent in parents.items() if parent in found} - found
        if not more:
            return found
        found |= more


def cpu_seconds(process_ids):
    """User and system time so far of the processes, and of those children of theirs that have ended."""
    ticks = 0
    for process_id in process_ids:
        fields = _stat(process_id)
        if fields:
            ticks += sum(int(field) for field in fields[11:15])
    return ticks / TICKS


class Meter:
    """The CPU time that processes take while it runs. `processes` answers their ids and is asked at both ends."""

    def __init__(self, processes):
        self._processes = processes
        self.cores = 0.0

    def __enter__(self):
        self._before = cpu_seconds(self._processes())
        self._began = time.monotonic()
        return self

    def __exit__(self, *_):
        seconds = time.monotonic() - self._began
        self.cores = (cpu_seconds(self._processes()) - self._before) / seconds


def proportional_set_size(process_ids):
    """The processes' share of memory in MiB: of files, theirs among all processes that have mapped them."""
    return _memory(process_ids, "Pss:")


def own_memory(process_ids):
    """What the processes hold in memory beside files, in MiB. It does not depend on what else runs."""
    return _memory(process_ids, "Pss_Anon:")


def _memory(process_ids, kind):
    kibibytes = 0
    for process_id in process_ids:
        try:
            with open(f"/proc/{process_id}/smaps_rollup", encoding="ascii") as file:
                kibibytes += next(int(line.split()[1]) for line in file if line.startswith(kind))
        except OSError:
            continue  # it has ended meanwhile
    return kibibytes / 1024


def threads(process_ids):
    return sum(_entries(f"/proc/{process_id}/task") for process_id in process_ids)


def wake_ups(process_ids):
    """How often each thread of the processes was woken so far, by its id: it had given up the processor by itself."""
    counts = {}
    for process_id in process_ids:
        try:
            for thread in os.listdir(f"/proc/{process_id}/task"):
                with open(f"/proc/{process_id}/task/{thread}/status", encoding="ascii", errors="replace") as file:
                    counts[thread] = next(int(line.split()[1]) for line in file if line.startswith("voluntary_ctxt"))
        except OSError:
            continue  # it has ended meanwhile
    return counts


def descriptors(process_ids):
    return sum(_entries(f"/proc/{process_id}/fd") for process_id in process_ids)


def _entries(folder):
    try:
        return len(os.listdir(folder))
    except OSError:
        return 0
