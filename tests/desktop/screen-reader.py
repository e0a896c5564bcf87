#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""screen-reader.py: for each process that a line of the input names, what a screen reader finds of it: a line of JSON for
each object, and an empty one at the end.

To start takes longer than to look. Each look is nevertheless a fork of its own, which connects to the bus anew: a reader
that stays keeps what it has read, and finds what is no longer there."""
import json
import os
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

# What newer versions of at-spi call by another name.
FORMER_NAMES = {"button": "push button"}


def role(thing):
    name = thing.get_role_name()
    return FORMER_NAMES.get(name, name)


def place(thing):
    if "Component" not in thing.get_interfaces():
        return [0, 0, 0, 0]
    extents = thing.get_extents(Atspi.CoordType.SCREEN)
    return [extents.x, extents.y, extents.width, extents.height]


def tell(thing):
    try:
        print(json.dumps({
            "role": role(thing),
            "name": thing.get_name(),
            "description": thing.get_description(),
            "states": [state.value_nick for state in thing.get_state_set().get_states()],
            "place": place(thing),
        }))
        for number in range(thing.get_child_count()):
            child = thing.get_child_at_index(number)
            if child:
                tell(child)
    except GLib.Error:
        pass  # gone meanwhile


def look(process):
    Atspi.set_timeout(10000, 15000)  # milliseconds; the program may be busy
    desktop = Atspi.get_desktop(0)
    for number in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(number)
        if application and application.get_process_id() == process:
            tell(application)


for kind in (Atspi.Accessible, Atspi.Component, Atspi.StateSet, Atspi.StateType, Atspi.CoordType, Atspi.Rect):
    dir(kind)  # known from here on, and need not be found out in each look
for line in sys.stdin:
    child = os.fork()
    if not child:
        look(int(line))
        sys.stdout.flush()
        os._exit(0)
    os.waitpid(child, 0)
    print(flush=True)
