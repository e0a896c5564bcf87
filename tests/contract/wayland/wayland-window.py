#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""wayland-window.py NAME: a window of a Wayland program that goes by that name. Says "mapped" when it is there, "focus"
when keys go to it, and of each key, by its X keycode, "+65" when it goes down and "-65" when it goes up."""

import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk


def say(line):
    print(line, flush=True)


Gdk.set_allowed_backends("wayland")
GLib.set_prgname(sys.argv[1])
Gtk.init([])
window = Gtk.Window(title=sys.argv[1])
window.connect("map-event", lambda *_: say("mapped"))
window.connect("focus-in-event", lambda *_: say("focus"))
window.connect("key-press-event", lambda _, event: say(f"+{event.hardware_keycode}"))
window.connect("key-release-event", lambda _, event: say(f"-{event.hardware_keycode}"))
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
