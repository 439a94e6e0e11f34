"""Programs started beside the tests, none of which outlives them, and waiting with a deadline."""

import ctypes
import os
import signal
import subprocess
import threading
import time

PR_SET_PDEATHSIG = 1
_libc = ctypes.CDLL(None)


class NotInTime(AssertionError):
    """What was waited for did not come about."""


def until(condition, what, deadline=10.0, pause=0.02):
    """The first true answer of `condition`, asked again and again. `what` says in an error what never came."""
    end = time.monotonic() + deadline
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise NotInTime(f"waited {deadline:g} s in vain: {what() if callable(what) else what}")
        time.sleep(pause)


def _die_with_parent():
    # Even where the tests are killed without a chance to clean up, nothing stays running.
    _libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


def start(command, **options):
    """Starts `command` in a process group of its own."""
    options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.Popen(command, start_new_session=True, preexec_fn=_die_with_parent, **options)


def end(process, patience=5.0):
    """Asks `process` to end, and makes it, with all of its group."""
    if process is None:
        return
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(patience)
        except subprocess.TimeoutExpired:
            pass
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def marked(variable, value):
    """The processes, of anyone, that were started with `variable=value` in their environment and still run."""
    wanted = f"{variable}={value}".encode()
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/environ", "rb") as file:
                if wanted in file.read().split(b"\0"):
                    found.append(int(entry))
        except OSError:
            continue  # it has ended meanwhile, or is not ours to look at
    return found


class Companion:
    """A program that the tests bring, which is told what to do and says what it did, one line each."""

    def __init__(self, command, environment):
        self._lines = []
        self._process = start(command, env=environment, text=True, bufsize=1, stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stdout:
            self._lines.append(line.rstrip("\n"))

    def close(self):
        end(self._process)
        self._reader.join()
        self._process.stdin.close()
        self._process.stdout.close()

    def tell(self, *words):
        self._process.stdin.write(" ".join(str(word) for word in words) + "\n")

    def mark(self):
        """A place in what it says: where that ends now."""
        return len(self._lines)

    def said(self, since=0):
        return self._lines[since:]
