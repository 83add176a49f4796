"""What a screen reader sees of the window, and what it can do with it, through AT-SPI."""
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402: the version must be chosen first

PATIENCE = 30.0  # seconds; generous, because a test machine may be busy
STATES = {"selected": Atspi.StateType.SELECTED, "enabled": Atspi.StateType.ENABLED,
          "showing": Atspi.StateType.SHOWING, "editable": Atspi.StateType.EDITABLE}


class Element:
    """One node of the accessibility tree. The window may take it away at any time: it then has no
    name, no role, no state and no children."""

    def __init__(self, node):
        self.node = node

    def ask(self, question, otherwise=None):
        try:
            return question()
        except GLib.Error:
            return otherwise

    @property
    def name(self):
        return self.ask(self.node.get_name, "") or ""

    @property
    def role(self):
        return self.ask(self.node.get_role_name, "") or ""

    def has(self, state):
        states = self.ask(self.node.get_state_set)
        return bool(states) and states.contains(STATES[state])

    def children(self):
        for index in range(self.ask(self.node.get_child_count, 0)):
            child = self.ask(lambda: self.node.get_child_at_index(index))
            if child:
                yield Element(child)

    def below(self):
        for child in self.children():
            yield child
            yield from child.below()

    def all(self, role, matches=lambda name: True):
        return [e for e in self.below() if e.role == role and e.has("showing") and matches(e.name)]

    def place(self):
        """Left, top, width and height on the screen."""
        extents = Atspi.Component.get_extents(self.node.get_component_iface(), Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    def press(self):
        action = self.node.get_action_iface()
        assert action, f"{self} offers no action"
        names = [Atspi.Action.get_action_name(action, i) for i in range(Atspi.Action.get_n_actions(action))]
        assert "Press" in names, f"{self} cannot be pressed, it offers {names}"
        assert Atspi.Action.do_action(action, names.index("Press")), f"{self} refused the press"

    def click(self, modifier=None):
        """A real press of the mouse in the element's middle."""
        left, top, width, height = self.place()
        move = ["mousemove", "--sync", str(left + width // 2), str(top + height // 2), "click", "1"]
        keys = (["keydown", modifier], ["keyup", modifier]) if modifier else ([], [])
        subprocess.run(["xdotool", *keys[0], *move, *keys[1]], check=True)

    def __str__(self):
        return f'{self.role} "{self.name}"'

    def tree(self, depth=0):
        states = [state for state in ("selected", "enabled", "showing") if self.has(state)]
        yield f"{'  ' * depth}{self} {' '.join(states)}"
        for child in self.children():
            yield from child.tree(depth + 1)


def eventually(question, what):
    """The question's answer as soon as it is true."""
    deadline = time.monotonic() + PATIENCE
    while True:
        answer = question()
        if answer:
            return answer
        assert time.monotonic() < deadline, f"waited {PATIENCE:.0f} s for {what}"
        time.sleep(0.1)


class Listener:
    """Writes down what the windows tell by themselves: the names of what the keyboard reached."""

    def __init__(self):
        self.reached = []
        self.listener = Atspi.EventListener.new(self.hear)
        self.listener.register("object:state-changed:focused")

    def hear(self, event):
        if event.detail1:
            self.reached.append(Element(event.source).name)

    def hears(self, name):
        """Waits until the window says that the keyboard reached this."""
        def heard():
            while GLib.MainContext.default().iteration(False):
                pass
            return name in self.reached
        eventually(heard, f'"{name}" to be told, after {self.reached[-5:]}')

    def close(self):
        self.listener.deregister("object:state-changed:focused")


def application(name):
    Atspi.init()
    Atspi.set_timeout(8000, 8000)
    desktop = Element(Atspi.get_desktop(0))
    return eventually(lambda: next((a for a in desktop.children() if a.name == name), None),
                      f"{name} on the accessibility bus")


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "20", text], check=True)


def press_key(key):
    subprocess.run(["xdotool", "key", key], check=True)
