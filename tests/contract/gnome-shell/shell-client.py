#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A program that calls the Shell's extension. Reads a method and its arguments as JSON, a line each, and says what is
answered: "answer [...]". Says what it is told: "Pressed [...]", "Released [...]", "FocusChanged [...]", and "gone" when the
extension leaves the bus. "Eval" goes to the Shell itself."""

import json
import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

NAME, PATH, INTERFACE = "arpa.home.talvera.Shell", "/arpa/home/talvera/Shell", "arpa.home.talvera.Shell1"
SIGNATURES = {"Grab": "(s)", "Ungrab": "(u)", "Activate": "(i)", "Commit": "(ts)", "PressPaste": "(tb)", "Eval": "(s)"}


def say(*words):
    print(*words, flush=True)


def read(*_):
    line = sys.stdin.readline()
    if not line:
        loop.quit()
        return False
    method, *arguments = json.loads(line)
    target = ("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell") if method == "Eval" else (NAME, PATH, INTERFACE)
    variant = GLib.Variant(SIGNATURES.get(method, "()"), tuple(arguments))
    try:
        answer = bus.call_sync(*target, method, variant, None, Gio.DBusCallFlags.NO_AUTO_START, 5000, None)
        say("answer", json.dumps(answer.unpack(), ensure_ascii=False))
    except GLib.Error as error:
        say("answer", json.dumps(error.message))
    return True


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.signal_subscribe(NAME, INTERFACE, None, PATH, None, Gio.DBusSignalFlags.NONE,
                     lambda *told: say(told[4], json.dumps(told[5].unpack())))
Gio.bus_watch_name_on_connection(bus, NAME, Gio.BusNameWatcherFlags.NONE, lambda *_: say("there"), lambda *_: say("gone"))
loop = GLib.MainLoop()
GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN | GLib.IOCondition.HUP, read)
loop.run()
