"""The services of a desktop, as far as the program uses them, on the session bus of the stage."""

from processes import Companion, NotInTime, until


class StandInDesktop(Companion):
    """The login service and the screen saver. Both buses of a program started with `environment` lead to them. It is told
    what is to happen: lock, unlock, sleep, wake, blank, unblank."""

    def __init__(self, path, stage):
        address = stage.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.environment = {"DBUS_SYSTEM_BUS_ADDRESS": address}
        super().__init__([path], {**stage.environment, **self.environment})
        self.wait_for("ready")

    def wait_for(self, line, since=0):
        """Until it says this, after the place `since`."""
        try:
            until(lambda: line in self.said(since), f"the desktop to say '{line}'")
        except NotInTime as late:
            raise NotInTime(f"{late}, but it said {self.said(since)}") from late

    def wait_until_followed(self):
        """Until the program has found the login service, and so hears the session's signals."""
        self.wait_for("sleep delays 1")
