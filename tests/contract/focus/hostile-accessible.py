#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""hostile-accessible.py MANNER: an application with a window, and with an accessibility tree that is none.

MANNER is "nonsense" (answers of wrong types), "silence" (no answer at all), "endless" (every object has ten more
below it), "wide" (every object has 100,000 more below it) or "lying" (the same, but it speaks of one). Says "ready" when it is registered and in front, and ends with its standard input.
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
wide = None


def child(number):
    return (bus.get_unique_name(), f"/org/a11y/atspi/accessible/{number}")


def children():
    global made, wide
    if manner == "endless":
        made += 10
        return GLib.Variant("(a(so))", ([child(made + i) for i in range(10)],))
    if wide is None:
        objects = ",".join(f"('{name}',@o '{path}')" for name, path in map(child, range(100_000)))
        wide = GLib.Variant.parse(GLib.VariantType("(a(so))"), f"([{objects}],)", None, None)
    return wide


def answer(method):
    if manner == "nonsense":
        return GLib.Variant("(si)", ("nonsense", -1))
    if method == "GetState":
        return GLib.Variant("(au)", (SHOWN_AND_ACTIVE,))
    if method == "GetChildren":
        return children()
    if method == "Get":  # of properties, the only one that is asked for
        count = {"endless": 10, "wide": 100_000}.get(manner, 1)
        return GLib.Variant("(v)", (GLib.Variant("i", count),))
    return GLib.Variant("(u)", (0,))


def on_message(_, message, incoming):
    if not incoming or message.get_message_type() != Gio.DBusMessageType.METHOD_CALL:
        return message
    if message.get_interface() not in ("org.a11y.atspi.Accessible", "org.freedesktop.DBus.Properties"):
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

if manner in ("wide", "lying"):
    children()  # made beforehand, so that it answers quickly
window = Gtk.Window(title="hostile")
window.connect("focus-in-event", lambda *_: print("ready", flush=True))
window.show_all()
window.present()
GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IO_HUP, Gtk.main_quit)
Gtk.main()
