"""The services of a desktop, as far as the program uses them, on the session bus of the stage."""

import subprocess
import threading

from processes import NotInTime, end, start, until


class StandInDesktop:
    """The login service and the screen saver. Both buses of a program started with `environment` lead to them."""

    def __init__(self, path, stage):
        address = stage.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.environment = {"DBUS_SYSTEM_BUS_ADDRESS": address}
        self._lines = []
        self._process = start([path], env={**stage.environment, **self.environment}, text=True, bufsize=1,
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        self.wait_for("ready")

    def _read(self):
        for line in self._process.stdout:
            self._lines.append(line.rstrip("\n"))

    def close(self):
        end(self._process)
        self._reader.join()
        self._process.stdin.close()
        self._process.stdout.close()

    def tell(self, *commands):
        """Lets it do one thing after the other: lock, unlock, sleep, wake, blank, unblank."""
        for command in commands:
            self._process.stdin.write(command + "\n")

    def mark(self):
        """A place in what it says: where that ends now."""
        return len(self._lines)

    def said(self, since=0):
        return self._lines[since:]

    def wait_for(self, line, since=0):
        """Until it says this, after the place `since`."""
        try:
            until(lambda: line in self.said(since), f"the desktop to say '{line}'")
        except NotInTime as late:
            raise NotInTime(f"{late}, but it said {self.said(since)}") from late

    def wait_until_followed(self):
        """Until the program has found the login service, and so hears the session's signals."""
        self.wait_for("sleep delays 1")
