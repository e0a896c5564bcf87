#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""package-service.py ADDRESS BEHAVIOUR: PackageKit on a bus of the test's own, as far as we speak to it. The interface
below is a part of the published one, which a test compares it with; GLib refuses calls and signals that don't match it.

Behaviours: current, update, foreign (the program is no package), error, refuses, silent, vanishes.
With --interfaces in place of an address it prints the interface and ends."""

import os
import sys

from gi.repository import Gio, GLib

ROOT = """
<node><interface name="org.freedesktop.PackageKit">
  <method name="CreateTransaction"><arg type="o" name="object_path" direction="out"/></method>
</interface></node>"""
TRANSACTION = """
<node><interface name="org.freedesktop.PackageKit.Transaction">
  <method name="SetHints"><arg type="as" name="hints" direction="in"/></method>
  <method name="Resolve">
    <arg type="t" name="filter" direction="in"/><arg type="as" name="packages" direction="in"/>
  </method>
  <method name="GetUpdates"><arg type="t" name="filter" direction="in"/></method>
  <signal name="Package">
    <arg type="u" name="info" direction="out"/><arg type="s" name="package_id" direction="out"/>
    <arg type="s" name="summary" direction="out"/>
  </signal>
  <signal name="ErrorCode">
    <arg type="u" name="code" direction="out"/><arg type="s" name="details" direction="out"/>
  </signal>
  <signal name="Finished">
    <arg type="u" name="exit" direction="out"/><arg type="u" name="runtime" direction="out"/>
  </signal>
</interface></node>"""

SUCCESS, FAILED = 1, 2
INSTALLED, NORMAL = 1, 5
FILTER_NONE, FILTER_INSTALLED = 1 << 1, 1 << 2


class Service:
    def __init__(self, bus, behaviour):
        self.bus = bus
        self.behaviour = behaviour
        self.transactions = 0
        root = Gio.DBusNodeInfo.new_for_xml(ROOT).interfaces[0]
        bus.register_object("/org/freedesktop/PackageKit", root, self.on_root, None, None)

    def on_root(self, bus, sender, path, interface, method, arguments, invocation):
        if self.behaviour == "refuses":
            invocation.return_dbus_error("org.freedesktop.PackageKit.Denied", "not today")
            return
        self.transactions += 1
        made = f"/{self.transactions}_test"
        info = Gio.DBusNodeInfo.new_for_xml(TRANSACTION).interfaces[0]
        bus.register_object(made, info, self.on_transaction, None, None)
        invocation.return_value(GLib.Variant("(o)", (made,)))

    def on_transaction(self, bus, sender, path, interface, method, arguments, invocation):
        print(method, arguments.print_(False), flush=True)
        if self.behaviour == "vanishes":
            os._exit(0)
        invocation.return_value(None)
        if method == "SetHints" or self.behaviour == "silent":
            return
        if self.behaviour == "error":
            self.tell(path, "ErrorCode", "(us)", (3, "the lists can't be read"))
            self.tell(path, "Finished", "(uu)", (FAILED, 5))
            return
        if method == "Resolve":
            if self.behaviour != "foreign" and arguments.unpack()[0] == FILTER_INSTALLED:
                self.tell(path, "Package", "(uss)", (INSTALLED, "talvera;0.1.0;amd64;installed", "dictation"))
        else:
            self.tell(path, "Package", "(uss)", (NORMAL, "other;9.9;amd64;main", "not ours"))
            if self.behaviour == "update":
                self.tell(path, "Package", "(uss)", (NORMAL, "talvera;0.2.0;amd64;main", "dictation"))
        self.tell(path, "Finished", "(uu)", (SUCCESS, 5))

    def tell(self, path, signal, types, values):
        self.bus.emit_signal(None, path, "org.freedesktop.PackageKit.Transaction", signal, GLib.Variant(types, values))


def main():
    if sys.argv[1] == "--interfaces":
        for xml in (ROOT, TRANSACTION):
            for interface in Gio.DBusNodeInfo.new_for_xml(xml).interfaces:
                for member in interface.methods:
                    types = "".join(a.signature for a in member.in_args) + ">" + "".join(a.signature for a in member.out_args)
                    print(interface.name, member.name, types)
                for member in interface.signals:
                    print(interface.name, member.name, "".join(a.signature for a in member.args))
        return
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    bus = Gio.DBusConnection.new_for_address_sync(sys.argv[1], flags, None, None)
    service = Service(bus, sys.argv[2])
    Gio.bus_own_name_on_connection(bus, "org.freedesktop.PackageKit", Gio.BusNameOwnerFlags.NONE,
                                   lambda *_: print("ready", flush=True), None)
    GLib.MainLoop().run()


main()
