"""What launchers ask of the running app: to come forward, and to open its settings."""

from gi.repository import Gio, GLib

from journey import Journey
from processes import until

NAME = "example.quillop.Quillop"
PATH = "/" + NAME.replace(".", "/")
SWITCH = "Access to the media library"


class Launcher(Journey):
    def setUp(self):
        super().setUp()
        self.share()

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

    def test_the_action_of_the_desktop_entry_opens_the_settings(self):
        self.ask("ActivateAction", "(sava{sv})", ("settings", [], {}))
        self.program.wait_for("Add a folder")
        self.screen.key("Escape")
        self.program.wait_until_gone("Add a folder")

    def test_the_menu_opens_the_settings_at_their_beginning(self):
        self.program.press("Quillop menu")
        self.program.press("Settings")
        self.program.wait_for("Add a folder")
        _, head, _, height = self.program.wait_for("Close").box
        until(lambda: self.program.wait_for(SWITCH).box[1] >= head + height, "the first setting to be below the head")
        self.screen.key("Escape")
        self.program.wait_until_gone("Add a folder")

    def test_a_further_launch_brings_the_window_back(self):
        self.screen.minimise(self.program.window)
        until(lambda: not self.program.is_in_sight, "the window to be minimised")
        self.ask("Activate", "(a{sv})", ({},))
        until(lambda: self.program.is_in_sight, "the window to be back")

    def test_the_window_has_the_class_that_the_desktop_entry_names(self):
        self.assertIn(self.program.window, self.screen.windows_of_class("quillop"))
