#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""hud-reader.py PID: what a screen reader finds of that process: a line "ROLE<tab>NAME" for each object with a name."""
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def told(thing):
    try:
        yield f"{thing.get_role_name()}\t{thing.get_name()}"
        for number in range(thing.get_child_count()):
            child = thing.get_child_at_index(number)
            if child:
                yield from told(child)
    except GLib.Error:
        pass  # gone meanwhile


desktop = Atspi.get_desktop(0)
for number in range(desktop.get_child_count()):
    application = desktop.get_child_at_index(number)
    if application and application.get_process_id() == int(sys.argv[1]):
        print("\n".join(told(application)))
