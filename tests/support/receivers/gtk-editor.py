#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""gtk-editor.py PIPE TITLE: a GTK 3 text view that reports what it holds."""
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402
from report import Report  # noqa: E402

pipe, title = sys.argv[1:]
report = Report(pipe)
window = Gtk.Window(title=title)
window.set_default_size(500, 300)
view = Gtk.TextView(wrap_mode=Gtk.WrapMode.CHAR)
scrolled = Gtk.ScrolledWindow()
scrolled.add(view)
window.add(scrolled)
text = view.get_buffer()
text.connect("changed", lambda _: report.tell(text=text.get_text(*text.get_bounds(), True)))
view.connect("focus-in-event", lambda *_: report.tell(ready=True))
down = set()


def on_key(_, event):
    (down.add if event.type == Gdk.EventType.KEY_PRESS else down.discard)(event.hardware_keycode)
    report.tell(keys=len(down))
    return False  # it is the field's


view.connect("key-press-event", on_key)
view.connect("key-release-event", on_key)
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
