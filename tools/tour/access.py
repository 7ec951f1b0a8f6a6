"""The controls of a program as assistive technology sees them, asked over its message bus (AT-SPI).
Questions about many controls are sent together: on a busy machine each answer takes its time."""

import re

from gi.repository import Gio, GLib

ANSWER_MS = 60_000  # a program does not answer while it waits for its server
ACCESSIBLE = "org.a11y.atspi.Accessible"
COMPONENT = "org.a11y.atspi.Component"
TABLE = "org.a11y.atspi.Table"
TEXT = "org.a11y.atspi.Text"
PROPERTIES = "org.freedesktop.DBus.Properties"
ROOT = "/org/a11y/atspi/accessible/root"
NOBODY = "/org/a11y/atspi/null"

ACTIVE, CHECKED, ENABLED, FOCUSED, SELECTED = 1, 4, 8, 12, 23
SENSITIVE, SHOWING, VISIBLE = 24, 25, 30

# What the numbers of roles mean; of the rest the number itself is told.
ROLES = {
    2: "alert", 7: "check box", 11: "combo box", 16: "dialog", 20: "filler", 23: "frame",
    27: "image", 29: "label", 31: "list", 32: "list item", 33: "menu", 34: "menu bar",
    35: "menu item", 37: "page tab", 38: "page tab list", 39: "panel", 40: "password text",
    41: "popup menu", 43: "push button", 44: "radio button", 45: "radio menu item",
    48: "scroll bar", 53: "split pane", 54: "status bar", 55: "table", 56: "table cell",
    57: "table column header", 58: "table row header", 61: "text", 62: "toggle button",
    63: "tool bar", 64: "tool tip", 65: "tree", 66: "tree table", 69: "window",
    75: "application",
}  # fmt: skip

# Their children are cells, by the thousand; they are asked for one by one.
CELLS = ("table", "tree", "tree table", "list")


class Bus:
    """The bus on which programs answer assistive technology."""

    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
            None, None, Gio.DBusCallFlags.NONE, ANSWER_MS, None,
        )  # fmt: skip
        flags = Gio.DBusConnectionFlags
        self._connection = Gio.DBusConnection.new_for_address_sync(
            address.unpack()[0],
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION,
        )

        # What lies in a popup or inside a grid is no child of any other control; it is found by
        # what it tells when it shows or gets the focus.
        self._latest = {}
        self._connection.signal_subscribe(
            None, "org.a11y.atspi.Event.Object", "StateChanged", None, None,
            Gio.DBusSignalFlags.NONE, self._state_changed,
        )  # fmt: skip
        registry = "org.a11y.atspi.Registry"
        for state in ("focused", "showing"):
            event = GLib.Variant("(sass)", (f"object:state-changed:{state}", [], ""))
            self.ask((registry, "/org/a11y/atspi/registry", registry, "RegisterEvent", event))

    def _state_changed(self, _connection, sender, path, _interface, _signal, values):
        state, is_on = values.unpack()[:2]
        if is_on:
            self._latest[state] = (sender, path)

    def latest(self, state):
        """The control that was the last to tell of having got "focused" or "showing"."""
        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)
        return Node(self, *self._latest[state]) if state in self._latest else None

    def ask(self, *questions):
        """Each question is (name, path, interface, method, arguments); gives the answers in the
        same order, None for what could not be answered."""
        answers = [None] * len(questions)
        left = [len(questions)]

        def take(connection, result, i):
            left[0] -= 1
            try:
                answers[i] = connection.call_finish(result).unpack()
            except GLib.Error:
                pass  # the control is gone, or is of another kind

        for i, (name, path, interface, method, arguments) in enumerate(questions):
            self._connection.call(
                name, path, interface, method, arguments, None,
                Gio.DBusCallFlags.NONE, ANSWER_MS, None, take, i,
            )  # fmt: skip
        while left[0]:
            GLib.MainContext.default().iteration(True)
        return answers

    def application(self, pid):
        """The program with this process number, or None as long as it is not there."""
        registry = "org.a11y.atspi.Registry"
        answer = self.ask((registry, ROOT, ACCESSIBLE, "GetChildren", None))[0]
        for name, path in answer[0] if answer else ():
            driver = "org.freedesktop.DBus"
            asked = GLib.Variant("(s)", (name,))
            found = self.ask((driver, "/", driver, "GetConnectionUnixProcessID", asked))[0]
            if found and found[0] == pid:
                return Node(self, name, path)
        return None


class Node:
    """A control. Controls come and go while one looks at them: what is gone has no name, no
    children and no place. Everything is asked anew each time, but what a walk has seen."""

    def __init__(self, bus, owner, path):
        self._bus = bus
        self._address = (owner, path)
        self.seen_role = self.seen_name = ""

    def _question(self, interface, method, signature=None, *arguments):
        values = GLib.Variant(signature, arguments) if signature else None
        return (*self._address, interface, method, values)

    def _property(self, interface, name):
        return self._question(PROPERTIES, "Get", "(ss)", interface, name)

    def _ask(self, *question):
        return self._bus.ask(self._question(*question))[0]

    def _node(self, reference):
        if not reference or reference[1] == NOBODY:
            return None
        return Node(self._bus, *reference)

    def _nodes(self, answer):
        found = [self._node(reference) for reference in answer[0]] if answer else []
        return [node for node in found if node]

    def _get(self, interface, name, otherwise):
        answer = self._bus.ask(self._property(interface, name))[0]
        return answer[0] if answer else otherwise

    @property
    def name(self):
        return self._get(ACCESSIBLE, "Name", "")

    @property
    def role(self):
        return role_name(self._ask(ACCESSIBLE, "GetRole"))

    def has(self, *states):
        answer = self._ask(ACCESSIBLE, "GetState")
        return has_states(answer, states)

    @property
    def showing(self):
        return self.has(SHOWING, VISIBLE)

    @property
    def enabled(self):
        return self.has(ENABLED, SENSITIVE)

    @property
    def focused(self):
        return self.has(FOCUSED)

    @property
    def checked(self):
        return self.has(CHECKED)

    @property
    def selected(self):
        return self.has(SELECTED)

    @property
    def in_front(self):
        """Of a tab: whether its page is the one in view."""
        return self.has(FOCUSED)

    @property
    def rect(self):
        """x, y, width, height on the screen."""
        answer = self._ask(COMPONENT, "GetExtents", "(u)", 0)
        return tuple(answer[0]) if answer else (0, 0, 0, 0)

    @property
    def text(self):
        """What stands in it: of an editor the whole content, of a label its words."""
        answer = self._ask(TEXT, "GetText", "(ii)", 0, -1)
        return answer[0] if answer else self.name

    @property
    def selected_text(self):
        span = self._ask(TEXT, "GetSelection", "(i)", 0)
        answer = self._ask(TEXT, "GetText", "(ii)", *span) if span else None
        return answer[0] if answer else ""

    @property
    def parent(self):
        return self._node(self._get(ACCESSIBLE, "Parent", None))

    @property
    def children(self):
        return self._nodes(self._ask(ACCESSIBLE, "GetChildren"))

    def walk(self):
        """This control and everything in it that is on the screen, outside in, with the roles and
        names they had just then."""
        found, level = [], [self]
        while level:
            questions = []
            for node in level:
                questions += (
                    node._question(ACCESSIBLE, "GetState"),
                    node._question(ACCESSIBLE, "GetRole"),
                    node._property(ACCESSIBLE, "Name"),
                )
            answers = iter(self._bus.ask(*questions))
            shown = []
            for node in level:
                states, role, name = next(answers), next(answers), next(answers)
                if not has_states(states, (SHOWING, VISIBLE)):
                    continue
                node.seen_role = role_name(role)
                node.seen_name = name[0] if name else ""
                shown.append(node)
            found += shown
            inner = [node for node in shown if node.seen_role not in CELLS]
            asked = self._bus.ask(*(node._question(ACCESSIBLE, "GetChildren") for node in inner))
            level = [node for answer in asked for node in self._nodes(answer)]
        return found

    def all(self, role=None, name=None):
        """Those of a role and a name; either may be left open, a name may be a pattern."""
        pattern = name if isinstance(name, re.Pattern) else None
        return [
            node
            for node in self.walk()
            if role in (None, node.seen_role)
            and (not pattern or pattern.fullmatch(node.seen_name))
            and (pattern or name in (None, node.seen_name))
        ]

    def find(self, role=None, name=None):
        return next(iter(self.all(role, name)), None)

    # Grids and trees

    @property
    def row_count(self):
        return self._get(TABLE, "NRows", 0)

    @property
    def columns(self):
        count = self._get(TABLE, "NColumns", 0)
        questions = (
            self._question(TABLE, "GetColumnDescription", "(i)", i) for i in range(count)
        )
        return [answer[0] if answer else "" for answer in self._bus.ask(*questions)]

    def _cells(self, places):
        """Cells by (row, column)."""
        questions = (self._question(TABLE, "GetAccessibleAt", "(ii)", *place) for place in places)
        answers = self._bus.ask(*questions)
        return [self._node(answer[0]) if answer else None for answer in answers]

    def _names(self, nodes):
        """Names of many at once; of cells that are gone the empty name."""
        there = [node for node in nodes if node]
        names = iter(self._bus.ask(*(node._property(ACCESSIBLE, "Name") for node in there)))
        answers = [next(names) if node else None for node in nodes]
        return [answer[0] if answer else "" for answer in answers]

    def _column_number(self, column):
        return self.columns.index(column) if isinstance(column, str) else column

    def cell(self, row, column):
        """The column by number or by caption."""
        return self._cells([(row, self._column_number(column))])[0]

    def row(self, row):
        return self._names(self._cells([(row, i) for i in range(len(self.columns))]))

    def column(self, column):
        """All texts of a column from the top."""
        number = self._column_number(column)
        return self._names(self._cells([(row, number) for row in range(self.row_count)]))

    def header(self, column):
        """The head of a column, for a click on it."""
        count = len(self.columns) + 1  # a corner may stand before them
        asked = self._bus.ask(
            *(self._question(ACCESSIBLE, "GetChildAtIndex", "(i)", i) for i in range(count))
        )
        heads = [self._node(answer[0]) if answer else None for answer in asked]
        for head, name in zip(heads, self._names(heads)):
            if head and name == column:
                return head
        return None

    def __str__(self):
        return f'{self.seen_role or self.role} "{self.seen_name or self.name}"'


def role_name(answer):
    return ROLES.get(answer[0], str(answer[0])) if answer else ""


def has_states(answer, states):
    if not answer:
        return False
    low, high = answer[0]
    bits = low | high << 32
    return all(bits >> state & 1 for state in states)
