#!/usr/bin/env python3
"""The part of a tray that applications register their icon with; prints each registration."""
from gi.repository import Gio, GLib

INTERFACE = "org.kde.StatusNotifierWatcher"
NODE = Gio.DBusNodeInfo.new_for_xml("""<node><interface name="org.kde.StatusNotifierWatcher">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
<signal name="StatusNotifierHostRegistered"/>
</interface></node>""")


def call(connection, sender, path, interface, method, arguments, invocation):
    if method == "RegisterStatusNotifierItem":
        print(sender, flush=True)
    invocation.return_value(None)


def read(connection, sender, path, interface, name):
    return {"RegisteredStatusNotifierItems": GLib.Variant("as", []),
            "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
            "ProtocolVersion": GLib.Variant("i", 0)}[name]


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object("/StatusNotifierWatcher", NODE.interfaces[0], call, read, None)
Gio.bus_own_name_on_connection(bus, INTERFACE, Gio.BusNameOwnerFlags.NONE, None, None)
GLib.MainLoop().run()
