#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""notification-service.py ADDRESS: the desktop's notifications on a bus of the test's own. Prints each."""

import sys

from gi.repository import Gio, GLib

INTERFACE = """
<node><interface name="org.freedesktop.Notifications">
  <method name="Notify">
    <arg type="s" name="app_name" direction="in"/><arg type="u" name="replaces_id" direction="in"/>
    <arg type="s" name="app_icon" direction="in"/><arg type="s" name="summary" direction="in"/>
    <arg type="s" name="body" direction="in"/><arg type="as" name="actions" direction="in"/>
    <arg type="a{sv}" name="hints" direction="in"/><arg type="i" name="expire_timeout" direction="in"/>
    <arg type="u" name="id" direction="out"/>
  </method>
</interface></node>"""


def on_call(bus, sender, path, interface, method, arguments, invocation):
    _, _, _, title, text, _, _, _ = arguments.unpack()
    print(f"{title}|{text}", flush=True)
    invocation.return_value(GLib.Variant("(u)", (1,)))


flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
connection = Gio.DBusConnection.new_for_address_sync(sys.argv[1], flags, None, None)
connection.register_object("/org/freedesktop/Notifications", Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0],
                           on_call, None, None)
Gio.bus_own_name_on_connection(connection, "org.freedesktop.Notifications", Gio.BusNameOwnerFlags.NONE,
                               lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
