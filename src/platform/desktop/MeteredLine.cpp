// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/MeteredLine.h"

#include <gio/gio.h>

namespace tavelo {

namespace {

constexpr const char *service = "org.freedesktop.NetworkManager";
constexpr const char *place = "/org/freedesktop/NetworkManager";

enum Metered : guint32 { Yes = 1, GuessYes = 3 };

/// On a connection of its own: the shared one ends the process when the bus goes away.
GDBusConnection *systemBus()
{
    g_autofree char *address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    if (!address)
        return nullptr;
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    return g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr);
}

} // namespace

// QNetworkInformation of Qt 6.4 does not tell: it hears of changes, but takes a line that was
// metered from the start for one that is not.
bool isLineMetered(std::chrono::milliseconds patience)
{
    g_autoptr(GDBusConnection) bus = systemBus();
    if (!bus)
        return false;
    g_autoptr(GVariant) answer = g_dbus_connection_call_sync(
        bus, service, place, "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", service, "Metered"), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, static_cast<int>(patience.count()), nullptr, nullptr);
    if (!answer)
        return false;
    g_autoptr(GVariant) value = nullptr;
    g_variant_get(answer, "(v)", &value);
    if (!g_variant_is_of_type(value, G_VARIANT_TYPE_UINT32))
        return false;
    const guint32 metered = g_variant_get_uint32(value);
    return metered == Yes || metered == GuessYes;
}

} // namespace tavelo
