"""What a screen reader sees and does, by AT-SPI alone."""

import re
import time

import gi

gi.require_version('Atspi', '2.0')
from gi.repository import Atspi, GLib  # noqa: E402

LIMIT = 30  # seconds for anything to happen; far more than needed
LOOK = 20  # milliseconds between checks of what no event reports

# States that are printed, and their names. States that depend on the active window (active, focused) or on the system's
# version (opaque, ...) are left out; so is the relation controller-for, which Qt reports between any connected objects.
STATES = [('CHECKED', 'checked'), ('SELECTED', 'selected'), ('EDITABLE', 'editable'), ('FOCUSABLE', 'focusable'),
          ('IS_DEFAULT', 'default'), ('MODAL', 'modal'), ('MULTISELECTABLE', 'several selectable')]
# Names that differ between versions of the system.
ROLES = {'push button': 'button'}


def wait(what, condition):
    """Delivers events until condition returns something true, and returns that."""
    loop, until = GLib.MainContext.default(), time.monotonic() + LIMIT
    tick = GLib.timeout_add(LOOK, lambda: True)
    try:
        while True:
            try:
                found = condition()
            except GLib.Error:  # the object was destroyed during the check
                found = None
            if found:
                return found
            if time.monotonic() > until:
                raise AssertionError('waited in vain for %s' % what)
            loop.iteration(True)
    finally:
        GLib.source_remove(tick)


def start():
    Atspi.init()
    Atspi.set_timeout(LIMIT * 1000, LIMIT * 1000)


def application(name):
    def look():
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for at in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(at)
            if child and child.get_name() == name:
                child.set_cache_mask(Atspi.Cache.NONE)
                return child
        return None
    return wait('the application ' + name, look)


def children(node):
    return [child for child in (node.get_child_at_index(at) for at in range(node.get_child_count())) if child]


def walk(node):
    yield node
    for child in children(node):
        yield from walk(child)


def find(root, role, name, shown=True):
    """Waits for the object of this role and name below root; None is any name."""
    def look():
        for node in walk(root):
            if role_of(node) == role and name in (None, node.get_name()) and (not shown or is_shown(node)):
                return node
        return None
    return wait('%s "%s"' % (role, name), look)


def role_of(node):
    return ROLES.get(node.get_role_name(), node.get_role_name())


def name_of(node):
    """The name, without the duration that follows the outcome of a long command."""
    return re.sub(r', after [0-9.]+ s$', '', node.get_name())


def has(node, state):
    return node.get_state_set().contains(getattr(Atspi.StateType, state))


def is_shown(node):
    return has(node, 'SHOWING') and has(node, 'VISIBLE')


def actions(node):
    action = node.get_action_iface()
    return [action.get_action_name(at) for at in range(action.get_n_actions())] if action else []


def act(node, name):
    """Does the action as soon as node offers it."""
    wait('the action %s of %s' % (name, line_of(node)), lambda: name in actions(node))
    assert node.get_action_iface().do_action(actions(node).index(name)), 'the action %s failed' % name


def text_of(node):
    return Atspi.Text.get_text(node, 0, -1) if node.get_text_iface() else None


def write(node, text):
    assert Atspi.EditableText.set_text_contents(node, text)
    wait('the text "%s"' % text, lambda: text_of(node) == text)


def relations(node):
    for relation in node.get_relation_set():
        for at in range(relation.get_n_targets()):
            target = relation.get_target(at)
            kind = Atspi.RelationType(relation.get_relation_type()).value_nick
            if kind != 'controller-for':
                yield '%s %s "%s"' % (kind, role_of(target), target.get_name())


def line_of(node):
    words = [role_of(node)]
    if words == ['notification']:
        return words[0]  # its text comes and goes, and is compared as an announcement
    if name_of(node):
        words.append('"%s"' % name_of(node))
    if node.get_description():
        words.append('(%s)' % node.get_description())
    words += [word for state, word in STATES if has(node, state)]
    if not has(node, 'SENSITIVE'):
        words.append('disabled')
    if not is_shown(node):
        words.append('hidden')
    text = text_of(node)
    if text is not None:
        words.append('= "%s"' % text)
    # In Qt 6.8 a check box offers Press as well once it is checked.
    named = [name for name in actions(node) if (role_of(node), name) != ('check box', 'Press')]
    if named:
        words.append('[%s]' % ', '.join(named))
    return '; '.join([' '.join(words), *sorted(relations(node))])


def tree(node, depth=0):
    """node and its descendants as text: role, "name", (description), states, = "text", [actions]; relations. A hidden
    object is printed without its children."""
    below = children(node) if is_shown(node) else []
    return '  ' * depth + line_of(node) + '\n' + ''.join(tree(child, depth + 1) for child in below)


def settled(node):
    """Returns node as soon as its tree is the same in two checks."""
    before = []

    def look():
        before.append(tree(node))
        return before[-2:] == [before[-1]] * 2
    wait('rest in ' + node.get_name(), look)
    return node


def window(root, role, name):
    """Waits for a window of this role and name; None is any name."""
    return wait('the %s "%s"' % (role, name), lambda: next(
        (node for node in children(root) if role_of(node) == role and name in (None, node.get_name())), None))


class Heard:
    """What is announced, and what receives the focus, from now on."""

    def __init__(self):
        self.announced, self.focused = [], []
        self.listener = Atspi.EventListener.new(self.note)
        self.listener.register('object:state-changed:showing')
        self.listener.register('object:state-changed:focused')
        self.listener.register('object:announcement')

    def note(self, event):
        try:
            if event.type.startswith('object:state-changed:focused') and event.detail1:
                self.focused.append((role_of(event.source), name_of(event.source)))
            elif role_of(event.source) == 'notification' and event.detail1:
                self.announced.append(name_of(event.source))
            elif event.type.startswith('object:announcement'):  # by versions of Qt that know it
                self.announced.append(event.any_data)
        except GLib.Error:  # the window has been closed already
            pass

    def wait_for(self, text):
        wait('the announcement "%s"' % text, lambda: text in self.announced)

    def wait_for_focus(self, *steps):
        """Each step is a role and a name; they must be the latest ones."""
        wait('the focus on %s' % (steps,), lambda: self.focused[-len(steps):] == list(steps))
