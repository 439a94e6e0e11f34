"""The desktop's media panel, as which playerctl acts on the session bus of the stage."""

import subprocess
import threading

from gi.repository import Gio

from processes import end, start, until


class MediaPanel:
    """What lists all players of the session."""

    def __init__(self, stage):
        self._environment = stage.environment

    def _run(self, *words):
        return subprocess.run(["playerctl", *words], env=self._environment, stdin=subprocess.DEVNULL, timeout=20,
                              text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def players(self):
        return sorted(self._run("--list-all", "--no-messages").stdout.splitlines())

    def player_of(self, film):
        """The player that a film is, once it is there."""
        name = f"quillop.film{film.number}"
        until(lambda: name in self.players(), lambda: f"{name} among {self.players()}")
        return MediaPlayer(self, name)

    def ask(self, name, *words):
        done = self._run(f"--player={name}", *words)
        if done.returncode != 0:
            raise AssertionError(f"playerctl {' '.join(words)}: {done.stdout}")
        return done.stdout.strip()

    def follow(self, name, *words):
        return Following(["playerctl", f"--player={name}", "--follow", *words], self._environment)


class MediaPlayer:
    """One player in the panel."""

    def __init__(self, panel, name):
        self._panel = panel
        self.name = name

    def do(self, *words):
        self._panel.ask(self.name, *words)

    def does(self, *words):
        """Whether it does so, and does not refuse because of too many calls."""
        try:
            self.do(*words)
        except AssertionError as refusal:
            if "LimitsExceeded" not in str(refusal):
                raise
            return False
        return True

    def metadata(self, key):
        return self._panel.ask(self.name, "metadata", key)

    @property
    def status(self):
        return self._panel.ask(self.name, "status")

    @property
    def position(self):
        """In seconds."""
        return float(self._panel.ask(self.name, "position"))

    @property
    def volume(self):
        return float(self._panel.ask(self.name, "volume"))

    def follow(self, *words):
        """What playerctl tells of it whenever it changes, until it is closed."""
        return self._panel.follow(self.name, *words)


class Crowd:
    """Somebody who calls a method of a film's player again and again, without waiting for an answer, until closed."""

    def __init__(self, stage, name, method):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._bus = Gio.DBusConnection.new_for_address_sync(stage.environment["DBUS_SESSION_BUS_ADDRESS"], flags)
        self._bus.set_exit_on_close(False)
        self._call = ("org.mpris.MediaPlayer2." + name, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player",
                      method, None, None, Gio.DBusCallFlags.NONE, -1, None, None)
        self.calls = 0
        self._is_over = False
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()

    def _run(self):
        while not self._is_over:
            for _ in range(100):
                self._bus.call(*self._call)
            self._bus.flush_sync()
            self.calls += 100

    def close(self):
        self._is_over = True
        self._thread.join()
        if not self._bus.is_closed():
            self._bus.close_sync()


class Following:
    """playerctl while it follows a player."""

    def __init__(self, command, environment):
        self.lines = []
        self._process = start(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stdout:
            self.lines.append(line.strip())

    def wait_for(self, condition, what):
        """The first line that fulfils `condition`."""
        return until(lambda: next((line for line in list(self.lines) if condition(line)), None),
                     lambda: f"{what} among {self.lines}")

    def close(self):
        end(self._process)
        self._reader.join()
        self._process.stdout.close()
