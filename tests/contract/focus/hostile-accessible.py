#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""hostile-accessible.py MANNER: an application with a window, and with an accessibility tree that is none.

MANNER is "nonsense" (answers of wrong types), "silence" (no answer at all) or "endless" (every object has ten more
below it). Says "ready" when it is registered and in front, and ends with its standard input.
"""
import os
import sys

os.environ["NO_AT_BRIDGE"] = "1"  # the toolkit's own tree must not be there

import gi  # noqa: E402

gi.require_version("Gtk", "3.0")
from gi.repository import Gio, GLib, Gtk  # noqa: E402

ROOT = "/org/a11y/atspi/accessible/root"
SHOWN_AND_ACTIVE = (1 << 1 | 1 << 25 | 1 << 30, 0)
manner = sys.argv[1]
made = 0


def answer(method):
    global made
    if manner == "nonsense":
        return GLib.Variant("(si)", ("nonsense", -1))
    if method == "GetState":
        return GLib.Variant("(au)", (SHOWN_AND_ACTIVE,))
    if method == "GetChildren":
        made += 10
        children = [(bus.get_unique_name(), f"/org/a11y/atspi/accessible/{made + i}") for i in range(10)]
        return GLib.Variant("(a(so))", (children,))
    return GLib.Variant("(u)", (0,))


def on_message(_, message, incoming):
    if not incoming or message.get_message_type() != Gio.DBusMessageType.METHOD_CALL:
        return message
    if message.get_interface() != "org.a11y.atspi.Accessible":
        return message
    if manner != "silence":
        reply = Gio.DBusMessage.new_method_reply(message)
        reply.set_body(answer(message.get_member()))
        bus.send_message(reply, Gio.DBusSendMessageFlags.NONE)
    return None


session = Gio.bus_get_sync(Gio.BusType.SESSION)
address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, -1).unpack()[0]
bus = Gio.DBusConnection.new_for_address_sync(
    address,
    Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
)
bus.add_filter(on_message)
bus.call_sync("org.a11y.atspi.Registry", ROOT, "org.a11y.atspi.Socket", "Embed",
              GLib.Variant("((so))", ((bus.get_unique_name(), ROOT),)), None, 0, -1)

window = Gtk.Window(title="hostile")
window.connect("focus-in-event", lambda *_: print("ready", flush=True))
window.show_all()
window.present()
GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IO_HUP, Gtk.main_quit)
Gtk.main()
