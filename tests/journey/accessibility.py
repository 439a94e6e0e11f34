"""The accessibility tree of running programs, asked directly over D-Bus (AT-SPI 2), without a cache between."""

from gi.repository import Gio, GLib

from processes import until

PATIENCE = 3000  # milliseconds for one answer

ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
VALUE = "org.a11y.atspi.Value"
PROPERTIES = "org.freedesktop.DBus.Properties"

# Numbers of AtspiStateType.
STATE_ENABLED = 8
STATE_FOCUSED = 12
STATE_SHOWING = 25

SCREEN_COORDINATES = 0


class AccessibilityBus:
    """The bus on which programs show their accessibility trees, found through a session bus."""

    def __init__(self, session_address):
        session = self._connect(session_address)
        answer = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None,
                                   GLib.VariantType("(s)"), Gio.DBusCallFlags.NONE, 20000, None)
        self._session = session
        self.address = answer.unpack()[0]
        self._bus = self._connect(self.address)

    @staticmethod
    def _connect(address):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        connection.set_exit_on_close(False)
        return connection

    def close(self):
        self._bus.close_sync(None)
        self._session.close_sync(None)

    def call(self, name, path, interface, method, arguments=None):
        answer = self._bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                     PATIENCE, None)
        return answer.unpack()

    def process_of(self, name):
        return self.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                         GLib.Variant("(s)", (name,)))[0]

    def program(self, process_id, deadline=20.0):
        """The root of the tree of the program with this process id, once it shows one."""
        registry = Node(self, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")

        def shown():
            for node in registry.children():
                try:
                    if self.process_of(node.bus_name) == process_id:
                        return node
                except GLib.Error:
                    continue  # a program that has just ended
            return None

        return until(shown, f"the accessibility tree of process {process_id}", deadline, pause=0.1)


class Node:
    """One object of a tree. Any question may meet that it is gone; `children` and `find` take that for absence."""

    def __init__(self, bus, bus_name, path):
        self._bus = bus
        self.bus_name = bus_name
        self.path = path

    def _call(self, interface, method, arguments=None):
        return self._bus.call(self.bus_name, self.path, interface, method, arguments)

    def _property(self, interface, name):
        return self._call(PROPERTIES, "Get", GLib.Variant("(ss)", (interface, name)))[0]

    @property
    def name(self):
        return self._property(ACCESSIBLE, "Name")

    @property
    def description(self):
        return self._property(ACCESSIBLE, "Description")

    @property
    def role(self):
        return self._call(ACCESSIBLE, "GetRoleName")[0]

    def has_state(self, state):
        words = self._call(ACCESSIBLE, "GetState")[0]
        return bool(words[state // 32] >> (state % 32) & 1)

    @property
    def is_showing(self):
        return self.has_state(STATE_SHOWING)

    @property
    def is_focused(self):
        return self.has_state(STATE_FOCUSED)

    @property
    def box(self):
        """Left, top, width and height on the screen."""
        return self._call(COMPONENT, "GetExtents", GLib.Variant("(u)", (SCREEN_COORDINATES,)))[0]

    def at(self, across, down):
        """A place inside, as fractions of the width and the height."""
        x, y, width, height = self.box
        return x + width * across, y + height * down

    @property
    def value(self):
        return self._property(VALUE, "CurrentValue")

    @property
    def maximum(self):
        return self._property(VALUE, "MaximumValue")

    def press(self):
        """What a screen reader's press does."""
        for index in range(self._property(ACTION, "NActions")):
            if self._call(ACTION, "GetName", GLib.Variant("(i)", (index,)))[0] == "Press":
                self._call(ACTION, "DoAction", GLib.Variant("(i)", (index,)))
                return
        raise AssertionError(f"{self} cannot be pressed")

    def children(self):
        try:
            return [Node(self._bus, name, path) for name, path in self._call(ACCESSIBLE, "GetChildren")[0]]
        except GLib.Error:
            return []

    def descendants(self):
        for child in self.children():
            yield child
            yield from child.descendants()

    def find(self, name):
        """The object of that name which is on the screen, or None."""
        for node in self.descendants():
            try:
                if node.name == name and node.is_showing:
                    return node
            except GLib.Error:
                continue
        return None

    def focused_name(self):
        """The name of what has the keyboard's focus, or None."""
        for node in self.descendants():
            try:
                if node.is_focused:
                    return node.name
            except GLib.Error:
                continue
        return None

    def focused_path(self):
        """What tells the innermost object with the keyboard's focus from all others, or None."""
        path = None
        for node in self.descendants():
            try:
                if node.is_focused:
                    path = node.path
            except GLib.Error:
                continue
        return path

    def shown_names(self):
        """The names of everything on the screen, in tree order."""
        names = []
        for node in self.descendants():
            try:
                if node.name and node.is_showing:
                    names.append(node.name)
            except GLib.Error:
                continue
        return names

    def outline(self, depth=0):
        """The whole tree as text, for people."""
        try:
            showing = "" if self.is_showing else " (not shown)"
            lines = [f"{'  ' * depth}{self.role} '{self.name}'{showing} {self.box}"]
        except GLib.Error:
            lines = [f"{'  ' * depth}{self.path}"]
        for child in self.children():
            lines.append(child.outline(depth + 1))
        return "\n".join(lines)
