#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Stands in for GNOME Shell with our extension: does what the interface says, of which it reads the words.

usage: shell-stand-in.py ADDRESS XML

Reads what the user and the Shell do, a line each, and says "done" to each: "come" and "go" (the extension), "shell" (the
Shell itself comes), "shell knowing" (and knows the extension), "focus WINDOW PROCESS APPLICATION TAKES-TEXT", "window NUMBER PROCESS APPLICATION" (behind the others),
"refuse ACCELERATOR", "grant ACCELERATOR", "press ACCELERATOR", "release ACCELERATOR", "hang", "resume". Says what it is told
to do: the method and its arguments; of keys what they are called.
"""

import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

EXTENSIONS = """
<node><interface name="org.gnome.Shell.Extensions">
  <method name="GetExtensionInfo"><arg type="s" direction="in"/><arg type="a{sv}" direction="out"/></method>
  <method name="EnableExtension"><arg type="s" direction="in"/><arg type="b" direction="out"/></method>
</interface></node>"""

NAME, PATH, INTERFACE = "arpa.home.talvera.Shell", "/arpa/home/talvera/Shell", "arpa.home.talvera.Shell1"


class StandIn:
    def __init__(self, address, xml):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self.interface = Gio.DBusNodeInfo.new_for_xml(xml).lookup_interface(INTERFACE)
        self.focus = (0, 0, "", False)
        self.windows = []
        self.refused = set()
        self.grabs = {}  # action: (accelerator, caller)
        self.last_action = 0
        self.registration = 0
        self.held_back = None

    def own(self, name, owned):
        member, arguments = ("RequestName", GLib.Variant("(su)", (name, 4))) if owned else (
            "ReleaseName", GLib.Variant("(s)", (name,)))
        self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", member, arguments, None,
                           Gio.DBusCallFlags.NONE, -1, None)

    def emit(self, signal, arguments, to=None):
        self.bus.emit_signal(to, PATH, INTERFACE, signal, arguments)

    def obey(self, line):
        word, *rest = line.split()
        getattr(self, "on_" + word)(*rest)
        self.bus.flush_sync()
        say("done")

    def on_come(self):
        self.registration = self.bus.register_object(PATH, self.interface, self.called, None, None)
        self.own(NAME, True)

    def on_go(self):
        self.own(NAME, False)
        self.bus.unregister_object(self.registration)
        self.grabs.clear()

    def on_shell(self, known=""):
        self.known = known
        self.bus.register_object("/org/gnome/Shell", Gio.DBusNodeInfo.new_for_xml(EXTENSIONS).interfaces[0], self.called, None,
                                 None)
        self.own("org.gnome.Shell", True)

    def on_focus(self, window, process, application, takes_text):
        self.focus = (int(window), int(process), application, takes_text == "1")
        if self.focus[0]:
            self.on_window(window, process, application, first=True)
        self.emit("FocusChanged", GLib.Variant("(tisb)", self.focus))

    def on_window(self, number, process, application, first=False):
        window = (int(number), int(process), application)
        others = [other for other in self.windows if other != window]
        self.windows = [window, *others] if first else [*others, window]

    def on_refuse(self, accelerator):
        self.refused.add(accelerator)

    def on_grant(self, accelerator):
        self.refused.discard(accelerator)

    def on_press(self, accelerator):
        self.key("Pressed", accelerator)

    def on_release(self, accelerator):
        self.key("Released", accelerator)

    def key(self, signal, accelerator):
        for action, (held, caller) in self.grabs.items():
            if held == accelerator:
                self.emit(signal, GLib.Variant("(u)", (action,)), caller)

    def on_hang(self):
        self.held_back = []

    def on_resume(self):
        calls, self.held_back = self.held_back, None
        for call in calls:
            self.called(*call)

    def called(self, *call):
        if self.held_back is not None:
            self.held_back.append(call)
            return
        _, caller, _, _, method, arguments, invocation = call
        answer = getattr(self, method)(caller, *arguments.unpack())
        invocation.return_value(answer)

    def GetExtensionInfo(self, _, uuid):
        return GLib.Variant("(a{sv})", ({"uuid": GLib.Variant("s", uuid)} if self.known else {},))

    def EnableExtension(self, _, uuid):
        say("EnableExtension", uuid)
        if self.known:
            self.on_come()
        return GLib.Variant("(b)", (bool(self.known),))

    def Grab(self, caller, accelerator):
        taken = accelerator in self.refused or any(held == accelerator for held, _ in self.grabs.values())
        say("Grab", accelerator)
        if taken:
            return GLib.Variant("(u)", (0,))
        self.last_action += 1
        self.grabs[self.last_action] = (accelerator, caller)
        return GLib.Variant("(u)", (self.last_action,))

    def Ungrab(self, _, action):
        say("Ungrab", self.grabs.pop(action)[0])

    def Windows(self, _):
        told = [(number, process, application, number == self.focus[0]) for number, process, application in self.windows]
        return GLib.Variant("(a(tisb))", (told,))

    def Focus(self, _):
        return GLib.Variant("(tisb)", self.focus)

    def Activate(self, _, process):
        say("Activate", process)
        return GLib.Variant("(b)", (any(window[1] == process for window in self.windows),))

    def result(self, window, takes_text):
        if not self.focus[0] or window not in (0, self.focus[0]):
            return GLib.Variant("(u)", (1,))
        return GLib.Variant("(u)", (0 if takes_text else 2,))

    def Commit(self, _, window, text):
        result = self.result(window, self.focus[3])
        if result.unpack() == (0,):
            say("Commit", window, repr(text))
        return result

    def PressPaste(self, _, window, is_down):
        result = self.result(window, True)
        if result.unpack() == (0,) or not is_down:
            say("PressPaste", window, "down" if is_down else "up")
        return result


def say(*words):
    print(*words, flush=True)


def main():
    address, xml = sys.argv[1:]
    with open(xml, encoding="utf-8") as file:
        stand_in = StandIn(address, file.read())
    say("ready")
    loop = GLib.MainLoop()

    def read(*_):
        line = sys.stdin.readline()
        if not line:
            loop.quit()
            return False
        stand_in.obey(line)
        return True

    GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN | GLib.IOCondition.HUP, read)
    loop.run()


main()
