#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""vte-terminal.py PIPE TITLE: a terminal of GTK's family that reports what is typed into it, from the moment when it has the
focus."""
import os
import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Vte", "2.91")
from gi.repository import GLib, Gtk, Vte  # noqa: E402

pipe, title = sys.argv[1:]
reader = os.path.join(os.path.dirname(os.path.abspath(__file__)), "terminal-reader.py")
window = Gtk.Window(title=title)
terminal = Vte.Terminal()
window.add(terminal)


def start_reader(*_):
    terminal.disconnect(waiting)
    terminal.spawn_async(Vte.PtyFlags.DEFAULT, None, [reader, pipe], None, GLib.SpawnFlags.DEFAULT, None, None, -1, None, None)


waiting = terminal.connect("focus-in-event", start_reader)
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
