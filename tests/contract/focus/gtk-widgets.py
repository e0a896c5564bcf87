#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""gtk-widgets.py WIDGET: a GTK 3 window with one widget of each kind, WIDGET in focus; "terminal" is a VTE alone.

Says "focused WIDGET" whenever one gets the focus, and "window active" or "window inactive". Obeys "focus WIDGET" and "window WIDGET" (a second window, with that
widget in focus) on standard input, and ends with it.
"""
import signal
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402


def editable_combo():
    combo = Gtk.ComboBoxText.new_with_entry()
    combo.focus_target = combo.get_child()
    return combo


def canvas():
    area = Gtk.DrawingArea(can_focus=True)
    area.set_size_request(50, 20)
    return area


def terminal():
    gi.require_version("Vte", "2.91")
    from gi.repository import Vte

    return Vte.Terminal()


WIDGETS = {
    "text-view": Gtk.TextView,
    "read-only-text-view": lambda: Gtk.TextView(editable=False),
    "entry": Gtk.Entry,
    "read-only-entry": lambda: Gtk.Entry(editable=False),
    "password": lambda: Gtk.Entry(visibility=False, input_purpose=Gtk.InputPurpose.PASSWORD),
    "search": Gtk.SearchEntry,
    "spin-button": lambda: Gtk.SpinButton.new_with_range(0, 9, 1),
    "editable-combo": editable_combo,
    "button": lambda: Gtk.Button(label="Button"),
    "check-box": lambda: Gtk.CheckButton(label="Check"),
    "label": lambda: Gtk.Label(label="A label whose text can be selected", selectable=True),
    "link": lambda: Gtk.LinkButton(uri="about:blank", label="Link"),
    "slider": lambda: Gtk.Scale.new_with_range(Gtk.Orientation.HORIZONTAL, 0, 9, 1),
    "list": lambda: Gtk.TreeView(model=Gtk.ListStore(str)),
    "canvas": canvas,
}


class Window(Gtk.Window):
    def __init__(self, name):
        super().__init__(title="widgets")
        self.widgets = {}
        box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
        for kind, make in ({"terminal": terminal} if name == "terminal" else WIDGETS).items():
            widget = make()
            box.add(widget)
            target = getattr(widget, "focus_target", widget)
            target.connect("focus-in-event", lambda *_, kind=kind: print("focused", kind, flush=True))
            self.widgets[kind] = target
        self.add(box)
        self.connect("destroy", Gtk.main_quit)
        self.connect("notify::is-active", lambda *_: print("window", "active" if self.is_active() else "inactive", flush=True))
        self.widgets[name].grab_focus()
        self.show_all()
        self.present()


def obey(channel, _):
    command = sys.stdin.readline().split()
    if not command:
        Gtk.main_quit()
    elif command[0] == "focus":
        windows[-1].widgets[command[1]].grab_focus()
    elif command[0] == "window":
        windows.append(Window(command[1]))
    return bool(command)


# GLib ends a program with this signal when the session bus is lost; this one outlives it, and is silent from then on.
signal.signal(signal.SIGTERM, signal.SIG_IGN)
windows = [Window(sys.argv[1])]
GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, obey)
Gtk.main()
