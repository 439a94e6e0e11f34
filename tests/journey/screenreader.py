"""A screen reader without a voice: a client of the accessibility interface like any other (libatspi), which keeps what
it is told, and does nothing but what that interface offers."""

import os

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # pylint: disable=wrong-import-position

from processes import until  # pylint: disable=wrong-import-position

# Programs send what somebody asked for, some of it only where it is asked for by its full name.
KINDS = ["object:state-changed", "object:children-changed", "object:property-change:accessible-name",
         "object:property-change:accessible-description", "object:property-change:accessible-value"]


class Told:
    """One event: its kind, such as "object:state-changed:focused", the name and the role of what it is about, and its
    number, such as 1 for a state that came."""

    def __init__(self, event):
        self.kind = event.type
        self.number = event.detail1
        try:
            self.name = event.source.get_name()
            self.role = event.source.get_role_name()
        except GLib.Error:
            self.name = self.role = None  # it is gone already

    def __repr__(self):
        return f"{self.kind}={self.number} of {self.role} '{self.name}'"


class ScreenReader:
    """To be made once per process, since libatspi knows one bus."""

    def __init__(self, bus_address):
        os.environ["AT_SPI_BUS_ADDRESS"] = bus_address
        Atspi.init()
        Atspi.set_timeout(3000, 10000)
        self.told = []
        self._listener = Atspi.EventListener.new(self._note)
        for kind in KINDS:
            self._listener.register(kind)

    def _note(self, event):
        self.told.append(Told(event))

    def close(self):
        for kind in KINDS:
            self._listener.deregister(kind)

    def listen(self):
        """Takes in what was said since the last time."""
        context = GLib.MainContext.default()
        while context.iteration(False):
            pass

    def until(self, condition, what, deadline=15.0):
        def asked():
            self.listen()
            try:
                return condition()
            except GLib.Error:
                return None  # something has gone meanwhile

        return until(asked, what, deadline)

    def mark(self):
        """A place in what it was told: where that ends now."""
        self.listen()
        return len(self.told)

    def wait_until_told(self, kind, name, since=0, number=None, deadline=10.0):
        """Until it was told of that, after the place `since`."""
        def heard():
            for told in self.told[since:]:
                if told.kind == kind and told.name == name and number in (None, told.number):
                    return told
            return None

        return self.until(heard, lambda: f"to be told {kind} of '{name}', but heard {self.told[since:]}", deadline)

    def program(self, process_id):
        """The tree of the program with this process id."""
        desktop = Atspi.get_desktop(0)

        def shown():
            for index in range(desktop.get_child_count()):
                child = desktop.get_child_at_index(index)
                if child is not None and child.get_process_id() == process_id:
                    return Item(child)
            return None

        return self.until(shown, f"the accessibility tree of process {process_id}")


class Item:
    """One object of a tree. What the library keeps of it is as true as what the program tells of its changes."""

    def __init__(self, accessible):
        self._accessible = accessible

    def __repr__(self):
        return f"{self.role} '{self.name}'"

    @property
    def name(self):
        return self._accessible.get_name()

    @property
    def description(self):
        return self._accessible.get_description()

    @property
    def role(self):
        return self._accessible.get_role_name()

    @property
    def states(self):
        """By their names: "focused", "showing", ..."""
        return {state.value_nick for state in self._accessible.get_state_set().get_states()}

    @property
    def box(self):
        """Left, top, width and height on the screen."""
        extents = self._accessible.get_extents(Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    @property
    def children(self):
        accessible = self._accessible
        found = [accessible.get_child_at_index(index) for index in range(accessible.get_child_count())]
        return [Item(child) for child in found if child is not None]

    @property
    def descendants(self):
        for child in self.children:
            yield child
            yield from child.descendants

    def find(self, name, role=None):
        """The object of that name that is to be seen, or none."""
        for item in self.descendants:
            if item.name == name and role in (None, item.role) and "showing" in item.states:
                return item
        return None

    @property
    def actions(self):
        return [Atspi.Action.get_action_name(self._accessible, index)
                for index in range(Atspi.Action.get_n_actions(self._accessible))]

    def do(self, action):
        """Whether that could be done."""
        names = self.actions
        return action in names and Atspi.Action.do_action(self._accessible, names.index(action))

    @property
    def value(self):
        return Atspi.Value.get_current_value(self._accessible)

    @value.setter
    def value(self, value):
        Atspi.Value.set_current_value(self._accessible, value)

    @property
    def least_and_most(self):
        return Atspi.Value.get_minimum_value(self._accessible), Atspi.Value.get_maximum_value(self._accessible)

    @property
    def interfaces(self):
        return set(self._accessible.get_interfaces())

    def outline(self, depth=0):
        """The whole tree as text, for people."""
        lines = [f"{'  ' * depth}{self.role} '{self.name}' {sorted(self.states)} {self.box} {self.actions}"]
        return "\n".join(lines + [child.outline(depth + 1) for child in self.children])
