#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""wayland-window.py NAME: a window of a Wayland program that goes by that name. Says "mapped" when it is there."""

import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk

Gdk.set_allowed_backends("wayland")
GLib.set_prgname(sys.argv[1])
Gtk.init([])
window = Gtk.Window(title=sys.argv[1])
window.connect("map-event", lambda *_: print("mapped", flush=True))
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
