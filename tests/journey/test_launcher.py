"""What launchers ask of the running app: to come forward, and to open its settings."""

from gi.repository import Gio, GLib

from journey import FILM_A, Journey
from processes import until

NAME = "example.quillop.Quillop"
PATH = "/" + NAME.replace(".", "/")


class Launcher(Journey):
    def ask(self, method, *arguments):
        """As a launcher does that follows the desktop entry."""
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        address = self.stage.environment["DBUS_SESSION_BUS_ADDRESS"]
        bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        try:
            bus.call_sync(NAME, PATH, "org.freedesktop.Application", method, GLib.Variant(*arguments), None,
                          Gio.DBusCallFlags.NO_AUTO_START, 10000, None)
        finally:
            bus.close_sync(None)

    def start_with(self, *titles):
        home = self.surroundings.new_home(*titles)
        home.know_the_app()
        return self.start(home)

    def test_the_action_of_the_desktop_entry_opens_the_settings(self):
        program = self.start_with(FILM_A.title)
        self.ask("ActivateAction", "(sava{sv})", ("settings", [], {}))
        program.wait_for("Add a folder")
        self.screen.key("Escape")
        program.wait_until_gone("Add a folder")

    def test_a_further_launch_brings_the_window_back(self):
        program = self.start_with(FILM_A.title)
        self.screen.minimise(program.window)
        until(lambda: not program.is_in_sight, "the window to be minimised")
        self.ask("Activate", "(a{sv})", ({},))
        until(lambda: program.is_in_sight, "the window to be back")

    def test_the_window_has_the_class_that_the_desktop_entry_names(self):
        program = self.start_with(FILM_A.title)
        self.assertIn(program.window, self.screen.windows_of_class("quillop"))
