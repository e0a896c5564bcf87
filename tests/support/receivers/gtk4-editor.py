#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""gtk4-editor.py PIPE TITLE: a GTK 4 text view that reports what it holds."""
import sys

import gi

gi.require_version("Gtk", "4.0")
from gi.repository import GLib, Gtk  # noqa: E402
from report import Report  # noqa: E402

pipe, title = sys.argv[1:]
report = Report(pipe)
Gtk.init()
window = Gtk.Window(title=title, default_width=500, default_height=300)
view = Gtk.TextView(wrap_mode=Gtk.WrapMode.CHAR)
window.set_child(Gtk.ScrolledWindow(child=view))
text = view.get_buffer()
text.connect("changed", lambda _: report.tell(text=text.get_text(*text.get_bounds(), True)))
focus = Gtk.EventControllerFocus()
view.add_controller(focus)


def tell_focus(*_):
    if window.is_active() and view.has_focus():
        report.tell(ready=True)


focus.connect("enter", tell_focus)
window.connect("notify::is-active", tell_focus)
loop = GLib.MainLoop()
window.connect("close-request", lambda _: loop.quit())
window.present()
view.grab_focus()
loop.run()
