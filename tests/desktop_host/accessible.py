#!/usr/bin/env python3
"""Uses the desktop host's windows as a screen reader does.
usage: accessible.py press NAME    presses or toggles it, once it is on the screen
       accessible.py names         what is on the screen, one a line; " (on)" follows a switch
"""
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def elements(element):
    for index in range(element.get_child_count()):
        child = element.get_child_at_index(index)
        if child is not None:
            yield child
            yield from elements(child)


def shown():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and application.get_name() == "tolvane":
            for element in elements(application):
                states = element.get_state_set()
                if states.contains(Atspi.StateType.SHOWING) and element.get_name():
                    yield element


def press(name):
    for element in shown():
        if element.get_name() == name and "Action" in element.get_interfaces():
            return element.do_action(0)
    return False


def within_ten_seconds(action):
    end = time.monotonic() + 10
    while time.monotonic() < end:
        try:
            if action():
                return True
        except GLib.Error:  # what was found has gone meanwhile
            pass
        time.sleep(0.02)
    return False


if sys.argv[1] == "press":
    if not within_ten_seconds(lambda: press(sys.argv[2])):
        sys.exit("Nothing that can be pressed is called " + sys.argv[2] + ".")
else:
    for element in shown():
        on = element.get_state_set().contains(Atspi.StateType.CHECKED)
        print(element.get_name() + (" (on)" if on else ""))
