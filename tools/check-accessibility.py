#!/usr/bin/python3
"""Walks the program by keys alone and reads it as a screen reader does.

Run by tools/check-accessibility.sh inside a D-Bus session, with DISPLAY set to a
virtual X display: starts the program on the sample course, presses keys with xdotool
(start screen, shell, a text, a hot word's tip, back, and the text search), reads the
windows through AT-SPI after each step, and prints every step and every object that can
take the focus but has no name or no role. Exits 1 when a step does not come about or an
object has no name, 0 otherwise.
"""

import os
import subprocess
import sys
import time

import pyatspi

STEP_TIMEOUT = float(os.environ.get("TREMIDIA_A11Y_STEP_TIMEOUT", "20"))
# Roles that say nothing of what an object is.
NAMELESS_ROLES = {pyatspi.ROLE_UNKNOWN, pyatspi.ROLE_FILLER, pyatspi.ROLE_INVALID}

failures = []


def say(text):
    print(text, flush=True)


def fail(text):
    failures.append(text)
    say("FAIL: " + text)


def key(*names):
    for name in names:
        subprocess.run(["xdotool", "key", "--clearmodifiers", name], check=True, timeout=10)
        time.sleep(0.25)


def poll(what, probe, timeout=STEP_TIMEOUT):
    """Calls probe until it returns something true, or fails the step after timeout."""
    end = time.monotonic() + timeout
    while True:
        try:
            result = probe()
        except Exception:  # an object may vanish while it is read
            result = None
        if result:
            return result
        if time.monotonic() > end:
            fail("timed out waiting for " + what)
            return None
        time.sleep(0.2)


def the_app():
    desktop = pyatspi.Registry.getDesktop(0)
    for i in range(desktop.childCount):
        app = desktop.getChildAtIndex(i)
        if app is not None and app.name == "tremidia":
            return app
    return None


def walk(node, depth=0, limit=12):
    """Yields every object below node (node included), with its depth."""
    if node is None or depth > limit:
        return
    yield node, depth
    try:
        count = node.childCount
    except Exception:
        return
    for i in range(count):
        try:
            child = node.getChildAtIndex(i)
        except Exception:
            continue
        yield from walk(child, depth + 1, limit)


def states(node):
    try:
        return node.getState()
    except Exception:
        return None


def describe(node):
    try:
        role = node.getRoleName()
    except Exception:
        role = "?"
    name = node.name or ""
    text = "%s «%s»" % (role, name)
    if node.description:
        text += " (%s)" % node.description
    return text


def windows(app):
    result = []
    for i in range(app.childCount):
        child = app.getChildAtIndex(i)
        if child is not None:
            result.append(child)
    return result


def frame_named(app, name):
    for window in windows(app):
        if window.name == name and states(window) and states(window).contains(pyatspi.STATE_SHOWING):
            return window
    return None


def check_names(app, where):
    """Reports every showing object that takes the focus and has no name or role."""
    seen = 0
    for window in windows(app):
        for node, _ in walk(window):
            s = states(node)
            if s is None or not s.contains(pyatspi.STATE_FOCUSABLE):
                continue
            if not s.contains(pyatspi.STATE_SHOWING):
                continue
            seen += 1
            role = node.getRole()
            if role in NAMELESS_ROLES or not (node.name or "").strip():
                fail("%s: focusable object without a name or role: %s" % (where, describe(node)))
    say("  %s: %d focusable objects read, each with a name and a role" % (where, seen))


ITEM_ROLES = {pyatspi.ROLE_TABLE_CELL, pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_TREE_ITEM}


def focused(app):
    """The object with the keyboard focus: the deepest one that says so. An item of a list
    counts only while its list has the focus, since lists mark their current item always."""
    best = None
    best_depth = -1
    for window in windows(app):
        for node, depth in walk(window):
            s = states(node)
            if s is None or not s.contains(pyatspi.STATE_FOCUSED) or node.getRole() == pyatspi.ROLE_FRAME:
                continue
            if node.getRole() in ITEM_ROLES:
                container = node.parent
                cs = states(container) if container is not None else None
                if cs is None or not cs.contains(pyatspi.STATE_FOCUSED):
                    continue
            if depth > best_depth:
                best, best_depth = node, depth
    return best


def focus_is(app, predicate):
    node = focused(app)
    return node if node is not None and predicate(node) else None


def show_focus(app, step):
    node = focused(app)
    say("%s -> focus on %s" % (step, describe(node) if node is not None else "nothing"))
    return node


def child_by_state(node, state):
    for i in range(node.childCount):
        child = node.getChildAtIndex(i)
        if child is not None and states(child) is not None and states(child).contains(state):
            return child
    return None


def main():
    program = sys.argv[1]
    env = dict(os.environ)
    env.update({"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_ACCESSIBILITY": "1", "QT_QPA_PLATFORM": "xcb"})
    proc = subprocess.Popen([program], env=env)
    try:
        run(proc)
    finally:
        if proc.poll() is None:
            proc.terminate()
            try:
                proc.wait(timeout=10)
            except subprocess.TimeoutExpired:
                proc.kill()
                proc.wait()
    if failures:
        say("%d failed: %s" % (len(failures), "; ".join(failures)))
        return 1
    say("accessibility check passed")
    return 0


def focus_window(name):
    """Gives the X input focus to the program's window of that title (no window manager)."""
    out = subprocess.run(["xdotool", "search", "--name", "^" + name + "$"], capture_output=True, text=True,
                         timeout=10).stdout.split()
    if out:
        subprocess.run(["xdotool", "windowfocus", "--sync", out[-1]], timeout=10)
        time.sleep(0.3)
    return bool(out)


def run(proc):
    app = poll("the program on the accessibility bus", the_app, timeout=STEP_TIMEOUT * 2)
    if app is None:
        return
    # Start screen.
    start = poll("the start screen «Τρεμίδια»", lambda: frame_named(the_app(), "Τρεμίδια"))
    if start is None:
        return
    say("start screen: frame «%s»" % start.name)
    poll("the start screen's window on the display", lambda: focus_window("Τρεμίδια"))
    check_names(app, "start screen")
    poll("the focus on the themes", lambda: focus_is(app, lambda n: n.getRole() in (
        pyatspi.ROLE_TREE, pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_LIST, pyatspi.ROLE_TABLE, pyatspi.ROLE_TABLE_CELL,
        pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_TREE_ITEM, pyatspi.ROLE_CHECK_BOX)))
    show_focus(app, "start")
    key("space")
    show_focus(app, "Space (check the theme)")
    key("Tab")
    show_focus(app, "Tab (to the scenarios)")
    key("space")
    show_focus(app, "Space (check the scenario)")
    key("Tab")
    go = poll("the focus on «Εμπρός»", lambda: focus_is(app, lambda n: n.name == "Εμπρός"))
    if go is None:
        return
    say("Tab -> focus on %s" % describe(go))
    if go.getRole() != pyatspi.ROLE_PUSH_BUTTON:
        fail("«Εμπρός» is read as %s, not a push button" % go.getRoleName())
    key("Return")

    # Shell.
    shell = poll("the shell «ΤΡΕΜΙΔΙΑ»", lambda: frame_named(the_app(), "ΤΡΕΜΙΔΙΑ"))
    if shell is None:
        return
    say("Enter -> shell: frame «%s»" % shell.name)
    poll("the shell's window on the display", lambda: focus_window("ΤΡΕΜΙΔΙΑ"))
    check_names(app, "shell")
    tile = None
    for _ in range(40):
        key("Tab")
        node = focused(app)
        if node is not None:
            say("Tab -> focus on %s" % describe(node))
            if node.description == "Κείμενο" and node.getRole() == pyatspi.ROLE_PUSH_BUTTON:
                tile = node
                break
    if tile is None:
        fail("no tile of a text was reached with Tab")
        return
    key("Return")
    text = poll("the text viewer's text", lambda: focus_is(app, lambda n: n.getRole() in (
        pyatspi.ROLE_TEXT, pyatspi.ROLE_ENTRY, pyatspi.ROLE_DOCUMENT_TEXT, pyatspi.ROLE_PARAGRAPH)))
    if text is None:
        node = show_focus(app, "Enter")
        while node is not None:
            say("   inside %s, %d children" % (describe(node), node.childCount))
            node = node.parent
        return
    say("Enter -> text viewer: %s, %d characters, %d hot words" % (
        describe(text), text.queryText().characterCount, text.childCount))
    check_names(app, "text viewer")
    if text.queryText().characterCount == 0:
        fail("the text viewer's text cannot be read")
    tip = None
    for _ in range(max(1, text.childCount)):
        key("Tab")
        link = poll("a hot word selected", lambda: child_by_state(text, pyatspi.STATE_SELECTED), timeout=5)
        if link is None:
            break
        say("Tab -> hot word %s" % describe(link))
        if link.getRole() != pyatspi.ROLE_LINK:
            fail("hot word read as %s, not a link" % link.getRoleName())
        if link.description == "Σχόλιο":
            key("Return")
            tip = poll("the tip", lambda: next((w for w in windows(the_app())
                                                 if w.getRole() == pyatspi.ROLE_TOOL_TIP
                                                 and states(w).contains(pyatspi.STATE_SHOWING)), None))
            break
    if tip is None:
        fail("no tip was opened from a hot word")
        return
    say("Enter -> tip: %s" % describe(tip))
    if not (tip.name or "").strip():
        fail("the tip has no name")
    check_names(app, "tip")
    key("Escape")
    gone = poll("the tip to close", lambda: not any(w.getRole() == pyatspi.ROLE_TOOL_TIP
                                                   and states(w).contains(pyatspi.STATE_SHOWING)
                                                   for w in windows(the_app())))
    if gone:
        say("Escape -> the tip is closed")
    focus_window("ΤΡΕΜΙΔΙΑ")
    key("Escape")
    tile_name = tile.name
    back = poll("the keys back on the text's tile «%s»" % tile_name,
                lambda: focus_is(app, lambda n: n.name == tile_name and n.getRole() == pyatspi.ROLE_PUSH_BUTTON))
    if back:
        say("Escape -> the text is closed, focus on %s" % describe(back))
    walk_text_search(app)
    if proc.poll() is not None:
        fail("the program ended on its own (exit %s)" % proc.returncode)


def type_text(text):
    subprocess.run(["xdotool", "type", "--clearmodifiers", "--delay", "80", text], check=True, timeout=20)
    time.sleep(0.25)


def named_list(app, name):
    for window in windows(app):
        for node, _ in walk(window):
            if node.getRole() == pyatspi.ROLE_LIST and node.name == name:
                s = states(node)
                if s is not None and s.contains(pyatspi.STATE_SHOWING):
                    return node
    return None


def walk_text_search(app):
    """Opens the text search by its key, types a word and reads the results as Orca does:
    the list by its name, each result by its title and the line of text around the word."""
    focus_window("ΤΡΕΜΙΔΙΑ")
    key("ctrl+shift+f")
    field = poll("the focus on the text search's field", lambda: focus_is(app, lambda n: n.getRole() in (
        pyatspi.ROLE_ENTRY, pyatspi.ROLE_TEXT) and (n.name or "").startswith("Λέξεις")), timeout=STEP_TIMEOUT * 2)
    if field is None:
        show_focus(app, "Ctrl+Shift+F")
        return
    say("Ctrl+Shift+F -> text search: %s" % describe(field))
    type_text("ναός")
    results = poll("the text search's result list «Πηγές που βρέθηκαν» with results",
                   lambda: (lambda node: node if node is not None and node.childCount > 0 else None)(
                       named_list(the_app(), "Πηγές που βρέθηκαν")), timeout=STEP_TIMEOUT * 3)
    if results is None:
        return
    say("typed «ναός» -> %s, %d results" % (describe(results), results.childCount))
    key("Tab")
    for step in ("Tab", "Down"):
        if step == "Down":
            key("Down")
        item = poll("a result with the focus", lambda: focus_is(app, lambda n: n.getRole() in ITEM_ROLES))
        if item is None:
            return
        say("%s -> result %s" % (step, describe(item)))
        if not (item.name or "").strip():
            fail("a result of the text search has no name")
        if not (item.description or "").strip():
            fail("a result of the text search does not carry its line of text")
    check_names(app, "text search")


if __name__ == "__main__":
    sys.exit(main())
