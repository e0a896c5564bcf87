#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""text-window.py 3.0|4.0 NAME: a window of a Wayland program with one field, by that version of GTK. Says "focus" when the
window has it, and "text" with what stands in the field, as JSON, whenever that changes."""

import json
import os
import sys

import gi

gi.require_version("Gtk", sys.argv[1])
os.environ["GDK_BACKEND"] = "wayland"
from gi.repository import GLib, Gtk


def say(*words):
    print(*words, flush=True)


def tell(buffer):
    say("text", json.dumps(buffer.get_text(buffer.get_start_iter(), buffer.get_end_iter(), True), ensure_ascii=False))


GLib.set_prgname(sys.argv[2])
Gtk.init(*[[]] * (sys.argv[1] == "3.0"))
field = Gtk.TextView()
field.get_buffer().connect("changed", tell)
window = Gtk.Window(title=sys.argv[2], default_width=300, default_height=200)
window.connect("notify::is-active", lambda *_: window.is_active() and say("focus"))
if sys.argv[1] == "3.0":
    window.add(field)
    window.show_all()
else:
    window.set_child(field)
    window.present()
field.grab_focus()
GLib.MainLoop().run()
